#pragma once
// The Value Source tool: one floating-point input, "Value", handed on
// unchanged to one value output, "Output". Internal: no menu lists it; it is
// made by name.
#include "piOstrandToolProtocol.h"
#include "piTool.h"
#include "rcShdPtr.h"

namespace Qv {

class BtValueSourceTool : public PiOstrandToolProtocol {
public:
    BtValueSourceTool();
    ~BtValueSourceTool() override;

    void describe(PiToolDescriptor& descriptor) override;
    OPtrRet<PiNodeController> createController() const override;

    // The registered tool, by its full name.
    static RCShdPtr<PiTool const> getTool();
};

} // namespace Qv
