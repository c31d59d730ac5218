#include "btExpTraceReport.h"

#include "btExpTracer.h"
#include "rcShdPtr.h"

#include <type_traits>

extern "C" __attribute__((visibility("default"))) void btTraceExpression(std::string const& text,
                                                                         Qv::BtExpTraceReport& report) {
    Qv::RCShdPtr<Qv::BtExpTracer> tracer(new Qv::BtExpTracer);
    report = tracer->trace(text);
}

// The function's type is part of the contract with the host.
static_assert(std::is_same_v<decltype(&btTraceExpression), Qv::BtTraceExpressionFunction>);
