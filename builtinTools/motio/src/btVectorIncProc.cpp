#include "btVectorIncProc.h"

#include "assertions.h"
#include "ixScanline.h"
#include "pxRequestMgr.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace Qv {

namespace {

// A position clamped to [low, high]; NaN goes to a bound, so that a broken
// vector reads the increments' border instead of an undefined conversion.
inline double bound(double v, double low, double high) {
    return std::fmax(low, std::fmin(high, v));
}

} // namespace

BtVectorIncProc::BtVectorIncProc(IxReadGuard const& vec, IxWriteGuard const& out) : _vec(vec), _out(out) {
    GeRectangle<int> const& dstRgn = _out.getPixelRegion();
    QV_ASSERT(dstRgn == vec.getPixelRegion());
}

void BtVectorIncProc::process(PxImageTexture& increments) {
    using Rgba = CoRgbaColorTyped<float>;
    GeRectangle<int> const& dstRgn = _out.getPixelRegion();
    if (dstRgn.isEmpty())
        return;
    // Two pixels past the increments' pixels every lookup is their fill
    // colour already: clamping there changes no result.
    GeRectangle<int> const texels =
        increments.getPixelRegion().isEmpty() ? dstRgn : increments.getPixelRegion();
    double const xLow = texels.x1 - 2.0;
    double const xHigh = texels.x2 + 1.0;
    double const yLow = texels.y1 - 2.0;
    double const yHigh = texels.y2 + 1.0;

    int const blockWidth = std::max(1, increments.getBlockWidth());
    int const blockHeight = std::max(1, increments.getBlockHeight());
    std::size_t const lineLength = static_cast<std::size_t>(std::min(blockWidth, dstRgn.getWidth()));
    std::vector<Rgba> vectorLine(lineLength);
    std::vector<Rgba> outLine(lineLength);
    for (int by = dstRgn.y1; by < dstRgn.y2; by += blockHeight) {
        int const byEnd = std::min(by + blockHeight, dstRgn.y2);
        for (int bx = dstRgn.x1; bx < dstRgn.x2; bx += blockWidth) {
            PxRequestMgr::getInstance().checkCancellation();
            GeInterval<int> const columns{bx, std::min(bx + blockWidth, dstRgn.x2)};
            IxScanline<Rgba> v(columns, vectorLine.data());
            IxScanline<Rgba> o(columns, outLine.data());
            for (int y = by; y < byEnd; ++y) {
                v.readFrom(_vec, y);
                for (int x = columns.x1; x < columns.x2; ++x) {
                    Rgba const& V = v[x];
                    CoRgbaColorTyped<double> const I = increments.lookup(bound(x + double(V.r), xLow, xHigh),
                                                                         bound(y + double(V.g), yLow, yHigh));
                    o[x] = {static_cast<float>(V.r + I.r), static_cast<float>(V.g + I.g), 0.0f, 1.0f};
                }
                o.writeTo(_out, y);
            }
        }
    }
}

} // namespace Qv
