#include "coColor.h"
#include "geEx.h"
#include "geInterval.h"
#include "gePoint2.h"
#include "geRectangle.h"
#include "geVector.h"

#include <gtest/gtest.h>

using namespace Qv;

namespace {

using RectI = GeRectangle<int>;

TEST(GeRectangleTest, IntegerEdgesAreExclusive) {
    RectI const r{.x1 = 0, .x2 = 4, .y1 = -2, .y2 = 1};
    EXPECT_EQ(r.getWidth(), 4);
    EXPECT_EQ(r.getHeight(), 3);
    EXPECT_FALSE(r.isEmpty());
    struct Case {
        int x, y;
        bool inside;
    } const cases[] = {{0, -2, true}, {3, 0, true},   {4, 0, false},
                       {0, 1, false}, {-1, 0, false}, {0, -3, false}};
    for (auto const& c : cases)
        EXPECT_EQ(r.contains(c.x, c.y), c.inside) << c.x << ',' << c.y;

    for (RectI const empty : {RectI{0, 0, 0, 5}, RectI{0, 5, 3, 3}, RectI{5, 0, 0, 5}, RectI{}})
        EXPECT_TRUE(empty.isEmpty()) << empty;
}

TEST(GeRectangleTest, IntersectionEdgeCases) {
    struct Case {
        char const* what;
        RectI a, b, expected;
    } const cases[] = {
        {"overlap", {0, 10, 0, 10}, {5, 15, -5, 5}, {5, 10, 0, 5}},
        {"inside", {0, 10, 0, 10}, {2, 3, 4, 5}, {2, 3, 4, 5}},
        {"same", {0, 10, 0, 10}, {0, 10, 0, 10}, {0, 10, 0, 10}},
        {"negative", {-10, -2, -8, -1}, {-5, 5, -5, 5}, {-5, -2, -5, -1}},
        // Touching rectangles share no pixel: the result collapses at a's minimum corner.
        {"touching in x", {0, 10, 0, 10}, {10, 20, 0, 10}, {0, 0, 0, 0}},
        {"touching in y", {3, 10, 4, 10}, {0, 10, 10, 20}, {3, 3, 4, 4}},
        {"corner only", {0, 10, 0, 10}, {10, 20, 10, 20}, {0, 0, 0, 0}},
        {"apart", {-4, -1, 7, 9}, {100, 200, 100, 200}, {-4, -4, 7, 7}},
        {"b empty", {0, 10, 0, 10}, {5, 5, 0, 10}, {0, 0, 0, 0}},
        {"a empty", {5, 5, 2, 8}, {0, 10, 0, 10}, {5, 5, 2, 2}},
    };
    for (auto const& c : cases) {
        RectI const result = c.a.getIntersection(c.b);
        EXPECT_EQ(result, c.expected) << c.what;
        EXPECT_EQ(result.isEmpty(), c.expected.getWidth() == 0) << c.what;
    }
}

TEST(GeRectangleTest, BoundingIgnoresEmptyRectangles) {
    struct Case {
        char const* what;
        RectI a, b, expected;
    } const cases[] = {
        {"apart", {0, 2, 0, 2}, {5, 6, -3, -1}, {0, 6, -3, 2}},
        {"inside", {0, 10, 0, 10}, {2, 3, 4, 5}, {0, 10, 0, 10}},
        {"b empty far away", {0, 2, 0, 2}, {50, 50, 50, 60}, {0, 2, 0, 2}},
        {"a empty", {-9, -9, 0, 0}, {1, 2, 3, 4}, {1, 2, 3, 4}},
        {"both empty", {7, 7, 1, 1}, {1, 1, 2, 2}, {7, 7, 1, 1}},
    };
    for (auto const& c : cases)
        EXPECT_EQ(c.a.getBounding(c.b), c.expected) << c.what;
}

TEST(GeRectangleTest, ContainsTranslateAndIntervals) {
    RectI const r{0, 10, 0, 10};
    EXPECT_TRUE(r.contains(RectI{0, 10, 0, 10}));
    EXPECT_TRUE(r.contains(RectI{2, 3, 4, 5}));
    EXPECT_FALSE(r.contains(RectI{5, 11, 0, 1}));
    EXPECT_FALSE(r.contains(RectI{-1, 3, 0, 1}));
    EXPECT_EQ(r.getTranslated(-3, 2), (RectI{-3, 7, 2, 12}));
    EXPECT_EQ(r.getTranslated(-3, 2).getWidth(), r.getWidth());
    EXPECT_EQ(r.getXInterval(), (GeInterval<int>{0, 10}));
    EXPECT_EQ(r.getYInterval().getLength(), 10);

    GeRectangle<float> const f{0.5f, 2.5f, 0.0f, 1.0f};
    EXPECT_FLOAT_EQ(f.getWidth(), 2.0f);
    EXPECT_FALSE(f.contains(2.5f, 0.5f));
    EXPECT_EQ(f.getIntersection({2.5f, 4.0f, 0.0f, 1.0f}), (GeRectangle<float>{0.5f, 0.5f, 0.0f, 0.0f}));
}

TEST(GeIntervalTest, FollowsTheRectangleRules) {
    using I = GeInterval<int>;
    struct Case {
        I a, b, intersection, bounding;
    } const cases[] = {
        {{0, 10}, {5, 15}, {5, 10}, {0, 15}},
        {{0, 10}, {10, 20}, {0, 0}, {0, 20}}, // touching
        {{-5, -1}, {3, 4}, {-5, -5}, {-5, 4}},
        {{2, 2}, {0, 10}, {2, 2}, {0, 10}}, // empty first operand
    };
    for (auto const& c : cases) {
        EXPECT_EQ(c.a.getIntersection(c.b), c.intersection) << c.a << " and " << c.b;
        EXPECT_EQ(c.a.getBounding(c.b), c.bounding) << c.a << " and " << c.b;
    }
    I const i{3, 5};
    EXPECT_TRUE(i.contains(3));
    EXPECT_FALSE(i.contains(5));
    EXPECT_EQ(i.getTranslated(-4), (I{-1, 1}));
}

TEST(GeVectorTest, ArithmeticAsTheExpressionsUseIt) {
    using V3 = GeVector3<double>;
    V3 const u{1, 2, 3};
    V3 const v{-4, 0.5, 2};
    EXPECT_EQ(u + v, (V3{-3, 2.5, 5}));
    EXPECT_EQ(u - v, (V3{5, 1.5, 1}));
    EXPECT_EQ(-u, (V3{-1, -2, -3}));
    EXPECT_EQ(2.0 * u, u * 2.0);
    EXPECT_EQ(u / 2.0, (V3{0.5, 1, 1.5}));
    EXPECT_DOUBLE_EQ(u.dot(v), -4 + 1 + 6);
    EXPECT_EQ((V3{1, 0, 0}).cross(V3{0, 1, 0}), (V3{0, 0, 1})); // right-handed
    EXPECT_EQ(u.cross(v), (V3{2.5, -14, 8.5}));
    EXPECT_DOUBLE_EQ(u.cross(v).dot(u), 0.0);
    EXPECT_DOUBLE_EQ((V3{2, 3, 6}).getLength(), 7.0);

    using V2 = GeVector2<double>;
    V2 const p{3, 0};
    EXPECT_DOUBLE_EQ(p.cross(V2{0, 2}), 6.0); // counter-clockwise is positive
    EXPECT_DOUBLE_EQ(p.cross(V2{0, -2}), -6.0);
    EXPECT_DOUBLE_EQ((V2{3, 4}).getLength(), 5.0);
    EXPECT_EQ((V2{1, 2}).dump(), "(1, 2)");
    EXPECT_EQ(u.dump(), "(1, 2, 3)");
}

TEST(GeVectorTest, IntegerDivisionByZeroThrows) {
    EXPECT_THROW((GeVector2<int>{4, 2} / 0), GeEx::ExDivisionByZero);
    EXPECT_THROW((GeVector3<int>{4, 2, 1} / 0), GeEx::ExDivisionByZero);
    EXPECT_EQ((GeVector2<int>{7, -7} / 2), (GeVector2<int>{3, -3}));
    EXPECT_TRUE(std::isinf((GeVector2<double>{1, 0} / 0.0).x)); // floating point keeps its infinities
}

TEST(GePointTest, PointsDifferByVectors) {
    GePoint2<int> const a{2, 3};
    GePoint2<int> const b{-1, 7};
    GeVector2<int> const d = b - a;
    EXPECT_EQ(d, (GeVector2<int>{-3, 4}));
    EXPECT_EQ(a + d, b);
    EXPECT_EQ(b - d, a);
    EXPECT_EQ(a.dump(), "(2, 3)");
}

TEST(CoColorTest, ZeroIsTransparentBlack) {
    EXPECT_EQ(CoRgbaColorTyped<float>::ZERO, (CoRgbaColorTyped<float>{0, 0, 0, 0}));
    EXPECT_NE(CoRgbaColorTyped<float>::ZERO, (CoRgbaColorTyped<float>{0, 0, 0, 1}));
    CoRgbColorTyped<float> const grey{0.5f, 0.5f, 0.5f};
    EXPECT_EQ(grey, (CoRgbColorTyped<float>{0.5f, 0.5f, 0.5f}));
    EXPECT_NE(grey, (CoRgbColorTyped<float>{0.5f, 0.5f, 0.25f}));
}

} // namespace
