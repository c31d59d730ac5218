#pragma once
// Resampling filters. A Filter is a kernel with its radius (in pixels at
// unit scale) and the scale it resamples by, in each axis: output pixels per
// input pixel, so 0.5 halves the width. Output pixel x (centre x + 0.5) sits
// at input coordinate (x + 0.5) / scale; when shrinking, the kernel widens by
// 1 / scale so that every input pixel counts.
#include "geRectangle.h"

namespace Qv {

struct IpFilters {
    class Filter {
    public:
        enum Kind { LANCZOS2, LANCZOS3 };

        constexpr Filter(Kind kind, float radius) : _kind(kind), _radius(radius) {}

        Kind getKind() const { return _kind; }
        float getRadius() const { return _radius; }
        float getXScale() const { return _xScale; }
        float getYScale() const { return _yScale; }
        // The kernel's value at distance x (unit scale).
        float evaluate(float x) const;

        // This kernel resampling by xScale and yScale; asserts that both are above zero.
        Filter scale(float xScale, float yScale) const;

        // The input pixels that the output region's pixels read.
        GeRectangle<int> getSourceRegion(GeRectangle<int> const& dstRegion) const;

    private:
        Kind _kind;
        float _radius;
        float _xScale = 1.0f;
        float _yScale = 1.0f;
    };

    static Filter const Lanczos2;
    static Filter const Lanczos3;
};

} // namespace Qv
