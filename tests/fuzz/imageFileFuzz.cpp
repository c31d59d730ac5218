// Mutated image files through the file layer, as a reader node takes them:
// opened by extension, the header read, then every strip. Every outcome is
// pixels or an FfIOEx naming the file; anything else (a crash, a leak, a
// hang, a foreign exception) is a fault. The extension comes from the
// input's magic number, so that a mutated EXR stays an EXR for the library
// to chew on; half the inputs are read whole in the file's own format (rows
// straight into the strips), half as a region in another format (through
// the reader's scratch rows). A few bytes can rightly claim a large image
// (a flat one compresses that well): of an image of more than 65,536 pixels
// or 1,024 rows only its first rows are asked for, as many as hold 65,536
// pixels (at least one, at most 1,024), 4,096 columns wide at the most. Its
// later strips teach nothing the first did not; the library reads each
// strip whole into buffers of its own, which the sanitizer poisons at every
// allocation, and tall thin images had slowed the fuzzer to fifteen inputs
// a second.
//
// The seeds are not kept in the source tree: every folder named on the
// command line gets small EXR, TIFF, PNG and DPX files it lacks, written
// through the file layer, before the first input.
#include "ffFileFormatMgr.h"
#include "ffIOEx.h"
#include "ffImageWriteUtil.h"
#include "inInitMgr.h"
#include "ixPixelUtil.h"
#include "ixTile.h"
#include "ixWriteGuard.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>

namespace {

constexpr long long MAX_PIXELS = 1 << 16;
constexpr long long MAX_ROWS = 1 << 10;

// The scratch folder lives as long as the process; in memory where it can.
struct ScratchFolder {
    std::filesystem::path path =
        (std::filesystem::is_directory("/dev/shm") ? std::filesystem::path("/dev/shm")
                                                   : std::filesystem::temp_directory_path()) /
        ("qvImageFileFuzz_" + std::to_string(getpid()));
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
};

ScratchFolder const& scratch() {
    static ScratchFolder const folder;
    return folder;
}

char const* extensionOf(std::uint8_t const* data, std::size_t size) {
    auto starts = [&](char const* magic) {
        std::size_t const length = std::strlen(magic);
        return size >= length && std::memcmp(data, magic, length) == 0;
    };
    if (starts("\x76\x2f\x31\x01"))
        return "exr";
    if (starts("\x89PNG"))
        return "png";
    if (starts("II*") || starts("MM"))
        return "tif";
    if (starts("SDPX") || starts("XPDS"))
        return "dpx";
    char const* const any[] = {"exr", "png", "tif", "dpx"};
    return any[size % 4];
}

// An 8 by 8 ramp, every channel different.
Qv::IxTile seedTile(Qv::IxPixelFormat const& format) {
    Qv::IxTile const tile(format, {0, 8, 0, 8});
    Qv::IxWriteGuard const guard(tile);
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x)
            Qv::IxPixelUtil::setPixelColor(guard, x, y,
                                           {x / 8.0f, y / 8.0f, (x + y) / 16.0f, 1.0f - x / 16.0f});
    return tile;
}

// The library pads a DPX header to 8 KB; the header proper is 2 KB, so the
// pixels move up to keep the seed under the fuzzer's 4 KB inputs: the image's
// and the first element's data offsets and the file size follow.
void compactDpx(std::filesystem::path const& file) {
    std::string bytes;
    {
        std::ifstream stream(file, std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
    }
    bool const bigEndian = bytes.compare(0, 4, "SDPX") == 0;
    auto byteAt = [&](std::size_t at, std::size_t i) {
        return static_cast<std::uint32_t>(static_cast<std::uint8_t>(bytes[at + (bigEndian ? 3 - i : i)]));
    };
    auto setField = [&](std::size_t at, std::uint32_t value) {
        for (std::size_t i = 0; i < 4; ++i)
            bytes[at + (bigEndian ? 3 - i : i)] = static_cast<char>(value >> (8 * i) & 0xff);
    };
    std::size_t constexpr header = 2048;
    std::size_t const offset = byteAt(4, 0) | byteAt(4, 1) << 8 | byteAt(4, 2) << 16 | byteAt(4, 3) << 24;
    if (bytes.size() < header || offset <= header || offset > bytes.size())
        return;
    bytes.erase(header, offset - header);
    setField(4, header);
    setField(16, static_cast<std::uint32_t>(bytes.size()));
    setField(0x328, header);
    std::ofstream(file, std::ios::binary | std::ios::trunc)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

void writeSeeds(std::filesystem::path const& folder) {
    Qv::IxPixelFormat const rgba(Qv::IxPixelFormat::RGBA, Qv::IxPixelFormat::FLOAT32);
    Qv::IxPixelFormat const rgb8(Qv::IxPixelFormat::RGB, Qv::IxPixelFormat::UINT8);
    Qv::IxPixelFormat const rgbHalf(Qv::IxPixelFormat::RGB, Qv::IxPixelFormat::FLOAT16);
    struct Seed {
        char const* name;
        Qv::IxPixelFormat format;
        char const* options;
    };
    for (Seed const& seed : {Seed{"seed.exr", rgba, ""}, Seed{"seed-rle.exr", rgbHalf, "compression=rle"},
                             Seed{"seed.tif", rgba, ""}, Seed{"seed-raw.tif", rgb8, "compression=none"},
                             Seed{"seed.png", rgba, ""}, Seed{"seed-rgb.png", rgb8, ""},
                             Seed{"seed.dpx", rgbHalf, "bitdepth=10"}}) {
        std::filesystem::path const file = folder / seed.name;
        if (std::filesystem::exists(file))
            continue;
        Qv::FfImageWriteUtil::writeTile(Qv::OsFilePath(file.string()), seedTile(seed.format), seed.options);
        if (file.extension() == ".dpx")
            compactDpx(file);
    }
}

void readAll(Qv::OsFilePath const& file, bool asRegion) {
    Qv::PiImageFilePtr const image = Qv::FfFileFormatMgr::getInstance().openImageFile(file);
    Qv::ImLayout const layout = image->getFileLayout();
    (void)image->getChannelNames();
    (void)image->getAttributes();
    Qv::GeRectangle<int> const& rect = layout.getRect();
    long long const width = rect.getWidth();
    bool const large = width * rect.getHeight() > MAX_PIXELS || rect.getHeight() > MAX_ROWS;
    int const columns = static_cast<int>(std::min<long long>(width, 4096));
    // Rows are read whole, whatever the columns asked.
    int const rows =
        static_cast<int>(std::clamp<long long>(MAX_PIXELS / std::max<long long>(1, width), 1, MAX_ROWS));
    if (asRegion) {
        image->setFormat(Qv::ImFormat(4, Qv::ImPixelFormat::HDR));
        image->setRegion({rect.x1 + rect.getWidth() / 4, rect.x2, rect.y1 + 1, rect.y2});
    } else {
        image->setFormat(layout.getFormat());
    }
    if (large)
        image->setRegion({rect.x1, rect.x1 + columns, rect.y1, rect.y1 + std::min(rows, rect.getHeight())});
    long long pixels = 0;
    for (Qv::ImImageConst strip = image->readStrip(); !strip.isNull() && pixels < MAX_PIXELS;
         strip = image->readStrip())
        pixels += static_cast<long long>(strip.getRect().getWidth()) * strip.getRect().getHeight();
}

} // namespace

// The leak suppressions of the sanitizer runs (a string the image library
// loses to a longjmp), and the slow unwinder their stacks need; the
// environment still has the last word.
extern "C" char const* __lsan_default_options() {
    return "suppressions=" QV_LSAN_SUPPRESSIONS;
}
extern "C" char const* __asan_default_options() {
    return "fast_unwind_on_malloc=0";
}

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    Qv::InInitMgr::getInstance().initializeAll();
    std::filesystem::create_directories(scratch().path);
    for (int i = 1; i < *argc; ++i)
        if ((*argv)[i][0] != '-' && std::filesystem::is_directory((*argv)[i]))
            writeSeeds((*argv)[i]);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    Qv::OsFilePath const file((scratch().path / (std::string("input.") + extensionOf(data, size))).string());
    std::ofstream(file.toString(), std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<char const*>(data), static_cast<std::streamsize>(size));
    try {
        readAll(file, size % 2 == 1);
    } catch (Qv::FfIOEx const& error) {
        if (error.getFileName() != file.toString())
            __builtin_trap();
    }
    std::filesystem::remove(file.toStdPath());
    return 0;
}
