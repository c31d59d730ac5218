#include "btImageReaderController.h"

#include "assertions.h"
#include "btImageReaderTool.h"
#include "inInitMgr.h"
#include "piGraph.h"
#include "piImageRepeatNode.h"
#include "piImageSequence.h"
#include "piImageTimeOffsetNode.h"
#include "piNode.h"
#include "piOutput.h"
#include "pxRequestMgr.h"

#include <cctype>
#include <filesystem>

namespace Qv {

BtImageReaderController::BtImageReaderController(bool renderedResult) : _renderedResult(renderedResult) {}

BtImageReaderController::~BtImageReaderController() = default;

std::string BtImageReaderController::getXmlFileName() const {
    static std::string const fileName("<ToolUiDir>/imageReader.xml");
    return fileName;
}

bool BtImageReaderController::canAddDynamicInput(std::string const&, PiSocketType, Cardinality) {
    return false;
}

void BtImageReaderController::nodeCreated() {
    // A new reader has no footage until a path is set.
}

void BtImageReaderController::nodeLoaded() {
    restoreImageSequence();
    if (_imageSequence.isNull())
        return;
    PiUndoGuardNoLog const noLog;
    initImageSequence();
}

void BtImageReaderController::restoreImageSequence() {
    _imageSequence = RCStrongPtr<PiImageSequence>();
    dropTransientGraph();
    std::string const fragment = std::get<std::string>(getStored(BtImageReaderTool::getImageSequenceName()));
    if (fragment.empty())
        return;
    // Footage that cannot be read back leaves the node alive with no output,
    // its path and values kept for when the files come back.
    try {
        _imageSequence = PiImageSequence::createFromFragment(fragment);
        _errorString.clear();
    } catch (ExBase const& ex) {
        _errorString = ex.getReason();
    }
    if (!_imageSequence.isNull() && _imageSequence->getNbImages() <= 0)
        _imageSequence = RCStrongPtr<PiImageSequence>();
}

void BtImageReaderController::rebuildOutput() {
    // The output appears with the footage and goes with it: rebuilt even
    // where nothing was published before.
    RCShdPtr<PiNode> const node = getNode();
    if (node && node->getGraph())
        forceCreateProcNodes();
}

void BtImageReaderController::dropTransientGraph() {
    _transientGraph.reset();
}

BtImageReaderTransientGraph::State BtImageReaderController::makeState() const {
    BtImageReaderTransientGraph::State state;
    state.size = {std::get<int>(getStored(BtImageReaderTool::getWidthName())),
                  std::get<int>(getStored(BtImageReaderTool::getHeightName()))};
    state.depth = getDepth();
    state.rate = getRate();
    state.pixelRatio = getPixelRatio();
    state.startTime = _imageSequence->getStartFileNo() + getSourceTime();
    state.formatOptions = getFileFormatOptions();
    state.motionVectorInfo = getMotionVectorInfo();
    state.unpremultiply = getUnpremultiplyState();
    state.unpremultiplyColor = getUnpremultiplyBgColor();
    return state;
}

void BtImageReaderController::createProcNodes(OutputPublisher& publisher) {
    QV_ASSERT(!PxRequestMgr::getInstance().isWorkerThreadCurrent());
    if (_imageSequence.isNull())
        return;
    RCShdPtr<PiNode> const node = getNode();
    if (!_transientGraph)
        _transientGraph = std::make_shared<BtImageReaderTransientGraph>(_imageSequence, node->getName(),
                                                                        makeState(), &_guessHandler);
    PxStrongHndl<PxNode const> const root(_transientGraph->getRootNode());
    PxStrongHndl<PxImageProtocol> const repeated =
        PiImageRepeatNode::create(root, publisher.getInputProcNode(BtImageReaderTool::getRepeatModeName()),
                                  publisher.getInputProcNode(BtImageReaderTool::getMarkInName()),
                                  publisher.getInputProcNode(BtImageReaderTool::getMarkOutName()),
                                  publisher.getInputProcNode(BtImageReaderTool::getLockDurationName()));
    PxStrongHndl<PxImageProtocol> const offset =
        PiImageTimeOffsetNode::create(PxStrongHndl<PxNode const>(repeated),
                                      publisher.getInputProcNode(BtImageReaderTool::getTimeOffsetName()));
    publisher.publish(node->getOutput(BtImageReaderTool::getOutputImageName(), true),
                      PxStrongHndl<PxNode const>(offset));
}

std::string BtImageReaderController::getCacheIdentity() const {
    return _transientGraph ? _transientGraph->getCacheIdentity().text : std::string();
}

void BtImageReaderController::valueChanged(PiNodeEvent::ValueChanged const& event) {
    if (event.isInput())
        return;
    std::string const& name = event.getName();
    if (name == BtImageReaderTool::getImageSequenceName()) {
        // An undo or redo put another fragment back: its footage with it.
        if (!_storingSequence) {
            restoreImageSequence();
            rebuildOutput();
        }
        return;
    }
    if (!_transientGraph)
        return;
    if (name == BtImageReaderTool::getCustomName())
        _transientGraph->updateFileFormatOptions(getFileFormatOptions());
    else if (name == BtImageReaderTool::getImageFormatName()) {
        _transientGraph->updatePixelRatio(getPixelRatio());
        _transientGraph->updateRate(getRate());
    } else if (name == BtImageReaderTool::getWidthName() || name == BtImageReaderTool::getHeightName())
        _transientGraph->updateSize({std::get<int>(getStored(BtImageReaderTool::getWidthName())),
                                     std::get<int>(getStored(BtImageReaderTool::getHeightName()))});
    else if (name == BtImageReaderTool::getDepthName())
        _transientGraph->updateDepth(getDepth());
    else if (name == BtImageReaderTool::getSourceTimeName())
        _transientGraph->updateStartTime(_imageSequence->getStartFileNo() + getSourceTime());
    else if (name == BtImageReaderTool::getUnpremultiplyName())
        _transientGraph->updateUnpreState(getUnpremultiplyState());
    else if (name == BtImageReaderTool::getBgRedName() || name == BtImageReaderTool::getBgGreenName() ||
             name == BtImageReaderTool::getBgBlueName())
        _transientGraph->updateUnpreBgColor(getUnpremultiplyBgColor());
    else if (name == BtImageReaderTool::getMotionVectorStatusName() ||
             name == BtImageReaderTool::getMotionVectorTypeName() ||
             name == BtImageReaderTool::getMotionVectorMaxDisplacementName())
        _transientGraph->updateMotionVectorInfo(getMotionVectorInfo());
}

std::vector<std::string> BtImageReaderController::getExternalDependencies(int flags) const {
    std::vector<std::string> files;
    if (!(flags & FILES) || _imageSequence.isNull())
        return files;
    for (int i = 0; i < _imageSequence->getNbImages(); ++i) {
        std::error_code error;
        std::filesystem::path const file(_imageSequence->getFileNameAt(i));
        std::filesystem::path const absolute = std::filesystem::absolute(file, error);
        files.push_back((error ? file : absolute).lexically_normal().string());
    }
    return files;
}

bool BtImageReaderController::isDefaultName(std::string const& name, std::string const& toolShortName) {
    std::string stem;
    for (char c : toolShortName)
        if (!std::isspace(static_cast<unsigned char>(c)) && c != '.')
            stem += c;
    if (name.size() <= stem.size() || name.compare(0, stem.size(), stem) != 0)
        return false;
    for (std::size_t i = stem.size(); i < name.size(); ++i)
        if (!std::isdigit(static_cast<unsigned char>(name[i])))
            return false;
    return true;
}

void BtImageReaderController::unpremultiplyBgColorGuessedCb(BtImageReaderNode::ColorGuess& guess) {
    // A guess from a graph this node has dropped since is stale.
    if (!_transientGraph || !(guess.first == _transientGraph->getCacheIdentity().storageId))
        return;
    auto const guard = makeGuard("Guess Unpremultiply Background Color");
    setUnpremultiplyBgColor(guess.second);
}

namespace {

struct UiFactories {
    std::string mainXmlFile;
    BtImageReaderController::UiFactory main = nullptr;
    BtImageReaderController::UiFactory options = nullptr;
};

// Set and cleared only while packages initialise or finalise, on the
// application thread: no lock.
UiFactories& uiFactories() {
    static UiFactories factories;
    return factories;
}

} // namespace

void BtImageReaderController::registerMainUiFactory(std::string const& imageReaderXmlFile,
                                                    UiFactory imageReaderUiFactory) {
    QV_ASSERT(InInitMgr::getInstance().isInitializing());
    QV_ASSERT_MSG(!imageReaderXmlFile.empty(), "!imageReaderXmlFile.isEmpty()");
    QV_ASSERT(imageReaderUiFactory != 0);
    uiFactories().mainXmlFile = imageReaderXmlFile;
    uiFactories().main = imageReaderUiFactory;
}

void BtImageReaderController::registerOptionsUiFactory(UiFactory imageReaderOptionsUiFactory) {
    QV_ASSERT(InInitMgr::getInstance().isInitializing());
    QV_ASSERT(imageReaderOptionsUiFactory != 0);
    uiFactories().options = imageReaderOptionsUiFactory;
}

void BtImageReaderController::unregisterMainUiFactory() {
    QV_ASSERT(InInitMgr::getInstance().isFinalizing());
    uiFactories().mainXmlFile.clear();
    uiFactories().main = nullptr;
}

void BtImageReaderController::unregisterOptionsUiFactory() {
    QV_ASSERT(InInitMgr::getInstance().isFinalizing());
    uiFactories().options = nullptr;
}

BtImageReaderController::UiFactory BtImageReaderController::getMainUiFactory() {
    return uiFactories().main;
}

std::string const& BtImageReaderController::getMainUiXmlFile() {
    return uiFactories().mainXmlFile;
}

BtImageReaderController::UiFactory BtImageReaderController::getOptionsUiFactory() {
    return uiFactories().options;
}

} // namespace Qv
