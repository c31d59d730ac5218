#pragma once
// The times, in seconds, for which a result holds: a closed interval. Every
// finished result has a non-empty one; a node starts from FULL and narrows it
// by each result it reads.
#include <string>

namespace Qv {

class Rational;

class PxValidityInterval {
public:
    // The host's time limits: a year of seconds on either side of zero.
    static constexpr double TIME_MIN = -3.1536e7;
    static constexpr double TIME_MAX = 3.1536e7;

    static PxValidityInterval const FULL;
    static PxValidityInterval const EMPTY;

    constexpr PxValidityInterval() : _start(TIME_MIN), _end(TIME_MAX) {}
    constexpr PxValidityInterval(double start, double end) : _start(start), _end(end) {}

    static PxValidityInterval getFull() { return FULL; }
    // The interval of the one frame at `rate` frames per second that holds `time`:
    // from its start up to, not including, the start of the next frame.
    static PxValidityInterval createFrameInterval(double rate, double time);
    static PxValidityInterval createFrameInterval(Rational const& rate, double time);

    double getStart() const { return _start; }
    double getEnd() const { return _end; }
    bool isNonEmpty() const { return _start <= _end; }
    bool isEmpty() const { return !isNonEmpty(); }
    bool contains(double time) const { return _start <= time && time <= _end; }

    // Narrows this interval to its common part with `other`.
    PxValidityInterval& intersect(PxValidityInterval const& other);
    PxValidityInterval getIntersection(PxValidityInterval const& other) const {
        PxValidityInterval result(*this);
        return result.intersect(other);
    }

    bool operator==(PxValidityInterval const& other) const = default;
    std::string dump() const;

private:
    double _start;
    double _end;
};

} // namespace Qv
