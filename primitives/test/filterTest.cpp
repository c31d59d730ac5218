#include "ipAspectChange.h"
#include "ipFilterWeights.h"
#include "ipScanlineUtil.h"
#include "ixScanlineCache.h"
#include "ixTestUtil.h"

#include <gtest/gtest.h>

using namespace Qv;
using namespace Qv::IxTest;

namespace {

Rgba const COLOUR{0.25f, 0.5f, 0.75f, 1.0f};

void expectNear(Rgba const& a, Rgba const& b, float tolerance) {
    EXPECT_NEAR(a.r, b.r, tolerance);
    EXPECT_NEAR(a.g, b.g, tolerance);
    EXPECT_NEAR(a.b, b.b, tolerance);
    EXPECT_NEAR(a.a, b.a, tolerance);
}

TEST(IpAspectChangeTest, ConstantImageStaysConstantAtEveryScale) {
    struct Case {
        float xScale, yScale;
        F format;
    } const cases[] = {
        {0.5f, 1, {F::RGBA, F::FLOAT32}}, {0.5f, 0.5f, {F::RGBA, F::FLOAT32}},
        {2, 1, {F::RGBA, F::FLOAT16}},    {0.37f, 1.6f, {F::RGB, F::FLOAT32}},
        {1, 0.25f, {F::RGBA, F::UINT8}},
    };
    Rect const out{-5, 20, 3, 14};
    for (auto const& c : cases) {
        SCOPED_TRACE(testing::Message() << c.xScale << " x " << c.yScale << ' ' << c.format);
        IpFilters::Filter const filter = IpFilters::Lanczos3.scale(c.xScale, c.yScale);
        Rect const needed = filter.getSourceRegion(out);
        // Two source tiles side by side, so that rows cross a tile border.
        int const middle = (needed.x1 + needed.x2) / 2;
        std::vector<IxReadGuard> const sources{
            IxReadGuard(makeTile(c.format, {needed.x1, middle, needed.y1, needed.y2},
                                 [](int, int) { return COLOUR; })),
            IxReadGuard(makeTile(c.format, {middle, needed.x2, needed.y1, needed.y2},
                                 [](int, int) { return COLOUR; }))};
        IxTile const dst(F(F::RGBA, F::FLOAT32), out);
        ipAspectChange(IxWriteGuard(dst), sources, filter);
        Rgba const expected = IxPixelUtil::getPixelColor(sources[0], needed.x1, needed.y1);
        for (int y = out.y1; y < out.y2; ++y)
            for (int x = out.x1; x < out.x2; ++x)
                expectNear(IxPixelUtil::getPixelColor(IxReadGuard(dst), x, y), expected, 1e-5f);
    }
}

TEST(IpAspectChangeTest, HalfWidthOfARampSamplesItBetweenPixelPairs) {
    // A symmetric filter reproduces a linear ramp: out(x) = ramp at 2x + 0.5.
    Rect const out{0, 16, 0, 2};
    IpFilters::Filter const filter = IpFilters::Lanczos3.scale(0.5f, 1);
    Rect const needed = filter.getSourceRegion(out);
    EXPECT_EQ(needed.getYInterval(), out.getYInterval());
    IxTile const ramp = makeTile(F(F::RGBA, F::FLOAT32), needed, [](int x, int) {
        float const v = 0.5f * x + 1;
        return Rgba{v, -v, 1, 1};
    });
    IxTile const dst(F(F::RGBA, F::FLOAT32), out);
    ipAspectChange(IxWriteGuard(dst), {IxReadGuard(ramp)}, filter);
    for (int x = out.x1; x < out.x2; ++x) {
        float const v = 0.5f * (2 * x + 0.5f) + 1;
        expectNear(IxPixelUtil::getPixelColor(IxReadGuard(dst), x, 1), {v, -v, 1, 1}, 1e-4f);
    }
    EXPECT_EQ(assertionText([] { IpFilters::Lanczos3.scale(0, 1); }), "xScale > 0.0f && yScale > 0.0f");
}

TEST(IpScanlineUtilTest, Lanczos2ReductionKeepsAConstantImageConstant) {
    float sum = 0;
    for (int k = 0; k < IpScanlineUtil::LANCZOS2_TAPS; ++k)
        sum += IpScanlineUtil::getLanczos2Weights()[k];
    EXPECT_NEAR(sum, 1.0f, 1e-6f);

    // The proxy path: rows read, premultiplied, filtered across, then down.
    Rect const dst{2, 9, -1, 4};
    Rect const src{2 * dst.x1 - 3, 2 * dst.x2 + 3, 2 * dst.y1 - 3, 2 * dst.y2 + 3};
    IxTile const tile = makeTile(F(F::RGBA, F::FLOAT16), src, [](int, int) { return COLOUR; });
    IxScanlineCache<Rgba> cache(dst, src);
    IxScanline<Rgba> row(src.getXInterval());
    while (cache.hasNext()) {
        while (cache.needsSourceLine()) {
            row.readFrom(IxReadGuard(tile), cache.getSourceRow());
            IpScanlineUtil::lanczos2Filter(cache.getHorizontalBuffer(), row);
        }
        Rgba const* const* taps = cache.getNext();
        IpScanlineUtil::lanczos2Filter(cache.getVerticalBuffer(), taps);
    }
    cache.flush();
    for (int y = dst.y1; y < dst.y2; ++y)
        for (int x = dst.x1; x < dst.x2; ++x)
            expectNear(cache.getLine(y)[x], COLOUR, 1e-6f);

    // Without the source's edge columns the missing taps count as zero.
    IxScanline<Rgba> narrow({3, 13});
    for (int x = 3; x < 13; ++x)
        narrow[x] = COLOUR;
    IxScanline<Rgba> half({2, 6});
    IpScanlineUtil::lanczos2Filter(half, narrow);
    expectNear(half[4], COLOUR, 1e-6f); // taps 5 .. 12, all present
    EXPECT_NE(half[2].g, COLOUR.g);     // taps -1 .. 6
    EXPECT_NE(half[5].g, COLOUR.g);     // taps 7 .. 14
}

} // namespace
