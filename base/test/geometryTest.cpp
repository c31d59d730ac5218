#include "geAffineMatrix2.h"
#include "geEx.h"
#include "geInterval.h"
#include "geRectangle.h"
#include "geRectangleUtil.h"
#include "geVector.h"
#include "geVector2Utils.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <tuple>

using namespace Qv;

namespace {

using RectI = GeRectangle<int>;

TEST(GeRectangleTest, IntegerEdgesAreExclusive) {
    RectI const r{.x1 = 0, .x2 = 4, .y1 = -2, .y2 = 1};
    EXPECT_EQ(r.getHeight(), 3);
    for (auto [x, y, inside] :
         {std::tuple{0, -2, true}, {3, 0, true}, {4, 0, false}, {0, 1, false}, {-1, 0, false}})
        EXPECT_EQ(r.contains(x, y), inside) << x << ',' << y;
    for (RectI const empty : {RectI{0, 0, 0, 5}, RectI{0, 5, 3, 3}, RectI{5, 0, 0, 5}})
        EXPECT_TRUE(empty.isEmpty()) << empty;
    EXPECT_TRUE(r.contains(RectI{0, 4, -2, 1}));
    EXPECT_FALSE(r.contains(RectI{-1, 3, 0, 1}));
    EXPECT_FALSE((GeRectangle<float>{0.5f, 2.5f, 0.0f, 1.0f}).contains(2.5f, 0.5f));
}

TEST(GeRectangleTest, IntersectionAndBoundingEdgeCases) {
    struct Case {
        char const* what;
        RectI a, b, intersection, bounding;
    } const cases[] = {
        {"overlap", {0, 10, 0, 10}, {5, 15, -5, 5}, {5, 10, 0, 5}, {0, 15, -5, 10}},
        {"inside", {0, 10, 0, 10}, {2, 3, 4, 5}, {2, 3, 4, 5}, {0, 10, 0, 10}},
        {"negative", {-10, -2, -8, -1}, {-5, 5, -5, 5}, {-5, -2, -5, -1}, {-10, 5, -8, 5}},
        // Touching rectangles share no pixel: the result collapses at a's minimum corner.
        {"touching in x", {0, 10, 0, 10}, {10, 20, 0, 10}, {0, 0, 0, 0}, {0, 20, 0, 10}},
        {"touching in y", {3, 10, 4, 10}, {0, 10, 10, 20}, {3, 3, 4, 4}, {0, 10, 4, 20}},
        {"corner only", {0, 10, 0, 10}, {10, 20, 10, 20}, {0, 0, 0, 0}, {0, 20, 0, 20}},
        {"apart", {-4, -1, 7, 9}, {100, 200, 100, 200}, {-4, -4, 7, 7}, {-4, 200, 7, 200}},
        // Bounding ignores empty rectangles, wherever they are.
        {"b empty", {0, 10, 0, 10}, {50, 50, 0, 60}, {0, 0, 0, 0}, {0, 10, 0, 10}},
        {"a empty", {5, 5, 2, 8}, {0, 10, 0, 10}, {5, 5, 2, 2}, {0, 10, 0, 10}},
        {"both empty", {7, 7, 1, 1}, {1, 1, 2, 2}, {7, 7, 1, 1}, {7, 7, 1, 1}},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(c.a.getIntersection(c.b), c.intersection);
        EXPECT_EQ(c.a.getBounding(c.b), c.bounding);
    }
    EXPECT_EQ((GeRectangle<float>{0.5f, 2.5f, 0.0f, 1.0f}).getIntersection({2.5f, 4.0f, 0.0f, 1.0f}),
              (GeRectangle<float>{0.5f, 0.5f, 0.0f, 0.0f}));
    using I = GeInterval<int>;
    EXPECT_EQ((I{-5, -1}).getIntersection(I{3, 4}), (I{-5, -5}));
    EXPECT_EQ((I{2, 2}).getBounding(I{0, 10}), (I{0, 10}));
}

TEST(GeVectorTest, CrossProductsAreRightHandedAndIntegerDivisionByZeroThrows) {
    using V3 = GeVector3<double>;
    V3 const u{1, 2, 3};
    V3 const v{-4, 0.5, 2};
    EXPECT_DOUBLE_EQ(u.dot(v), -4 + 1 + 6);
    EXPECT_EQ((V3{1, 0, 0}).cross(V3{0, 1, 0}), (V3{0, 0, 1}));
    EXPECT_EQ(u.cross(v), (V3{2.5, -14, 8.5}));
    EXPECT_DOUBLE_EQ((V3{2, 3, 6}).getLength(), 7.0);
    EXPECT_DOUBLE_EQ((GeVector2<double>{3, 0}).cross({0, -2}), -6.0); // clockwise is negative

    EXPECT_THROW((GeVector2<int>{4, 2} / 0), GeEx::ExDivisionByZero);
    EXPECT_THROW((GeVector3<int>{4, 2, 1} / 0), GeEx::ExDivisionByZero);
    EXPECT_EQ((GeVector2<int>{7, -7} / 2), (GeVector2<int>{3, -3}));
    EXPECT_TRUE(std::isinf((GeVector2<double>{1, 0} / 0.0).x)); // floating point keeps its infinities
}

TEST(GeRectangleUtilTest, AddBorderGrowsEverySide) {
    EXPECT_EQ(GeRectangleUtil::addBorder(RectI{0, 4, -2, 1}, 1), (RectI{-1, 5, -3, 2}));
    EXPECT_EQ(GeRectangleUtil::addBorder(RectI{0, 4, -2, 1}, -1), (RectI{1, 3, -1, 0}));
    // An empty rectangle grows around its corner: a filter still needs the pixels there.
    EXPECT_EQ(GeRectangleUtil::addBorder(RectI{3, 3, 3, 3}, 2), (RectI{1, 5, 1, 5}));
}

TEST(GeVector2UtilsTest, AngleIsSignedCounterClockwise) {
    using V = GeVector2<double>;
    double const pi = std::numbers::pi;
    struct Case {
        V a, b;
        double angle;
    } const cases[] = {
        {{1, 0}, {0, 1}, pi / 2}, {{0, 1}, {1, 0}, -pi / 2},  {{1, 0}, {-1, 0}, pi},
        {{2, 2}, {5, 5}, 0},      {{1, 0}, {1, -1}, -pi / 4}, {{0, 0}, {1, 0}, 0},
    };
    for (auto const& c : cases)
        EXPECT_NEAR(GeVector2Utils<double>::getAngle(c.a, c.b), c.angle, 1e-12) << c.a << ' ' << c.b;
}

TEST(GeMatrixTest, AffineComposesInverseAndLeavesVectorsUntranslated) {
    using M = GeAffineMatrix2<double>;
    M const scaleThenMove{{2, 0, 0, 3}, {10, -1}};
    M const rotate{{0, -1, 1, 0}, {0, 0}};
    GePoint2<double> const p{1, 2};
    EXPECT_EQ(scaleThenMove * p, (GePoint2<double>{12, 5}));
    EXPECT_EQ(scaleThenMove * (GeVector2<double>{1, 2}), (GeVector2<double>{2, 6}));
    EXPECT_EQ((rotate * scaleThenMove) * p, rotate * (scaleThenMove * p));
    GePoint2<double> const back = scaleThenMove.getInverse() * (scaleThenMove * p);
    EXPECT_NEAR(back.x, p.x, 1e-12);
    EXPECT_NEAR(back.y, p.y, 1e-12);

    M identity = scaleThenMove;
    identity.setIdentity();
    EXPECT_EQ(identity * p, p);
    EXPECT_THROW((GeLinearMatrix2<double>{1, 2, 2, 4}).getInverse(), GeEx::ExDivisionByZero);
}

} // namespace
