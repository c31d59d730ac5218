#pragma once
// Assertions of the system throw: a failed check becomes an exception carrying
// the file, the line and the text of the expression, so a worker thread can
// report it to whoever waits and the process survives.
#include "exBase.h"

#include <functional>

namespace Qv {

struct AssertionsEx {
    // Reason: the expression text exactly as written at the check.
    QV_DECLARE_EX(ExAssertionFailed, ExBase);
    // Reason: the text given at the fault.
    QV_DECLARE_EX(ExProgramAborted, ExBase);
};

namespace Assertions {
[[noreturn]] void throwAssertionFailed(char const* file, int line, char const* expression);
[[noreturn]] void throwProgramAborted(char const* file, int line, char const* text);

// The non-throwing form, kept for package bookkeeping checks: the failure is
// logged and handed to the report handler, and the caller goes on.
void reportAssertionFailed(char const* file, int line, char const* expression);
using ReportHandler = std::function<void(char const* file, int line, char const* expression)>;
// Installs a handler (an empty one restores the default) and returns the previous one.
ReportHandler setReportHandler(ReportHandler handler);
} // namespace Assertions

} // namespace Qv

#define QV_ASSERT(expr)                                                                                      \
    do {                                                                                                     \
        if (!(expr))                                                                                         \
            ::Qv::Assertions::throwAssertionFailed(__FILE__, __LINE__, #expr);                               \
    } while (false)

// The same with the text to report given, where the check in this code is
// spelled differently from the condition users know it by.
#define QV_ASSERT_MSG(expr, text)                                                                            \
    do {                                                                                                     \
        if (!(expr))                                                                                         \
            ::Qv::Assertions::throwAssertionFailed(__FILE__, __LINE__, text);                                \
    } while (false)

#define QV_ASSERT_REPORT(expr)                                                                               \
    do {                                                                                                     \
        if (!(expr))                                                                                         \
            ::Qv::Assertions::reportAssertionFailed(__FILE__, __LINE__, #expr);                              \
    } while (false)
