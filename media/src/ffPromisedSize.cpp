#include "ffPromisedSize.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <vector>

namespace Qv {

namespace {

using Bytes = std::vector<unsigned char>;
using Size = std::optional<std::uintmax_t>;

Bytes head(OsFilePath const& path, std::size_t count) {
    Bytes bytes(count);
    std::ifstream file(path.toStdPath(), std::ios::binary);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(count));
    bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    return bytes;
}

std::uintmax_t bigEndian(Bytes const& bytes, std::size_t at, int count) {
    std::uintmax_t value = 0;
    for (int i = 0; i < count; ++i)
        value = value << 8 | bytes[at + static_cast<std::size_t>(i)];
    return value;
}

std::uintmax_t littleEndian(Bytes const& bytes, std::size_t at, int count) {
    std::uintmax_t value = 0;
    for (int i = count; i-- > 0;)
        value = value << 8 | bytes[at + static_cast<std::size_t>(i)];
    return value;
}

// A 512-byte header, then each channel's rows, uncompressed when the storage byte is 0.
Size sgi(OsFilePath const& path) {
    Bytes const h = head(path, 12);
    if (h.size() < 12 || bigEndian(h, 0, 2) != 474 || h[2] != 0)
        return std::nullopt;
    std::uintmax_t const dimension = bigEndian(h, 4, 2);
    std::uintmax_t const rows = dimension >= 2 ? bigEndian(h, 8, 2) : 1;
    std::uintmax_t const channels = dimension >= 3 ? bigEndian(h, 10, 2) : 1;
    return 512 + bigEndian(h, 6, 2) * rows * channels * h[3];
}

// A 136-byte header (magic, width, height, two matrices), then one float per
// pixel, unless a gzip stream follows.
Size zfile(OsFilePath const& path) {
    Bytes const h = head(path, 138);
    if (h.size() < 138 || (h[136] == 0x1f && h[137] == 0x8b))
        return std::nullopt;
    if (littleEndian(h, 0, 4) == 0x2f0867ab)
        return 136 + littleEndian(h, 4, 2) * littleEndian(h, 6, 2) * 4;
    if (bigEndian(h, 0, 4) == 0x2f0867ab)
        return 136 + bigEndian(h, 4, 2) * bigEndian(h, 6, 2) * 4;
    return std::nullopt;
}

// A directory of images, each entry with its size and offset.
Size ico(OsFilePath const& path) {
    Bytes const h = head(path, 6);
    if (h.size() < 6 || littleEndian(h, 0, 2) != 0)
        return std::nullopt;
    std::size_t const count = littleEndian(h, 4, 2);
    std::size_t const table = 6 + 16 * count;
    Bytes const entries = head(path, table);
    std::uintmax_t end = table;
    for (std::size_t at = 6; at + 16 <= entries.size(); at += 16)
        end = std::max(end, littleEndian(entries, at + 12, 4) + littleEndian(entries, at + 8, 4));
    return end;
}

// "RIFF", the size of what follows, "WEBP".
Size webp(OsFilePath const& path) {
    Bytes const h = head(path, 12);
    if (h.size() < 12 || std::string(h.begin(), h.begin() + 4) != "RIFF" ||
        std::string(h.begin() + 8, h.end()) != "WEBP")
        return std::nullopt;
    return 8 + littleEndian(h, 4, 4);
}

// "P4", "P5" or "P6", width, height and (but for P4) the largest value as
// text between blanks and comments, one blank, then the raster.
Size pnm(OsFilePath const& path) {
    Bytes const h = head(path, 512);
    if (h.size() < 2 || h[0] != 'P' || h[1] < '4' || h[1] > '6')
        return std::nullopt;
    int const kind = h[1] - '0';
    std::size_t at = 2;
    std::uintmax_t fields[3] = {};
    for (int field = 0; field < (kind == 4 ? 2 : 3); ++field) {
        while (at < h.size() && (std::isspace(h[at]) || h[at] == '#')) {
            if (h[at] == '#')
                while (at < h.size() && h[at] != '\n')
                    ++at;
            else
                ++at;
        }
        if (at == h.size() || !std::isdigit(h[at]))
            return std::nullopt;
        for (; at < h.size() && std::isdigit(h[at]); ++at)
            if ((fields[field] = fields[field] * 10 + static_cast<std::uintmax_t>(h[at] - '0')) >
                1'000'000'000)
                return std::nullopt;
    }
    if (at == h.size())
        return std::nullopt;
    std::uintmax_t const raster = at + 1;
    std::uintmax_t const width = fields[0];
    std::uintmax_t const height = fields[1];
    if (kind == 4)
        return raster + (width + 7) / 8 * height;
    std::uintmax_t const bytes = fields[2] > 255 ? 2 : 1;
    return raster + width * height * bytes * (kind == 6 ? 3 : 1);
}

} // namespace

std::optional<std::uintmax_t> FfPromisedSize::of(OsFilePath const& path, std::string_view libraryName) {
    if (libraryName == "sgi")
        return sgi(path);
    if (libraryName == "zfile")
        return zfile(path);
    if (libraryName == "ico")
        return ico(path);
    if (libraryName == "webp")
        return webp(path);
    if (libraryName == "pnm")
        return pnm(path);
    return std::nullopt;
}

} // namespace Qv
