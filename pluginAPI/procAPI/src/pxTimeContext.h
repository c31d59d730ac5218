#pragma once
// The time of an evaluation, in seconds.
#include "dtTime.h"

namespace Qv {

class PxTimeContext {
public:
    explicit PxTimeContext(double time = 0.0) : _time(time) {}
    double getTime() const { return _time; }

private:
    double _time;
};

// A time given either in seconds or as a frame of a rate.
class PxTimeInfo {
public:
    explicit PxTimeInfo(double time) : _time(time) {}
    explicit PxTimeInfo(DtTime const& time) : _time(time.getSeconds()) {}
    double getTime() const { return _time; }
    PxTimeContext getContext() const { return PxTimeContext(_time); }

private:
    double _time;
};

} // namespace Qv
