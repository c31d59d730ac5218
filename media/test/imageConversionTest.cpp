// File-side pixels between depths and component counts, tiles seen as
// file-side images, lookups and the video format table.
#include "ffBaseLUT.h"
#include "ffIOEx.h"
#include "fmtVideoFormat.h"
#include "imComponent.h"
#include "imFormatChange.h"
#include "imMemoryBuffer.h"
#include "ipWrapperUtil.h"
#include "ixPixelUtil.h"
#include "ixReadGuard.h"
#include "ixUtil.h"
#include "mediaTestUtil.h"

#include <fstream>

namespace Qv {
namespace {

using MediaTest::patternAt;
using MediaTest::patternTile;

ImImage pattern(ImFormat const& format, GeRectangle<int> const& rect) {
    ImImage const floats(ImLayout(rect, ImFormat(4, ImPixelFormat::HDR)),
                         ImMemoryBuffer::Factory::getInstance());
    ImWriteGuard const guard(floats);
    for (int y = rect.y1; y < rect.y2; ++y)
        for (int x = rect.x1; x < rect.x2; ++x) {
            CoRgbaColorTyped<float> const p = patternAt(x, y);
            float* pixel = guard.getLineAs<float>(y) + (x - rect.x1) * 4;
            pixel[0] = p.r, pixel[1] = p.g, pixel[2] = p.b, pixel[3] = p.a;
        }
    ImImage const out(ImLayout(rect, format), ImMemoryBuffer::Factory::getInstance());
    imFormatChange(ImWriteGuard(out), ImReadGuard(floats));
    return out;
}

CoRgbaColorTyped<float> pixelAt(ImImageConst const& image, int x, int y) {
    ImImage const one(ImLayout({x, x + 1, y, y + 1}, ImFormat(4, ImPixelFormat::HDR)),
                      ImMemoryBuffer::Factory::getInstance());
    imFormatChange(ImWriteGuard(one), ImReadGuard(image));
    float const* p = ImReadGuard(one).getLineAs<float>(y);
    return {p[0], p[1], p[2], p[3]};
}

TEST(ImFormatChange, everyDepthAndComponentCountToEveryOther) {
    GeRectangle<int> const rect{3, 20, 2, 15};
    // What RGBA reads back as from each component count.
    auto const seen = [](int comps, CoRgbaColorTyped<float> const& p) -> CoRgbaColorTyped<float> {
        switch (comps) {
        case 1:
            return {0, 0, 0, p.a};
        case 2:
            return {p.r, p.r, p.r, p.a};
        case 3:
            return {p.r, p.g, p.b, 1};
        default:
            return p;
        }
    };
    for (auto from : {ImPixelFormat::UINT8, ImPixelFormat::UINT16, ImPixelFormat::ECR, ImPixelFormat::HDR})
        for (auto to : {ImPixelFormat::UINT8, ImPixelFormat::UINT16, ImPixelFormat::ECR, ImPixelFormat::HDR})
            for (int fromComps = 1; fromComps <= 4; ++fromComps)
                for (int toComps = 1; toComps <= 4; ++toComps) {
                    ImImage const source = pattern(ImFormat(fromComps, from), rect);
                    ImImage const converted(ImLayout(rect, ImFormat(toComps, to)),
                                            ImMemoryBuffer::Factory::getInstance());
                    imFormatChange(ImWriteGuard(converted), ImReadGuard(source));
                    float const step =
                        (from == ImPixelFormat::ECR || to == ImPixelFormat::ECR) ? 2e-3f : 1e-6f;
                    for (int y = rect.y1; y < rect.y2; y += 3)
                        for (int x = rect.x1; x < rect.x2; x += 2) {
                            CoRgbaColorTyped<float> const want =
                                seen(toComps, seen(fromComps, patternAt(x, y)));
                            CoRgbaColorTyped<float> const got = pixelAt(converted, x, y);
                            ASSERT_NEAR(got.r, want.r, step)
                                << from << "x" << fromComps << " -> " << to << "x" << toComps;
                            ASSERT_NEAR(got.g, want.g, step);
                            ASSERT_NEAR(got.b, want.b, step);
                            ASSERT_NEAR(got.a, want.a, step);
                        }
                }
}

TEST(IxUtil, pixelFormatsMapBothWays) {
    struct Case {
        IxPixelFormat ix;
        ImFormat im;
    };
    Rational const aspect(10, 11);
    for (Case const& c : {Case{IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32, aspect),
                               ImFormat(4, ImPixelFormat::HDR)},
                          Case{IxPixelFormat(IxPixelFormat::RGB, IxPixelFormat::FLOAT16, aspect),
                               ImFormat(3, ImPixelFormat::ECR)},
                          Case{IxPixelFormat(IxPixelFormat::ALPHA, IxPixelFormat::UINT8, aspect),
                               ImFormat(1, ImPixelFormat::UINT8)}}) {
        EXPECT_EQ(IxUtil::ixToImPixelFormat(c.ix), c.im);
        EXPECT_EQ(imToIxPixelFormat(c.im, aspect), c.ix);
    }
    EXPECT_EQ(imToIxPixelFormat(ImFormat(3, ImPixelFormat::UINT16)),
              IxPixelFormat(IxPixelFormat::RGB, IxPixelFormat::FLOAT32));
    EXPECT_EQ(imToIxPixelFormat(ImFormat(2, ImPixelFormat::ECR)),
              IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT16));
    EXPECT_THROW(IxUtil::ixToImPixelFormat(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::COMPLEX)),
                 IxEx::ExUnsupportedFormat);
    EXPECT_THROW(ImFormat(5, ImPixelFormat::UINT8), AssertionsEx::ExAssertionFailed);
}

TEST(IxUtil, tilesAndImagesShareTheirPixels) {
    IxTile const tile(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT16), {5, 30, 10, 27});
    {
        IxWriteGuard const guard(tile);
        ImWriteGuard const view = IpWrapperUtil::convert(guard);
        EXPECT_EQ(view.getRect(), tile.getPixelRegion());
        imFormatChange(view, ImReadGuard(pattern(ImFormat(4, ImPixelFormat::HDR), tile.getPixelRegion())));
    }
    IxReadGuard const read(tile);
    for (int y : {10, 26})
        for (int x : {5, 6, 29}) {
            CoRgbaColorTyped<float> const got = IxPixelUtil::getPixelColor(read, x, y);
            EXPECT_NEAR(got.g, patternAt(x, y).g, 2e-3f);
            EXPECT_NEAR(pixelAt(IxUtil::ixTileToImImageConst(tile), x, y).a, patternAt(x, y).a, 2e-3f);
        }
    EXPECT_TRUE(IxUtil::ixTileToImImageConst(IxTile(tile.getPixelFormat(), {0, 0, 0, 0})).isNull());
}

class LookUpTables : public MediaTest::FileTest {};

TEST_F(LookUpTables, colourChangesAndAlphaStays) {
    auto const table = [&](std::string const& name, std::string const& text) {
        std::ofstream(path(name).toString()) << text;
        return FfBaseLUT::readTable(path(name));
    };
    struct Case {
        char const* what;
        RCStrongPtr<FfBaseLUT> lut;
        std::function<float(float, int)> expected;
    };
    std::vector<Case> const cases{
        {"sRGB", FfBaseLUT::createSrgbEncode(),
         [](float v, int) { return v <= 0.0031308f ? 12.92f * v : 1.055f * std::pow(v, 1 / 2.4f) - 0.055f; }},
        {"one curve", table("gamma.lut", "# inverted\n1\n0.5 # middle\n\n0\n"),
         [](float v, int) { return 1 - v; }},
        {"three curves", table("rgb.lut", "0 0 0\n1 0.5 0.25\n"),
         [](float v, int k) {
             return v * (k == 0 ? 1.0f : k == 1 ? 0.5f : 0.25f);
         }},
    };
    IxTile const tile = patternTile(9, 5);
    for (Case const& c : cases) {
        ASSERT_TRUE(c.lut->applies());
        IxTile const out = c.lut->process(tile);
        IxReadGuard const read(out);
        for (int y = 0; y < 5; ++y)
            for (int x = 0; x < 9; ++x) {
                CoRgbaColorTyped<float> const in = patternAt(x, y);
                CoRgbaColorTyped<float> const got = IxPixelUtil::getPixelColor(read, x, y);
                ASSERT_NEAR(got.r, c.expected(in.r, 0), 1e-5f) << c.what;
                ASSERT_NEAR(got.g, c.expected(in.g, 1), 1e-5f) << c.what;
                ASSERT_NEAR(got.b, c.expected(in.b, 2), 1e-5f) << c.what;
                ASSERT_EQ(got.a, in.a) << c.what;
            }
    }
    RCStrongPtr<FfBaseLUT> const identity = FfBaseLUT::createIdentity();
    EXPECT_FALSE(identity->applies());
    EXPECT_TRUE(identity->process(tile) == tile);
}

TEST_F(LookUpTables, aBadTableNamesTheFileAndLine) {
    for (auto const& [text, detail] :
         std::vector<std::pair<std::string, std::string>>{{"0\n0.5x\n1\n", "line 2"},
                                                          {"0 0 0\n1\n", "line 2"},
                                                          {"0.5\n", "two entries"},
                                                          {"0 1\n1 1\n", "line 1"}}) {
        std::ofstream(path("bad.lut").toString()) << text;
        try {
            FfBaseLUT::readTable(path("bad.lut"));
            ADD_FAILURE() << text;
        } catch (FfIOEx::ExReadError const& error) {
            EXPECT_NE(std::string(error.what()).find(path("bad.lut").toString()), std::string::npos);
            EXPECT_NE(error.getDetail().find(detail), std::string::npos) << error.getDetail();
        }
    }
    EXPECT_THROW(FfBaseLUT::readTable(path("none.lut")), FfIOEx::ExFileNotFound);
}

TEST(VideoFormats, filteredByWidthAndHeight) {
    auto const find = [](char const* width, char const* height) {
        return FmtFormatName::getFilteredList(FmtVideoFormat::TYPE, {FmtFormatName::All, width, height});
    };
    struct Case {
        char const* width;
        char const* height;
        char const* name;
        char const* pixelRatio;
        char const* rate;
    };
    for (Case const& c :
         {Case{"1920", "1080", "HD 1080p 24", "1:1", "24/1"},
          Case{"720", "486", "NTSC D1", "9:10", "30000/1001"}, Case{"720", "576", "PAL", "16:15", "25/1"},
          Case{"1440", "1080", "HDV 1080", "4:3", "30000/1001"},
          Case{"1828", "1556", "Film 2K Cinemascope", "2:1", "24/1"}}) {
        std::vector<FmtFormatName> const found = find(c.width, c.height);
        ASSERT_FALSE(found.empty()) << c.name;
        EXPECT_EQ(found.front().getName(), c.name);
        EXPECT_EQ(found.front().getFieldValue(FmtVideoFormat::PIXEL_RATIO), c.pixelRatio);
        EXPECT_EQ(found.front().getFieldValue(7), c.pixelRatio);
        EXPECT_EQ(found.front().getFieldValue(9), c.rate);
        for (FmtFormatName const& entry : found)
            EXPECT_EQ(entry.getFieldValue(FmtVideoFormat::WIDTH) + "x" +
                          entry.getFieldValue(FmtVideoFormat::HEIGHT),
                      std::string(c.width) + "x" + c.height);
    }
    EXPECT_TRUE(find("1000", "1000").empty());
    EXPECT_TRUE(FmtFormatName::getFilteredList("NoSuchTable", {}).empty());
    EXPECT_EQ(FmtFormatName::getFilteredList(FmtVideoFormat::TYPE, {}).size(),
              FmtVideoFormat::getTable().size());
}

} // namespace
} // namespace Qv
