#include "ipFilters.h"

#include "assertions.h"
#include "ipFilterWeights.h"

#include <cmath>
#include <numbers>

namespace Qv {

IpFilters::Filter const IpFilters::Lanczos2{IpFilters::Filter::LANCZOS2, 2.0f};
IpFilters::Filter const IpFilters::Lanczos3{IpFilters::Filter::LANCZOS3, 3.0f};

float IpFilters::Filter::evaluate(float x) const {
    x = std::fabs(x);
    if (x >= _radius)
        return 0.0f;
    if (x < 1e-6f)
        return 1.0f;
    double const pix = std::numbers::pi * x;
    return static_cast<float>(_radius * std::sin(pix) * std::sin(pix / _radius) / (pix * pix));
}

IpFilters::Filter IpFilters::Filter::scale(float xScale, float yScale) const {
    QV_ASSERT(xScale > 0.0f && yScale > 0.0f);
    Filter scaled = *this;
    scaled._xScale = xScale;
    scaled._yScale = yScale;
    return scaled;
}

GeRectangle<int> IpFilters::Filter::getSourceRegion(GeRectangle<int> const& dstRegion) const {
    GeInterval<int> const x = IpFilterWeights(*this, _xScale, dstRegion.getXInterval()).getSourceInterval();
    GeInterval<int> const y = IpFilterWeights(*this, _yScale, dstRegion.getYInterval()).getSourceInterval();
    return {x.x1, x.x2, y.x1, y.x2};
}

} // namespace Qv
