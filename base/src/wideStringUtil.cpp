#include "wideStringUtil.h"

namespace Qv {

std::string WideStringUtil::narrowMB(std::string_view text) {
    return std::string(text);
}

std::string WideStringUtil::widen(std::string_view text) {
    return std::string(text);
}

} // namespace Qv
