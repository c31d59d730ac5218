#pragma once
// A small image node for tests: every pixel's value follows from its
// position, so that any tile, the whole frame, or a part of it can be
// computed independently and compared.
#include "ixWriteGuard.h"
#include "pxImageProtocol.h"

namespace Qv::PxTest {

// RGBA FLOAT32; pixel (x, y) is (x, y, x * y / 1000, 1), at any proxy scale.
class RampImageNode : public PxImageProtocol {
public:
    RampImageNode(PxNode::Init const& init, GeRectangle<float> const& rod,
                  Rational const& aspect = Rational(1, 1),
                  PxValidityInterval const& vi = PxValidityInterval::FULL)
        : PxNode(init), PxImageProtocol(init), _rod(rod),
          _format(PxImageFormat(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32, aspect),
                                Rational(24, 1)),
                  PxValidityInterval::FULL),
          _vi(vi) {}

    PxResult<PxImageFormat> getImageFormat() const override { return _format; }
    PxRODResult getImageROD(PxTimeStreamContext const&) const override { return PxRODResult(_rod, _vi); }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        PxValidityInterval vi = _vi;
        GeRectangle<int> const pixels =
            nominalToPixelized(_rod, _format.getValue().getAspectRatio().getDouble(),
                               proxyScaleToFactor(context.getProxyScale()));
        GeRectangle<int> const region = pixels.getIntersection(getTilePixels(context.getTilePosition()));
        if (region.isEmpty())
            return PxImageResult(allocateEmptyImageBuffer(FILL), vi);
        IxTile tile = allocateImageBuffer(context, FILL, region);
        draw(tile);
        return PxImageResult(tile, vi);
    }

    // The same pixels over any region, computed in one piece.
    static IxTile render(GeRectangle<int> const& region) {
        IxTile tile(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32), region, FILL);
        draw(tile);
        return tile;
    }

    static constexpr CoRgbaColorTyped<float> FILL{0.25f, 0.5f, 0.75f, 0.0f};

private:
    static void draw(IxTile const& tile) {
        IxWriteGuard const out(tile);
        GeRectangle<int> const& r = tile.getPixelRegion();
        for (int y = r.y1; y < r.y2; ++y) {
            float* line = out.getLineAs<float>(y);
            for (int x = r.x1; x < r.x2; ++x, line += 4) {
                line[0] = float(x);
                line[1] = float(y);
                line[2] = float(x) * float(y) / 1000.0f;
                line[3] = 1.0f;
            }
        }
    }

    GeRectangle<float> _rod;
    PxResult<PxImageFormat> _format;
    PxValidityInterval _vi;
};

// Whether two tiles hold the same region, format and pixel bytes.
inline bool samePixels(IxTile const& a, IxTile const& b) {
    if (a.getPixelRegion() != b.getPixelRegion() || !(a.getPixelFormat() == b.getPixelFormat()))
        return false;
    IxReadGuard const ga(a);
    IxReadGuard const gb(b);
    std::size_t const bytes =
        a.getPixelFormat().getBytesPerPixel() * std::size_t(a.getPixelRegion().getWidth());
    for (int y = a.getPixelRegion().y1; y < a.getPixelRegion().y2; ++y)
        if (std::memcmp(ga.getLine(y), gb.getLine(y), bytes) != 0)
            return false;
    return true;
}

template <class Node, class... Args>
PxStrongHndl<Node> makeNode(Args&&... args) {
    PxNode::Init init;
    PxStrongHndl<Node> node(new Node(init, std::forward<Args>(args)...));
    PxNode::init(node);
    return node;
}

} // namespace Qv::PxTest
