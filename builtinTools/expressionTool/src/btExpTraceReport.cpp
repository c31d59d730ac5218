#include "btExpTraceReport.h"

#include "btExpEx.h"
#include "btExpParser.h"
#include "btExpTracer.h"
#include "rcShdPtr.h"

#include <sstream>
#include <type_traits>

extern "C" __attribute__((visibility("default"))) void btTraceExpression(std::string const& text,
                                                                         Qv::BtExpTraceReport& report) {
    using namespace Qv;
    report = BtExpTraceReport();
    RCShdPtr<BtExpTracer> tracer(new BtExpTracer);
    std::istringstream input(text);
    try {
        btExpParse(*tracer, input);
        report.accepted = true;
    } catch (BtExpEx const& error) {
        report.firstColumn = error.getFirstColumn();
        report.lastColumn = error.getLastColumn();
        report.reason = error.getReason();
    }
    report.calls = tracer->getCalls();
}

// The function's type is part of the contract with the host.
static_assert(std::is_same_v<decltype(&btTraceExpression), Qv::BtTraceExpressionFunction>);
