#pragma once
// The rule of an image input: a primary one (the image a tool modifies) or a
// secondary one (a matte, vectors). Images carry no value, so there is
// nothing to set; the masks, the reset type and the flag are kept as given
// for the editors and tools that read them.
#include "piInputPolicy.h"

namespace Qv {

class PiImageInputPolicy : public PiInputPolicy {
public:
    enum ResetType { RESET_NONE = 0, RESET_DISCONNECT = 1 };

    static RCShdPtr<PiImageInputPolicy const> createPrimary(int first, int second, int third, ResetType reset,
                                                            bool flag);
    static RCShdPtr<PiImageInputPolicy const> createSecondary(int first, int second, int third, int fourth,
                                                              ResetType reset, bool flag);

    bool isPrimary() const { return _primary; }
    std::vector<int> const& getMasks() const { return _masks; }
    ResetType getResetType() const { return _reset; }
    bool getFlag() const { return _flag; }

    bool canAnimate() const override { return false; }
    bool hasSameType(PiSocketType type) const override { return type == PiSocketType::IMAGE; }
    void resetValue(PiInput& input) const override;
    bool canSetValue(PiVariant const&) const override { return false; }
    PiVariant getDefault() const override { return {}; }

private:
    PiImageInputPolicy(bool primary, std::vector<int> masks, ResetType reset, bool flag)
        : _primary(primary), _masks(std::move(masks)), _reset(reset), _flag(flag) {}

    bool _primary;
    std::vector<int> _masks;
    ResetType _reset;
    bool _flag;
};

} // namespace Qv
