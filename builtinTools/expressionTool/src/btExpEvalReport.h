#pragma once
// What the host's command line shows of an evaluated expression. The host
// loads the tool library at run time and links none of it, so it finds the
// entry point by its C name, BT_EVALUATE_EXPRESSION_SYMBOL.
#include <string>
#include <utility>
#include <vector>

namespace Qv {

struct BtExpEvalReport {
    enum class Type { DOUBLE, BOOLEAN, VECTOR2, VECTOR3 };

    bool accepted = false;
    // The value, when accepted: a double or a boolean (0 or 1) in values[0],
    // or the components of a vector.
    Type type = Type::DOUBLE;
    double values[3] = {0.0, 0.0, 0.0};
    // The times (seconds) for which the value holds.
    double validityBegin = 0.0;
    double validityEnd = 0.0;
    // Why and where the text was refused, when it was.
    int firstColumn = 0;
    int lastColumn = 0;
    std::string reason;
};

// Named attributes and their constant values; a reference to any other name
// is an unknown attribute.
using BtExpAttributeValues = std::vector<std::pair<std::string, double>>;

// Parses and builds text, then evaluates it at `time` (seconds) through a
// request on a worker. A refused text is reported, not thrown. Runs on the
// application thread, after the packages are initialised.
using BtEvaluateExpressionFunction = void (*)(std::string const& text, double time,
                                              BtExpAttributeValues const& attributes,
                                              BtExpEvalReport& report);
inline constexpr char const* BT_EVALUATE_EXPRESSION_SYMBOL = "btEvaluateExpression";

} // namespace Qv

extern "C" void btEvaluateExpression(std::string const& text, double time,
                                     Qv::BtExpAttributeValues const& attributes, Qv::BtExpEvalReport& report);
