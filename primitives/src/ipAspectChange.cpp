#include "ipAspectChange.h"

#include "ipFilterWeights.h"
#include "ipRegionUtil.h"
#include "ixScanline.h"

#include <algorithm>
#include <cstring>

namespace Qv {

namespace {

using Rgba = CoRgbaColorTyped<float>;
// Four floats, one RGBA pixel, added and multiplied as one.
typedef float V4 __attribute__((vector_size(16)));

inline V4 load4(float const* p) {
    V4 v;
    std::memcpy(&v, p, sizeof v);
    return v;
}
inline void store4(float* p, V4 v) {
    std::memcpy(p, &v, sizeof v);
}

// out pixel i = sum over k of weights(i)[k] * in pixel (start(i) - inStart + k).
void filterRow(float const* in, int inStart, IpFilterWeights const& h, float* out, int width) {
    int const taps = h.getTaps();
    for (int i = 0; i < width; ++i) {
        float const* p = in + 4 * (h.getStart(i) - inStart);
        float const* w = h.getWeights(i);
        V4 sum = {0, 0, 0, 0};
        for (int k = 0; k < taps; ++k)
            sum += w[k] * load4(p + 4 * k);
        store4(out + 4 * i, sum);
    }
}

// out = sum over k of weights[k] * lines[k], over n floats.
void filterColumns(float const* const* lines, float const* weights, int taps, float* out, int n) {
    std::fill(out, out + n, 0.0f);
    for (int k = 0; k < taps; ++k) {
        float const w = weights[k];
        float const* line = lines[k];
        for (int i = 0; i < n; ++i)
            out[i] += w * line[i];
    }
}

bool isRgbaFloat(IxPixelFormat const& format) {
    return format.getComps() == IxPixelFormat::RGBA && format.getDepth() == IxPixelFormat::FLOAT32;
}

// Input rows as RGBA floats over a span of columns: straight from the tile
// when one RGBA float tile holds the whole span, else through a scanline.
class RowSource {
public:
    RowSource(std::vector<IxReadGuard> const& sources, GeInterval<int> const& span)
        : _sources(sources), _span(span), _line(span) {}

    float const* get(int y) {
        for (IxReadGuard const& guard : _sources) {
            GeRectangle<int> const& r = guard.getPixelRegion();
            if (isRgbaFloat(guard.getPixelFormat()) && r.y1 <= y && y < r.y2 && r.x1 <= _span.x1 &&
                _span.x2 <= r.x2)
                return ipPixelsAt<float, 4>(guard, _span.x1, y);
        }
        _line.readFrom(_sources, y);
        return reinterpret_cast<float const*>(_line.getData());
    }

private:
    std::vector<IxReadGuard> const& _sources;
    GeInterval<int> _span;
    IxScanline<Rgba> _line;
};

// Output rows: straight into an RGBA float tile, else through a scanline.
class RowSink {
public:
    RowSink(IxWriteGuard const& dst, GeInterval<int> const& span) : _dst(dst), _span(span), _line(span) {}

    float* get(int y) {
        return isRgbaFloat(_dst.getPixelFormat()) ? ipPixelsAt<float, 4>(_dst, _span.x1, y)
                                                  : reinterpret_cast<float*>(_line.getData());
    }
    void put(int y) {
        if (!isRgbaFloat(_dst.getPixelFormat()))
            _line.writeTo(_dst, y);
    }

private:
    IxWriteGuard const& _dst;
    GeInterval<int> _span;
    IxScanline<Rgba> _line;
};

} // namespace

void ipAspectChange(IxWriteGuard const& dst, std::vector<IxReadGuard> const& sources,
                    IpFilters::Filter const& filter, GeRectangle<int> const* region) {
    GeRectangle<int> const rect = ipClipRegion(dst, region);
    ipVisitFormat(dst.getPixelFormat(), "ipAspectChange", [](auto, auto) {});
    for (IxReadGuard const& source : sources)
        ipVisitFormat(source.getPixelFormat(), "ipAspectChange", [](auto, auto) {});
    if (rect.isEmpty())
        return;
    IpFilterWeights const h(filter, filter.getXScale(), rect.getXInterval());
    IpFilterWeights const v(filter, filter.getYScale(), rect.getYInterval());
    GeInterval<int> const columns = h.getSourceInterval();
    int const width = rect.getWidth();
    RowSource input(sources, columns);
    RowSink output(dst, rect.getXInterval());

    if (v.isIdentity()) {
        for (int y = rect.y1; y < rect.y2; ++y) {
            filterRow(input.get(y), columns.x1, h, output.get(y), width);
            output.put(y);
        }
        return;
    }
    // Rows filtered across, kept in a ring while output rows need them; each
    // input row is filtered once.
    int const taps = v.getTaps();
    std::vector<std::vector<float>> ring(static_cast<std::size_t>(taps),
                                         std::vector<float>(static_cast<std::size_t>(4 * width)));
    std::vector<int> ringRow(static_cast<std::size_t>(taps), v.getSourceInterval().x1 - 1);
    std::vector<float const*> lines(static_cast<std::size_t>(taps));
    for (int y = rect.y1; y < rect.y2; ++y) {
        int const start = v.getStart(y - rect.y1);
        for (int k = 0; k < taps; ++k) {
            int const row = start + k;
            std::size_t const slot = static_cast<std::size_t>(((row % taps) + taps) % taps);
            if (ringRow[slot] != row) {
                filterRow(input.get(row), columns.x1, h, ring[slot].data(), width);
                ringRow[slot] = row;
            }
            lines[static_cast<std::size_t>(k)] = ring[slot].data();
        }
        filterColumns(lines.data(), v.getWeights(y - rect.y1), taps, output.get(y), 4 * width);
        output.put(y);
    }
}

} // namespace Qv
