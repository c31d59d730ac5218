#include "btExpressionTool.h"

#include "btExpressionController.h"
#include "piToolRegistry.h"

namespace Qv {

BtExpressionTool::BtExpressionTool(PiSocketType type)
    : PiOstrandToolProtocol(getToolName(type), PiToolProtocol::getUnlistedCategory(), 1,
                            "Mathematical Expression Computation", TOOL_INTERNAL, PLAIN_TOOL),
      _type(type) {}

BtExpressionTool::~BtExpressionTool() = default;

void BtExpressionTool::describe(PiToolDescriptor& descriptor) {
    descriptor.stores(getExpressionStringName(), PiValueType::STRING);
    descriptor.stores(getValidityFlagName(), PiValueType::BOOL);
    descriptor.stores(getCommentName(), PiValueType::STRING);
    descriptor.produces(getResultName(), _type);
}

OPtrRet<PiNodeController> BtExpressionTool::createController() const {
    return std::make_unique<BtExpressionController>(_type);
}

std::array<PiSocketType, 3> const& BtExpressionTool::getTypes() {
    static std::array<PiSocketType, 3> const types{PiSocketType::DOUBLE, PiSocketType::INTEGER,
                                                   PiSocketType::BOOLEAN};
    return types;
}

std::string BtExpressionTool::getToolName(PiSocketType type) {
    return "ExpressionTool" + PiSocketType::typeToString(type);
}

void BtExpressionTool::registerTools() {
    for (PiSocketType type : getTypes())
        PiToolRegistry::getInstance().registerTool(std::make_unique<BtExpressionTool>(type));
}

RCShdPtr<PiTool const> BtExpressionTool::getTool(PiSocketType type) {
    for (PiSocketType known : getTypes())
        if (known == type)
            return PiToolRegistry::getInstance().findTool(
                PiOstrandToolProtocol::getOstrandToolName(getToolName(type)));
    return {};
}

std::string const& BtExpressionTool::getExpressionStringName() {
    static std::string const name("Expression string");
    return name;
}

std::string const& BtExpressionTool::getValidityFlagName() {
    static std::string const name("Expression validity flag");
    return name;
}

std::string const& BtExpressionTool::getCommentName() {
    static std::string const name("Expression comment");
    return name;
}

std::string const& BtExpressionTool::getResultName() {
    static std::string const name("Expression result");
    return name;
}

} // namespace Qv
