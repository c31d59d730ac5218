#include "pxImageNode.h"

#include "assertions.h"

namespace Qv {

PxImageNode::PxImageNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& input)
    : PxNode(init), PxImageProtocol(init), _input(input) {
    QV_ASSERT(!_input.isNull());
}

PxImageNode::~PxImageNode() {
    unregisterChild(_input);
}

void PxImageNode::init() {
    PxImageProtocol::init();
    registerChild(_input);
    updateFormat();
}

void PxImageNode::invalidateAndReinitialize(PxValidityInterval const& interval,
                                            PxUPtr<PxNode const> const& child, int stream) {
    PxImageProtocol::invalidateAndReinitialize(interval, child, stream);
    updateFormat();
}

void PxImageNode::updateFormat() {
    PxResult<PxImageFormat> format = computeImageFormat();
    std::lock_guard<std::mutex> lock(_formatLock);
    _format = std::move(format);
}

PxResult<PxImageFormat> PxImageNode::getImageFormat() const {
    std::lock_guard<std::mutex> lock(_formatLock);
    return _format;
}

PxRODResult PxImageNode::getImageROD(PxTimeStreamContext const& context) const {
    return _input->getImageROD(context);
}

bool PxImageNode::isChainConnected() const {
    return _input->isChainConnected();
}

int PxImageNode::getNbStreams() const {
    return _input->getNbStreams();
}

PxResult<PxImageFormat> PxImageNode::computeImageFormat() const {
    PxResult<PxImageFormat> format = _input->getImageFormat();
    IxPixelFormat const& input = format.getValue().getPixelFormat();
    IxPixelFormat::Comps const comps = computeImageFormatComps();
    if (comps != input.getComps())
        format.setValue(PxImageFormat(IxPixelFormat(comps, input.getDepth(), input.getAspectRatio()),
                                      format.getValue().getRate()));
    return format;
}

IxPixelFormat::Comps PxImageNode::computeImageFormatComps() const {
    return _input->getImageFormat().getValue().getPixelFormat().getComps();
}

} // namespace Qv
