#pragma once
// Kinds shared by the nodes that place a clip on the time line.
//   RepeatMode  what a clip shows outside its marks: nothing, its frames
//               again from the mark in, its first or last frame, or its
//               frames forwards then backwards. The values are stored in
//               compositions: never renumber them.
#include <optional>
#include <string>
#include <vector>

namespace Qv {

struct TmTypes {
    enum RepeatMode { NONE = 0, LOOP = 1, HOLD = 2, BOUNCE = 3 };

    // Every mode, in the order of its value.
    static std::vector<RepeatMode> const& getRepeatModes();
    // "None", "Loop", "Hold", "Bounce"; asserts a mode of the list.
    static std::string const& repeatModeToString(RepeatMode mode);
    // The mode of that display name in any case ("loop", "HOLD"); none for
    // any other text.
    static std::optional<RepeatMode> repeatModeFromString(std::string const& text);
    // The mode of a stored value; none for a value outside the list.
    static std::optional<RepeatMode> repeatModeFromInt(int value);
};

} // namespace Qv
