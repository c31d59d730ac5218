#include "ipGradient.h"

#include "assertions.h"
#include "ipRegionUtil.h"
#include "ixScanline.h"

#include <algorithm>

namespace Qv {

namespace {

// Source rows over the columns [x1 - h, x2 + h), rows and columns clamped
// into the source region, each row read once while the window needs it.
class ClampedRows {
public:
    ClampedRows(std::vector<IxReadGuard> const& sources, GeRectangle<int> const& srcRegion,
                GeInterval<int> columns, int h)
        : _sources(sources), _src(srcRegion), _columns(columns), _slots(2 * h + 1) {
        _read = IxScanline<float>(columns.getIntersection(srcRegion.getXInterval()));
        for (int i = 0; i < _slots; ++i)
            _ring.emplace_back(static_cast<std::size_t>(columns.getLength()));
        _rows.assign(static_cast<std::size_t>(_slots), srcRegion.y1 - 1);
    }

    // Row y's values, the first at column columns.x1.
    float const* get(int y) {
        int const row = std::clamp(y, _src.y1, _src.y2 - 1);
        std::size_t const slot = static_cast<std::size_t>(row - _src.y1) % static_cast<std::size_t>(_slots);
        std::vector<float>& line = _ring[slot];
        if (_rows[slot] != row) {
            _rows[slot] = row;
            GeInterval<int> const inside = _read.getInterval();
            if (!inside.isEmpty()) {
                _read.readFrom(_sources, row);
                std::copy(_read.getData(), _read.getData() + inside.getLength(), &line[at(inside.x1)]);
            }
            // Edge replication: the nearest column of the source region.
            float const left = inside.isEmpty() ? 0.0f : _read[inside.x1];
            float const right = inside.isEmpty() ? 0.0f : _read[inside.x2 - 1];
            std::fill(line.begin(), line.begin() + at(std::max(inside.x1, _columns.x1)), left);
            std::fill(line.begin() + at(std::min(std::max(inside.x2, _columns.x1), _columns.x2)), line.end(),
                      right);
        }
        return line.data();
    }

private:
    std::ptrdiff_t at(int x) const { return x - _columns.x1; }

    std::vector<IxReadGuard> const& _sources;
    GeRectangle<int> _src;
    GeInterval<int> _columns;
    int _slots;
    IxScanline<float> _read;
    std::vector<std::vector<float>> _ring;
    std::vector<int> _rows;
};

} // namespace

void ipGradient(IxWriteGuard const& dst, GeRectangle<int> const* region,
                std::vector<IxReadGuard> const& sources, GeRectangle<int> const& srcRegion,
                GeAffineMatrix2<float> const& matrix, int filterWidth) {
    QV_ASSERT(filterWidth >= 3 && filterWidth % 2 == 1);
    QV_ASSERT(!srcRegion.isEmpty());
    if (dst.getPixelFormat().getComps() == IxPixelFormat::ALPHA)
        ixThrowUnsupported("ipGradient (two derivatives need two components)", dst.getPixelFormat());
    ipVisitFormat(dst.getPixelFormat(), "ipGradient", [](auto, auto) {});
    for (IxReadGuard const& source : sources)
        ipVisitFormat(source.getPixelFormat(), "ipGradient", [](auto, auto) {});
    GeLinearMatrix2<float> const solve = matrix.linear.getInverse();
    GeRectangle<int> const rect = ipClipRegion(dst, region);
    if (rect.isEmpty())
        return;
    int const h = filterWidth / 2;
    int const width = rect.getWidth();
    ClampedRows rows(sources, srcRegion, {rect.x1 - h, rect.x2 + h}, h);
    IxScanline<CoRgbaColorTyped<float>> out(rect.getXInterval());
    CoRgbaColorTyped<float>* o = out.getData();
    for (int y = rect.y1; y < rect.y2; ++y) {
        // Read down the window first: the ring keeps the rows still needed.
        float const* up = rows.get(y - h) + h;
        float const* centre = rows.get(y);
        float const* down = rows.get(y + h) + h;
        for (int i = 0; i < width; ++i) {
            float const dx = centre[i + 2 * h] - centre[i];
            float const dy = down[i] - up[i];
            o[i] = {solve.m00 * dx + solve.m01 * dy, solve.m10 * dx + solve.m11 * dy, 0.0f, 1.0f};
        }
        out.writeTo(dst, y);
    }
}

} // namespace Qv
