#include "btBwdWarpProc.h"

#include "ixScanline.h"
#include "pxRequestMgr.h"

#include <algorithm>
#include <vector>

namespace Qv {

namespace {

using Rgba = CoRgbaColorTyped<float>;

// A position kept within two pixels of the image's pixels: the
// texture reads only its fill colour beyond the first pixel outside, so the
// colour is the same, and a NaN or an infinite vector becomes a position the
// lookup can round to an integer (NaN goes to the lower bound).
inline double keepNear(double p, double low, double high) {
    p = p > low ? p : low;
    return p < high ? p : high;
}

bool isRgbaFloat(IxPixelFormat const& format) {
    return format.getComps() == IxPixelFormat::RGBA && format.getDepth() == IxPixelFormat::FLOAT32;
}

} // namespace

BtBwdWarpProc::BtBwdWarpProc(PxImageTexture& texture, IxReadGuard const& vectors, IxWriteGuard const& out)
    : _texture(texture), _vectors(vectors), _out(out) {}

void BtBwdWarpProc::run() {
    GeRectangle<int> const& region = _out.getPixelRegion();
    if (region.isEmpty())
        return;
    PxRequestMgr const& mgr = PxRequestMgr::getInstance();
    GeRectangle<int> const& image = _texture.getPixelRegion();
    double const lowX = image.x1 - 2.0;
    double const highX = image.x2 + 1.5;
    double const lowY = image.y1 - 2.0;
    double const highY = image.y2 + 1.5;
    int const blockWidth = std::max(_texture.getBlockWidth(), 1);
    int const blockHeight = std::max(_texture.getBlockHeight(), 1);
    std::vector<Rgba> motionBuffer(static_cast<std::size_t>(std::min(blockWidth, region.getWidth())));
    std::vector<Rgba> lineBuffer(motionBuffer.size());
    // A row's positions as (x, y) pairs, looked up together (the identity
    // derivative matrix: the lookup does not widen).
    std::vector<double> positions(2 * motionBuffer.size());
    // A pixel without a vector stays where it is.
    IxPaddingPolicy<Rgba> const still = IxPaddingPolicy<Rgba>::constant({0.0f, 0.0f, 0.0f, 1.0f});
    // Tiles of RGBA floats over the whole region are read and written in
    // place; others go through the scanlines' conversions.
    bool const vectorsInPlace = isRgbaFloat(_vectors.getPixelFormat()) && _vectors.getPixelRegion() == region;
    bool const outInPlace = isRgbaFloat(_out.getPixelFormat());

    for (int by = region.y1; by < region.y2; by += blockHeight) {
        int const byEnd = std::min(by + blockHeight, region.y2);
        for (int bx = region.x1; bx < region.x2; bx += blockWidth) {
            mgr.checkCancellation();
            GeInterval<int> const columns{bx, std::min(bx + blockWidth, region.x2)};
            IxScanline<Rgba> motion(columns, motionBuffer.data(), still);
            IxScanline<Rgba> line(columns, lineBuffer.data());
            int const width = columns.getLength();
            std::ptrdiff_t const offset = bx - region.x1;
            for (int y = by; y < byEnd; ++y) {
                if (!vectorsInPlace)
                    motion.readFrom(_vectors, y);
                Rgba const* v = vectorsInPlace ? _vectors.getLineAs<Rgba>(y) + offset : motion.getData();
                Rgba* o = outInPlace ? _out.getLineAs<Rgba>(y) + offset : line.getData();
                for (int i = 0; i < width; ++i) {
                    positions[2 * i] = keepNear(double(bx + i) + double(v[i].r), lowX, highX);
                    positions[2 * i + 1] = keepNear(double(y) + double(v[i].g), lowY, highY);
                }
                _texture.lookupRow(positions.data(), width, o);
                if (!outInPlace)
                    line.writeTo(_out, y);
            }
        }
    }
}

} // namespace Qv
