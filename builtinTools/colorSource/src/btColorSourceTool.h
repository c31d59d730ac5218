#pragma once
// The Color Source tool: an image of one RGB colour and an alpha, with the
// size, depth, times and fill colour of every image generator. Listed among
// the image generators.
#include "piTool.h"
#include "rcShdPtr.h"

#include <string>

namespace Qv {

class BtColorSourceTool {
public:
    // Registers the tool (the package's initialise step).
    static void registerTool();
    // The registered tool, by its full name.
    static RCShdPtr<PiTool const> getTool();
    static std::string const& getColorInputName();
    static std::string const& getAlphaInputName();
};

} // namespace Qv
