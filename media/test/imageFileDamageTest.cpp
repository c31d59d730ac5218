// Files cut short and files damaged in their middle, in every format the file
// layer can write a fixture in: a short file is incomplete, a damaged one
// corrupt, and the error names the file; never a crash, never a silent read.
#include "ffFileFormatMgr.h"
#include "ffIOEx.h"
#include "ffImageWriteUtil.h"
#include "mediaTestUtil.h"

#include <fstream>
#include <map>

namespace Qv {
namespace {

using MediaTest::patternTile;

enum class Outcome {
    READ,        // every strip came: damage to raw pixels shows only in the pixels
    INCOMPLETE,  // FfIOEx::ExIncompleteFile
    CORRUPT,     // FfIOEx::ExCorruptFile
    UNREADABLE,  // FfIOEx::ExReadError at open: the header no longer reads
    UNSUPPORTED, // FfIOEx::ExOpNotSupported: beyond what the system reads
    OTHER,
};

char const* nameOf(Outcome outcome) {
    switch (outcome) {
    case Outcome::READ:
        return "read";
    case Outcome::INCOMPLETE:
        return "incomplete";
    case Outcome::CORRUPT:
        return "corrupt";
    case Outcome::UNREADABLE:
        return "unreadable";
    case Outcome::UNSUPPORTED:
        return "unsupported";
    case Outcome::OTHER:
        break;
    }
    return "another error";
}

struct DamageCase {
    Outcome cut;     // the file cut at 60 % of its length
    Outcome damaged; // the middle fifth of its bytes overwritten
};

// Every image format that can write a fixture, by name. A format the library
// adds fails the test until it has a row here.
std::map<std::string, DamageCase> const& cases() {
    using O = Outcome;
    static std::map<std::string, DamageCase> const table{
        {"EXR", {O::INCOMPLETE, O::CORRUPT}},
        {"TIFF", {O::INCOMPLETE, O::CORRUPT}},
        {"DPX", {O::INCOMPLETE, O::READ}},
        {"PNG", {O::INCOMPLETE, O::CORRUPT}},
        {"JPEG", {O::INCOMPLETE, O::CORRUPT}},
        {"TGA", {O::INCOMPLETE, O::READ}},
        {"SGI", {O::INCOMPLETE, O::READ}},
        {"HDR", {O::INCOMPLETE, O::CORRUPT}},
        {"BMP", {O::INCOMPLETE, O::READ}},
        {"FITS", {O::INCOMPLETE, O::READ}},
        // The library decodes the whole image at open: its damage shows there.
        {"GIF", {O::INCOMPLETE, O::UNREADABLE}},
        // Its codec decodes damaged data without a word.
        {"WEBP", {O::INCOMPLETE, O::READ}},
        {"ICO", {O::INCOMPLETE, O::READ}},
        {"JPEG2000", {O::INCOMPLETE, O::READ}},
        {"PNM", {O::INCOMPLETE, O::READ}},
        {"RLA", {O::INCOMPLETE, O::CORRUPT}},
        {"ZFILE", {O::INCOMPLETE, O::READ}},
    };
    return table;
}

class ImageFileDamage : public MediaTest::FileTest {
protected:
    // Reads every strip, as a reader node does; an error must name the file.
    static Outcome readAll(OsFilePath const& file) {
        try {
            PiImageFilePtr const image = FfFileFormatMgr::getInstance().openImageFile(file);
            image->setFormat(ImFormat(4, ImPixelFormat::ECR));
            while (!image->readStrip().isNull()) {
            }
            return Outcome::READ;
        } catch (FfIOEx const& error) {
            EXPECT_EQ(error.getFileName(), file.toString());
            EXPECT_NE(std::string(error.what()).find(file.toString()), std::string::npos) << error.what();
            if (dynamic_cast<FfIOEx::ExIncompleteFile const*>(&error))
                return Outcome::INCOMPLETE;
            if (dynamic_cast<FfIOEx::ExCorruptFile const*>(&error))
                return Outcome::CORRUPT;
            if (dynamic_cast<FfIOEx::ExReadError const*>(&error))
                return Outcome::UNREADABLE;
            if (dynamic_cast<FfIOEx::ExOpNotSupported const*>(&error))
                return Outcome::UNSUPPORTED;
            ADD_FAILURE() << error.what();
            return Outcome::OTHER;
        }
    }

    static void damage(OsFilePath const& file) {
        auto const size = static_cast<std::streamoff>(std::filesystem::file_size(file.toStdPath()));
        std::fstream stream(file.toString(), std::ios::in | std::ios::out | std::ios::binary);
        stream.seekp(size * 2 / 5);
        for (std::streamoff i = size * 2 / 5; i < size * 3 / 5; ++i)
            stream.put(static_cast<char>(i * 151 + 89));
    }
};

TEST_F(ImageFileDamage, shortFilesAreIncompleteAndDamagedOnesCorrupt) {
    for (FfFileFormatPtr const& format : FfFileFormatMgr::getInstance().getFormats()) {
        if (!format->isImageFormat() || !format->canWrite())
            continue;
        auto const found = cases().find(format->getName());
        if (found == cases().end()) {
            ADD_FAILURE() << format->getName() << " has no case";
            continue;
        }
        OsFilePath const whole = path("whole." + format->getExtensions().front());
        FfImageWriteUtil::writeTile(whole, patternTile(48, 200));
        ASSERT_EQ(readAll(whole), Outcome::READ) << format->getName();
        auto const size = std::filesystem::file_size(whole.toStdPath());

        OsFilePath const cut = path("cut." + format->getExtensions().front());
        std::filesystem::copy_file(whole.toStdPath(), cut.toStdPath());
        std::filesystem::resize_file(cut.toStdPath(), size * 3 / 5);
        EXPECT_STREQ(nameOf(readAll(cut)), nameOf(found->second.cut)) << format->getName() << " cut short";

        OsFilePath const damaged = path("damaged." + format->getExtensions().front());
        std::filesystem::copy_file(whole.toStdPath(), damaged.toStdPath());
        damage(damaged);
        EXPECT_STREQ(nameOf(readAll(damaged)), nameOf(found->second.damaged))
            << format->getName() << " damaged";
    }
}

// Headers patched to claim sizes no file of theirs holds: refused at open,
// before anything is allocated for them, and never as a crash.
TEST_F(ImageFileDamage, headersClaimingTooMuchAreRefusedAtOpen) {
    struct Patch {
        std::streamoff at;
        std::uint32_t value;
        int bytes;
        bool bigEndian;
    };
    struct Case {
        char const* what;
        char const* extension;
        std::vector<Patch> patches;
        Outcome outcome;
    };
    // DPX (little-endian as written here): pixels a line at 0x304, lines at
    // 0x308, the vertical offset at 0x584. TGA: width at 12, height at 14.
    std::vector<Case> const cases{
        {"a DPX line of 775 million pixels", "dpx", {{0x304, 775171634, 4, false}}, Outcome::UNSUPPORTED},
        {"a DPX of 60000 by 60000 pixels",
         "dpx",
         {{0x304, 60000, 4, false}, {0x308, 60000, 4, false}},
         Outcome::CORRUPT},
        // The library once wrote outside the caller's rows for this one.
        {"a DPX two billion lines down", "dpx", {{0x584, 0x7FC00000, 4, false}}, Outcome::CORRUPT},
        // The library reads the user data whole at open.
        {"a DPX user data block of 1.4 GB", "dpx", {{32, 0x52525252, 4, false}}, Outcome::INCOMPLETE},
        {"a TGA of 65535 by 65535 pixels",
         "tga",
         {{12, 65535, 2, false}, {14, 65535, 2, false}},
         Outcome::CORRUPT},
    };
    for (Case const& c : cases) {
        OsFilePath const file = path(std::string("claim.") + c.extension);
        FfImageWriteUtil::writeTile(file, patternTile(8, 8));
        {
            std::fstream stream(file.toString(), std::ios::in | std::ios::out | std::ios::binary);
            for (Patch const& patch : c.patches) {
                stream.seekp(patch.at);
                for (int i = 0; i < patch.bytes; ++i)
                    stream.put(
                        static_cast<char>(patch.value >> (8 * (patch.bigEndian ? patch.bytes - 1 - i : i))));
            }
        }
        EXPECT_STREQ(nameOf(readAll(file)), nameOf(c.outcome)) << c.what;
    }
}

// The first directory of a little-endian TIFF written here, for patching
// its entries in place: its offset at 4, then its count and 12-byte entries
// (tag, type, count, value).
class TiffEntries {
public:
    explicit TiffEntries(OsFilePath const& file)
        : _stream(file.toString(), std::ios::in | std::ios::out | std::ios::binary) {}

    std::uint32_t number(std::streamoff at, int bytes) {
        unsigned char buffer[4] = {};
        _stream.seekg(at);
        _stream.read(reinterpret_cast<char*>(buffer), bytes);
        std::uint32_t value = 0;
        for (int i = bytes; i-- > 0;)
            value = value << 8 | buffer[i];
        return value;
    }
    // fn(entry offset, tag, is a SHORT) for each entry, until it returns true.
    template <class Fn>
    void forEach(Fn&& fn) {
        std::uint32_t const directory = number(4, 4);
        std::uint32_t const entries = number(directory, 2);
        for (std::uint32_t entry = 0; entry < entries; ++entry) {
            std::streamoff const at = directory + 2 + 12 * static_cast<std::streamoff>(entry);
            if (fn(at, number(at, 2), number(at + 2, 2) == 3))
                return;
        }
    }
    void write(std::streamoff at, char const* bytes, int count) {
        _stream.seekp(at);
        _stream.write(bytes, count);
    }

private:
    std::fstream _stream;
};

// An uncompressed TIFF whose height grew a hundredfold, in one strip as tall,
// its strip tables unchanged: the library would find the missing rows only
// strip by strip, however many the header claims.
TEST_F(ImageFileDamage, anUncompressedTiffTallerThanItsFileIsCorrupt) {
    OsFilePath const file = path("tall.tif");
    FfImageWriteUtil::writeTile(file, patternTile(8, 40), "compression=none");
    int patched = 0;
    {
        TiffEntries tiff(file);
        tiff.forEach([&](std::streamoff at, std::uint32_t tag, bool isShort) {
            if (tag == 257 || tag == 278) {                              // ImageLength, RowsPerStrip
                tiff.write(at + 8, "\xa0\x0f\x00\x00", isShort ? 2 : 4); // 4000 rows
                ++patched;
            }
            return false;
        });
    }
    ASSERT_EQ(patched, 2);
    EXPECT_STREQ(nameOf(readAll(file)), nameOf(Outcome::CORRUPT));
}

// A strip TIFF that names a tile width: the library takes it for tiled and
// its scanline reads divided by a strip height of zero.
TEST_F(ImageFileDamage, aStripTiffThatNamesATileWidthIsCorrupt) {
    OsFilePath const file = path("tiles.tif");
    FfImageWriteUtil::writeTile(file, patternTile(8, 8), "compression=none");
    bool patched = false;
    {
        TiffEntries tiff(file);
        // DateTime (306) becomes TileWidth (322), a SHORT of 2: the tags stay in order.
        tiff.forEach([&](std::streamoff at, std::uint32_t tag, bool) {
            if (tag == 306) {
                tiff.write(at, "\x42\x01\x03\x00\x01\x00\x00\x00\x02\x00\x00\x00", 12);
                patched = true;
            }
            return patched;
        });
    }
    ASSERT_TRUE(patched);
    EXPECT_STREQ(nameOf(readAll(file)), nameOf(Outcome::CORRUPT));
}

// The EXR library allocates what an attribute's size claims before reading
// the value: a size past the end of the file is a file cut short.
TEST_F(ImageFileDamage, anExrAttributeLargerThanTheFileIsIncomplete) {
    OsFilePath const file = path("claim.exr");
    FfImageWriteUtil::writeTile(file, patternTile(8, 8));
    std::fstream stream(file.toString(), std::ios::in | std::ios::out | std::ios::binary);
    // After the magic and version: the first attribute's name, type, then its size.
    stream.seekg(8);
    std::string name, type;
    std::getline(stream, name, '\0');
    std::getline(stream, type, '\0');
    ASSERT_FALSE(name.empty());
    stream.seekp(stream.tellg());
    stream.write("\x00\x00\x00\x70", 4);
    stream.close();
    try {
        FfFileFormatMgr::getInstance().openImageFile(file);
        ADD_FAILURE() << "opened";
    } catch (FfIOEx::ExIncompleteFile const& error) {
        // Told by the header's own sizes, before the library opened it.
        EXPECT_NE(error.getDetail().find("its header promises"), std::string::npos) << error.what();
    }
}

// The library reads a v3f as its 12 bytes whatever size the attribute
// declares: one declared 8 bytes long hides, from a scan that believes it, a
// string after it that claims 1.8 GB.
TEST_F(ImageFileDamage, anExrAttributeThatLiesAboutItsSizeCannotHideALargerOne) {
    std::string bytes("\x76\x2f\x31\x01\x02\x00\x00\x00", 8);
    bytes += std::string("centre\0v3f\0", 11) + std::string("\x08\x00\x00\x00", 4);
    bytes += std::string("12345678\0\0\0\0", 12);
    bytes += std::string("note\0string\0", 12) + std::string("\x00\x00\x00\x70", 4) + "short";
    OsFilePath const file = path("lies.exr");
    std::ofstream(file.toString(), std::ios::binary) << bytes;
    try {
        FfFileFormatMgr::getInstance().openImageFile(file);
        ADD_FAILURE() << "opened";
    } catch (FfIOEx::ExIncompleteFile const& error) {
        EXPECT_NE(error.getDetail().find("its header promises"), std::string::npos) << error.what();
    }
}

// The EXR library allocates a row as wide as the data window when it opens a
// file: a damaged width is refused from the header, before the library sees it.
TEST_F(ImageFileDamage, anExrWiderThanTheSystemReadsIsRefusedBeforeTheLibraryOpensIt) {
    OsFilePath const file = path("wide.exr");
    FfImageWriteUtil::writeTile(file, patternTile(8, 8));
    std::string bytes;
    {
        std::ifstream in(file.toString(), std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    std::string const attribute("dataWindow\0box2i\0", 17);
    std::size_t const at = bytes.find(attribute);
    ASSERT_NE(at, std::string::npos);
    // xMax, after the size and xMin, yMin: 16,779,008 columns.
    std::size_t const xMax = at + attribute.size() + 4 + 8;
    std::uint32_t const wide = 16779008;
    for (int i = 0; i < 4; ++i)
        bytes[xMax + static_cast<std::size_t>(i)] = static_cast<char>(wide >> (8 * i));
    std::ofstream(file.toString(), std::ios::binary | std::ios::trunc) << bytes;
    try {
        FfFileFormatMgr::getInstance().openImageFile(file);
        ADD_FAILURE() << "opened";
    } catch (FfIOEx::ExOpNotSupported const& error) {
        EXPECT_NE(error.getDetail().find("16779009 by 8 pixels"), std::string::npos) << error.what();
    }
}

} // namespace
} // namespace Qv
