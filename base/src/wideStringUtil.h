#pragma once
// Conversions between the narrow texts of this system and the wide texts of
// hosts that keep paths as UTF-16. Paths and names are UTF-8 here, narrow and
// wide alike, so both directions give the text back unchanged; code written
// for the wide hosts keeps its calls and its meaning.
#include <string>
#include <string_view>

namespace Qv {

namespace WideStringUtil {
// A wide text as multibyte (UTF-8) text.
std::string narrowMB(std::string_view text);
// A multibyte text as wide text.
std::string widen(std::string_view text);
} // namespace WideStringUtil

} // namespace Qv
