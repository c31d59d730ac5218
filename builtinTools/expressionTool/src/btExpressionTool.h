#pragma once
// The expression tools, one per value type a parameter can have (double,
// integer, boolean, registered in that order): "ExpressionTool" followed by
// the type's name. A node of one carries one expression: its stored text,
// validity flag and comment, its result output of the tool's type, and one
// dynamic input per reference of the text. Internal: nodes are made by
// PiExpressionServices when an expression is attached to a parameter.
#include "piOstrandToolProtocol.h"
#include "piSocketType.h"
#include "piTool.h"

#include <array>
#include <string>

namespace Qv {

class BtExpressionTool : public PiOstrandToolProtocol {
public:
    explicit BtExpressionTool(PiSocketType type);
    ~BtExpressionTool() override;

    void describe(PiToolDescriptor& descriptor) override;
    OPtrRet<PiNodeController> createController() const override;
    PiSocketType getType() const { return _type; }

    // The three types, in the order of registration.
    static std::array<PiSocketType, 3> const& getTypes();
    static std::string getToolName(PiSocketType type);
    static void registerTools();
    // The registered tool of a type; null for another type.
    static RCShdPtr<PiTool const> getTool(PiSocketType type);

    static std::string const& getExpressionStringName();
    static std::string const& getValidityFlagName();
    static std::string const& getCommentName();
    static std::string const& getResultName();

private:
    PiSocketType _type;
};

} // namespace Qv
