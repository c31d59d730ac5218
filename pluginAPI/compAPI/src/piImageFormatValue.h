#pragma once
// A view of a stored image format: size, pixel aspect and rate, and whether
// the format was assumed (taken from defaults) rather than set. It is kept as
// a stored array of doubles: width, height, aspect numerator and
// denominator, rate numerator and denominator, assumed (0 or 1).
#include "piTypedValueUtil.h"
#include "rational.h"

namespace Qv {

struct PiImageFormat {
    int width = 0;
    int height = 0;
    Rational pixelAspect{1, 1};
    Rational rate{0, 1};
    friend bool operator==(PiImageFormat const&, PiImageFormat const&) = default;
};

class PiImageFormatValue {
public:
    explicit PiImageFormatValue(RCShdPtr<PiValue> value);

    // A zero format when the stored array is empty.
    PiImageFormat getValue() const;
    void setValue(PiImageFormat const& format);
    // Sets the format as assumed: a later default may replace it.
    void setValueAssumed(PiImageFormat const& format);
    bool isAssumed() const;

private:
    void store(PiImageFormat const& format, bool assumed);

    PiTypedValueArrayUtil<double> _array;
};

} // namespace Qv
