#include "btSingleChannelMonoPxNode.h"

#include "ixScanline.h"
#include "ixWriteGuard.h"
#include "pxRequestMgr.h"

namespace Qv {

SingleChannelMonoPxNode::SingleChannelMonoPxNode(PxNode::Init const& init,
                                                 PxNodePtr<PxImageProtocol const> const& input)
    : PxNode(init), PxImageNode(init, input) {}

PxStrongHndl<PxImageProtocol> SingleChannelMonoPxNode::createPxNode(PxStrongHndl<PxNode const> const& image) {
    PxNode::Init init;
    PxStrongHndl<SingleChannelMonoPxNode> node(
        new SingleChannelMonoPxNode(init, PxNodePtr<PxImageProtocol const>(image)));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

PxResult<PxImageFormat> SingleChannelMonoPxNode::computeImageFormat() const {
    PxResult<PxImageFormat> result = PxImageNode::computeImageFormat();
    PxImageFormat format = result.getValue();
    format.setPixelFormat(IxPixelFormat(IxPixelFormat::ALPHA, IxPixelFormat::FLOAT32,
                                        format.getPixelFormat().getAspectRatio()));
    return PxResult<PxImageFormat>(format, result.getVI());
}

PxImageResult SingleChannelMonoPxNode::getImageResult(PxImageContext const& context) const {
    using Rgba = CoRgbaColorTyped<float>;
    PxUPtr<PxImageProtocol const> const input(getInput());
    PxValidityInterval interval = PxValidityInterval::FULL;
    GeRectangle<int> const region =
        computeImagePixelRegion(input, context.getTimeStreamContext(), context.getProxyScale(), interval)
            .getIntersection(getTilePixels(context.getTilePosition()));
    std::vector<PxImageResult> const sources =
        getImageTilesInRegion(context, input, interval, region, Rgba{0.0f, 0.0f, 0.0f, 0.0f});
    if (region.isEmpty())
        return PxImageResult(allocateEmptyImageBuffer(), interval);

    IxTile tile = allocateImageBuffer(context, region);
    {
        std::vector<IxReadGuard> const guards = getGuards(sources);
        IxWriteGuard const out(tile);
        GeInterval<int> const columns{region.x1, region.x2};
        IxScanline<Rgba> source(columns);
        IxScanline<float> line(columns);
        int const width = region.getWidth();
        for (int y = region.y1; y < region.y2; ++y) {
            PxRequestMgr::getInstance().checkCancellation();
            source.readFrom(guards, y);
            Rgba const* s = source.getData();
            float* l = line.getData();
            for (int x = 0; x < width; ++x)
                l[x] = 0.2126f * s[x].r + 0.7152f * s[x].g + 0.0722f * s[x].b;
            line.writeTo(out, y);
        }
    }
    return PxImageResult(tile, interval);
}

} // namespace Qv
