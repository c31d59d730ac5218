#pragma once
// A process-wide count per statistic: constructing a StatScalar adds to it,
// from any thread, at the cost of one atomic addition.
//
//   StatScalar imported(StatTypes::FILE_IMPORT_SCALAR_ID);
//   long long n = StatScalar::get(StatTypes::FILE_IMPORT_SCALAR_ID);
//
// An identifier outside StatTypes fails the assertion "StatTypes::isValid(id)".
#include "statTypes.h"

namespace Qv {

class StatScalar {
public:
    // Adds `amount` (may be negative) to the count of `id`.
    StatScalar(StatTypes::Id id, long long amount = 1);

    static long long get(StatTypes::Id id);
    static void reset(StatTypes::Id id);
    // Every count back to zero (tests, a new report).
    static void resetAll();
};

} // namespace Qv
