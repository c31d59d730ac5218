#pragma once
// The format of an image in the processing graph: its pixel format (with the
// pixel aspect) and its frame rate.
#include "ixPixelFormat.h"
#include "rational.h"

#include <fmt/format.h>
#include <string>

namespace Qv {

class PxImageFormat {
public:
    PxImageFormat() = default;
    PxImageFormat(IxPixelFormat const& pixelFormat, Rational const& rate)
        : _pixelFormat(pixelFormat), _rate(rate) {}

    IxPixelFormat const& getPixelFormat() const { return _pixelFormat; }
    Rational const& getRate() const { return _rate; }
    Rational const& getAspectRatio() const { return _pixelFormat.getAspectRatio(); }
    void setPixelFormat(IxPixelFormat const& pixelFormat) { _pixelFormat = pixelFormat; }
    void setRate(Rational const& rate) { _rate = rate; }

    std::string dump() const {
        return fmt::format("{} at {}/{} fps", _pixelFormat.dump(), _rate.getNumerator(),
                           _rate.getDenominator());
    }

    friend bool operator==(PxImageFormat const&, PxImageFormat const&) = default;

private:
    IxPixelFormat _pixelFormat;
    Rational _rate{};
};

} // namespace Qv
