// qv expr: what the expression grammar hears of a text, call by call, so
// that a user can see how an expression is read and where it goes wrong.
#include "btExpTraceReport.h"
#include "qvCommands.h"
#include "qvEntryPoint.h"

#include <memory>

namespace Qv {

namespace {

struct ExprOptions {
    std::string text;
    bool trace = false;
};

int trace(ExprOptions const& options, std::ostream& out) {
    BtExpTraceReport report;
    findEntryPoint<BtTraceExpressionFunction>(BT_TRACE_EXPRESSION_SYMBOL)(options.text, report);
    for (std::string const& call : report.calls)
        out << call << '\n';
    if (report.accepted)
        return 0;
    out << "error " << report.firstColumn << ' ' << report.lastColumn << ": " << report.reason << '\n';
    return 1;
}

} // namespace

void addExprCommand(CLI::App& app, QvAction& action) {
    auto options = std::make_shared<ExprOptions>();
    CLI::App* command = app.add_subcommand("expr", "Parse an expression such as 'sin(t*2) + Blur.Radius'");
    command->add_option("TEXT", options->text, "The expression")->required();
    command
        ->add_flag("--trace", options->trace,
                   "Print each call of the grammar's listener, one a line: the operation, its texts in "
                   "double quotes, its first and last column")
        ->required();
    command->callback(
        [&action, options] { action = [options](std::ostream& out) { return trace(*options, out); }; });
}

} // namespace Qv
