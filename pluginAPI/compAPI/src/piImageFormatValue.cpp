#include "piImageFormatValue.h"

#include <cmath>

namespace Qv {

namespace {
constexpr std::size_t FIELDS = 7;

int toInt(double value) {
    return static_cast<int>(std::lround(value));
}
} // namespace

PiImageFormatValue::PiImageFormatValue(RCShdPtr<PiValue> value) : _array(std::move(value)) {}

PiImageFormat PiImageFormatValue::getValue() const {
    std::vector<double> v = _array.getValue();
    PiImageFormat format;
    if (v.size() < FIELDS)
        return format;
    format.width = toInt(v[0]);
    format.height = toInt(v[1]);
    // A stored zero denominator would not be a ratio; keep the defaults then.
    if (toInt(v[3]) != 0)
        format.pixelAspect = Rational(toInt(v[2]), toInt(v[3]));
    if (toInt(v[5]) != 0)
        format.rate = Rational(toInt(v[4]), toInt(v[5]));
    return format;
}

void PiImageFormatValue::setValue(PiImageFormat const& format) {
    store(format, false);
}

void PiImageFormatValue::setValueAssumed(PiImageFormat const& format) {
    store(format, true);
}

bool PiImageFormatValue::isAssumed() const {
    std::vector<double> v = _array.getValue();
    return v.size() >= FIELDS && v[6] != 0.0;
}

void PiImageFormatValue::store(PiImageFormat const& format, bool assumed) {
    _array.setValue(std::vector<double>{static_cast<double>(format.width), static_cast<double>(format.height),
                                        static_cast<double>(format.pixelAspect.getNumerator()),
                                        static_cast<double>(format.pixelAspect.getDenominator()),
                                        static_cast<double>(format.rate.getNumerator()),
                                        static_cast<double>(format.rate.getDenominator()),
                                        assumed ? 1.0 : 0.0});
}

} // namespace Qv
