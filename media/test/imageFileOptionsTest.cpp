// Format options reach the file, and the reader's depth, channels and region
// of interest give the pixels asked for.
#include "ffFileFormatMgr.h"
#include "ffFileFormatOptionsMgr.h"
#include "ffIOEx.h"
#include "ffImageWriteUtil.h"
#include "imFormatChange.h"
#include "imMemoryBuffer.h"
#include "imReadGuard.h"
#include "mediaTestUtil.h"
#include "piImageFileDetails.h"

namespace Qv {
namespace {

using MediaTest::patternAt;
using MediaTest::patternTile;

class ImageFileOptions : public MediaTest::FileTest {
protected:
    static std::string attribute(PiImageFile const& file, std::string const& name) {
        for (auto const& [key, value] : file.getAttributes())
            if (key == name)
                return value;
        return "(none)";
    }
};

TEST_F(ImageFileOptions, optionsTakeEffectInTheFileHeader) {
    struct Case {
        char const* file;
        char const* options;
        char const* attribute;
        char const* expected;
    };
    for (Case const& c : {Case{"none.exr", "compression=none", "compression", "none"},
                          Case{"zip.exr", "compression=zip", "compression", "zip"},
                          Case{"piz.exr", "compression=piz", "compression", "piz"},
                          Case{"dwaa.exr", "compression=dwaa", "compression", "dwaa"},
                          Case{"lzw.tif", "compression=lzw", "compression", "lzw"},
                          Case{"ten.dpx", "bitdepth=10", "oiio:BitsPerSample", "10"},
                          Case{"twelve.dpx", "bitdepth=12", "oiio:BitsPerSample", "12"}}) {
        OsFilePath const file = path(c.file);
        FfImageWriteUtil::writeTile(file, patternTile(16, 16), c.options);
        PiImageFilePtr const image = FfFileFormatMgr::getInstance().openImageFile(file);
        EXPECT_EQ(attribute(*image, c.attribute), c.expected) << c.file;
    }
    PiImageFilePtr const zip = FfFileFormatMgr::getInstance().openImageFile(path("zip.exr"));
    EXPECT_EQ(PiImageFileDetails::getDetailString(*zip),
              "EXR, 16 x 16, 4 channels (R G B A), HDR, compression zip");
}

TEST_F(ImageFileOptions, optionsAFormatDoesNotKnowAreRefused) {
    EXPECT_EQ(FfFileFormatOptionsMgr::createOptions("exr", "compression=piz")->getText(), "compression=piz");
    EXPECT_EQ(FfFileFormatOptionsMgr::createOptions("JPEG", " quality=90; ")->getText(), "quality=90");
    for (auto const& [format, options] :
         std::vector<std::pair<std::string, std::string>>{{"EXR", "compression=fast"},
                                                          {"EXR", "bitdepth=10"},
                                                          {"DPX", "bitdepth=9"},
                                                          {"JPEG", "quality=0"},
                                                          {"JPEG", "quality=high"},
                                                          {"PNG", "compression"}})
        EXPECT_THROW(FfFileFormatOptionsMgr::createOptions(format, options), FfIOEx::ExBadOptions)
            << format << " " << options;
    EXPECT_THROW(FfFileFormatOptionsMgr::createOptions("XYZ"), FfIOEx::ExUnknownFormat);
    PiImageFilePtr const out = FfFileFormatMgr::getInstance().createImageFile(path("a.exr"));
    EXPECT_THROW(out->setFormatOptions("quality=50"), FfIOEx::ExBadOptions);
}

TEST_F(ImageFileOptions, theReaderGivesTheDepthChannelsAndRegionAsked) {
    OsFilePath const file = path("pattern.tif");
    FfImageWriteUtil::writeTile(file, patternTile(50, 140), "bitdepth=16");
    using Pick = std::function<float(CoRgbaColorTyped<float> const&, int)>;
    struct Case {
        char const* what;
        ImFormat format;
        std::vector<int> channels; // empty: the default assignment
        GeRectangle<int> region;
        Pick expected;
    };
    auto const rgba = [](CoRgbaColorTyped<float> const& p, int k) {
        return k == 0 ? p.r : k == 1 ? p.g : k == 2 ? p.b : p.a;
    };
    int const one = PiImageFile::ONE_CHANNEL;
    std::vector<Case> const cases{
        {"all of it in 16 bits", ImFormat(4, ImPixelFormat::UINT16), {}, {0, 50, 0, 140}, rgba},
        {"a region in halves", ImFormat(4, ImPixelFormat::ECR), {}, {7, 31, 33, 101}, rgba},
        {"one component is the alpha",
         ImFormat(1, ImPixelFormat::HDR),
         {},
         {0, 50, 0, 140},
         [](auto const& p, int) { return p.a; }},
        {"colour without alpha", ImFormat(3, ImPixelFormat::UINT8), {}, {3, 50, 70, 140}, rgba},
        {"channels reordered, alpha made opaque",
         ImFormat(4, ImPixelFormat::HDR),
         {2, 1, 0, one},
         {10, 20, 0, 140},
         [&](auto const& p, int k) { return k == 3 ? 1.0f : rgba(p, 2 - k); }},
        {"a region past the image is clipped",
         ImFormat(2, ImPixelFormat::HDR),
         {0, 3},
         {40, 90, 120, 200},
         [&](auto const& p, int k) { return k == 0 ? p.r : p.a; }},
    };
    for (Case const& c : cases) {
        PiImageFilePtr const image = FfFileFormatMgr::getInstance().openImageFile(file);
        image->setFormat(c.format);
        if (!c.channels.empty())
            image->setChannelAssignment(c.channels);
        image->setRegion(c.region);
        GeRectangle<int> const region = c.region.getIntersection(image->getMaxRect());
        float const step = c.format.getPixelFormat() == ImPixelFormat::ECR ? 1e-3f : 1e-6f;
        int nextRow = region.y1;
        for (ImImageConst strip = image->readStrip(); !strip.isNull(); strip = image->readStrip()) {
            ASSERT_EQ(strip.getRect().y1, nextRow) << c.what;
            ASSERT_EQ(strip.getRect().x1, region.x1) << c.what;
            ASSERT_EQ(strip.getRect().x2, region.x2) << c.what;
            ASSERT_EQ(strip.getFormat(), c.format) << c.what;
            nextRow = strip.getRect().y2;
            ImImage const floats(ImLayout(strip.getRect(), ImFormat(c.format.getComps(), ImPixelFormat::HDR)),
                                 ImMemoryBuffer::Factory::getInstance());
            imFormatChange(ImWriteGuard(floats), ImReadGuard(strip));
            ImReadGuard const guard(floats);
            for (int y = strip.getRect().y1; y < strip.getRect().y2; ++y)
                for (int x = region.x1; x < region.x2; ++x)
                    for (int k = 0; k < c.format.getComps(); ++k)
                        ASSERT_NEAR(guard.getLineAs<float>(y)[(x - region.x1) * c.format.getComps() + k],
                                    c.expected(patternAt(x, y), k), step)
                            << c.what << " at " << x << ", " << y << " component " << k;
        }
        EXPECT_EQ(nextRow, region.y2) << c.what;
    }
}

} // namespace
} // namespace Qv
