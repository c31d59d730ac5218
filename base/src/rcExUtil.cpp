#include "rcExUtil.h"

#include <cstdlib>
#include <cxxabi.h>
#include <fmt/format.h>
#include <memory>

namespace Qv::RCExUtil {

void throwExNullPtr(std::string_view typeName) {
    throw RCEx::ExNullPtr(__FILE__, __LINE__, fmt::format("Dereference of a null pointer to {}", typeName));
}

void throwExCastFailed(std::string_view fromType, std::string_view toType) {
    throw RCEx::ExCastFailed(__FILE__, __LINE__, fmt::format("Cannot cast {} to {}", fromType, toType));
}

std::string getTypeName(std::type_info const& type) {
    int status = 0;
    std::unique_ptr<char, void (*)(void*)> demangled(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &status), std::free);
    return status == 0 && demangled ? std::string(demangled.get()) : std::string(type.name());
}

} // namespace Qv::RCExUtil
