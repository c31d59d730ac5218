#include "ixPixelFormat.h"
#include "ixTestUtil.h"

#include <gtest/gtest.h>

using namespace Qv;
using namespace Qv::IxTest;

namespace {

TEST(IxPixelFormatTest, ConstructorChecksCompsThenDepthThenAspect) {
    char const* const compsText = "_comps == ALPHA || _comps == RGB || _comps == RGBA";
    char const* const depthText =
        "_depth == UINT8 || _depth == FLOAT16 || _depth == FLOAT32 || _depth == COMPLEX";
    char const* const aspectText = "aspectRatio.getFloat() is greater than 0";
    struct Case {
        int comps;
        int depth;
        Rational aspect;
        std::string failure;
    } const cases[] = {
        {F::RGBA, F::FLOAT32, {1, 1}, ""},
        {F::ALPHA, F::COMPLEX, {10, 11}, ""},
        {F::RGB, F::UINT8, {1, 2147483647}, ""}, // tiny but positive
        {2, F::FLOAT32, {1, 1}, compsText},      // two components exist in files, not in tiles
        {0, F::UINT8, {1, 1}, compsText},
        {5, F::UINT8, {1, 1}, compsText},
        {F::RGB, 12, {1, 1}, depthText},
        {F::RGB, 0, {1, 1}, depthText},
        {F::RGBA, F::FLOAT16, {0, 1}, aspectText},
        {F::RGBA, F::FLOAT16, {-4, 3}, aspectText},
        {2, 12, {0, 1}, compsText}, // the first failing check wins
        {F::RGB, 12, {0, 1}, depthText},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(testing::Message() << c.comps << ' ' << c.depth << ' ' << c.aspect);
        EXPECT_EQ(assertionText(
                      [&] { F(static_cast<F::Comps>(c.comps), static_cast<F::Depth>(c.depth), c.aspect); }),
                  c.failure);
    }
    // A zero denominator never makes a ratio to begin with.
    EXPECT_THROW(F(F::RGBA, F::UINT8, Rational(1, 0)), RationalEx::ExDivisionByZero);
}

TEST(IxPixelFormatTest, SizesEqualityAndTheInvalidFormat) {
    struct Case {
        F format;
        std::size_t bytesPerPixel;
        char const* text;
    } const cases[] = {
        {{F::ALPHA, F::UINT8}, 1, "ALPHA UINT8 1/1"},
        {{F::RGB, F::FLOAT16, {10, 11}}, 6, "RGB FLOAT16 10/11"},
        {{F::RGBA, F::FLOAT32}, 16, "RGBA FLOAT32 1/1"},
        {{F::RGBA, F::COMPLEX}, 32, "RGBA COMPLEX 1/1"},
    };
    for (auto const& c : cases) {
        EXPECT_TRUE(c.format.isValid());
        EXPECT_EQ(c.format.getBytesPerPixel(), c.bytesPerPixel) << c.text;
        EXPECT_EQ(c.format.dump(), c.text);
    }
    EXPECT_FALSE(F::INVALID_FORMAT.isValid());
    EXPECT_EQ(F(), F::INVALID_FORMAT);
    EXPECT_EQ(F::INVALID_FORMAT.dump(), "INVALID_FORMAT");
    EXPECT_EQ(F(F::RGB, F::UINT8, {2, 4}), F(F::RGB, F::UINT8, {1, 2}));
    EXPECT_NE(F(F::RGB, F::UINT8, {1, 2}), F(F::RGB, F::UINT8, {1, 1}));
    EXPECT_NE(F(F::RGB, F::UINT8), F(F::RGBA, F::UINT8));
    EXPECT_EQ(F(F::RGB, F::UINT8).withAspectRatio({4, 3}).getAspectRatio(), Rational(4, 3));
}

} // namespace
