#include "btExpAttributeAdjuster.h"

#include "piGroupUtils.h"
#include "piInput.h"
#include "piOutput.h"
#include "piSocketUtil.h"

#include <algorithm>

namespace Qv {

namespace {

std::vector<RCShdPtr<PiInput>> dynamicInputsOf(PiNode const& node) {
    std::vector<RCShdPtr<PiInput>> inputs;
    for (RCShdPtr<PiInput> const& input : node.getInputs())
        if (input->isDynamic())
            inputs.push_back(input);
    return inputs;
}

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

} // namespace

BtExpAttributeAdjuster::BtExpAttributeAdjuster(RCShdPtr<PiNode> node, std::string source)
    : _node(std::move(node)), _source(std::move(source)) {}

void BtExpAttributeAdjuster::beginParse() {
    BtExpParserProtocol::beginParse();
    _copied = 0;
    _result.clear();
    _nextInput = 0;
    _problems.clear();
}

void BtExpAttributeAdjuster::endParse() {
    if (_copied < _source.size())
        _result.append(_source, _copied, std::string::npos);
    _copied = _source.size();
}

BtExpAttributeAdjuster::AttributeSource BtExpAttributeAdjuster::findAttributeSource(PiInput const& input) {
    RCShdPtr<PiOutput> driver = input.getDriver();
    if (!driver)
        return {{}, {}, "Attribute is not connected."};
    RCShdPtr<PiNode> node = driver->getNode();
    if (!node)
        return {{}, {}, "Could not find attribute source."};
    // A parameter is read through its value node: the attribute is the
    // input that the value node stands behind.
    if (node->isValueNode()) {
        RCShdPtr<PiInput> parameter = node->getOwnerInput();
        RCShdPtr<PiNode> owner = parameter ? parameter->getNode() : RCShdPtr<PiNode>();
        if (!owner)
            return {{}, {}, "Could not find attribute owner."};
        return {owner, parameter->getName(), {}};
    }
    return {node, driver->getName(), {}};
}

bool BtExpAttributeAdjuster::onAttribute(LiString const& text, int firstColumn, int lastColumn) {
    std::size_t const first = static_cast<std::size_t>(std::max(firstColumn - 1, 0));
    std::size_t const last = std::min(static_cast<std::size_t>(std::max(lastColumn - 1, 0)), _source.size());
    if (first > _copied)
        _result.append(_source, _copied, first - _copied);
    _copied = std::max(_copied, last);

    std::vector<RCShdPtr<PiInput>> const inputs = dynamicInputsOf(*_node);
    if (_nextInput >= inputs.size()) {
        setPendingException(std::make_unique<BtExpEx::ExInternalError>(
            __FILE__, __LINE__, "Not enough attributes for current expression.", firstColumn, lastColumn));
        return false;
    }
    AttributeSource const source = findAttributeSource(*inputs[_nextInput++]);
    std::string const reference = text;
    if (!source.owner) {
        _result += reference;
        _problems.push_back(reference + ": " + source.problem);
        return true;
    }
    RCShdPtr<PiNode> ancestor = PiGroupUtils::findCommonAncestor(source.owner, _node);
    std::string const name =
        PiGroupUtils::getName(source.owner, ancestor) + PiSocketUtil::getSocketSeparator() + source.attribute;
    // The blanks the grammar counted into the reference stay where they were.
    std::size_t const lead =
        std::find_if_not(reference.begin(), reference.end(), isBlank) - reference.begin();
    std::size_t const trail =
        std::find_if_not(reference.rbegin(), reference.rend() - static_cast<std::ptrdiff_t>(lead), isBlank) -
        reference.rbegin();
    _result += reference.substr(0, lead) + name + reference.substr(reference.size() - trail);
    return true;
}

} // namespace Qv
