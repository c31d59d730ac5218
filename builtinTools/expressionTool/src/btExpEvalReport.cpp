#include "btExpEvalReport.h"

#include "btExpParser.h"
#include "btExpPxGraphBase.h"
#include "liStringUtil.h"
#include "pxAnimValueRequest.h"
#include "pxValueNodes.h"

#include <sstream>
#include <type_traits>

namespace Qv {

namespace {

// A graph listener whose references are named constants.
class ConstantAttributesGraph : public BtExpPxGraphBase {
public:
    explicit ConstantAttributesGraph(BtExpAttributeValues const& attributes) : _attributes(attributes) {}

    bool onAttribute(LiString const& text, int firstColumn, int lastColumn) override {
        std::string const name = LiStringUtil::trimLeadingAndTrailingSpaces(text);
        for (auto const& [attribute, value] : _attributes) {
            if (attribute != name)
                continue;
            PxNode::Init init;
            PxStrongHndl<PxConstantAnimValueNode<double>> node(
                new PxConstantAnimValueNode<double>(init, PxResult<double>(value, PxValidityInterval::FULL)));
            PxNode::init(node);
            push(node);
            return true;
        }
        setPendingException(
            std::make_unique<BtExpEx::ExUnknownAttribute>(__FILE__, __LINE__, name, firstColumn, lastColumn));
        return false;
    }

private:
    BtExpAttributeValues const& _attributes;
};

template <class T>
bool report(BtExpPxGraphBase::Node const& node, double time, BtExpEvalReport& out) {
    BtExpNodeTypes::Typed<T> const typed = BtExpNodeTypes::asTyped<T>(node);
    if (typed.isNull())
        return false;
    PxResult<T> const result = PxAnimValueRequest<T>::evaluate(typed, time);
    T const& value = result.getValue();
    if constexpr (std::is_same_v<T, double>) {
        out.type = BtExpEvalReport::Type::DOUBLE;
        out.values[0] = value;
    } else if constexpr (std::is_same_v<T, bool>) {
        out.type = BtExpEvalReport::Type::BOOLEAN;
        out.values[0] = value ? 1.0 : 0.0;
    } else if constexpr (std::is_same_v<T, GeVector2<double>>) {
        out.type = BtExpEvalReport::Type::VECTOR2;
        out.values[0] = value.x;
        out.values[1] = value.y;
    } else {
        out.type = BtExpEvalReport::Type::VECTOR3;
        out.values[0] = value.x;
        out.values[1] = value.y;
        out.values[2] = value.z;
    }
    out.validityBegin = result.getVI().getStart();
    out.validityEnd = result.getVI().getEnd();
    return true;
}

} // namespace

} // namespace Qv

extern "C" __attribute__((visibility("default"))) void
btEvaluateExpression(std::string const& text, double time, Qv::BtExpAttributeValues const& attributes,
                     Qv::BtExpEvalReport& out) {
    using namespace Qv;
    out = BtExpEvalReport();
    RCShdPtr<ConstantAttributesGraph> graph(new ConstantAttributesGraph(attributes));
    try {
        std::istringstream input(text);
        btExpParse(*graph, input);
    } catch (BtExpEx const& error) {
        out.firstColumn = error.getFirstColumn();
        out.lastColumn = error.getLastColumn();
        out.reason = error.getReason();
        return;
    }
    BtExpPxGraphBase::Node const& node = graph->getResult();
    out.accepted = report<double>(node, time, out) || report<bool>(node, time, out) ||
                   report<GeVector3<double>>(node, time, out) || report<GeVector2<double>>(node, time, out);
}

// The function's type is part of the contract with the host.
static_assert(std::is_same_v<decltype(&btEvaluateExpression), Qv::BtEvaluateExpressionFunction>);
