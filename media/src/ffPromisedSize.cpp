#include "ffPromisedSize.h"

#include "ffHeaderLimits.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
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

// "SDPX" (fields big-endian) or "XPDS", the pixels' offset at 4, the user
// data's length at 32; the user data follows the 2048 bytes of standard
// headers, and the library reads it whole at open. All ones is undefined.
Size dpx(OsFilePath const& path) {
    Bytes const h = head(path, 36);
    if (h.size() < 36)
        return std::nullopt;
    std::string const magic(h.begin(), h.begin() + 4);
    if (magic != "SDPX" && magic != "XPDS")
        return std::nullopt;
    auto field = [&](std::size_t at) {
        std::uintmax_t const value = magic == "SDPX" ? bigEndian(h, at, 4) : littleEndian(h, at, 4);
        return value == 0xffffffff ? 0 : value;
    };
    return std::max(field(4), 2048 + field(32));
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

// A string of at most `limit` characters ended by a zero; nullopt past the
// limit or the end of the file.
std::optional<std::string> zeroEnded(std::istream& stream, std::size_t limit) {
    std::string text;
    for (char c; stream.get(c);) {
        if (c == '\0')
            return text;
        if (text.size() == limit)
            return std::nullopt;
        text.push_back(c);
    }
    return std::nullopt;
}

// Bytes the library reads for a value of a type whose size it knows itself,
// whatever size the attribute declares; 0 for types it reads as declared.
std::uintmax_t exrFixedSize(std::string const& type) {
    static std::map<std::string, std::uintmax_t, std::less<>> const sizes{
        {"box2i", 16},      {"box2f", 16},   {"chromaticities", 32},
        {"compression", 1}, {"double", 8},   {"envmap", 1},
        {"float", 4},       {"int", 4},      {"keycode", 28},
        {"lineOrder", 1},   {"m33f", 36},    {"m33d", 72},
        {"m44f", 64},       {"m44d", 128},   {"rational", 8},
        {"tiledesc", 9},    {"timecode", 8}, {"v2i", 8},
        {"v2f", 8},         {"v2d", 16},     {"v3i", 12},
        {"v3f", 12},        {"v3d", 24},     {"deepImageState", 1}};
    auto const found = sizes.find(type);
    return found == sizes.end() ? 0 : found->second;
}

// Magic, version, then attributes (name, type, 4-byte size, value) up to an
// empty name; a multi-part file has one such header per part, then an empty
// one. The library allocates what a size claims before reading the value, so
// every value must fit in the file; so must a single scan-line part's table
// of chunk offsets, one for each chunk of rows its compression codes at once.
// The scan reads as far into each value as the library does (a type's own
// size, the entries of a channel list, a preview's claimed pixels), so that a
// declared size that lies cannot put the two out of step.
Size exr(OsFilePath const& path) {
    std::error_code error;
    std::uintmax_t const fileSize = std::filesystem::file_size(path.toStdPath(), error);
    std::ifstream stream(path.toStdPath(), std::ios::binary);
    Bytes magic(8);
    if (error || !stream.read(reinterpret_cast<char*>(magic.data()), 8) ||
        littleEndian(magic, 0, 4) != 20000630)
        return std::nullopt;
    std::uintmax_t const flags = littleEndian(magic, 4, 4);
    bool const multiPart = (flags & 0x1000) != 0;
    bool const tiled = (flags & 0x200) != 0;
    std::uintmax_t end = 8;
    std::optional<std::uintmax_t> rows;
    long long width = 0;
    long long channels = 0;
    int rowsPerChunk = 1;
    for (int part = 0;; ++part) {
        bool empty = true;
        for (;;) {
            std::optional<std::string> const name = zeroEnded(stream, 255);
            std::optional<std::string> const type = name && !name->empty() ? zeroEnded(stream, 255) : name;
            if (!name || !type)
                return fileSize + 1; // the file ends inside its header
            if (name->empty())
                break;
            empty = false;
            Bytes size(4);
            if (!stream.read(reinterpret_cast<char*>(size.data()), 4))
                return fileSize + 1;
            std::uintmax_t bytes = littleEndian(size, 0, 4);
            if (bytes > 0x7fffffff)
                return std::nullopt; // negative: the library refuses it
            std::uintmax_t const start = static_cast<std::uintmax_t>(stream.tellg());
            if (std::uintmax_t const fixed = exrFixedSize(*type); fixed > 0) {
                bytes = fixed;
            } else if (*type == "chlist") {
                // Entries of a name and 16 bytes, up to an empty name.
                for (;;) {
                    std::optional<std::string> const channel = zeroEnded(stream, 255);
                    if (!channel)
                        return fileSize + 1;
                    if (channel->empty())
                        break;
                    channels += part == 0;
                    stream.seekg(16, std::ios::cur);
                }
                bytes = static_cast<std::uintmax_t>(stream.tellg()) - start;
                stream.seekg(static_cast<std::streamoff>(start));
            } else if (*type == "preview") {
                Bytes sides(8);
                if (!stream.read(reinterpret_cast<char*>(sides.data()), 8))
                    return fileSize + 1;
                bytes = 8 + littleEndian(sides, 0, 4) * littleEndian(sides, 4, 4) * 4;
                stream.seekg(static_cast<std::streamoff>(start));
            }
            end = start + bytes;
            if (end > fileSize)
                return end;
            Bytes value(*name == "dataWindow" || *name == "compression" ? bytes : 0);
            stream.read(reinterpret_cast<char*>(value.data()), static_cast<std::streamsize>(value.size()));
            if (*name == "dataWindow" && *type == "box2i" && bytes == 16 && part == 0) {
                auto const side = [&value](std::size_t from, std::size_t to) {
                    return static_cast<std::int64_t>(static_cast<std::int32_t>(littleEndian(value, to, 4))) -
                           static_cast<std::int32_t>(littleEndian(value, from, 4)) + 1;
                };
                width = side(0, 8);
                rows = static_cast<std::uintmax_t>(side(4, 12));
            }
            if (*name == "compression" && bytes == 1) {
                static int const perChunk[] = {1, 1, 1, 16, 32, 16, 32, 32, 32, 256};
                rowsPerChunk = value[0] < std::size(perChunk) ? perChunk[value[0]] : 1;
            }
            stream.seekg(static_cast<std::streamoff>(end));
        }
        end = static_cast<std::uintmax_t>(stream.tellg());
        if (!multiPart || empty)
            break;
    }
    // The library allocates a row of the data window's width as it opens
    // the file, whatever the file holds: a damaged width is refused first.
    if (rows)
        FfHeaderLimits::checkSides(path, width, static_cast<long long>(*rows), channels);
    if (multiPart || tiled || !rows || *rows > 0xffffffff)
        return end;
    return end + (*rows + static_cast<std::uintmax_t>(rowsPerChunk) - 1) /
                     static_cast<std::uintmax_t>(rowsPerChunk) * 8;
}

} // namespace

std::optional<std::uintmax_t> FfPromisedSize::of(OsFilePath const& path, std::string_view libraryName) {
    if (libraryName == "openexr")
        return exr(path);
    if (libraryName == "dpx")
        return dpx(path);
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
