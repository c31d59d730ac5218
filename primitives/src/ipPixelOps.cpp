#include "ipPixelOps.h"

#include "assertions.h"
#include "ipRegionUtil.h"
#include "ixScanline.h"

namespace Qv {

namespace {

using Rgba = CoRgbaColorTyped<float>;

// Each row of the region read as RGBA floats, changed by op over the whole
// row, and written back in the destination's format.
template <class Op>
void mapRows(IxWriteGuard const& dst, IxReadGuard const& src, GeRectangle<int> const* region,
             char const* operation, Op op) {
    GeRectangle<int> const rect = ipClipRegion(dst, region);
    ipVisitFormat(src.getPixelFormat(), operation, [](auto, auto) {});
    ipVisitFormat(dst.getPixelFormat(), operation, [](auto, auto) {});
    IxScanline<Rgba> line(rect.getXInterval());
    for (int y = rect.y1; y < rect.y2; ++y) {
        line.readFrom(src, y);
        op(line.getData(), line.getLength());
        line.writeTo(dst, y);
    }
}

} // namespace

void ipUnpremultiply(IxWriteGuard const& dst, IxReadGuard const& src, CoRgbColorTyped<float> const& colour,
                     GeRectangle<int> const* region) {
    mapRows(dst, src, region, "ipUnpremultiply", [&](Rgba* p, int n) {
        for (int i = 0; i < n; ++i) {
            float const a = p[i].a;
            float const scale = a != 0.0f ? 1.0f / a : 0.0f;
            float const behind = 1.0f - a;
            p[i].r = (p[i].r - behind * colour.r) * scale;
            p[i].g = (p[i].g - behind * colour.g) * scale;
            p[i].b = (p[i].b - behind * colour.b) * scale;
        }
    });
}

void ipUnpremultiply(IxWriteGuard const& guard, GeRectangle<int> const& region,
                     CoRgbColorTyped<float> const& colour) {
    ipUnpremultiply(guard, IxReadGuard(guard), colour, &region);
}

void ipConvertMotionVectors(IxWriteGuard const& dst, IxReadGuard const& src, CoMotionVectorInfo const& info,
                            GeRectangle<int> const* region) {
    QV_ASSERT(info.isValid());
    // v = scale * s + offset: (2s - 1) * max for normalised vectors, s for absolute ones.
    bool const normalized = info.type == CoMotionVectorInfo::NORMALIZED;
    float const scale = normalized ? 2.0f * info.maxDisplacement : 1.0f;
    float const offset = normalized ? -info.maxDisplacement : 0.0f;
    mapRows(dst, src, region, "ipConvertMotionVectors", [&](Rgba* p, int n) {
        for (int i = 0; i < n; ++i)
            p[i] = {scale * p[i].r + offset, scale * p[i].g + offset, 0.0f, 1.0f};
    });
}

} // namespace Qv
