#include "fmtVideoFormat.h"

namespace Qv {

std::string const FmtVideoFormat::TYPE = "VideoFormat";

std::vector<FmtFormatName> const& FmtVideoFormat::getTable() {
    using F = FmtFormatName;
    // name, width, height, frame aspect, scan, field order, standard, pixel ratio, timecode, rate
    static std::vector<FmtFormatName> const table{
        F({"NTSC D1", "720", "486", "4:3", "interlaced", "lower", "NTSC", "9:10", "drop", "30000/1001"}),
        F({"NTSC D1 Widescreen", "720", "486", "16:9", "interlaced", "lower", "NTSC", "6:5", "drop",
           "30000/1001"}),
        F({"NTSC DV", "720", "480", "4:3", "interlaced", "lower", "NTSC", "10:11", "drop", "30000/1001"}),
        F({"NTSC DV Widescreen", "720", "480", "16:9", "interlaced", "lower", "NTSC", "40:33", "drop",
           "30000/1001"}),
        F({"PAL", "720", "576", "4:3", "interlaced", "upper", "PAL", "16:15", "non-drop", "25/1"}),
        F({"PAL Widescreen", "720", "576", "16:9", "interlaced", "upper", "PAL", "64:45", "non-drop",
           "25/1"}),
        F({"HD 720p 59.94", "1280", "720", "16:9", "progressive", "none", "HD", "1:1", "drop", "60000/1001"}),
        F({"HD 720p 50", "1280", "720", "16:9", "progressive", "none", "HD", "1:1", "non-drop", "50/1"}),
        F({"HD 1080p 24", "1920", "1080", "16:9", "progressive", "none", "HD", "1:1", "non-drop", "24/1"}),
        F({"HD 1080p 23.976", "1920", "1080", "16:9", "progressive", "none", "HD", "1:1", "non-drop",
           "24000/1001"}),
        F({"HD 1080p 25", "1920", "1080", "16:9", "progressive", "none", "HD", "1:1", "non-drop", "25/1"}),
        F({"HD 1080i 59.94", "1920", "1080", "16:9", "interlaced", "upper", "HD", "1:1", "drop",
           "30000/1001"}),
        F({"HD 1080i 50", "1920", "1080", "16:9", "interlaced", "upper", "HD", "1:1", "non-drop", "25/1"}),
        F({"HDV 1080", "1440", "1080", "16:9", "interlaced", "upper", "HD", "4:3", "drop", "30000/1001"}),
        F({"UHD", "3840", "2160", "16:9", "progressive", "none", "UHD", "1:1", "non-drop", "24/1"}),
        F({"DCI 2K", "2048", "1080", "256:135", "progressive", "none", "DCI", "1:1", "non-drop", "24/1"}),
        F({"DCI 4K", "4096", "2160", "256:135", "progressive", "none", "DCI", "1:1", "non-drop", "24/1"}),
        F({"Film 2K Full Aperture", "2048", "1556", "4:3", "progressive", "none", "Film", "1:1", "non-drop",
           "24/1"}),
        F({"Film 2K Academy", "1828", "1332", "1.37:1", "progressive", "none", "Film", "1:1", "non-drop",
           "24/1"}),
        F({"Film 2K Cinemascope", "1828", "1556", "2.35:1", "progressive", "none", "Film", "2:1", "non-drop",
           "24/1"}),
        F({"Film 4K Full Aperture", "4096", "3112", "4:3", "progressive", "none", "Film", "1:1", "non-drop",
           "24/1"}),
    };
    return table;
}

} // namespace Qv
