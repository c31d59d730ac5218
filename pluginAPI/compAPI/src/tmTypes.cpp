#include "tmTypes.h"

#include "assertions.h"
#include "liStringUtil.h"

#include <array>

namespace Qv {

namespace {
std::array<std::string, 4> const& getRepeatModeNames() {
    static std::array<std::string, 4> const names = {"None", "Loop", "Hold", "Bounce"};
    return names;
}
} // namespace

std::vector<TmTypes::RepeatMode> const& TmTypes::getRepeatModes() {
    static std::vector<RepeatMode> const modes = {NONE, LOOP, HOLD, BOUNCE};
    return modes;
}

std::string const& TmTypes::repeatModeToString(RepeatMode mode) {
    QV_ASSERT(mode >= NONE && mode <= BOUNCE);
    return getRepeatModeNames()[static_cast<std::size_t>(mode)];
}

std::optional<TmTypes::RepeatMode> TmTypes::repeatModeFromString(std::string const& text) {
    std::string const lower = LiStringUtil::toLowerCase(text);
    for (RepeatMode mode : getRepeatModes())
        if (LiStringUtil::toLowerCase(repeatModeToString(mode)) == lower)
            return mode;
    return std::nullopt;
}

std::optional<TmTypes::RepeatMode> TmTypes::repeatModeFromInt(int value) {
    if (value < NONE || value > BOUNCE)
        return std::nullopt;
    return static_cast<RepeatMode>(value);
}

} // namespace Qv
