#include "btExpressionController.h"

#include "btExpAttributeAdjuster.h"
#include "btExpCastNodes.h"
#include "btExpMessages.h"
#include "btExpNodeNameObserver.h"
#include "btExpParser.h"
#include "btExpPxGraphBuilder.h"
#include "btExpPxGraphLoader.h"
#include "btExpPxGraphValidator.h"
#include "btExpressionTool.h"
#include "piCreateProcGuard.h"
#include "piGraph.h"
#include "piInput.h"
#include "piNode.h"
#include "piOutput.h"
#include "piProcNodeFactory.h"
#include "piUndoGuard.h"
#include "piValue.h"

#include <optional>
#include <sstream>

namespace Qv {

using namespace BtExpNodeTypes;

// Raises a flag for a scope, restoring what it was on leaving.
class BtExpressionController::FlagScope {
public:
    explicit FlagScope(bool& flag) : _flag(flag), _previous(flag) { _flag = true; }
    ~FlagScope() { _flag = _previous; }
    FlagScope(FlagScope const&) = delete;
    FlagScope& operator=(FlagScope const&) = delete;

private:
    bool& _flag;
    bool _previous;
};

namespace {

template <class A, class B>
PxStrongHndl<PxNode const> cast(Typed<A> const& child) {
    PxNode::Init init;
    PxStrongHndl<CastOutputNode<A, B>> node(new CastOutputNode<A, B>(init, child));
    PxNode::init(node);
    return node;
}

template <class T>
PxStrongHndl<PxNode const> castInput(PxStrongHndl<PxNode const> const& child) {
    PxNode::Init init;
    PxStrongHndl<CastInputNode<T>> node(
        new CastInputNode<T>(init, PxStrongHndl<PxAnimValueProtocol<T> const>(child)));
    PxNode::init(node);
    return node;
}

// Runs a listener over a text.
void parse(BtExpParserProtocol& listener, std::string const& text) {
    std::istringstream input(text);
    btExpParse(listener, input);
}

} // namespace

BtExpressionController::BtExpressionController(PiSocketType type) : _type(type) {}

BtExpressionController::~BtExpressionController() = default;

void BtExpressionController::setExpression(std::string const& text) {
    writeStored("Set Expression String", BtExpressionTool::getExpressionStringName(), text);
}

std::string BtExpressionController::getExpression() const {
    return getStoredString(BtExpressionTool::getExpressionStringName());
}

bool BtExpressionController::validateExpression() {
    QV_ASSERT(!isUndoRedoOngoing());
    FlagScope validating(_validating);
    _sockets.clear();
    std::optional<std::vector<RCShdPtr<PiSocket>>> sockets = checkText();
    bool const valid = sockets.has_value();
    if (valid) {
        _sockets = std::move(*sockets);
    } else {
        PiCreateProcGuard guard(*this);
        FlagScope building(_building);
        removeDynamicInputs();
        _root.reset();
        _outputNode = getDefaultNode();
        guard.releaseOutputNode(BtExpressionTool::getResultName(), _outputNode);
    }
    writeValidity(valid);
    return valid;
}

void BtExpressionController::buildExpression() {
    QV_ASSERT(!isUndoRedoOngoing());
    if (!isExpressionValid())
        return;
    {
        PiCreateProcGuard guard(*this);
        FlagScope building(_building);
        removeDynamicInputs();
        _root.reset();
        _outputNode = getDefaultNode();
        RCShdPtr<BtExpPxGraphBuilder> builder(new BtExpPxGraphBuilder(getNode(), _sockets, guard));
        try {
            parse(*builder, getExpression());
            Node const root = builder->getResult();
            _outputNode = castToOutput(root);
            _root = root;
        } catch (ExBase const& error) {
            _errorText = error.getReason();
        }
        guard.releaseOutputNode(BtExpressionTool::getResultName(), _outputNode);
    }
    if (_root.isNull())
        writeValidity(false);
}

void BtExpressionController::rebuildExpression() {
    buildExpression();
}

void BtExpressionController::clearExpression() {
    // An empty text does not validate: the flag follows in the same step.
    writeStored("Clear Expression String", BtExpressionTool::getExpressionStringName(), {});
}

bool BtExpressionController::adjustExpression() {
    if (!isExpressionValid())
        return false;
    std::string const text = getExpression();
    RCShdPtr<BtExpAttributeAdjuster> adjuster(new BtExpAttributeAdjuster(getNode(), text));
    bool valid = true;
    try {
        parse(*adjuster, text);
        valid = !adjuster->hasProblems();
    } catch (BtExpEx const& error) {
        _errorFirstColumn = error.getFirstColumn();
        _errorLastColumn = error.getLastColumn();
        _errorText = error.getReason();
        valid = false;
    }
    if (valid && adjuster->getResult() != text)
        setExpression(adjuster->getResult());
    else if (!valid && !isUndoRedoOngoing())
        writeValidity(false);
    return valid && isExpressionValid();
}

bool BtExpressionController::isExpressionValid() const {
    RCShdPtr<PiValue> flag = getNode()->getValue(BtExpressionTool::getValidityFlagName(), true);
    bool const* valid = std::get_if<bool>(&flag->getData());
    return valid && *valid;
}

void BtExpressionController::setComment(std::string const& text) {
    writeStored("Set Expression Comment", BtExpressionTool::getCommentName(), text);
}

std::string BtExpressionController::getComment() const {
    return getStoredString(BtExpressionTool::getCommentName());
}

RCShdPtr<PiOutput> BtExpressionController::getResultOutput() {
    return getNode()->getOutput(BtExpressionTool::getResultName(), true);
}

RCShdPtr<PiOutput const> BtExpressionController::getResultOutput() const {
    return getNode()->getOutput(BtExpressionTool::getResultName(), true);
}

PxStrongHndl<PxNode const> BtExpressionController::getRoot() const {
    return _root;
}

PxStrongHndl<PxNode const> BtExpressionController::getOutputNode() const {
    return _outputNode;
}

void BtExpressionController::nodeCreated() {
    BtExpNodeNameObserver::getInstance().attach(*getNode()->getGraph());
}

void BtExpressionController::nodeLoaded() {
    RCShdPtr<PiNode> node = getNode();
    BtExpNodeNameObserver::getInstance().attach(*node->getGraph());
    if (!isExpressionValid()) {
        // The reason of a refusal is not stored: found again, nothing changed.
        checkText();
        return;
    }
    // A reference whose node was not saved with the composition: the text
    // stays as typed, and the user hears of it once.
    for (RCShdPtr<PiInput> const& input : node->getInputs()) {
        if (!input->isDynamic() || input->isDriven())
            continue;
        RCShdPtr<PiOutput> result = getResultOutput();
        std::vector<RCShdPtr<PiInput>> const driven = result->getConnectedInputs();
        RCShdPtr<PiNode> valueNode = driven.empty() ? RCShdPtr<PiNode>() : driven.front()->getNode();
        std::string const parameter = valueNode ? valueNode->getName() : node->getName();
        BtExpMessages::warnSourceMissing(parameter, getExpression());
        return;
    }
}

bool BtExpressionController::canAddDynamicInput(std::string const&, PiSocketType type,
                                                Cardinality cardinality) {
    return cardinality == SINGLE &&
           (type == PiSocketType::DOUBLE || type == PiSocketType::INTEGER || type == PiSocketType::BOOLEAN);
}

bool BtExpressionController::canRemoveDynamicInput(RCShdPtr<PiInput> const&) {
    return true;
}

PxStrongHndl<PxNode const>
BtExpressionController::createInputProcNode(RCShdPtr<PiInput> const& input,
                                            PxStrongHndl<PxNode const> const& node) {
    switch (input->getType()) {
    case PiSocketType::INTEGER:
        return castInput<int>(node);
    case PiSocketType::BOOLEAN:
        return castInput<bool>(node);
    default:
        return PiToolTopologyInterface::createInputProcNode(input, node);
    }
}

void BtExpressionController::createProcNodes(OutputPublisher& publisher) {
    RCShdPtr<PiOutput> output = getResultOutput();
    _root.reset();
    _outputNode = getDefaultNode();
    // While a text is validated or built its inputs are in flux: the build
    // publishes the result itself when it is done.
    if (!_building && !_validating && isExpressionValid()) {
        std::vector<PxStrongHndl<PxNode const>> inputs;
        for (RCShdPtr<PiInput> const& input : getNode()->getInputs())
            if (input->isDynamic())
                inputs.push_back(publisher.getInputProcNode(input->getName()));
        RCShdPtr<BtExpPxGraphLoader> loader(new BtExpPxGraphLoader(inputs));
        try {
            parse(*loader, getExpression());
            Node const root = loader->getResult();
            _outputNode = castToOutput(root);
            _root = root;
        } catch (ExBase const&) {
            // Text and inputs out of step: the output gives its default.
        }
    }
    publisher.publish(output, _outputNode);
}

void BtExpressionController::valueChanged(PiNodeEvent::ValueChanged const& event) {
    if (event.isInput() || event.getName() != BtExpressionTool::getExpressionStringName())
        return;
    RCShdPtr<PiNode> node = getNode();
    // Values restored while a composition is read are not edits.
    if (_validating || _building || !node || !node->getGraph() || !PiCommandStack::isLogging())
        return;
    // Undo and redo bring text, flag, inputs and connections back; the
    // processing graph follows from them.
    if (isUndoRedoOngoing()) {
        forceCreateProcNodesIfBuilt();
        return;
    }
    if (validateExpression())
        buildExpression();
}

std::optional<std::vector<RCShdPtr<PiSocket>>> BtExpressionController::checkText() {
    RCShdPtr<BtExpPxGraphValidator> validator(new BtExpPxGraphValidator(getNode()));
    std::string const text = getExpression();
    _errorFirstColumn = 0;
    _errorLastColumn = 0;
    _errorText.clear();
    try {
        parse(*validator, text);
        Node const& result = validator->getResult();
        // A vector cannot drive a parameter.
        if (!asTyped<double>(result).isNull() || !asTyped<bool>(result).isNull())
            return validator->getSockets();
        _errorFirstColumn = 1;
        _errorLastColumn = static_cast<std::int32_t>(text.size()) + 1;
        _errorText = "Unsupported expression type";
    } catch (BtExpEx const& error) {
        _errorFirstColumn = error.getFirstColumn();
        _errorLastColumn = error.getLastColumn();
        _errorText = error.getReason();
    }
    return std::nullopt;
}

void BtExpressionController::writeStored(std::string const& label, std::string const& name,
                                         std::string const& text) {
    QV_ASSERT(!isUndoRedoOngoing());
    UndoGuard guard(*this, label);
    getNode()->getValue(name, true)->setData(PiVariant(text));
}

std::string BtExpressionController::getStoredString(std::string const& name) const {
    RCShdPtr<PiValue> value = getNode()->getValue(name, true);
    std::string const* text = std::get_if<std::string>(&value->getData());
    return text ? *text : std::string();
}

void BtExpressionController::writeValidity(bool valid) {
    if (isUndoRedoOngoing())
        return;
    getNode()->getValue(BtExpressionTool::getValidityFlagName(), true)->setData(PiVariant(valid));
}

void BtExpressionController::removeDynamicInputs() {
    RCShdPtr<PiNode> node = getNode();
    std::vector<RCShdPtr<PiInput>> dynamic;
    for (RCShdPtr<PiInput> const& input : node->getInputs())
        if (input->isDynamic())
            dynamic.push_back(input);
    for (RCShdPtr<PiInput> const& input : dynamic) {
        node->getGraph()->disconnect(input);
        node->removeDynamicInput(input);
    }
}

PxStrongHndl<PxNode const> BtExpressionController::castToOutput(Node const& root) const {
    if (Typed<double> const value = asTyped<double>(root)) {
        if (_type == PiSocketType::INTEGER)
            return cast<double, int>(value);
        if (_type == PiSocketType::BOOLEAN)
            return cast<double, bool>(value);
        return value;
    }
    if (Typed<bool> const value = asTyped<bool>(root)) {
        if (_type == PiSocketType::INTEGER)
            return cast<bool, int>(value);
        if (_type == PiSocketType::DOUBLE)
            return cast<bool, double>(value);
        return value;
    }
    throw ExBase(__FILE__, __LINE__, "Unsupported expression type");
}

PxStrongHndl<PxNode const> const& BtExpressionController::getDefaultNode() {
    if (_defaultNode.isNull())
        _defaultNode = PiProcNodeFactory::createGeneratorNode(_type);
    return _defaultNode;
}

} // namespace Qv
