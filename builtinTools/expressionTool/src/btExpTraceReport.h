#pragma once
// What the host's command line shows of a parse. The host loads the tool
// library at run time and links none of it, so it finds the one entry point
// by its C name, BT_TRACE_EXPRESSION_SYMBOL.
#include <string>
#include <vector>

namespace Qv {

struct BtExpTraceReport {
    // The listener's calls, one line each (see BtExpTracer).
    std::vector<std::string> calls;
    bool accepted = false;
    // Why and where the text was refused, when it was.
    int firstColumn = 0;
    int lastColumn = 0;
    std::string reason;

    bool operator==(BtExpTraceReport const&) const = default;
};

// Parses text with a tracing listener. A refused text is reported, not thrown.
using BtTraceExpressionFunction = void (*)(std::string const& text, BtExpTraceReport& report);
inline constexpr char const* BT_TRACE_EXPRESSION_SYMBOL = "btTraceExpression";

} // namespace Qv

extern "C" void btTraceExpression(std::string const& text, Qv::BtExpTraceReport& report);
