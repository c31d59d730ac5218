#pragma once
// Times on the time line are frame indices. DtTimeIndex is the bare index, a
// signed 64-bit count of frames; DtTime adds the rate that turns it into
// seconds.
#include "exBase.h"
#include "rational.h"

#include <compare>
#include <cstdint>
#include <iosfwd>

namespace Qv {

struct DtTimeEx {
    // Converting between frames and seconds needs a rate above zero.
    QV_DECLARE_EX(ExNoRate, ExBase);
    // Seconds that name no frame: not finite, or beyond the 64-bit index.
    QV_DECLARE_EX(ExBadTime, ExBase);
};

class DtTimeIndex {
public:
    constexpr DtTimeIndex() = default;
    constexpr explicit DtTimeIndex(std::int64_t index) : _index(index) {}

    constexpr std::int64_t getValue() const { return _index; }

    constexpr DtTimeIndex& operator+=(std::int64_t frames) {
        _index += frames;
        return *this;
    }
    constexpr DtTimeIndex& operator-=(std::int64_t frames) {
        _index -= frames;
        return *this;
    }
    constexpr DtTimeIndex& operator++() { return *this += 1; }
    constexpr DtTimeIndex& operator--() { return *this -= 1; }

    friend constexpr DtTimeIndex operator+(DtTimeIndex t, std::int64_t frames) { return t += frames; }
    friend constexpr DtTimeIndex operator-(DtTimeIndex t, std::int64_t frames) { return t -= frames; }
    // The number of frames from b to a.
    friend constexpr std::int64_t operator-(DtTimeIndex a, DtTimeIndex b) { return a._index - b._index; }
    friend constexpr auto operator<=>(DtTimeIndex, DtTimeIndex) = default;

private:
    std::int64_t _index = 0;
};

class DtTime {
public:
    // Frame 0 at the unspecified rate 0/1.
    DtTime() = default;
    DtTime(DtTimeIndex index, Rational rate) : _index(index), _rate(rate) {}

    DtTimeIndex getIndex() const { return _index; }
    Rational getRate() const { return _rate; }
    void setIndex(DtTimeIndex index) { _index = index; }
    void setRate(Rational rate) { _rate = rate; }

    // The start of the frame: index / rate. Throws DtTimeEx::ExNoRate.
    double getSeconds() const;
    // The frame that holds the given moment. A moment computed as the start
    // of a frame may fall a rounding error short of it, so a millionth of a
    // frame is given in its favour. Throws DtTimeEx::ExNoRate or ExBadTime.
    static DtTime fromSeconds(double seconds, Rational rate);

    // Same index at the same rate (compared by value).
    friend bool operator==(DtTime const&, DtTime const&) = default;

private:
    DtTimeIndex _index;
    Rational _rate;
};

std::ostream& operator<<(std::ostream& os, DtTimeIndex index);
std::ostream& operator<<(std::ostream& os, DtTime const& time);

} // namespace Qv
