#include "btExpFunctionRegistry.h"

#include <algorithm>

namespace Qv {

bool BtExpFunctionRegistry::isRegistered(LiString const& name) const {
    return std::find(_names.begin(), _names.end(), name) != _names.end();
}

void BtExpFunctionRegistry::registerLanguageFunctions() {
    // By number of arguments, then as the manual lists them.
    for (char const* name :
         {"rand",  "noise", "round",    "ceil",        "floor",  "trunc",   "degrees",  "radians",
          "sin",   "cos",   "tan",      "asin",        "acos",   "atan",    "abs",      "sign",
          "sqrt",  "log",   "ln",       "exp",         "noise3", "length",  "truerand", "turbulence",
          "atan2", "pow",   "mod",      "min",         "max",    "average", "easein",   "easeout",
          "dot",   "cross", "distance", "turbulence3", "bell",   "sinus",   "square",   "lookat",
          "if",    "eval",  "relscale", "relangle"})
        registerFunctionName(LiString(name));
}

} // namespace Qv
