#include "pxSettings.h"

#include "exBase.h"

#include <cstdlib>
#include <fmt/format.h>

namespace Qv::PxSettings {

int readCount(char const* name, int defaultValue, int max) {
    char const* text = std::getenv(name);
    if (!text || !*text)
        return defaultValue;
    char* end = nullptr;
    long const value = std::strtol(text, &end, 10);
    if (*end != '\0' || value < 1 || value > max)
        throw ExBase(__FILE__, __LINE__,
                     fmt::format("{} must be a whole number from 1 to {}, not \"{}\"", name, max, text));
    return int(value);
}

} // namespace Qv::PxSettings
