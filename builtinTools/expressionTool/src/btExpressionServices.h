#pragma once
// The expression tools' side of PiExpressionServices: installed at the
// package's start, it makes and finds the expression nodes that drive
// parameters.
#include "piExpressionServices.h"

namespace Qv {

class BtExpressionServices : public PiExpressionServices {
public:
    RCShdPtr<PiTool const> createTool(PiSocketType type) const override;
    bool isExpressionTool(PiTool const& tool) const override;
    bool isExpressionToolOfType(PiTool const& tool, PiSocketType type) const override;
    bool isExpressionTool(PiNode const& node) const override;
    bool isExpressionToolOfType(PiNode const& node, PiSocketType type) const override;
    PiExpressionInterface& getOrCreateExpression(RCShdPtr<PiInput> const& in) override;
    PiExpressionInterface* getExpression(RCShdPtr<PiOutput const> const& output) const override;
};

} // namespace Qv
