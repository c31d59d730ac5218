#pragma once
// The table of common film and video formats, the type FmtVideoFormat::TYPE
// of FmtFormatName. Where several formats share a size, the usual one comes first.
#include "fmtFormatName.h"

#include <string>
#include <vector>

namespace Qv {

class FmtVideoFormat {
public:
    static std::string const TYPE;

    enum Field {
        NAME = 0,
        WIDTH = 1,        // pixels, "1920"
        HEIGHT = 2,       // pixels, "1080"
        FRAME_ASPECT = 3, // "16:9"
        SCAN = 4,         // "progressive", "interlaced"
        FIELD_ORDER = 5,  // "none", "upper", "lower"
        STANDARD = 6,     // "NTSC", "PAL", "HD", "UHD", "DCI", "Film"
        PIXEL_RATIO = 7,  // width over height of a pixel, "10:11"
        TIMECODE = 8,     // "drop", "non-drop"
        RATE = 9,         // frames per second, "30000/1001"
        NB_FIELDS = 10
    };

    static std::vector<FmtFormatName> const& getTable();
};

} // namespace Qv
