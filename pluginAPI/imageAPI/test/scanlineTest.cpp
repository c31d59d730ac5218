#include "ixEx.h"
#include "ixRollingScanlineBuffer.h"
#include "ixScanlineCache.h"
#include "ixScanlineUtil.h"
#include "ixTestUtil.h"

#include <gtest/gtest.h>
#include <vector>

using namespace Qv;
using namespace Qv::IxTest;

namespace {

using Line = IxScanline<float>;
using Pad = IxPaddingPolicy<float>;

// Pixel (x, y) of the fixtures holds 10 * y + x in every component but alpha.
Rgba ramp(int x, int y) {
    float const v = static_cast<float>(10 * y + x);
    return {v, v, v, 1.0f};
}

std::vector<float> values(Line const& line) {
    return std::vector<float>(line.getData(), line.getData() + line.getLength());
}

TEST(IxScanlineTest, ReadsRowsOfSeveralTilesAndPadsTheRest) {
    F const format{F::RGBA, F::FLOAT32};
    Rgba const fill{-1, -1, -1, -1};
    std::vector<IxReadGuard> const guards{
        IxReadGuard(makeTile(format, {0, 3, 0, 3}, ramp, fill)),
        IxReadGuard(makeTile(format, {5, 7, 0, 3}, ramp, {-9, -9, -9, -9}))};
    struct Case {
        char const* what;
        Pad padding;
        int y;
        std::vector<float> expected; // columns -2 .. 8
    } const cases[] = {
        {"fill colour of the first tile", Pad::fillColor(), 1, {-1, -1, 10, 11, 12, -1, -1, 15, 16, -1, -1}},
        {"constant", Pad::constant(7), 2, {7, 7, 20, 21, 22, 7, 7, 25, 26, 7, 7}},
        {"clamp: edges repeat, the gap takes the fill", Pad::clamp(), 0, {0, 0, 0, 1, 2, -1, -1, 5, 6, 6, 6}},
        {"clamp: a row below takes the last row",
         Pad::clamp(),
         40,
         {20, 20, 20, 21, 22, -1, -1, 25, 26, 26, 26}},
        {"no tile on the row", Pad::fillColor(), -1, std::vector<float>(11, -1)},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.what);
        Line line({-2, 9}, c.padding);
        line.readFrom(guards, c.y);
        EXPECT_EQ(values(line), c.expected);
    }
    // Clamping a line wholly right of the tiles repeats their last column.
    Line right({20, 23}, Pad::clamp());
    right.readFrom(guards, 1);
    EXPECT_EQ(values(right), (std::vector<float>{16, 16, 16}));
}

TEST(IxScanlineTest, WritesOnlyInsideTheTileInEveryFormat) {
    struct Case {
        F format;
        Rgba expected; // at (2, 0), written from (0.5, 0.25, 1, 0.75)
    } const cases[] = {
        {{F::RGBA, F::UINT8}, {128 / 255.0f, 64 / 255.0f, 1, 191 / 255.0f}},
        {{F::RGB, F::FLOAT16}, {0.5f, 0.25f, 1, 1}},
        {{F::ALPHA, F::FLOAT32}, {0, 0, 0, 0.75f}},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.format.dump());
        IxTile const tile = makeTile(c.format, {1, 4, 0, 1}, [](int, int) { return Rgba{}; });
        Rgba const untouched = IxPixelUtil::getPixelColor(IxReadGuard(tile), 3, 0);
        IxScanline<Rgba> line({-5, 3});
        IxScanlineUtil::set(line, Rgba{0.5f, 0.25f, 1, 0.75f}, nullptr);
        line.writeTo(IxWriteGuard(tile), 0);
        IxReadGuard const guard(tile);
        EXPECT_EQ(IxPixelUtil::getPixelColor(guard, 2, 0), c.expected);
        EXPECT_EQ(IxPixelUtil::getPixelColor(guard, 3, 0), untouched) << "right of the line";
    }
    // A one-float line written to RGB is grey.
    IxTile const grey(F(F::RGB, F::FLOAT32), {0, 1, 0, 1});
    Line one({0, 1});
    one[0] = 0.5f;
    one.writeTo(IxWriteGuard(grey), 0);
    EXPECT_EQ(IxPixelUtil::getPixelColor(IxReadGuard(grey), 0, 0), (Rgba{0.5f, 0.5f, 0.5f, 1}));
    EXPECT_THROW(one.writeTo(IxWriteGuard(IxTile(F(F::RGB, F::COMPLEX), {0, 1, 0, 1})), 0),
                 IxEx::ExUnsupportedFormat);
}

TEST(IxScanlineUtilTest, LineKernelsStayInTheirInterval) {
    GeInterval<int> const middle{1, 3};
    auto rgbaLine = [] {
        IxScanline<Rgba> line({0, 4});
        for (int x = 0; x < 4; ++x)
            line[x] = {1.0f + x, 2.0f, 4.0f, x * 0.5f};
        return line;
    };
    IxScanline<Rgba> premultiplied = rgbaLine();
    IxScanlineUtil::multiplyByAlpha(premultiplied, nullptr);
    EXPECT_EQ(premultiplied[2], (Rgba{3, 2, 4, 1}));
    EXPECT_EQ(premultiplied[0], (Rgba{0, 0, 0, 0}));
    IxScanlineUtil::divideByAlpha(premultiplied, nullptr);
    EXPECT_EQ(premultiplied[3], rgbaLine()[3]);
    EXPECT_EQ(premultiplied[0], (Rgba{0, 0, 0, 0})) << "zero alpha keeps its colour";

    IxScanline<Rgba> sum = rgbaLine();
    IxScanlineUtil::accumulateScanline(sum, rgbaLine(), &middle);
    EXPECT_EQ(sum[0], rgbaLine()[0]);
    EXPECT_EQ(sum[1], (Rgba{4, 4, 8, 1}));
    IxScanlineUtil::scaleScanline(sum, rgbaLine(), -2.0f, nullptr);
    EXPECT_EQ(sum[3], (Rgba{-8, -4, -8, -3}));

    Line channel({-1, 5});
    IxScanlineUtil::set(channel, 9.0f, nullptr);
    IxScanlineUtil::extractChannel(channel, 3, rgbaLine(), IxScanlineUtil::INVERT, nullptr);
    EXPECT_EQ(values(channel), (std::vector<float>{9, 1, 0.5f, 0, -0.5f, 9}));
    IxScanlineUtil::extractChannel(channel, 0, rgbaLine(), IxScanlineUtil::NO_INVERT, &middle);
    EXPECT_EQ(values(channel), (std::vector<float>{9, 1, 2, 3, -0.5f, 9}));
    EXPECT_EQ(assertionText([&] {
                  IxScanlineUtil::extractChannel(channel, 4, rgbaLine(), IxScanlineUtil::NO_INVERT, nullptr);
              }),
              "index >= 0 && index < 4");
}

TEST(IxRollingScanlineBufferTest, WindowMovesDownReadingEachRowOnce) {
    IxTile const tile = makeTile(F(F::ALPHA, F::FLOAT32), {0, 2, 0, 4}, [](int x, int y) {
        return Rgba{0, 0, 0, static_cast<float>(10 * y + x)};
    });
    std::vector<int> entered;
    IxRollingScanlineBuffer<float>::Options options;
    options.onEntry = [&](Line& line, int y) {
        entered.push_back(y);
        IxScanlineUtil::scaleScanline(line, line, 2.0f, nullptr);
    };
    IxRollingScanlineBuffer<float> buffer({IxReadGuard(tile)}, {0, 2, 0, 4}, 3, Pad::constant(-1), options);
    std::vector<std::vector<float>> windows;
    while (buffer.hasNext()) {
        IxRollingScanlineBuffer<float>::Accessor const lines(buffer.getNext(), 1);
        windows.push_back({lines[-1][1], lines[0][1], lines[1][1]});
        EXPECT_EQ(lines[0][0], 20.0f * buffer.getCentreRow());
    }
    EXPECT_EQ(windows,
              (std::vector<std::vector<float>>{{-2, 2, 22}, {2, 22, 42}, {22, 42, 62}, {42, 62, -2}}));
    EXPECT_EQ(entered, (std::vector<int>{-1, 0, 1, 2, 3, 4}));
    EXPECT_NE(assertionText([&] { IxRollingScanlineBuffer<float>({}, {0, 1, 0, 1}, 4); }), "");
}

TEST(IxScanlineCacheTest, AsksEachSourceRowOnceAndGivesTheTapsOfEachOutputRow) {
    Rect const dst{0, 2, 1, 4};
    Rect const src{0, 4, -1, 12}; // rows 2 * 1 - 3 = -1 .. 2 * 3 + 4 = 10, and one more
    IxScanlineCache<float> cache(dst, src);
    std::vector<int> asked;
    std::vector<int> firstTaps;
    while (cache.hasNext()) {
        while (cache.needsSourceLine()) {
            asked.push_back(cache.getSourceRow());
            IxScanlineUtil::set(cache.getHorizontalBuffer(), static_cast<float>(asked.back()), nullptr);
        }
        float const* const* taps = cache.getNext();
        firstTaps.push_back(static_cast<int>(taps[0][0]));
        for (int i = 0; i < IxScanlineCache<float>::TAPS; ++i)
            EXPECT_EQ(taps[i][1], taps[0][1] + i);
        IxScanlineUtil::set(cache.getVerticalBuffer(), static_cast<float>(cache.getVerticalRow()), nullptr);
    }
    cache.flush();
    EXPECT_EQ(asked, (std::vector<int>{-1, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(firstTaps, (std::vector<int>{-1, 1, 3}));
    EXPECT_EQ(cache.getLine(3)[1], 3.0f);

    // Rows missing from the source read as zero.
    IxScanlineCache<float> clipped(dst, {0, 4, 2, 5});
    while (clipped.needsSourceLine())
        IxScanlineUtil::set(clipped.getHorizontalBuffer(), 1.0f, nullptr);
    float const* const* taps = clipped.getNext();
    EXPECT_EQ((std::vector<float>{taps[2][0], taps[3][0], taps[5][0], taps[6][0]}),
              (std::vector<float>{0, 1, 1, 0}));
}

} // namespace
