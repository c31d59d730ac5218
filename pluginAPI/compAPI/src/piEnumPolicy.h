#pragma once
// An integer input that takes one of a list of values, each with a label.
#include "piTypedInputPolicy.h"

#include <string>
#include <utility>
#include <vector>

namespace Qv {

class PiEnumPolicy : public PiTypedInputPolicy<int> {
public:
    class Builder {
    public:
        Builder& addPair(int value, std::string label);
        // Without it the first value added is the default.
        Builder& setDefaultValue(int value);
        Builder& setAnimatable(bool animatable);
        // Asserts that a value was added and that the default is one of them.
        RCShdPtr<PiEnumPolicy const> create() const;

    private:
        std::vector<std::pair<int, std::string>> _pairs;
        std::optional<int> _default;
        bool _animatable = false;
    };

    bool isPassAll() const override { return false; }
    bool canSetValue(PiVariant const& value) const override;
    PiVariant getDefault() const override { return _default; }
    std::vector<PiVariant> getDomain() const override;
    std::vector<std::string> getDomainLabels() const override;
    std::string getDomainLabel(PiVariant const& value) const override;

private:
    PiEnumPolicy(std::vector<std::pair<int, std::string>> pairs, int defaultValue, bool animatable);

    std::vector<std::pair<int, std::string>> _pairs;
    int _default;
};

} // namespace Qv
