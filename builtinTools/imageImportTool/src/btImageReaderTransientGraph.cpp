#include "btImageReaderTransientGraph.h"

#include "assertions.h"
#include "imMemoryBuffer.h"
#include "ixUtil.h"
#include "piImageFile.h"
#include "piImageSequence.h"
#include "pxRequestMgr.h"
#include "pxSetRequest.h"

namespace Qv {

BtImageReaderTransientGraph::BtImageReaderTransientGraph(RCStrongPtr<PiImageSequence> const& imageSequence,
                                                         std::string const& id, State const& state,
                                                         CbHandler<BtImageReaderNode::ColorGuess>* onGuess)
    : _imageSequence(imageSequence), _id(id), _state(state), _onGuess(onGuess) {
    QV_ASSERT(!PxRequestMgr::getInstance().isWorkerThreadCurrent());
    QV_ASSERT(!imageSequence.isNull());
    QV_ASSERT(imageSequence->getNbImages() > 0);
    // The components come from the first file; a file that cannot be opened
    // (footage gone) reads as RGBA, and its frames become error tiles.
    try {
        PiImageFilePtr const first =
            imageSequence->getImageForReading(0, ImMemoryBuffer::Factory::getInstance());
        IxPixelFormat const pixelFormat = imToIxPixelFormat(first->getFileLayout().getFormat());
        QV_ASSERT(pixelFormat.isValid());
        _comps = pixelFormat.getComps();
        if (_state.size.x <= 0 || _state.size.y <= 0)
            _state.size = {first->getFileLayout().getWidth(), first->getFileLayout().getHeight()};
    } catch (ExBase const&) {
        if (_state.size.x <= 0 || _state.size.y <= 0)
            _state.size = {1, 1};
    }
    _graphId = Uuid::createRandom();
    _identity = BtReaderCacheIdentity::decide(*imageSequence);

    PxNode::Init formatInit;
    _formatNode = PxStrongHndl<BtImageFormatNode>(new BtImageFormatNode(formatInit, makeFormat()));
    PxNode::init(_formatNode);
    PxNode::Init init;
    _readerNode =
        PxStrongHndl<BtImageReaderNode>(new BtImageReaderNode(init, _identity.storageId, _identity.kind));
    PxNode::init(_readerNode);
    // Nothing evaluates the new node yet: its state goes in directly.
    _readerNode->setImageSequence(imageSequence);
    _readerNode->setImageSize(_state.size);
    _readerNode->setComps(static_cast<unsigned>(_comps));
    _readerNode->setPixelDepth(_state.depth);
    _readerNode->setStartTime(_state.startTime);
    _readerNode->setRate(_state.rate);
    _readerNode->setPixelRatio(_state.pixelRatio);
    _readerNode->setFormatOptions(_state.formatOptions);
    _readerNode->setMotionVectorInfo(_state.motionVectorInfo);
    _readerNode->setUnpremultiply(_state.unpremultiply);
    _readerNode->setUnpremultiplyColor(_state.unpremultiplyColor);
    _readerNode->getColorDispatcher().addCallback(&_guessForwarder);
}

BtImageReaderTransientGraph::~BtImageReaderTransientGraph() {
    _readerNode->getColorDispatcher().removeCallback(&_guessForwarder);
}

PxImageFormat BtImageReaderTransientGraph::makeFormat() const {
    auto const depth = static_cast<IxPixelFormat::Depth>(_state.depth);
    return PxImageFormat(IxPixelFormat(_comps, depth, _state.pixelRatio), _state.rate);
}

template <class Arg, class Value>
void BtImageReaderTransientGraph::update(void (BtImageReaderNode::*setter)(Arg), Value value) {
    PxRequestMgr& mgr = PxRequestMgr::getInstance();
    QV_ASSERT(!mgr.isWorkerThreadCurrent());
    PxRequestPtr<PxSetRequest<BtImageReaderNode, Arg>> request(new PxSetRequest<BtImageReaderNode, Arg>(
        PxNodePtr<BtImageReaderNode>(_readerNode), setter, std::move(value)));
    mgr.postRequest(request, 0);
    mgr.waitForRequest(request);
    mgr.releaseRequest(request);
}

void BtImageReaderTransientGraph::updateFileFormatOptions(std::string const& options) {
    _state.formatOptions = options;
    update(&BtImageReaderNode::setFormatOptions, options);
}

void BtImageReaderTransientGraph::updateMotionVectorInfo(CoMotionVectorInfo const& info) {
    _state.motionVectorInfo = info;
    update(&BtImageReaderNode::setMotionVectorInfo, info);
}

void BtImageReaderTransientGraph::updatePixelRatio(Rational const& ratio) {
    _state.pixelRatio = ratio;
    update(&BtImageReaderNode::setPixelRatio, ratio);
    _formatNode->setImageFormat(makeFormat());
}

void BtImageReaderTransientGraph::updateRate(Rational const& rate) {
    _state.rate = rate;
    update(&BtImageReaderNode::setRate, rate);
    _formatNode->setImageFormat(makeFormat());
}

void BtImageReaderTransientGraph::updateDepth(unsigned depth) {
    _state.depth = depth;
    update(&BtImageReaderNode::setPixelDepth, depth);
    _formatNode->setImageFormat(makeFormat());
}

void BtImageReaderTransientGraph::updateSize(GeVector2<int> const& size) {
    _state.size = size;
    update(&BtImageReaderNode::setImageSize, size);
}

void BtImageReaderTransientGraph::updateStartTime(long long startTime) {
    _state.startTime = startTime;
    update(&BtImageReaderNode::setStartTime, startTime);
}

void BtImageReaderTransientGraph::updateUnpreBgColor(CoRgbColorTyped<float> const& colour) {
    _state.unpremultiplyColor = colour;
    update(&BtImageReaderNode::setUnpremultiplyColor, colour);
}

void BtImageReaderTransientGraph::updateUnpreState(bool unpremultiply) {
    _state.unpremultiply = unpremultiply;
    update(&BtImageReaderNode::setUnpremultiply, unpremultiply);
}

void BtImageReaderTransientGraph::unpremultiplyBgColorGuessedCb(BtImageReaderNode::ColorGuess& guess) {
    QV_ASSERT(guess.first == _identity.storageId);
    if (_onGuess)
        _onGuess->call(guess);
}

} // namespace Qv
