#include "ffImageFormatTraits.h"

#include <algorithm>
#include <cctype>

namespace Qv {

namespace {

using D = ImPixelFormat;

// Rows of 64 lines: a multiple of every EXR compression's chunk (1, 16, 32)
// and enough for the codec to run its chunks in parallel. Reads are watched
// where the library reads through a proxy and no further than it needs:
// JPEG's reads its file itself, Cineon's, SGI's and ZFILE's take no proxy,
// and PNM's asks for the whole file at once.
//
// The ratios leave room over the best measured: a flat 4096 by 2160 RGBA
// half image is 12452 times its DWAB EXR, 933 times its 16-bit PNG, 873
// times its zip TIFF; deflate itself stops near 1032, and a 1-bit PNG
// widens 8 times. LZW (GIF) stops near 2730, widened 4 times; run-length
// codes (TGA, SGI, HDR, BMP) near 128 pixels a run.
std::vector<FfImageFormatTraits> const& table() {
    static std::vector<FfImageFormatTraits> const formats{
        {"openexr", "EXR", "exr", {D::ECR, D::HDR}, 4, 64, true, 1 << 17},
        {"tiff", "TIFF", "tif", {D::UINT16, D::UINT8, D::ECR, D::HDR}, 4, 64, true, 1 << 14},
        {"dpx", "DPX", "dpx", {D::UINT16, D::UINT8}, 4, 64, true, 32},
        {"cineon", "Cineon", "cin", {D::UINT16}, 3, 64, false, 32},
        {"png", "PNG", "png", {D::UINT8, D::UINT16}, 4, 64, true, 1 << 14},
        {"jpeg", "JPEG", "jpg", {D::UINT8}, 3, 64, false, 1 << 12},
        {"targa", "TGA", "tga", {D::UINT8}, 4, 64, true, 1 << 10},
        {"sgi", "SGI", "sgi", {D::UINT8, D::UINT16}, 4, 64, false, 1 << 10},
        {"hdr", "HDR", "hdr", {D::HDR}, 3, 64, true, 1 << 10},
        {"bmp", "BMP", "bmp", {D::UINT8}, 4, 64, true, 1 << 11},
        {"gif", "GIF", "gif", {D::UINT8}, 4, 64, true, 1 << 15},
        {"pnm", "PNM", "ppm", {D::UINT8, D::UINT16}, 3, 64, false, 64},
        {"zfile", "ZFILE", "zfile", {D::HDR}, 1, 64, false, 1 << 12},
    };
    return formats;
}

} // namespace

ImPixelFormat FfImageFormatTraits::storedDepth(ImPixelFormat wanted) const {
    if (std::find(depths.begin(), depths.end(), wanted.getDepth()) != depths.end())
        return wanted;
    int best = -1;
    for (D::Depth depth : depths) {
        int const bits = ImPixelFormat(depth).getBitsPerComp();
        bool const deeper = bits >= wanted.getBitsPerComp();
        int const bestBits = best < 0 ? 0 : ImPixelFormat(static_cast<D::Depth>(best)).getBitsPerComp();
        bool const bestDeeper = best >= 0 && bestBits >= wanted.getBitsPerComp();
        if (best < 0 || (deeper && (!bestDeeper || bits < bestBits)) ||
            (!deeper && !bestDeeper && bits > bestBits))
            best = depth;
    }
    return static_cast<D::Depth>(best);
}

FfImageFormatTraits FfImageFormatTraits::find(std::string_view libraryName) {
    for (FfImageFormatTraits const& traits : table())
        if (traits.libraryName == libraryName)
            return traits;
    FfImageFormatTraits traits{std::string(libraryName),
                               std::string(libraryName),
                               "",
                               {D::UINT8, D::UINT16, D::ECR, D::HDR},
                               4,
                               64,
                               false};
    std::transform(traits.name.begin(), traits.name.end(), traits.name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return traits;
}

} // namespace Qv
