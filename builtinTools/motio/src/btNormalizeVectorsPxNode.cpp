#include "btNormalizeVectorsPxNode.h"

#include "assertions.h"
#include "btMotionUtils.h"
#include "ixScanline.h"
#include "ixWriteGuard.h"
#include "pxRequestMgr.h"

namespace Qv {

NormalizeVectorsPxNode::NormalizeVectorsPxNode(PxNode::Init const& init,
                                               PxNodePtr<PxImageProtocol const> const& vectors)
    : PxNode(init), PxImageNode(init, vectors) {}

NormalizeVectorsPxNode::~NormalizeVectorsPxNode() = default;

PxStrongHndl<PxImageProtocol> NormalizeVectorsPxNode::create(PxStrongHndl<PxNode const> const& vectors) {
    PxNode::Init init;
    PxStrongHndl<NormalizeVectorsPxNode> node(
        new NormalizeVectorsPxNode(init, PxNodePtr<PxImageProtocol const>(vectors)));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

PxImageResult NormalizeVectorsPxNode::getImageResult(PxImageContext const& context) const {
    using Rgba = CoRgbaColorTyped<float>;
    float const pixAspectRatio =
        static_cast<float>(BtMotionUtils::getPixelAspect(getImageFormat().getValue()));
    QV_ASSERT_MSG(pixAspectRatio != 0, "pixAspectRatio != 0");
    PxImageResult const source = getInput()->getImageResult(context);
    GeRectangle<int> const region = source.getPixelRegion();
    if (!source.getTile().isValid() || region.isEmpty())
        return source;
    float const scale = 1.0f / proxyScaleToFactor(context.getProxyScale());
    float const sx = pixAspectRatio * scale;
    float const sy = scale;

    IxTile tile = allocateImageBuffer(context, region);
    {
        IxReadGuard const in = source.getTileGuard();
        IxWriteGuard const out(tile);
        GeInterval<int> const columns{region.x1, region.x2};
        IxScanline<Rgba> line(columns);
        int const width = region.getWidth();
        for (int y = region.y1; y < region.y2; ++y) {
            PxRequestMgr::getInstance().checkCancellation();
            line.readFrom(in, y);
            Rgba* v = line.getData();
            for (int x = 0; x < width; ++x)
                v[x] = Rgba{v[x].r * sx, v[x].g * sy, 0.0f, 1.0f};
            line.writeTo(out, y);
        }
    }
    return PxImageResult(tile, source.getVI());
}

} // namespace Qv
