// The Lucas-Kanade kernel on small tiles: the two solves, the clamp, the
// band its windows cannot cover, regions too small for a window, and tiles
// cut in different places.
#include "btFlowLKProc.h"
#include "motioTestSupport.h"

#include <gtest/gtest.h>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

struct Gradient {
    float gx, gy;
};
using GradientFn = std::function<Gradient(int x, int y)>;
using DerivativeFn = std::function<float(int x, int y)>;

// The derivative of a motion (u, v) under the constraint gx u + gy v + t = 0.
DerivativeFn movedBy(GradientFn const& g, float u, float v) {
    return [g, u, v](int x, int y) {
        Gradient const d = g(x, y);
        return -(d.gx * u + d.gy * v);
    };
}

// The kernel's inputs over srcRgn and its output over dstRgn (RGBA FLOAT32,
// so that alpha shows).
IxTile runKernel(GradientFn const& gradient, DerivativeFn const& derivative, GeRectangle<int> const& srcRgn,
                 GeRectangle<int> const& dstRgn) {
    IxTile const g =
        makeTile(IxPixelFormat(IxPixelFormat::RGB, IxPixelFormat::FLOAT32), srcRgn, [&](int x, int y) {
            Gradient const d = gradient(x, y);
            return Rgba{d.gx, d.gy, 0.0f, 1.0f};
        });
    IxTile const t = makeTile(ALPHA32, srcRgn, [&](int x, int y) {
        float const dt = derivative(x, y);
        return Rgba{dt, dt, dt, dt};
    });
    IxTile out(RGBA32, dstRgn);
    BtFlowLKProc::process(out, {IxReadGuard(g)}, {IxReadGuard(t)}, srcRgn);
    return out;
}

bool isBand(Rgba const& c) {
    return c == Rgba{0.0f, 0.0f, 0.0f, 1.0f};
}

// A gradient that changes in both directions, so that every window is well posed.
Gradient varied(int x, int y) {
    return {1.0f + float((x + 2 * y) % 3), 0.5f - float((2 * x + y) % 4) * 0.25f};
}

GeRectangle<int> const SEVEN{0, 7, 0, 7};
GeRectangle<int> const COMPUTED{2, 5, 2, 5};

} // namespace

// Every computed pixel holds (u, v, 0, 0), every other one (0, 0, 0, 1).
TEST(FlowLKProc, SolvesEachWindowAndMarksTheBand) {
    struct Case {
        char const* what;
        GradientFn gradient;
        DerivativeFn derivative;
        Rgba expected; // at every computed pixel
    };
    GradientFn const along = [](int, int) { return Gradient{1.0f, 0.0f}; };
    GradientFn const across = [](int, int) { return Gradient{0.0f, 2.0f}; };
    GradientFn const flat = [](int, int) { return Gradient{0.0f, 0.0f}; };
    Case const cases[] = {
        // det = A C - B^2 is large: the motion that made the derivative comes back.
        {"full solve", varied, movedBy(varied, 0.3f, -0.4f), {0.3f, -0.4f, 0.0f, 0.0f}},
        {"full solve, other sign", varied, movedBy(varied, -0.75f, 0.125f), {-0.75f, 0.125f, 0.0f, 0.0f}},
        // A vertical edge (gx only): det = 0; normal flow u = -t / gx.
        {"normal flow across a vertical edge",
         along,
         [](int, int) { return -0.2f; },
         {0.2f, 0.0f, 0.0f, 0.0f}},
        // A horizontal edge (gy only): A = B = 0, C = 100, E = -25: v = -0.25.
        {"normal flow across a horizontal edge",
         across,
         [](int, int) { return 0.5f; },
         {0.0f, -0.25f, 0.0f, 0.0f}},
        {"clamped full solve", varied, movedBy(varied, 3.0f, -5.0f), {1.0f, -1.0f, 0.0f, 0.0f}},
        {"clamped normal flow", along, [](int, int) { return 1e6f; }, {-1.0f, 0.0f, 0.0f, 0.0f}},
        {"flat image", flat, [](int, int) { return 0.7f; }, {0.0f, 0.0f, 0.0f, 0.0f}},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.what);
        IxTile const out = runKernel(c.gradient, c.derivative, SEVEN, SEVEN);
        for (int y = SEVEN.y1; y < SEVEN.y2; ++y)
            for (int x = SEVEN.x1; x < SEVEN.x2; ++x) {
                SCOPED_TRACE(testing::Message() << "pixel " << x << ", " << y);
                Rgba const p = pixelAt(out, x, y);
                if (!COMPUTED.contains(x, y)) {
                    EXPECT_TRUE(isBand(p));
                    continue;
                }
                EXPECT_NEAR(p.r, c.expected.r, 1e-5f);
                EXPECT_NEAR(p.g, c.expected.g, 1e-5f);
                EXPECT_EQ(p.b, 0.0f);
                EXPECT_EQ(p.a, 0.0f);
            }
    }
}

// A derivative that grows along both axes: with gx = 1 and gy = 0 the
// normal flow is the window's mean of -t, which for a linear -t is its value
// at the window's centre. A window off by a column, or one that keeps
// columns it should have dropped, shows at once.
TEST(FlowLKProc, EachPixelSolvesTheWindowCentredOnIt) {
    GeRectangle<int> const region{-3, 12, 0, 9};
    IxTile const out = runKernel(
        [](int, int) {
            return Gradient{1.0f, 0.0f};
        },
        [](int x, int y) { return -(0.05f * float(x) + 0.02f * float(y)); }, region, region);
    for (int y = region.y1 + 2; y < region.y2 - 2; ++y)
        for (int x = region.x1 + 2; x < region.x2 - 2; ++x) {
            SCOPED_TRACE(testing::Message() << "pixel " << x << ", " << y);
            EXPECT_NEAR(pixelAt(out, x, y).r, 0.05f * float(x) + 0.02f * float(y), 1e-5f);
            EXPECT_EQ(pixelAt(out, x, y).g, 0.0f);
        }
}

TEST(FlowLKProc, ClampsToExactlyOnePixel) {
    IxTile const out = runKernel(varied, movedBy(varied, 40.0f, -1000.0f), SEVEN, SEVEN);
    for (int y = COMPUTED.y1; y < COMPUTED.y2; ++y)
        for (int x = COMPUTED.x1; x < COMPUTED.x2; ++x) {
            EXPECT_EQ(pixelAt(out, x, y).r, 1.0f);
            EXPECT_EQ(pixelAt(out, x, y).g, -1.0f);
        }
}

// A window with a faint second direction still takes the full solve; one
// without it falls back to the normal flow.
TEST(FlowLKProc, TheNormalFlowTakesOverWhereTheWindowIsDegenerate) {
    // Row 3 alone has gy; a window centred on row 3 holds it, one centred on row 5 not.
    GradientFn const gradient = [](int, int y) { return Gradient{1.0f, y == 3 ? 1e-3f : 0.0f}; };
    // A = 25, B = 5e-3, C = 5e-6: det = 1.25e-4 - 2.5e-5 = 1e-4, above the threshold.
    DerivativeFn const derivative = [](int, int) { return -0.1f; };
    GeRectangle<int> const region{0, 7, 0, 9};
    IxTile const out = runKernel(gradient, derivative, region, region);
    // Full solve: gx u + gy v = 0.1 holds on every row only with u = 0.1, v = 0.
    EXPECT_NEAR(pixelAt(out, 3, 3).r, 0.1f, 1e-3f);
    EXPECT_NEAR(pixelAt(out, 3, 3).g, 0.0f, 2e-2f);
    // Row 6's window (rows 4 to 8) has no gy: det = 0, normal flow u = D / A = 0.1.
    EXPECT_NEAR(pixelAt(out, 3, 6).r, 0.1f, 1e-6f);
    EXPECT_EQ(pixelAt(out, 3, 6).g, 0.0f);
}

TEST(FlowLKProc, ARegionTooSmallForAWindowIsZeroThroughout) {
    GeRectangle<int> const cases[] = {{0, 4, 0, 7}, {0, 7, 0, 4}, {3, 4, 3, 4}, {-2, 2, 10, 30}};
    for (GeRectangle<int> const& region : cases) {
        SCOPED_TRACE(region.dump());
        IxTile const out = runKernel(varied, movedBy(varied, 0.5f, 0.5f), region, region);
        for (int y = region.y1; y < region.y2; ++y)
            for (int x = region.x1; x < region.x2; ++x)
                EXPECT_EQ(pixelAt(out, x, y), (Rgba{0.0f, 0.0f, 0.0f, 0.0f}));
    }
}

TEST(FlowLKProc, RefusesAnOutputOutsideItsSourceOrShortOfTheComputedPixels) {
    struct Case {
        GeRectangle<int> srcRgn, dstRgn;
        char const* text;
    };
    Case const cases[] = {
        {{0, 7, 0, 7}, {0, 8, 0, 7}, "srcRgn.contains( dstRgn )"},
        {{0, 7, 0, 7}, {-1, 3, 0, 7}, "srcRgn.contains( dstRgn )"},
        {{0, 7, 0, 7}, {2, 4, 2, 5}, "dstRgn.contains( compRgn )"},
        {{0, 9, 0, 9}, {0, 9, 3, 9}, "dstRgn.contains( compRgn )"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(
            failedAssertion([&] { runKernel(varied, movedBy(varied, 0.1f, 0.1f), c.srcRgn, c.dstRgn); }),
            c.text);
    }
}

// NaN and infinite inputs leave every pixel finite and within one pixel, or
// NaN at worst where the window holds one: never outside the tile.
TEST(FlowLKProc, BadNumbersStayInsideTheTile) {
    struct Case {
        char const* what;
        GradientFn gradient;
        DerivativeFn derivative;
    };
    Case const cases[] = {
        {"nan gradient",
         [=](int x, int y) {
             return x == 3 && y == 3 ? Gradient{NaN, NaN} : varied(x, y);
         },
         movedBy(varied, 0.2f, 0.2f)},
        {"infinite derivative", varied, [](int x, int) { return x == 4 ? INF : 0.1f; }},
        {"nan derivative", varied, [](int, int) { return NaN; }},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.what);
        IxTile const out = runKernel(c.gradient, c.derivative, SEVEN, SEVEN);
        for (int y = COMPUTED.y1; y < COMPUTED.y2; ++y)
            for (int x = COMPUTED.x1; x < COMPUTED.x2; ++x) {
                Rgba const p = pixelAt(out, x, y);
                EXPECT_TRUE(std::isnan(p.r) || (p.r >= -1.0f && p.r <= 1.0f));
                EXPECT_TRUE(std::isnan(p.g) || (p.g >= -1.0f && p.g <= 1.0f));
            }
        EXPECT_TRUE(isBand(pixelAt(out, 0, 0)));
    }
}

// The image cut into tiles of any size, each tile reading two pixels beyond
// itself, gives the image computed in one piece: the running sums restart
// at each tile's source edge, so values agree to float rounding.
TEST(FlowLKProc, TilesOfAnySizeMakeTheSameImage) {
    GeRectangle<int> const image{-5, 35, 3, 30};
    GradientFn const gradient = [](int x, int y) {
        return Gradient{std::sin(0.3f * float(x)) + 0.1f * float(y % 5), std::cos(0.2f * float(y + x))};
    };
    DerivativeFn const derivative = movedBy(gradient, 0.25f, -0.5f);
    IxTile const whole = runKernel(gradient, derivative, image, image);
    for (int size : {6, 7, 16}) {
        SCOPED_TRACE(size);
        for (int ty = image.y1; ty < image.y2; ty += size)
            for (int tx = image.x1; tx < image.x2; tx += size) {
                GeRectangle<int> const tile{tx, tx + size, ty, ty + size};
                GeRectangle<int> const dstRgn = tile.getIntersection(image);
                GeRectangle<int> const srcRgn =
                    GeRectangle<int>{tx - 2, tx + size + 2, ty - 2, ty + size + 2}.getIntersection(image);
                IxTile const part = runKernel(gradient, derivative, srcRgn, dstRgn);
                for (int y = dstRgn.y1; y < dstRgn.y2; ++y)
                    for (int x = dstRgn.x1; x < dstRgn.x2; ++x) {
                        Rgba const a = pixelAt(whole, x, y);
                        Rgba const b = pixelAt(part, x, y);
                        ASSERT_NEAR(a.r, b.r, 1e-4f) << x << ", " << y;
                        ASSERT_NEAR(a.g, b.g, 1e-4f) << x << ", " << y;
                        ASSERT_EQ(a.a, b.a) << x << ", " << y;
                    }
            }
    }
}
