#pragma once
// Failures of the smart pointers. They are raised out of line so that the
// pointer templates stay small and the throwing code is not inlined at every
// dereference.
#include "exBase.h"

#include <string>
#include <string_view>
#include <typeinfo>

namespace Qv {

struct RCEx {
    // Reason names the pointee type of the null pointer.
    QV_DECLARE_EX(ExNullPtr, ExBase);
    // Reason names the type of the object and the type asked for.
    QV_DECLARE_EX(ExCastFailed, ExBase);
};

namespace RCExUtil {
[[noreturn]] void throwExNullPtr(std::string_view typeName);
[[noreturn]] void throwExCastFailed(std::string_view fromType, std::string_view toType);

// Readable (demangled) name of a type, for messages.
std::string getTypeName(std::type_info const& type);
} // namespace RCExUtil

} // namespace Qv
