// Triangles drawn into tiles: coverage by the top-left rule, clipping to the
// tile whatever the triangle's size, every pixel format.
#include "rs2DBuffer.h"

#include "ipSet.h"
#include "ixEx.h"
#include "ixPixelUtil.h"
#include "rsEx.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <vector>

using namespace Qv;

namespace {

using P = GePoint2<float>;
constexpr CoRgbaColorTyped<float> BACKGROUND{0.0f, 0.0f, 0.0f, 0.0f};
constexpr CoRgbaColorTyped<float> INK{1.0f, 0.5f, 0.25f, 1.0f};
IxPixelFormat const RGBA32(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32);

struct Triangle {
    P a, b, c;
};

// A tile of the background colour.
IxTile blankTile(GeRectangle<int> const& region, IxPixelFormat const& format = RGBA32) {
    IxTile tile(format, region);
    ipSet(IxWriteGuard(tile), BACKGROUND);
    return tile;
}

// Which pixels hold the ink, row by row.
std::vector<bool> inkedPixels(IxTile const& tile) {
    IxReadGuard const in(tile);
    GeRectangle<int> const& r = tile.getPixelRegion();
    std::vector<bool> inked;
    for (int y = r.y1; y < r.y2; ++y)
        for (int x = r.x1; x < r.x2; ++x)
            inked.push_back(IxPixelUtil::getPixelColor(in, x, y) == INK);
    return inked;
}

long long count(std::vector<bool> const& pixels) {
    return std::count(pixels.begin(), pixels.end(), true);
}

// The rule tested pixel by pixel, on exact coordinates (multiples of 1/4): a
// centre strictly inside every edge, or on a left or top edge.
bool coversCentre(Triangle const& t, double cx, double cy) {
    double const area = double(t.b.x - t.a.x) * (t.c.y - t.a.y) - double(t.b.y - t.a.y) * (t.c.x - t.a.x);
    if (area == 0)
        return false;
    P const v[] = {t.a, t.b, t.c};
    for (int i = 0; i < 3; ++i) {
        P p = v[i], q = v[(i + 1) % 3];
        if (area < 0)
            std::swap(p, q); // the interior on the positive side
        double const dx = q.x - p.x, dy = q.y - p.y;
        double const side = dx * (cy - p.y) - dy * (cx - p.x);
        bool const leftOrTop = dy < 0 || (dy == 0 && dx > 0);
        if (side < 0 || (side == 0 && !leftOrTop))
            return false;
    }
    return true;
}

std::vector<bool> expectedPixels(Triangle const& t, GeRectangle<int> const& r) {
    std::vector<bool> expected;
    for (int y = r.y1; y < r.y2; ++y)
        for (int x = r.x1; x < r.x2; ++x)
            expected.push_back(coversCentre(t, x + 0.5, y + 0.5));
    return expected;
}

TEST(Rs2DBufferTest, KnownTrianglesCoverTheirCountedPixelsClippedToTheTile) {
    GeRectangle<int> const tile16{0, 16, 0, 16};
    struct Case {
        char const* what;
        GeRectangle<int> region;
        Triangle triangle;
        long long pixels;
    } const cases[] = {
        // Top edge y = 0.5 and left edge x = 0.5 through centres (kept), hypotenuse through
        // the centres x + y = 4 (dropped): x + y <= 3.
        {"centres on every edge", tile16, {{0.5f, 0.5f}, {4.5f, 0.5f}, {0.5f, 4.5f}}, 10},
        {"the other winding", tile16, {{0.5f, 0.5f}, {0.5f, 4.5f}, {4.5f, 0.5f}}, 10},
        {"half a square, owning the diagonal", tile16, {{0, 0}, {4, 0}, {4, 4}}, 10},
        {"the other half", tile16, {{0, 0}, {4, 4}, {0, 4}}, 6},
        // Rows y = 1.5 (x < 2) only: the bottom edge y = 2.5 through centres is dropped.
        {"bottom edge through centres", tile16, {{0, 0.5f}, {4, 2.5f}, {0, 2.5f}}, 2},
        {"covering the whole tile", tile16, {{-1e6f, -1e6f}, {3e6f, -1e6f}, {-1e6f, 3e6f}}, 256},
        // Its long edge is the line x + y = 16 across the tile: centres with x + y <= 14.
        {"huge, one edge across the tile", tile16, {{-1e6f, 1000016}, {1000016, -1e6f}, {-1e6f, -1e6f}}, 120},
        {"a tile away from the origin", {100, 108, -8, 0}, {{90, -20}, {130, -20}, {90, 20}}, 64},
        {"missing the tile", tile16, {{20, 20}, {40, 20}, {20, 40}}, 0},
        {"above the tile", tile16, {{-1e6f, -10}, {1e6f, -10}, {0, -1e6f}}, 0},
        {"thinner than a pixel between centres", tile16, {{0, 1.6f}, {16, 1.6f}, {16, 1.9f}}, 0},
        {"collinear", tile16, {{0, 0}, {8, 8}, {16, 16}}, 0},
        {"all three the same", tile16, {{3, 3}, {3, 3}, {3, 3}}, 0},
        {"flat and huge", tile16, {{-1e6f, 4.5f}, {1e6f, 4.5f}, {0, 4.5f}}, 0},
    };
    for (auto const& c : cases) {
        IxTile const tile = blankTile(c.region);
        std::int64_t const drawn =
            Rs2DBuffer(tile).rasterizeUnclippedTriangle(c.triangle.a, c.triangle.b, c.triangle.c, INK);
        std::vector<bool> const inked = inkedPixels(tile);
        EXPECT_EQ(count(inked), c.pixels) << c.what;
        EXPECT_EQ(drawn, c.pixels) << c.what;
        if (c.region == tile16) { // exact coordinates: pixel for pixel
            EXPECT_EQ(inked, expectedPixels(c.triangle, c.region)) << c.what;
        }
    }
}

TEST(Rs2DBufferTest, ArbitraryTrianglesMatchTheRulePixelForPixelAndNeighboursNeverShareAPixel) {
    std::mt19937 random(20240611);
    std::uniform_int_distribution<int> quarter(-40, 120); // -10 to 30 by 1/4, around a 16 x 16 tile
    auto point = [&] { return P{quarter(random) / 4.0f, quarter(random) / 4.0f}; };
    GeRectangle<int> const region{-2, 14, 3, 19};
    for (int i = 0; i < 300; ++i) {
        Triangle const t{point(), point(), point()};
        IxTile const tile = blankTile(region);
        Rs2DBuffer(tile).rasterizeUnclippedTriangle(t.a, t.b, t.c, INK);
        ASSERT_EQ(inkedPixels(tile), expectedPixels(t, region))
            << "triangle " << t.a << " " << t.b << " " << t.c;

        // Two triangles on either side of a shared edge never draw the same pixel.
        P const d = point();
        IxTile const first = blankTile(region), second = blankTile(region);
        Rs2DBuffer(first).rasterizeUnclippedTriangle(t.a, t.b, t.c, INK);
        Rs2DBuffer(second).rasterizeUnclippedTriangle(t.c, t.b, d, INK); // the edge b-c, walked the other way
        std::vector<bool> const one = inkedPixels(first), two = inkedPixels(second);
        double const sideA =
            double(t.c.x - t.b.x) * (t.a.y - t.b.y) - double(t.c.y - t.b.y) * (t.a.x - t.b.x);
        double const sideD = double(t.c.x - t.b.x) * (d.y - t.b.y) - double(t.c.y - t.b.y) * (d.x - t.b.x);
        if (sideA * sideD < 0) { // a and d on opposite sides: the triangles do not overlap
            for (std::size_t p = 0; p < one.size(); ++p)
                ASSERT_FALSE(one[p] && two[p]) << "pixel " << p << " drawn twice along " << t.b << " " << t.c;
        }
    }
}

TEST(Rs2DBufferTest, HugeTrianglesWhoseEdgesCrossTheTileThroughCentresMatchTheRule) {
    // Each edge runs through two points of the tile, often pixel centres, and
    // on for a million pixels each way: where an edge crosses a row is then
    // rounded, and only the exact test of the centres decides. Coordinates
    // stay on a grid of 1/2 below 2^22, exact in floats and in the rule's sums.
    std::mt19937 random(7);
    std::uniform_int_distribution<int> half(0, 32); // 0 to 16 by 1/2
    std::uniform_int_distribution<int> reach(50000, 100000);
    auto inTile = [&] { return P{half(random) / 2.0f, half(random) / 2.0f}; };
    GeRectangle<int> const region{0, 16, 0, 16};
    int withEdgeCentres = 0;
    for (int i = 0; i < 300; ++i) {
        P const p = inTile(), q = inTile();
        if (p == q)
            continue;
        float const k = float(reach(random) / 8);
        P const a{p.x + k * (q.x - p.x), p.y + k * (q.y - p.y)},
            b{p.x - k * (q.x - p.x), p.y - k * (q.y - p.y)};
        P const far{float(half(random) * 40000 - 640000), float(half(random) * 40000 - 640000)};
        for (Triangle const& t : {Triangle{a, b, far}, Triangle{b, a, far}}) {
            IxTile const tile = blankTile(region);
            Rs2DBuffer(tile).rasterizeUnclippedTriangle(t.a, t.b, t.c, INK);
            ASSERT_EQ(inkedPixels(tile), expectedPixels(t, region))
                << "triangle " << t.a << " " << t.b << " " << t.c;
        }
        withEdgeCentres += (p.x - int(p.x) == 0.5f && p.y - int(p.y) == 0.5f);
    }
    EXPECT_GT(withEdgeCentres, 30) << "too few edges through centres to test the rule on them";
}

TEST(Rs2DBufferTest, EveryPixelFormatGetsTheColourAndNothingOutsideTheRowsIsWritten) {
    IxPixelFormat::Comps const comps[] = {IxPixelFormat::ALPHA, IxPixelFormat::RGB, IxPixelFormat::RGBA};
    IxPixelFormat::Depth const depths[] = {IxPixelFormat::UINT8, IxPixelFormat::FLOAT16,
                                           IxPixelFormat::FLOAT32};
    // Five pixels wide: every format leaves padding after the row, where a span
    // running past the tile would land unseen.
    GeRectangle<int> const region{3, 8, -2, 4};
    Triangle const t{{-50, -50}, {9.5f, 1.5f}, {-50, 40}};
    CoRgbaColorTyped<float> const colour{0.25f, 0.75f, 0.5f, 0.625f};
    for (auto comp : comps)
        for (auto depth : depths) {
            IxPixelFormat const format(comp, depth);
            IxTile const tile = blankTile(region, format), expected = blankTile(region, format);
            std::size_t const used = format.getBytesPerPixel() * region.getWidth();
            {
                IxWriteGuard const out(tile);
                ASSERT_LT(used, out.getRowBytes());
                for (int y = region.y1; y < region.y2; ++y)
                    std::memset(out.getLine(y) + used, 0xAB, out.getRowBytes() - used);
                Rs2DBuffer(out).rasterizeUnclippedTriangle(t.a, t.b, t.c, colour);
                IxWriteGuard const reference(expected);
                for (int y = region.y1; y < region.y2; ++y)
                    for (int x = region.x1; x < region.x2; ++x)
                        if (coversCentre(t, x + 0.5, y + 0.5))
                            IxPixelUtil::setPixelColor(reference, x, y, colour);
            }
            IxReadGuard const got(tile), want(expected);
            int inked = 0;
            for (int y = region.y1; y < region.y2; ++y) {
                EXPECT_EQ(std::memcmp(got.getLine(y), want.getLine(y), used), 0) << format << " row " << y;
                for (std::size_t i = used; i < got.getRowBytes(); ++i)
                    ASSERT_EQ(std::to_integer<int>(got.getLine(y)[i]), 0xAB)
                        << format << " row " << y << ": written past the tile";
                for (int x = region.x1; x < region.x2; ++x)
                    inked += coversCentre(t, x + 0.5, y + 0.5);
            }
            EXPECT_GT(inked, 0);
            EXPECT_LT(inked, region.getWidth() * region.getHeight());
        }
}

TEST(Rs2DBufferTest, WhatCannotBeDrawnIsRefusedBeforeAnyPixelIsWritten) {
    float const nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    GeRectangle<int> const region{0, 8, 0, 8};
    Triangle const bad[] = {
        {{0, 0}, {nan, 0}, {0, 8}}, {{0, 0}, {8, 0}, {0, inf}}, {{-inf, -inf}, {8, 0}, {0, 8}}};
    for (Triangle const& t : bad) {
        IxTile const tile = blankTile(region);
        try {
            Rs2DBuffer(tile).rasterizeUnclippedTriangle(t.a, t.b, t.c, INK);
            ADD_FAILURE() << "drawn: " << t.a << " " << t.b << " " << t.c;
        } catch (RsEx::ExBadGeometry const& error) {
            EXPECT_NE(std::string(error.what()).find("not finite"), std::string::npos) << error.what();
        }
        EXPECT_EQ(count(inkedPixels(tile)), 0);
    }
    IxTile const complex(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::COMPLEX), region);
    EXPECT_THROW(Rs2DBuffer(complex).rasterizeUnclippedTriangle({0, 0}, {8, 0}, {0, 8}, INK),
                 IxEx::ExUnsupportedFormat);
}

} // namespace
