#include "ipArithmetic.h"
#include "ipGradient.h"
#include "ipPixelOps.h"
#include "ipSet.h"
#include "ixTestUtil.h"

#include <gtest/gtest.h>

using namespace Qv;
using namespace Qv::IxTest;

namespace {

Rgba read(IxTile const& tile, int x, int y) {
    return IxPixelUtil::getPixelColor(IxReadGuard(tile), x, y);
}

Rgba constant(float v) {
    return {v, v, v, v};
}

TEST(IpArithmeticTest, AddAndSubtractPadWithFillColoursInEveryFormat) {
    Rect const out{0, 6, 0, 2};
    for (F::Depth depth : {F::UINT8, F::FLOAT16, F::FLOAT32}) {
        F const format(F::RGBA, depth);
        SCOPED_TRACE(format.dump());
        // a covers the whole output, b only its left half; b's fill is 0.25.
        IxTile const a = makeTile(format, out, [](int x, int) { return constant(0.5f); });
        IxTile const b = makeTile(
            format, {0, 3, 0, 2}, [](int, int) { return constant(0.125f); }, constant(0.25f));
        IxTile const sum(format, out);
        ipAdd(IxWriteGuard(sum), IxReadGuard(a), IxReadGuard(b));
        IxTile const difference(format, out);
        ipSubtract(IxWriteGuard(difference), IxReadGuard(a), IxReadGuard(b));
        // Each 8-bit operand is off by up to half a step, and so is the result.
        float const tolerance = depth == F::UINT8 ? 1.5f / 255 : 0.0f;
        struct Expect {
            IxTile const& tile;
            int x;
            float value;
        } const expects[] = {
            {sum, 1, 0.625f}, {sum, 4, 0.75f}, {difference, 2, 0.375f}, {difference, 5, 0.25f}};
        for (auto const& e : expects)
            EXPECT_NEAR(read(e.tile, e.x, 1).g, e.value, tolerance) << e.x;
    }
    // In place, through the write guard's reader.
    F const format(F::ALPHA, F::FLOAT32);
    IxTile const acc = makeTile(format, out, [](int x, int) { return constant(static_cast<float>(x)); });
    IxTile const more = makeTile(format, out, [](int, int) { return constant(10); });
    Rect const strip{0, 6, 1, 2};
    {
        IxWriteGuard const guard(acc);
        ipAdd(guard, IxReadGuard(guard), IxReadGuard(more), &strip);
    }
    EXPECT_EQ(read(acc, 3, 1).a, 13.0f);
    EXPECT_EQ(read(acc, 3, 0).a, 3.0f) << "outside the strip";
}

TEST(IpGradientTest, RampGivesItsSlopesWhateverTheFilterWidth) {
    // I = 3x - 5y on the source region; the output is RGB FLOAT16 as the motion graph keeps it.
    Rect const src{0, 12, 0, 10};
    IxTile const ramp = makeTile(F(F::ALPHA, F::FLOAT32), src, [](int x, int y) {
        return Rgba{0, 0, 0, static_cast<float>(3 * x - 5 * y)};
    });
    struct Case {
        int width;
        float diagonal;
        Rgba inside;
    } const cases[] = {
        {3, 2, {3, -5, 0, 1}},
        {5, 4, {3, -5, 0, 1}},
        {3, 1, {6, -10, 0, 1}}, // the identity leaves the plain differences
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.width);
        IxTile const out(F(F::RGB, F::FLOAT16), src);
        GeAffineMatrix2<float> const matrix{{c.diagonal, 0, 0, c.diagonal}, {100, -7}};
        ipGradient(IxWriteGuard(out), nullptr, {IxReadGuard(ramp)}, src, matrix, c.width);
        int const h = c.width / 2;
        for (int y = h; y < src.y2 - h; ++y)
            for (int x = h; x < src.x2 - h; ++x)
                ASSERT_EQ(read(out, x, y), c.inside) << x << ',' << y;
        // At the left edge the source repeats its first column: half the difference.
        EXPECT_EQ(read(out, 0, 5).r, c.inside.r * (c.width == 3 ? 0.5f : 2.0f / 4.0f));
    }
    IxTile const out(F(F::RGB, F::FLOAT32), src);
    EXPECT_EQ(assertionText([&] { ipGradient(IxWriteGuard(out), nullptr, {IxReadGuard(ramp)}, src, {}, 4); }),
              "filterWidth >= 3 && filterWidth % 2 == 1");
}

TEST(IpPixelOpsTest, UnpremultiplyOverABackground) {
    CoRgbColorTyped<float> const grey{0.5f, 0.5f, 0.5f};
    struct Case {
        Rgba stored;
        Rgba expected;
    } const cases[] = {
        {{0.75f, 0.5f, 0.25f, 0.5f}, {1.0f, 0.5f, 0.0f, 0.5f}}, // (c - 0.25) / 0.5
        {{0.2f, 0.4f, 0.6f, 1.0f}, {0.2f, 0.4f, 0.6f, 1.0f}},   // opaque: unchanged
        {{0.5f, 0.5f, 0.5f, 0.0f}, {0, 0, 0, 0}},               // transparent
    };
    for (auto const& c : cases) {
        IxTile const tile =
            makeTile(F(F::RGBA, F::FLOAT32), {0, 3, 0, 1}, [&](int, int) { return c.stored; });
        Rect const region{1, 3, 0, 1};
        ipUnpremultiply(IxWriteGuard(tile), region, grey);
        EXPECT_EQ(read(tile, 2, 0), c.expected) << c.stored;
        EXPECT_EQ(read(tile, 0, 0), c.stored) << "outside the region";
    }
}

TEST(IpPixelOpsTest, MotionVectorsBecomePixels) {
    using Info = CoMotionVectorInfo;
    struct Case {
        Info info;
        F format;
        Rgba stored;
        Rgba expected;
    } const cases[] = {
        {{Info::HAS_VECTORS, Info::ABSOLUTE, 0}, {F::RGBA, F::FLOAT32}, {-3.5f, 2, 7, 0}, {-3.5f, 2, 0, 1}},
        {{Info::HAS_VECTORS, Info::NORMALIZED, 16}, {F::RGB, F::UINT8}, {0, 1, 0.2f, 1}, {-16, 16, 0, 1}},
        {{Info::HAS_VECTORS, Info::NORMALIZED, 8}, {F::RGB, F::FLOAT16}, {0.5f, 0.75f, 0, 1}, {0, 4, 0, 1}},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.info.dump());
        IxTile const src = makeTile(c.format, {0, 1, 0, 1}, [&](int, int) { return c.stored; });
        IxTile const dst(F(F::RGBA, F::FLOAT32), {0, 1, 0, 1});
        ipConvertMotionVectors(IxWriteGuard(dst), IxReadGuard(src), c.info);
        EXPECT_EQ(read(dst, 0, 0), c.expected);
    }
    IxTile const tile(F(F::RGBA, F::FLOAT32), {0, 1, 0, 1});
    for (Info const& invalid : {Info{}, Info{Info::HAS_VECTORS, Info::NORMALIZED, 0}})
        EXPECT_EQ(assertionText([&] {
                      IxWriteGuard const guard(tile);
                      ipConvertMotionVectors(guard, IxReadGuard(guard), invalid);
                  }),
                  "info.isValid()");
}

} // namespace
