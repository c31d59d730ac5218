#include "btMotionUtils.h"

#include "stImageCacheNode.h"

namespace Qv {

std::string const& BtMotionUtils::getFwdVectorsSocketName() {
    static std::string const name = "Forward Vectors";
    return name;
}

std::string const& BtMotionUtils::getBwdVectorsSocketName() {
    static std::string const name = "Backward Vectors";
    return name;
}

double BtMotionUtils::getFrameThreshold() {
    return 0.01;
}

PxValidityInterval BtMotionUtils::pointValidity(double t) {
    // A 192th of a microsecond: far below any frame, well above the rounding of times.
    constexpr double e = 5.208333333333334e-9;
    if (t == PxValidityInterval::TIME_MIN || t == PxValidityInterval::TIME_MAX)
        return PxValidityInterval(t, t);
    return PxValidityInterval(t - e, t + e);
}

PxStrongHndl<PxImageProtocol> BtMotionUtils::createMemoryCache(PxStrongHndl<PxNode const> const& image,
                                                               std::string const& name) {
    PxNode::Init init;
    PxStrongHndl<StImageCacheNode> cache(
        new StImageCacheNode(init, PxNodePtr<PxImageProtocol const>(image), name));
    PxNode::init(cache);
    return PxStrongHndl<PxImageProtocol>(cache);
}

void BtMotionUtils::describeModifierValues(PiImageModifier::Descriptor& descriptor) {
    descriptor.stores(PiImageModifier::getMuteValueName(), PiValueType::BOOL);
    descriptor.stores(PiImageModifier::getAffectValueName(), PiValueType::INT);
    descriptor.produces(PiImageModifier::getOutputName(), PiSocketType::IMAGE);
}

double BtMotionUtils::getPixelAspect(PxImageFormat const& format) {
    // A format holds a positive ratio: IxPixelFormat refuses any other.
    return format.getAspectRatio().getDouble();
}

} // namespace Qv
