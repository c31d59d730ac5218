// Expressions evaluated from their text, as a user writes them: the defined
// values of every domain error, the integer modulo's signs, powers of
// non-positive bases, the tangent's poles, halves in rounding, and the other
// edges of the arithmetic.
#include "btExpMath.h"
#include "btNoiseGenerator.h"
#include "expTestSupport.h"

#include <cmath>
#include <limits>
#include <numbers>

using namespace Qv;
using Qv::ExpTest::evaluate;

namespace {

constexpr double HUGE_QUOTIENT = 1.0 / BtExpMath::EPS;
constexpr double MOST_NEGATIVE = -1.7976931348623157e308;
constexpr double INF = std::numeric_limits<double>::infinity();

struct ValueCase {
    char const* text;
    double expected;
    double time = 0.0;
    double tolerance = 0.0; // exact unless given
};

class ExpressionValues : public ExpTest::PackagesTest {};

void expectValues(std::initializer_list<ValueCase> cases, BtExpAttributeValues const& attributes = {}) {
    for (ValueCase const& c : cases) {
        BtExpEvalReport const report = evaluate(c.text, c.time, attributes);
        ASSERT_TRUE(report.accepted) << c.text << ": " << report.reason;
        ASSERT_EQ(report.type, BtExpEvalReport::Type::DOUBLE) << c.text;
        if (c.tolerance == 0.0)
            EXPECT_EQ(report.values[0], c.expected) << c.text << " at " << c.time;
        else
            EXPECT_NEAR(report.values[0], c.expected, c.tolerance) << c.text << " at " << c.time;
    }
}

} // namespace

TEST_F(ExpressionValues, DivisionByZeroIsHugeAndFinite) {
    expectValues({{"1/0", HUGE_QUOTIENT},
                  {"-1/0", -HUGE_QUOTIENT}, // -(1/0): unary minus is looser than "/"
                  {"1/negzero", HUGE_QUOTIENT},
                  {"1/tiny", -HUGE_QUOTIENT},
                  {"0/0", 0.0},
                  {"6/4", 1.5}},
                 {{"negzero", -0.0}, {"tiny", -1e-320}});
    EXPECT_TRUE(std::isfinite(HUGE_QUOTIENT));
}

TEST_F(ExpressionValues, IntegerModuloTruncatesAndFollowsTheDividendsSign) {
    expectValues({
        {"5%3", 2.0},
        {"(-5)%3", 1.0},
        {"5%(-3)", 2.0},
        {"(-5)%(-3)", -5.0},
        {"-5%3", -2.0}, // -(5%3)
        {"2.9%1.9", 0.0},
        {"7%3.9", 1.0},
        // A divisor that truncates to zero leaves the truncated dividend.
        {"5%0.5", 5.0},
        {"(-7.5)%0.5", -7.0},
        {"5%0", 5.0},
        // Beyond 32 bits the operands take the nearest end of the range.
        {"1000000000000%1000", 2147483647.0 - 2147483000.0},
        {"mod(5.5,2)", 1.5},
        {"mod(-5,3)", -2.0}, // the floating remainder keeps the dividend's sign
    });
}

TEST_F(ExpressionValues, PowersOfNonPositiveBasesAreZero) {
    expectValues({
        {"0^2", 0.0},
        {"0^0", 0.0},
        {"(-8)^(1/3)", 0.0},
        {"(-2)^2", 0.0},
        {"pow(-1,0.5)", 0.0},
        {"2^0.5", std::sqrt(2.0)},
        {"2^(-1)", 0.5},
        {"pow(2,10)", 1024.0},
        {"2^3^2", 64.0}, // left to right
        {"-2^2", -4.0},
    });
}

TEST_F(ExpressionValues, RootsAndLogarithmsOutsideTheirDomain) {
    expectValues({
        {"sqrt(-9)", -3.0},
        {"sqrt(16)", 4.0},
        {"ln(-1)", MOST_NEGATIVE},
        {"log(-1)", MOST_NEGATIVE},
        {"ln(0)", -INF},
        {"log(0)", -INF},
        {"log(1000)", 3.0},
        {"ln(e)", 1.0},
        {"exp(0)", 1.0},
    });
}

TEST_F(ExpressionValues, AnglesAreDegreesAndPolesAndClampsAreDefined) {
    constexpr double TOL = 1e-12;
    expectValues({
        {"tan(45)", 1.0, 0.0, TOL},
        {"tan(135)", -1.0, 0.0, TOL},
        {"tan(90)", 0.0},
        {"tan(270)", 0.0},
        {"tan(-180)", 0.0},
        {"tan(0)", 0.0},
        {"sin(30)", 0.5, 0.0, TOL},
        {"cos(60)", 0.5, 0.0, TOL},
        {"asin(2)", 90.0},
        {"asin(-1)", -90.0},
        {"asin(0.5)", 30.0, 0.0, TOL},
        {"acos(2)", 0.0},
        {"acos(-3)", 180.0},
        {"acos(0)", 90.0, 0.0, TOL},
        {"atan(1)", 45.0, 0.0, TOL},
        {"atan2(0,0)", 0.0},
        {"atan2(1,0)", 90.0}, // the first argument is the sine's side
        {"atan2(0,-1)", 180.0},
        {"degrees(pi)", 180.0},
        {"radians(180)", std::numbers::pi},
    });
}

TEST_F(ExpressionValues, RoundingSendsHalvesUp) {
    expectValues({
        {"round(-0.5)", 0.0},
        {"round(2.5)", 3.0},
        {"round(-2.5)", -2.0},
        {"round(1.4999)", 1.0},
        {"ceil(-0.5)", 0.0},
        {"floor(-0.5)", -1.0},
        {"trunc(-2.7)", -2.0},
        {"trunc(2.7)", 2.0},
        {"sign(0)", 1.0},
        {"sign(-3)", -1.0},
        {"abs(-2)", 2.0},
    });
}

TEST_F(ExpressionValues, ExtremesAveragesAndVectorMeasures) {
    expectValues({
        {"min(1,2)", 1.0},
        {"max(1,2)", 2.0},
        {"min(3,1,2)", 1.0},
        {"max(3,1,2)", 3.0},
        {"MIN(2,-1,0)", -1.0},
        {"average(1,2)", 1.5},
        {"average(1,2,4)", 7.0 / 3.0},
        {"length((3,4,0))", 5.0},
        {"dot((1,2,3),(4,5,6))", 32.0},
        {"distance((1,1,1),(4,5,1))", 5.0},
        {"relscale((0,0),(1,0),(0,0),(1,0))", 2.0},
        {"relscale((1,1),(1,1),(0,0),(3,4))", 1.0}, // a segment without length does not scale
        {"relangle((0,0),(1,0),(0,0),(-1,1))", std::numbers::pi / 2},
        {"relangle((0,0),(1,0),(0,0),(-1,-1))", -std::numbers::pi / 2},
    });
}

TEST_F(ExpressionValues, ChoicesTimeAndClockCurves) {
    constexpr double TOL = 1e-12;
    expectValues({
        {"if(1<2,10,20)", 10.0},
        {"if(!(1<2),10,20)", 20.0},
        {"if(t>=1 && t<2,1,0)", 1.0, 1.5},
        {"t*2", 5.0, 2.5},
        {"T", -3.0, -3.0},
        {"eval(t*2,3)", 6.0},
        {"eval(t,t+1)", 8.0, 7.0},
        {"sinus(1,2,0)", 2.0, std::numbers::pi / 2, TOL},
        {"square(2,3,0)", 3.0, 0.0}, // the sine is 0: the positive side
        {"square(2,3,0)", -3.0, 1.5},
        {"easein(0,2)", 0.5, 1.0},
        {"easein(0,2)", 0.125, 0.5},
        {"easeout(0,2)", 0.875, 0.5},
        // Equal bounds give the curve an infinity or NaN, and it stays defined.
        {"easein(1,1)", 0.0, 0.0},
        {"easein(1,1)", 0.0, 1.0},
        {"easein(1,1)", 1.0, 2.0},
        {"bell(1,0.5,2)", 2.0, 1.0},
    });
}

TEST_F(ExpressionValues, RandIsTheSameAtEveryTimeAndForEveryFraction) {
    BtExpEvalReport const first = evaluate("rand(5)", 0.0);
    ASSERT_TRUE(first.accepted);
    EXPECT_GE(first.values[0], 0.0);
    EXPECT_LT(first.values[0], 1.0);
    for (double time : {-100.0, 0.5, 1e6})
        EXPECT_EQ(evaluate("rand(5)", time).values[0], first.values[0]) << time;
    EXPECT_EQ(evaluate("rand(5.9)").values[0], first.values[0]);
    EXPECT_NE(evaluate("rand(6)").values[0], first.values[0]);
    EXPECT_EQ(evaluate("rand(-3)").values[0], evaluate("rand(0)").values[0]) << "negative seeds count as 0";
    for (int i = 0; i < 5; ++i) {
        double const r = evaluate("truerand(2,3)").values[0];
        EXPECT_GE(r, 2.0);
        EXPECT_LT(r, 3.0);
    }
}

TEST_F(ExpressionValues, ConditionsAndVectorsKeepTheirTypes) {
    struct Case {
        char const* text;
        BtExpEvalReport::Type type;
        std::array<double, 3> values;
    } const cases[] = {
        {"1<2", BtExpEvalReport::Type::BOOLEAN, {1, 0, 0}},
        {"1==1 && 2<1", BtExpEvalReport::Type::BOOLEAN, {0, 0, 0}},
        {"!(1<2) || 2>=2", BtExpEvalReport::Type::BOOLEAN, {1, 0, 0}},
        {"1!=1", BtExpEvalReport::Type::BOOLEAN, {0, 0, 0}},
        {"(1,2,3)+(1,1,1)", BtExpEvalReport::Type::VECTOR3, {2, 3, 4}},
        {"(1,2,3)-(1,1,1)", BtExpEvalReport::Type::VECTOR3, {0, 1, 2}},
        {"-(1,2,3)", BtExpEvalReport::Type::VECTOR3, {-1, -2, -3}},
        {"cross((1,0,0),(0,1,0))", BtExpEvalReport::Type::VECTOR3, {0, 0, 1}},
        {"eval((t,2,3),4)", BtExpEvalReport::Type::VECTOR3, {4, 2, 3}},
        {"(1,t)", BtExpEvalReport::Type::VECTOR2, {1, 0, 0}},
    };
    for (Case const& c : cases) {
        BtExpEvalReport const report = evaluate(c.text);
        ASSERT_TRUE(report.accepted) << c.text << ": " << report.reason;
        EXPECT_EQ(report.type, c.type) << c.text;
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(report.values[i], c.values[static_cast<std::size_t>(i)]) << c.text << " [" << i << "]";
    }
    BtExpEvalReport const noise = evaluate("noise3((0.5,1.25,-2))");
    BtNoiseGenerator::Sample const expected = BtNoiseGenerator::computeNoise(0.5f, 1.25f, -2.0f);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(noise.values[i], static_cast<double>(expected[static_cast<std::size_t>(i)]));
}

TEST_F(ExpressionValues, OrientationsAreDegreesAndNeverUndefined) {
    struct Case {
        char const* text;
    } const cases[] = {
        {"lookat((0,0,0),(0,0,1),(0,1,0))"}, {"lookat((1,2,3),(1,2,3),(0,1,0))"},
        {"lookat((0,0,0),(0,5,0),(0,1,0))"}, {"lookat((0,0,0),(1,0,0),(0,0,0))"},
        {"align((t,0,0),(0,0,0),1)"},        {"align((0,0,0),(0,0,0),0)"},
    };
    for (Case const& c : cases) {
        BtExpEvalReport const report = evaluate(c.text);
        ASSERT_TRUE(report.accepted) << c.text << ": " << report.reason;
        EXPECT_EQ(report.type, BtExpEvalReport::Type::VECTOR3);
        for (double angle : report.values) {
            EXPECT_TRUE(std::isfinite(angle)) << c.text;
            EXPECT_LE(std::fabs(angle), 180.0 + 1e-9) << c.text;
        }
    }
    // Aiming the up vector at itself needs no turn.
    BtExpEvalReport const still = evaluate("lookat((0,1,0),(0,0,0),(0,1,0))");
    for (double angle : still.values)
        EXPECT_NEAR(angle, 0.0, 1e-12);
}
