#include "btImageImportController.h"

#include "assertions.h"
#include "btImageImportTool.h"
#include "btImageReaderTool.h"
#include "btSequencePathParser.h"
#include "exBase.h"
#include "piFileSequenceDnd.h"
#include "piGraph.h"
#include "piInput.h"
#include "piNode.h"
#include "piOutput.h"
#include "piUndoGuard.h"

#include <cmath>
#include <filesystem>

namespace Qv {

void BtImageImportController::nodeCreated() {
    RCShdPtr<PiNode> const group = getGroupNode();
    QV_ASSERT(group && group->getInnerGraph());
    PiGraph& inner = *group->getInnerGraph();
    // Not inside QV_ASSERT: the node must be made whatever assertions do.
    bool const made = _imageReaderNode.dynamicAssign(
        inner.createNode(BtImageReaderTool::getTool()->getName(), BtImageImportTool::READER_NODE_NAME));
    QV_ASSERT_MSG(made,
                  "_imageReaderNode.dynamicAssign( _groupNode->addNode( BtImageReaderTool::getTool() ) )");
    RCShdPtr<PiNode> const boundary = group->getBoundaryNode(BtImageImportTool::getOutputImageName());
    QV_ASSERT(boundary != nullptr);
    inner.connect(_imageReaderNode->getOutput(BtImageReaderTool::getOutputImageName(), true),
                  boundary->getInputs().front());
}

void BtImageImportController::nodeLoaded() {
    RCShdPtr<PiNode> const group = getGroupNode();
    RCShdPtr<PiNode> const boundary =
        group ? group->getBoundaryNode(BtImageImportTool::getOutputImageName()) : RCShdPtr<PiNode>();
    QV_ASSERT(boundary != nullptr && !boundary->getInputs().empty());
    RCShdPtr<PiOutput> const source = boundary->getInputs().front()->getConnectedOutput();
    bool const found = _imageReaderNode.dynamicAssign(source ? source->getNode() : RCShdPtr<PiNode>());
    QV_ASSERT_MSG(found,
                  "_imageReaderNode.dynamicAssign( boundary->getInput()->retrieveOutput()->retrieveNode() )");
    QV_ASSERT_MSG(_imageReaderNode->getName() == BtImageImportTool::READER_NODE_NAME,
                  "_imageReaderNode->getName() == READER_NODE_NAME");
    QV_ASSERT(_imageReaderNode->getInterface<BtImageReaderController>() != nullptr);
}

BtImageReaderController& BtImageImportController::getReader() const {
    QV_ASSERT(!_imageReaderNode.isNull());
    auto* const reader = _imageReaderNode->getInterface<BtImageReaderController>();
    QV_ASSERT(reader != nullptr);
    return *reader;
}

void BtImageImportController::showSequence() {
    getNode()->getValue(BtImageImportTool::getSequenceName(), true)->setData(getReader().getSequenceString());
}

bool BtImageImportController::setSequencePath(std::string const& path) {
    RCShdPtr<PiNode> const node = getNode();
    PiGraph* const graph = node->getGraph();
    std::unique_ptr<PiUndoGuard> const guard =
        graph ? std::make_unique<PiUndoGuard>(graph->getCommandStack(), "Change Path") : nullptr;
    bool const taken = getReader().setSequencePath(path);
    _errorString = getReader().getErrorString();
    if (!taken)
        return false;
    showSequence();
    BtImageReaderController::takeSequenceName(node, getReader().getImageSequence()->getSequenceName());
    return true;
}

namespace {

// The whole sequence of a dropped file. What is not a file on disk (a
// sequence path, a file gone since) stays as it is: the reader resolves it or
// says what is wrong.
std::string toSequencePath(std::string const& file) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        return file;
    try {
        return BtSequencePathParser::resolveFullSequencePath(file);
    } catch (ExBase const&) {
        return file;
    }
}

} // namespace

bool BtImageImportController::setFileDnd(PiFileDndInterface const& drop) {
    return accept(PiFileSequenceDnd(drop, toSequencePath).getOutcome());
}

bool BtImageImportController::canAccept(PiOutcome const& outcome) const {
    return outcome.getFileItems().size() == 1;
}

bool BtImageImportController::accept(PiOutcome const& outcome) {
    if (!canAccept(outcome)) {
        _errorString = "One image sequence can be dropped here, not " +
                       std::to_string(outcome.getFileItems().size()) + ".";
        return false;
    }
    return setSequencePath(outcome.getFileItems().front().getFile());
}

void BtImageImportController::setImageSequence(RCStrongPtr<PiImageSequence> const& imageSequence) {
    getReader().setImageSequence(imageSequence);
    showSequence();
}

double BtImageImportController::toSeconds(long long frames) const {
    return static_cast<double>(frames) / getReader().getRate().getDouble();
}

long long BtImageImportController::toFrames(double seconds) const {
    return std::llround(seconds * getReader().getRate().getDouble());
}

Rational BtImageImportController::getRate(RCShdPtr<PiOutput const> const&) const {
    return getReader().getRate();
}

void BtImageImportController::setOffset(double offset) {
    getReader().setOffset(toFrames(offset));
}

double BtImageImportController::getOffset() const {
    return toSeconds(getReader().getOffset());
}

double BtImageImportController::getOffsetSync() const {
    return toSeconds(getReader().getOffsetSync());
}

void BtImageImportController::setInTime(double time) {
    getReader().setInTime(toFrames(time));
}

double BtImageImportController::getInTime() const {
    return toSeconds(getReader().getInTime());
}

double BtImageImportController::getInTimeSync() const {
    return toSeconds(getReader().getInTimeSync());
}

void BtImageImportController::setOutTime(double time) {
    getReader().setOutTime(toFrames(time));
}

double BtImageImportController::getOutTime() const {
    return toSeconds(getReader().getOutTime());
}

double BtImageImportController::getOutTimeSync() const {
    return toSeconds(getReader().getOutTimeSync());
}

std::string BtImageImportController::getXmlFileName() const {
    static std::string const fileName("<ToolUiDir>/imageImport.xml");
    return fileName;
}

std::string BtImageImportController::getNodeXmlDescription(Orientation orientation) const {
    return readXmlFile(orientation == HORIZONTAL ? "<ToolUiDir>/clipSchematicNodeH.xml"
                                                 : "<ToolUiDir>/clipSchematicNodeV.xml");
}

} // namespace Qv
