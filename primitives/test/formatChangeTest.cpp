#include "ipArithmetic.h"
#include "ipAspectChange.h"
#include "ipCopy.h"
#include "ipFormatChange.h"
#include "ipGradient.h"
#include "ipPixelOps.h"
#include "ipSet.h"
#include "ixEx.h"
#include "ixTestUtil.h"

#include <Imath/half.h>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

using namespace Qv;
using namespace Qv::IxTest;

namespace {

// Values on the 8-bit grid, different in every component and pixel.
Rgba gridColour(int x, int y) {
    auto step = [](int k) { return static_cast<float>((k % 256 + 256) % 256) / 255.0f; };
    return {step(3 * x + y), step(x + 7 * y), step(11 * x + 5 * y + 40), step(x * y + 200)};
}

Rgba read(IxTile const& tile, int x, int y) {
    return IxPixelUtil::getPixelColor(IxReadGuard(tile), x, y);
}

IxTile convert(IxTile const& src, F const& format) {
    IxTile dst(format, src.getPixelRegion());
    ipFormatChange(IxWriteGuard(dst), IxReadGuard(src));
    return dst;
}

// Every round trip is exact but 32-bit floats through 16-bit ones, which
// keep 11 significant bits: the 8-bit grid needs only 8.
TEST(IpFormatChangeTest, RoundTripsKeepEveryPixel) {
    // 37 columns: more than the eight values a vector step converts, with a tail.
    Rect const region{-3, 34, 5, 9};
    F::Depth const depths[] = {F::UINT8, F::FLOAT16, F::FLOAT32};
    for (F::Comps comps : {F::ALPHA, F::RGB, F::RGBA})
        for (F::Depth from : depths)
            for (F::Depth through : depths) {
                SCOPED_TRACE(testing::Message()
                             << toString(comps) << ' ' << toString(from) << " via " << toString(through));
                IxTile const original = makeTile(F(comps, from), region, gridColour);
                IxTile const back = convert(convert(original, F(comps, through)), F(comps, from));
                float const tolerance = from == F::FLOAT32 && through == F::FLOAT16 ? 1.0f / 2048 : 0.0f;
                for (int y = region.y1; y < region.y2; ++y)
                    for (int x = region.x1; x < region.x2; ++x) {
                        Rgba const a = read(back, x, y);
                        Rgba const b = read(original, x, y);
                        ASSERT_LE(std::max({std::fabs(a.r - b.r), std::fabs(a.g - b.g), std::fabs(a.b - b.b),
                                            std::fabs(a.a - b.a)}),
                                  tolerance)
                            << x << ',' << y << ' ' << a << ' ' << b;
                    }
            }
}

TEST(IpFormatChangeTest, NarrowingRoundsClampsAndMapsComponents) {
    struct Case {
        char const* what;
        F from, to;
        Rgba value, expected;
    } const cases[] = {
        {"float to half rounds to nearest",
         {F::RGBA, F::FLOAT32},
         {F::RGBA, F::FLOAT16},
         {0.1f, 1e-8f, 70000.0f, -2.5f},
         {float(Imath::half(0.1f)), float(Imath::half(1e-8f)), float(Imath::half(70000.0f)), -2.5f}},
        {"float to 8 bits clamps",
         {F::RGBA, F::FLOAT32},
         {F::RGBA, F::UINT8},
         {-0.5f, 1.5f, 0.5f, 0.2f},
         {0, 1, 128 / 255.0f, 51 / 255.0f}},
        {"RGB gains an opaque alpha",
         {F::RGB, F::FLOAT16},
         {F::RGBA, F::FLOAT32},
         {0.5f, 0.25f, 2, 0.1f},
         {0.5f, 0.25f, 2, 1}},
        {"RGBA to ALPHA keeps alpha",
         {F::RGBA, F::UINT8},
         {F::ALPHA, F::FLOAT32},
         {1, 1, 1, 0.2f},
         {0, 0, 0, 51 / 255.0f}},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.what);
        IxTile const src = makeTile(c.from, {0, 9, 0, 1}, [&](int, int) { return c.value; });
        IxTile const dst = convert(src, c.to);
        for (int x = 0; x < 9; ++x)
            EXPECT_EQ(read(dst, x, 0), c.expected) << x;
    }
}

TEST(IpFormatChangeTest, CopiesMoveRegionsAndPadWithTheSourceFill) {
    IxTile const src = makeTile(F(F::RGBA, F::FLOAT32), {0, 4, 0, 4}, gridColour, {9, 9, 9, 9});
    IxTile const dst(F(F::RGBA, F::UINT8), {-2, 6, -2, 6});
    ipSet(IxWriteGuard(dst), {0, 0, 0, 0});
    Rect const from{1, 3, 1, 3};
    Rect const to{-2, 10, 4, 10}; // only 2 x 2 pixels come, to (-2, 4)
    ipCopy(IxWriteGuard(dst), IxReadGuard(src), &to, &from);
    EXPECT_EQ(read(dst, -2, 4), gridColour(1, 1));
    EXPECT_EQ(read(dst, -1, 5), gridColour(2, 2));
    EXPECT_EQ(read(dst, 0, 4), Rgba{}) << "outside the source region";
    EXPECT_EQ(read(dst, -2, 3), Rgba{});

    // A format change over a larger destination pads with the source's fill colour.
    ipFormatChange(IxWriteGuard(dst), IxReadGuard(src));
    EXPECT_EQ(read(dst, -1, 0), (Rgba{1, 1, 1, 1})); // 9 clamped to 8 bits
    EXPECT_EQ(read(dst, 3, 3), gridColour(3, 3));
    Rect const corner{4, 6, 4, 6};
    ipSet(IxWriteGuard(dst), {0, 0.2f, 0, 1}, &corner);
    EXPECT_EQ(read(dst, 5, 5), (Rgba{0, 51 / 255.0f, 0, 1}));
    EXPECT_EQ(read(dst, 3, 5), (Rgba{1, 1, 1, 1}));
}

TEST(IpPrimitivesTest, ComplexPixelsAreRefusedBeforeAnythingIsWritten) {
    F const complex(F::RGBA, F::COMPLEX);
    F const plain(F::RGBA, F::FLOAT32);
    Rect const r{0, 2, 0, 2};
    IxTile const complexTile(complex, r);
    IxTile const plainTile = makeTile(plain, r, gridColour);
    IxTile const out = makeTile(plain, r, [](int, int) { return Rgba{0.5f, 0.5f, 0.5f, 0.5f}; });
    struct Case {
        char const* operation;
        std::function<void()> run;
    } const cases[] = {
        {"ipSet", [&] { ipSet(IxWriteGuard(complexTile), Rgba{}); }},
        {"ipFormatChange", [&] { ipFormatChange(IxWriteGuard(out), IxReadGuard(complexTile)); }},
        {"ipCopy", [&] { ipCopy(IxWriteGuard(out), IxReadGuard(complexTile)); }},
        {"ipAdd", [&] { ipAdd(IxWriteGuard(out), IxReadGuard(plainTile), IxReadGuard(complexTile)); }},
        {"ipSubtract",
         [&] { ipSubtract(IxWriteGuard(out), IxReadGuard(complexTile), IxReadGuard(plainTile)); }},
        {"ipUnpremultiply", [&] { ipUnpremultiply(IxWriteGuard(out), IxReadGuard(complexTile), {}); }},
        {"ipAspectChange",
         [&] {
             ipAspectChange(IxWriteGuard(out), {IxReadGuard(complexTile)},
                            IpFilters::Lanczos3.scale(0.5f, 1));
         }},
        {"ipGradient",
         [&] {
             ipGradient(IxWriteGuard(out), nullptr, {IxReadGuard(complexTile)}, r, {{2, 0, 0, 2}, {}}, 3);
         }},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.operation);
        try {
            c.run();
            ADD_FAILURE() << "no exception";
        } catch (IxEx::ExUnsupportedFormat const& error) {
            EXPECT_NE(std::string(error.what()).find(c.operation), std::string::npos) << error.what();
            EXPECT_NE(std::string(error.what()).find("RGBA COMPLEX"), std::string::npos) << error.what();
        }
        EXPECT_EQ(read(out, 1, 1), (Rgba{0.5f, 0.5f, 0.5f, 0.5f})) << "written half-way";
    }
}

} // namespace
