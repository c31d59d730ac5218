#include "btBwdWarpPxNode.h"

#include "assertions.h"
#include "btBwdWarpProc.h"
#include "btUnitTextureParams.h"
#include "btWarpUtils.h"
#include "pxImageTexture.h"

namespace Qv {

BwdWarpPxNode::BwdWarpPxNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& image,
                             PxNodePtr<PxImageProtocol const> const& vectors)
    : PxNode(init), PxImageNode(init, image), _vectors(vectors) {
    QV_ASSERT(!_vectors.isNull());
    BtWarpUtils::storeResourceConfig();
}

BwdWarpPxNode::~BwdWarpPxNode() {
    unregisterChild(_vectors);
}

void BwdWarpPxNode::init() {
    PxImageNode::init();
    registerChild(_vectors);
}

PxRODResult BwdWarpPxNode::getImageROD(PxTimeStreamContext const& context) const {
    if (getInput()->isChainConnected() && _vectors->isChainConnected())
        return _vectors->getImageROD(context);
    return PxImageNode::getImageROD(context);
}

PxImageResult BwdWarpPxNode::getImageResult(PxImageContext const& context) const {
    PxUPtr<PxImageProtocol const> const image(getInput());
    PxUPtr<PxImageProtocol const> const vectors(_vectors);
    if (!image->isChainConnected() || !vectors->isChainConnected())
        return image->getImageResult(context);
    PxValidityInterval interval = PxValidityInterval::FULL;
    GeRectangle<int> const region =
        computeImagePixelRegion(image, context.getTimeStreamContext(), context.getProxyScale(), interval);
    if (region.isEmpty())
        return image->getImageResult(context);

    PxImageTexture texture(image, context, BtUnitTextureParams::create(region));

    PxImageResult const motion = vectors->getImageResult(context);
    motion.reduceVI(interval);
    IxTile const out = allocateImageBuffer(context, motion.getPixelRegion());
    {
        IxReadGuard const vectorGuard = motion.getTileGuard();
        IxWriteGuard const outGuard(out);
        BtBwdWarpProc(texture, vectorGuard, outGuard).run();
    }
    texture.accumulateVI(interval);
    return PxImageResult(out, interval);
}

} // namespace Qv
