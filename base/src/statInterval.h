#pragma once
// Process-wide time spent per statistic, on the steady clock. An interval
// measures from its construction, or from the last start(), to stop(); stop
// records the time and the count of one interval, once: a second stop, or the
// destructor after a stop, records nothing. The destructor stops an interval
// still running, so time spent up to an exception is counted too.
//
//   StatInterval reading(StatTypes::FILE_IMPORT_INTERVAL_ID);
//   ... read the file ...
//   reading.stop();
//
// One object belongs to one thread; the totals may be fed from any number.
// An identifier outside StatTypes fails the assertion "StatTypes::isValid(id)".
#include "statTypes.h"

#include <chrono>

namespace Qv {

class StatInterval {
public:
    explicit StatInterval(StatTypes::Id id);
    StatInterval(StatInterval const&) = delete;
    StatInterval& operator=(StatInterval const&) = delete;
    ~StatInterval();

    // Starts measuring again from now; a running interval drops what it had.
    void start();
    void stop();
    bool isRunning() const { return _running; }

    static double getTotalSeconds(StatTypes::Id id);
    // The number of intervals recorded.
    static long long getCount(StatTypes::Id id);
    static void reset(StatTypes::Id id);
    static void resetAll();

private:
    StatTypes::Id _id;
    std::chrono::steady_clock::time_point _start;
    bool _running = true;
};

} // namespace Qv
