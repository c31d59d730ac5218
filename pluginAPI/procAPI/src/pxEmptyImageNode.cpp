#include "pxEmptyImageNode.h"

namespace Qv {

PxEmptyImageNode::PxEmptyImageNode(PxNode::Init const& init) : PxNode(init), PxImageProtocol(init) {}

PxImageFormat const& PxEmptyImageNode::getEmptyFormat() {
    static PxImageFormat const format(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32),
                                      Rational(0, 1));
    return format;
}

PxResult<PxImageFormat> PxEmptyImageNode::getImageFormat() const {
    return PxResult<PxImageFormat>(getEmptyFormat(), PxValidityInterval::FULL);
}

PxRODResult PxEmptyImageNode::getImageROD(PxTimeStreamContext const&) const {
    return PxRODResult(GeRectangle<float>{}, PxValidityInterval::FULL);
}

PxImageResult PxEmptyImageNode::getImageResult(PxImageContext const&) const {
    return PxImageResult(allocateEmptyImageBuffer(), PxValidityInterval::FULL);
}

} // namespace Qv
