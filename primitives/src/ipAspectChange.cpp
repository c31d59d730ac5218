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

// Output pixels [i0, i1) from input pixels starting at column inStart:
// out pixel i = sum over k of weights(i)[k] * in pixel (start(i) - inStart + k).
void filterRange(float const* in, int inStart, IpFilterWeights const& h, float* out, int i0, int i1) {
    int const taps = h.getTaps();
    int i = i0;
    // Four outputs at a time: four independent sums keep the adder busy
    // instead of waiting on one chain.
    for (; i + 4 <= i1; i += 4) {
        float const* p0 = in + 4 * (h.getStart(i) - inStart);
        float const* p1 = in + 4 * (h.getStart(i + 1) - inStart);
        float const* p2 = in + 4 * (h.getStart(i + 2) - inStart);
        float const* p3 = in + 4 * (h.getStart(i + 3) - inStart);
        float const* w = h.getWeights(i); // the four outputs' weights follow one another
        V4 s0 = {0, 0, 0, 0};
        V4 s1 = s0;
        V4 s2 = s0;
        V4 s3 = s0;
        for (int k = 0; k < taps; ++k) {
            s0 += w[k] * load4(p0 + 4 * k);
            s1 += w[taps + k] * load4(p1 + 4 * k);
            s2 += w[2 * taps + k] * load4(p2 + 4 * k);
            s3 += w[3 * taps + k] * load4(p3 + 4 * k);
        }
        store4(out + 4 * i, s0);
        store4(out + 4 * i + 4, s1);
        store4(out + 4 * i + 8, s2);
        store4(out + 4 * i + 12, s3);
    }
    for (; i < i1; ++i) {
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

// Input rows filtered across. Output pixels whose taps all lie in one RGBA
// float tile read it in place; the others (the edges, other formats) read
// the columns they need through a scanline padded as the sources say.
class RowFilter {
public:
    RowFilter(std::vector<IxReadGuard> const& sources, IpFilterWeights const& h, int width)
        : _sources(sources), _h(h), _width(width), _line(h.getSourceInterval()) {}

    void filter(int y, float* out) {
        for (IxReadGuard const& guard : _sources) {
            GeRectangle<int> const& r = guard.getPixelRegion();
            if (!isRgbaFloat(guard.getPixelFormat()) || y < r.y1 || y >= r.y2)
                continue;
            // Starts grow with i: the inner outputs are one run.
            int i0 = 0;
            while (i0 < _width && _h.getStart(i0) < r.x1)
                ++i0;
            int i1 = i0;
            while (i1 < _width && _h.getStart(i1) + _h.getTaps() <= r.x2)
                ++i1;
            if (i0 == i1)
                break;
            filterRange(ipPixelsAt<float, 4>(guard, r.x1, y), r.x1, _h, out, i0, i1);
            padded(y, out, 0, i0);
            padded(y, out, i1, _width);
            return;
        }
        padded(y, out, 0, _width);
    }

private:
    void padded(int y, float* out, int i0, int i1) {
        if (i0 >= i1)
            return;
        GeInterval<int> const columns{_h.getStart(i0), _h.getStart(i1 - 1) + _h.getTaps()};
        IxScanline<Rgba> part(columns, _line.getData());
        part.readFrom(_sources, y);
        filterRange(reinterpret_cast<float const*>(part.getData()), columns.x1, _h, out, i0, i1);
    }

    std::vector<IxReadGuard> const& _sources;
    IpFilterWeights const& _h;
    int _width;
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
    int const width = rect.getWidth();
    RowFilter input(sources, h, width);
    RowSink output(dst, rect.getXInterval());

    if (v.isIdentity()) {
        for (int y = rect.y1; y < rect.y2; ++y) {
            input.filter(y, output.get(y));
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
                input.filter(row, ring[slot].data());
                ringRow[slot] = row;
            }
            lines[static_cast<std::size_t>(k)] = ring[slot].data();
        }
        filterColumns(lines.data(), v.getWeights(y - rect.y1), taps, output.get(y), 4 * width);
        output.put(y);
    }
}

} // namespace Qv
