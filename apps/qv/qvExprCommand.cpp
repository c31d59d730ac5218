// qv expr: evaluates an expression at a time, with named constants standing
// for its references; or, with --trace, shows what the grammar hears of it,
// call by call, so that a user can see how a text is read and where it goes
// wrong.
#include "btExpEvalReport.h"
#include "btExpTraceReport.h"
#include "exBase.h"
#include "liStringUtil.h"
#include "qvCommands.h"
#include "qvEntryPoint.h"

#include <cstdio>
#include <memory>

namespace Qv {

namespace {

struct ExprOptions {
    std::string text;
    bool trace = false;
    double time = 0.0;
    std::vector<std::string> attributes;
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

// NAME=VALUE, split at the first "=": names never hold one.
BtExpAttributeValues parseAttributes(std::vector<std::string> const& specs) {
    BtExpAttributeValues attributes;
    for (std::string const& spec : specs) {
        std::size_t const equals = spec.find('=');
        std::optional<double> const value = equals == std::string::npos
                                                ? std::nullopt
                                                : LiStringUtil::tryConvertToDouble(spec.substr(equals + 1));
        if (equals == 0 || !value)
            throw ExBase(__FILE__, __LINE__,
                         "--attr " + spec + ": expected NAME=VALUE with a number as VALUE");
        attributes.emplace_back(spec.substr(0, equals), *value);
    }
    return attributes;
}

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

int evaluate(ExprOptions const& options, std::ostream& out) {
    BtExpAttributeValues const attributes = parseAttributes(options.attributes);
    BtExpEvalReport report;
    findEntryPoint<BtEvaluateExpressionFunction>(BT_EVALUATE_EXPRESSION_SYMBOL)(options.text, options.time,
                                                                                attributes, report);
    if (!report.accepted) {
        out << "error " << report.firstColumn << ' ' << report.lastColumn << ": " << report.reason << '\n';
        return 1;
    }
    switch (report.type) {
    case BtExpEvalReport::Type::DOUBLE:
        out << number(report.values[0]);
        break;
    case BtExpEvalReport::Type::BOOLEAN:
        out << (report.values[0] != 0.0 ? "true" : "false");
        break;
    case BtExpEvalReport::Type::VECTOR2:
        out << '(' << number(report.values[0]) << ", " << number(report.values[1]) << ')';
        break;
    case BtExpEvalReport::Type::VECTOR3:
        out << '(' << number(report.values[0]) << ", " << number(report.values[1]) << ", "
            << number(report.values[2]) << ')';
        break;
    }
    out << "\nvalidity " << number(report.validityBegin) << ' ' << number(report.validityEnd) << '\n';
    return 0;
}

} // namespace

void addExprCommand(CLI::App& app, QvAction& action) {
    auto options = std::make_shared<ExprOptions>();
    CLI::App* command = app.add_subcommand(
        "expr", "Evaluate an expression such as 'sin(t*2) + Blur.Radius' at a time: its value, then "
                "'validity <begin> <end>', the times (seconds) for which it holds");
    command->add_option("TEXT", options->text, "The expression")->required();
    command->add_option("--time", options->time, "The time, in seconds (default 0)");
    command->add_option("--attr", options->attributes,
                        "NAME=VALUE: the reference NAME stands for the number VALUE (repeatable); any other "
                        "reference is an unknown attribute");
    command->add_flag("--trace", options->trace,
                      "Instead of evaluating, print each call of the grammar's listener, one a line: the "
                      "operation, its texts in double quotes, its first and last column");
    command->callback([&action, options] {
        action = [options](std::ostream& out) {
            return options->trace ? trace(*options, out) : evaluate(*options, out);
        };
    });
}

} // namespace Qv
