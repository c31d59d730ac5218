// The parse driver: the nesting limit, a listener's failure and how it is
// thrown, a parse started from inside a listener, parses from several
// threads at once, and the expression exceptions themselves.
#include "btExpEx.h"
#include "btExpParser.h"
#include "btExpTracer.h"
#include "rcShdPtr.h"

#include <atomic>
#include <functional>
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <typeinfo>
#include <vector>

using namespace Qv;

namespace {

char const* const MALFORMED = "Syntax error: the expression is incomplete or malformed";

std::vector<std::string> parse(BtExpTracer& tracer, std::string const& text) {
    std::istringstream input(text);
    btExpParse(tracer, input);
    return tracer.getCalls();
}

std::vector<std::string> parse(std::string const& text) {
    RCShdPtr<BtExpTracer> tracer(new BtExpTracer);
    return parse(*tracer, text);
}

std::string repeat(std::string const& piece, int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += piece;
    return text;
}

// Where a refused text failed, and why.
struct Failure {
    int first = 0;
    int last = 0;
    std::string reason;
    bool operator==(Failure const&) const = default;
};

std::ostream& operator<<(std::ostream& out, Failure const& failure) {
    return out << failure.first << " " << failure.last << ": " << failure.reason;
}

Failure failureOf(std::string const& text) {
    try {
        parse(text);
    } catch (BtExpEx const& error) {
        return {error.getFirstColumn(), error.getLastColumn(), error.getReason()};
    }
    return {};
}

// The stacks hold 200 states: the text's own symbols plus the two the
// grammar starts with. Whatever nests deeper fails at columns 1 and 1.
struct Depth {
    char const* open;
    char const* inner;
    char const* close;
    int deepest; // the most levels still accepted
};

class NestingLimit : public ::testing::TestWithParam<Depth> {};

TEST_P(NestingLimit, IsTwoHundredStackedSymbols) {
    Depth const& c = GetParam();
    auto const nested = [&c](int levels) {
        return repeat(c.open, levels) + c.inner + repeat(c.close, levels);
    };
    EXPECT_NO_THROW(parse(nested(c.deepest))) << c.open;
    EXPECT_EQ(failureOf(nested(c.deepest + 1)), (Failure{1, 1, MALFORMED})) << c.open;
}

INSTANTIATE_TEST_SUITE_P(Nesting, NestingLimit,
                         ::testing::Values(Depth{"(", "1", ")", 195}, Depth{"-", "1", "", 196},
                                           Depth{"f(", "1", ")", 97}, Depth{"!", "a<b", "", 194},
                                           Depth{"1+(", "1", ")", 65},
                                           // Every stacked symbol holds its text.
                                           Depth{"some_function_of_a_long_name(", "Node.Attribute", ")", 97},
                                           Depth{"Node.Attribute + (", "Node.Attribute", ")", 65}));

// Far past the limit the stacks stay as they are: the parse stops cleanly,
// and the next one starts afresh.
TEST(NestingLimit, FarPastItIsTheSameCleanError) {
    for (char const* open : {"(", "-", "g(", "Node.Attribute*(", "!"}) {
        std::string const text = repeat(open, 5000) + "x";
        EXPECT_EQ(failureOf(text), (Failure{1, 1, MALFORMED})) << open;
        EXPECT_EQ(parse("a+1"), (std::vector<std::string>{"onAttribute \"a\" 1 2", "onConstant \"1\" 3 4",
                                                          "onBinaryOperator \"+\" 2 3"}));
    }
}

TEST(NestingLimit, LeavesLongFlatTextsAlone) {
    EXPECT_NO_THROW(parse(repeat("1+", 5000) + "1"));
    EXPECT_NO_THROW(parse(repeat("a<b||", 2000) + "a<b"));
    EXPECT_EQ(failureOf(repeat("(", 199)), (Failure{1, 1, MALFORMED}));
}

// Refuses one kind of call, as the graph listeners refuse a bad attribute.
class RefusingTracer : public BtExpTracer {
public:
    explicit RefusingTracer(bool keepReason) : _keepReason(keepReason) {}
    bool onAttribute(LiString const& text, int firstColumn, int lastColumn) override {
        BtExpTracer::onAttribute(text, firstColumn, lastColumn);
        if (_keepReason)
            setPendingException(std::make_unique<BtExpEx::ExUnknownAttribute>(
                __FILE__, __LINE__, "no node \"" + text.toString() + "\"", firstColumn, lastColumn));
        return false;
    }
    void endParse() override { ++_endParseCount; }
    int _endParseCount = 0;

private:
    bool _keepReason;
};

TEST(ListenerFailure, IsThrownWrappedOnceTheParserHasWoundDown) {
    RCShdPtr<RefusingTracer> tracer(new RefusingTracer(true));
    try {
        parse(*tracer, "1 +Blur.Radius*2");
        FAIL() << "accepted";
    } catch (BtExpExRethrow const& error) {
        EXPECT_EQ(error.getReason(), "Unknown attribute: no node \"Blur.Radius\"");
        EXPECT_EQ(error.getFirstColumn(), 4);
        EXPECT_EQ(error.getLastColumn(), 15);
        EXPECT_NE(dynamic_cast<BtExpEx::ExUnknownAttribute const*>(error.clone().get()), nullptr);
        EXPECT_THROW(error.raise(), BtExpEx::ExUnknownAttribute);
    }
    EXPECT_EQ(tracer->_endParseCount, 1);
    EXPECT_EQ(tracer->getCalls(),
              (std::vector<std::string>{"onConstant \"1\" 1 2", "onAttribute \"Blur.Radius\" 4 15"}));
    EXPECT_EQ(tracer->takePendingException(), nullptr);
}

TEST(ListenerFailure, WithoutAReasonIsAParseErrorAtTheStart) {
    RCShdPtr<RefusingTracer> tracer(new RefusingTracer(false));
    try {
        parse(*tracer, "1 + a");
        FAIL() << "accepted";
    } catch (BtExpEx::ExSyntaxError const& error) {
        EXPECT_EQ(error.getReason(), MALFORMED);
        EXPECT_EQ(error.getFirstColumn(), 1);
        EXPECT_EQ(error.getLastColumn(), 1);
    }
}

// A listener's own exception passes through, and leaves neither the lock
// held (another thread parses next) nor the scanner on its input.
class ThrowingTracer : public BtExpTracer {
public:
    bool onConstant(LiString const&, int, int) override { throw std::runtime_error("listener failed"); }
};

TEST(ListenerFailure, ThatThrowsLeavesTheParserReady) {
    RCShdPtr<ThrowingTracer> thrower(new ThrowingTracer);
    EXPECT_THROW(parse(*thrower, "a+1"), std::runtime_error);
    std::vector<std::string> calls;
    std::thread([&calls] { calls = parse("b"); }).join();
    EXPECT_EQ(calls, (std::vector<std::string>{"onAttribute \"b\" 1 2"}));
}

TEST(ListenerFailure, KeptThoughTheTextWasAcceptedIsDropped) {
    class KeepingTracer : public BtExpTracer {
    public:
        bool onConstant(LiString const& text, int first, int last) override {
            setPendingException(
                std::make_unique<BtExpEx::ExInternalError>(__FILE__, __LINE__, "x", first, last));
            return BtExpTracer::onConstant(text, first, last);
        }
    };
    RCShdPtr<KeepingTracer> tracer(new KeepingTracer);
    EXPECT_NO_THROW(parse(*tracer, "1"));
    EXPECT_EQ(tracer->takePendingException(), nullptr);
}

// Parses another text whenever it hears an attribute, as a listener that
// resolves an expression driving the attribute would.
class NestingTracer : public BtExpTracer {
public:
    NestingTracer(std::string inner, std::string innerOfInner)
        : _inner(std::move(inner)), _innerOfInner(std::move(innerOfInner)) {}
    bool onAttribute(LiString const& text, int firstColumn, int lastColumn) override {
        BtExpTracer::onAttribute(text, firstColumn, lastColumn);
        RCShdPtr<BtExpTracer> tracer;
        if (_innerOfInner.empty())
            tracer.reset(new BtExpTracer);
        else
            tracer.reset(new NestingTracer(_innerOfInner, ""));
        try {
            _heard.push_back(parse(*tracer, _inner));
        } catch (BtExpEx const& error) {
            _heard.push_back({error.getReason()});
        }
        return true;
    }
    std::vector<std::vector<std::string>> _heard;

private:
    std::string _inner;
    std::string _innerOfInner;
};

TEST(NestedParse, FromInsideAListenerLeavesTheOuterParseIntact) {
    RCShdPtr<NestingTracer> tracer(new NestingTracer("x+(1,2)", ""));
    EXPECT_EQ(parse(*tracer, "a * b.c"),
              (std::vector<std::string>{"onAttribute \"a \" 1 3", "onAttribute \" b.c\" 4 8",
                                        "onBinaryOperator \"*\" 3 4"}));
    std::vector<std::string> const inner = {"onAttribute \"x\" 1 2", "onConstant \"1\" 4 5",
                                            "onConstant \"2\" 6 7", "onVector2 \"1\" \"2\" 3 8",
                                            "onBinaryOperator \"+\" 2 3"};
    EXPECT_EQ(tracer->_heard, (std::vector<std::vector<std::string>>{inner, inner}));
}

TEST(NestedParse, ThatFailsOrNestsAgainLeavesTheOuterParseIntact) {
    RCShdPtr<NestingTracer> failing(new NestingTracer("2*$", ""));
    EXPECT_EQ(
        parse(*failing, "f(a, 1)"),
        (std::vector<std::string>{"onAttribute \"a\" 3 4", "onConstant \"1\" 6 7", "onFunction2 \"f\" 1 8"}));
    EXPECT_EQ(failing->_heard, (std::vector<std::vector<std::string>>{{MALFORMED}}));

    RCShdPtr<NestingTracer> twice(new NestingTracer("y", "1"));
    EXPECT_EQ(parse(*twice, "x"), (std::vector<std::string>{"onAttribute \"x\" 1 2"}));
    EXPECT_EQ(twice->_heard, (std::vector<std::vector<std::string>>{{"onAttribute \"y\" 1 2"}}));
}

TEST(NestedParse, InTheMiddleOfALongTextResumesWhereItStopped) {
    // Longer than the scanner's buffer, so the outer input is read in
    // pieces around the nested parses.
    std::string const text = repeat("a+", 6000) + "b";
    RCShdPtr<NestingTracer> tracer(new NestingTracer("1", ""));
    std::vector<std::string> const calls = parse(*tracer, text);
    ASSERT_EQ(calls.size(), 12001u);
    EXPECT_EQ(calls[1], "onAttribute \"a\" 3 4");
    EXPECT_EQ(calls.back(), "onBinaryOperator \"+\" 12000 12001");
    EXPECT_EQ(calls[calls.size() - 2], "onAttribute \"b\" 12001 12002");
    EXPECT_EQ(tracer->_heard.size(), 6001u);
}

TEST(ConcurrentParses, FromSeveralThreadsEachHearTheirOwnText) {
    std::vector<std::string> const texts = {"2^3^2",
                                            "if(a<b, (1,2), sin(t))",
                                            "-x*y + Group 1.Blur(2).Radius",
                                            "!(a<b) && c>=d || e!=f",
                                            "1 $",
                                            "(1,2,3,4)"};
    std::vector<std::vector<std::string>> expected;
    for (std::string const& text : texts) {
        RCShdPtr<BtExpTracer> tracer(new BtExpTracer);
        try {
            parse(*tracer, text);
        } catch (BtExpEx const&) {
        }
        expected.push_back(tracer->getCalls());
    }
    std::atomic<int> mismatches{0};
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < 4; ++t)
        threads.emplace_back([&, t] {
            for (int round = 0; round < 300; ++round) {
                std::size_t const i = (t + static_cast<std::size_t>(round)) % texts.size();
                RCShdPtr<BtExpTracer> tracer(new BtExpTracer);
                try {
                    parse(*tracer, texts[i]);
                } catch (BtExpEx const&) {
                }
                if (tracer->getCalls() != expected[i])
                    ++mismatches;
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(mismatches.load(), 0);
}

// Every exception of the family: its reason, its columns, and its type kept
// through clone and raise.
struct Built {
    char const* name;
    std::function<OPtrRet<BtExpEx>()> make;
    char const* reason;
};

class ExpressionExceptions : public ::testing::TestWithParam<Built> {};

TEST_P(ExpressionExceptions, CarryTheirMessageAndColumns) {
    OPtrRet<BtExpEx> const error = GetParam().make();
    EXPECT_EQ(error->getReason(), GetParam().reason) << GetParam().name;
    EXPECT_STREQ(error->what(), GetParam().reason) << GetParam().name;
    EXPECT_EQ(error->getFirstColumn(), 3) << GetParam().name;
    EXPECT_EQ(error->getLastColumn(), 7) << GetParam().name;
    BtExpExRethrow const wrapped(__FILE__, __LINE__, GetParam().make());
    EXPECT_EQ(wrapped.getReason(), GetParam().reason);
    EXPECT_EQ(wrapped.getFirstColumn(), 3);
    EXPECT_EQ(wrapped.getLastColumn(), 7);
    EXPECT_EQ(wrapped.getLine(), error->getLine());
    BtExpExRethrow const copy(wrapped);
    OPtrRet<ExBase> const clone = copy.clone();
    EXPECT_EQ(typeid(*clone), typeid(*error));
    try {
        copy.raise();
    } catch (BtExpEx const& raised) {
        EXPECT_EQ(typeid(raised), typeid(*error));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Family, ExpressionExceptions,
    ::testing::Values(
        Built{"ExSyntaxError",
              [] { return std::make_unique<BtExpEx::ExSyntaxError>(__FILE__, __LINE__, "bad %1", 3, 7); },
              "Syntax error: bad %1"},
        Built{
            "ExUnknownFunction",
            [] { return std::make_unique<BtExpEx::ExUnknownFunction>(__FILE__, __LINE__, "sinx", 2, 3, 7); },
            "Unknown function \"sinx\" with 2 argument(s)"},
        Built{"ExUnknownOperator",
              [] { return std::make_unique<BtExpEx::ExUnknownOperator>(__FILE__, __LINE__, "%", 3, 7); },
              "Unknown function or operator \"%\""},
        Built{"ExUnknownAttribute",
              [] { return std::make_unique<BtExpEx::ExUnknownAttribute>(__FILE__, __LINE__, "no b", 3, 7); },
              "Unknown attribute: no b"},
        Built{"ExInternalError",
              [] { return std::make_unique<BtExpEx::ExInternalError>(__FILE__, __LINE__, "lost", 3, 7); },
              "Internal error: lost"}),
    [](::testing::TestParamInfo<Built> const& info) { return std::string(info.param.name); });

TEST(PendingException, IsReplacedByTheNextAndClearedByBeginParse) {
    RCShdPtr<BtExpTracer> tracer(new BtExpTracer);
    tracer->onParseError(2, 4);
    tracer->setPendingException(std::make_unique<BtExpEx::ExInternalError>(__FILE__, __LINE__, "b", 5, 6));
    OPtr<BtExpEx> const taken = tracer->takePendingException();
    ASSERT_NE(taken, nullptr);
    EXPECT_EQ(taken->getReason(), "Internal error: b");
    EXPECT_EQ(tracer->takePendingException(), nullptr);
    EXPECT_FALSE(tracer->onUnknownToken("@", 1, 2));
    tracer->beginParse();
    EXPECT_EQ(tracer->takePendingException(), nullptr);
}

} // namespace
