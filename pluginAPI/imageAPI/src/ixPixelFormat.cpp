#include "ixPixelFormat.h"

#include "assertions.h"

#include <cfloat>
#include <cmath>
#include <fmt/format.h>
#include <ostream>
#include <string>

namespace Qv {

namespace {

// A float is greater than a bound when it exceeds it by more than FLT_EPSILON
// of its own magnitude, so that a ratio rounding to a denormal still fails. The
// failure names the expression and the bound it had to pass.
void assertFloatGreater(char const* file, int line, char const* expression, float value, float bound) {
    if (value - bound > FLT_EPSILON * std::fabs(value))
        return;
    std::string const text = std::string(expression) + " is greater than " + fmt::format("{}", bound);
    Assertions::throwAssertionFailed(file, line, text.c_str());
}

} // namespace

IxPixelFormat const IxPixelFormat::INVALID_FORMAT{};

IxPixelFormat::IxPixelFormat(Comps comps, Depth depth, Rational const& aspectRatio)
    : _comps(comps), _depth(depth), _aspectRatio(aspectRatio) {
    QV_ASSERT(_comps == ALPHA || _comps == RGB || _comps == RGBA);
    QV_ASSERT(_depth == UINT8 || _depth == FLOAT16 || _depth == FLOAT32 || _depth == COMPLEX);
    assertFloatGreater(__FILE__, __LINE__, "aspectRatio.getFloat()", aspectRatio.getFloat(), 0.0f);
}

IxPixelFormat IxPixelFormat::withAspectRatio(Rational const& aspectRatio) const {
    return IxPixelFormat(getComps(), getDepth(), aspectRatio);
}

char const* toString(IxPixelFormat::Comps comps) {
    switch (comps) {
    case IxPixelFormat::ALPHA:
        return "ALPHA";
    case IxPixelFormat::RGB:
        return "RGB";
    case IxPixelFormat::RGBA:
        return "RGBA";
    }
    return "?";
}

char const* toString(IxPixelFormat::Depth depth) {
    switch (depth) {
    case IxPixelFormat::UINT8:
        return "UINT8";
    case IxPixelFormat::FLOAT16:
        return "FLOAT16";
    case IxPixelFormat::FLOAT32:
        return "FLOAT32";
    case IxPixelFormat::COMPLEX:
        return "COMPLEX";
    }
    return "?";
}

std::string IxPixelFormat::dump() const {
    if (!isValid())
        return "INVALID_FORMAT";
    return fmt::format("{} {} {}/{}", toString(getComps()), toString(getDepth()), _aspectRatio.getNumerator(),
                       _aspectRatio.getDenominator());
}

std::ostream& operator<<(std::ostream& os, IxPixelFormat const& format) {
    return os << format.dump();
}

} // namespace Qv
