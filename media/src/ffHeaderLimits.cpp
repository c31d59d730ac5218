#include "ffHeaderLimits.h"

#include "ffIOEx.h"

#include <OpenImageIO/imageio.h>
#include <algorithm>
#include <cstdlib>
#include <fmt/format.h>

namespace Qv {

void FfHeaderLimits::checkSides(OsFilePath const& path, long long width, long long height,
                                long long channels) {
    if (std::max(width, height) > MAX_SIDE || channels > MAX_CHANNELS)
        throw FfIOEx::ExOpNotSupported(
            __FILE__, __LINE__, path.toString(),
            fmt::format(
                "{} by {} pixels of {} channels: more than this system reads ({} a side, {} channels)", width,
                height, channels, MAX_SIDE, MAX_CHANNELS));
}

void FfHeaderLimits::check(OsFilePath const& path, std::uintmax_t fileSize, FfImageFormatTraits const& traits,
                           OIIO::ImageSpec const& spec) {
    if (std::max(spec.tile_width, spec.tile_height) > MAX_SIDE)
        checkSides(path, std::max(spec.width, spec.tile_width), std::max(spec.height, spec.tile_height),
                   spec.nchannels);
    checkSides(path, spec.width, spec.height, spec.nchannels);
    if (std::max({std::llabs(spec.x), std::llabs(spec.y), std::llabs(spec.z)}) > MAX_ORIGIN)
        throw FfIOEx::ExCorruptFile(__FILE__, __LINE__, path.toString(),
                                    fmt::format("its header places the pixels at ({}, {}), more than {} "
                                                "pixels from the origin",
                                                spec.x, spec.y, MAX_ORIGIN));
    // A file that says it stores its pixels as they are holds them widened at
    // most from a 1-bit palette index to four 8-bit channels.
    int const maxRatio = spec.get_string_attribute("compression") == "none" ? 32 : traits.maxRatio;
    if (maxRatio <= 0)
        return;
    // In floating point: the products of absurd claims overflow integers.
    double const pixelBytes = static_cast<double>(spec.pixel_bytes(true));
    double const image = static_cast<double>(spec.width) * spec.height * pixelBytes;
    double const tile =
        static_cast<double>(spec.tile_width) * spec.tile_height * std::max(spec.tile_depth, 1) * pixelBytes;
    if (std::max(image, tile) > static_cast<double>(fileSize) * maxRatio)
        throw FfIOEx::ExCorruptFile(
            __FILE__, __LINE__, path.toString(),
            fmt::format("its header claims {} by {} pixels of {} bytes{}, more than "
                        "{} bytes of {} can hold",
                        spec.width, spec.height, pixelBytes,
                        spec.tile_width > 0
                            ? fmt::format(" in tiles of {} by {}", spec.tile_width, spec.tile_height)
                            : "",
                        fileSize, traits.name));
}

} // namespace Qv
