// The time offset node: an image read some frames away, with the validity of
// what it gives and the invalidations it passes on moved to match.
#include "imageTimeTestTools.h"
#include "piImageTimeOffsetNode.h"

using namespace Qv;
using namespace Qv::CompTest;

namespace {

class ImageTimeOffset : public GraphTest {};

} // namespace

TEST_F(ImageTimeOffset, GivesTheFrameSomeFramesAwayValidOverTheFrameAskedFor) {
    struct Case {
        char const* what;
        int offset;
        double frame;
        Rational rate;
        float expected;
        PxValidityInterval offsetVI;
        PxValidityInterval expectedVI; // empty: the asked frame's own interval
    };
    PxValidityInterval const none = PxValidityInterval::EMPTY;
    Case const cases[] = {
        {"next frame", 1, 3, Rational(24, 1), 4.0f, PxValidityInterval::FULL, none},
        {"previous frame", -1, 3, Rational(24, 1), 2.0f, PxValidityInterval::FULL, none},
        {"no offset", 0, 3, Rational(24, 1), 3.0f, PxValidityInterval::FULL, none},
        {"two before the first frame", -2, 0, Rational(24, 1), -2.0f, PxValidityInterval::FULL, none},
        {"frames of a slower input", 1, 4, Rational(12, 1), 6.0f, PxValidityInterval::FULL, none},
        {"an offset that holds briefly", 2, 5.5, Rational(24, 1), 7.0f,
         PxValidityInterval(frameTime(5.25), frameTime(5.75)),
         PxValidityInterval(frameTime(5.25), frameTime(5.75))},
        {"an input without rate", 3, 3, Rational(), 3.0f, PxValidityInterval::FULL, none},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.what);
        auto source = make<FrameNumberNode>(c.rate);
        auto node = PiImageTimeOffsetNode::create(source, frames(c.offset, c.offsetVI));
        double const t = frameTime(c.frame);
        auto const [red, vi] = evaluate(node, t);
        EXPECT_FLOAT_EQ(red, c.expected);
        EXPECT_TRUE(vi.contains(t));
        if (c.expectedVI.isEmpty()) {
            PxValidityInterval const frame = PxValidityInterval::createFrameInterval(RATE, t);
            EXPECT_NEAR(vi.getStart(), frame.getStart(), 1e-12);
            EXPECT_NEAR(vi.getEnd(), frame.getEnd(), 1e-12);
        } else {
            EXPECT_EQ(vi, c.expectedVI);
        }
    }
}

// An input valid only at the instant it was read for (an interpolated key)
// is valid at exactly the time asked for, however the shift rounds.
TEST_F(ImageTimeOffset, AnInstantStaysTheInstantAskedFor) {
    for (double frame : {0.5, 1.0 / 3.0, 7.1, -2.9}) {
        for (int offset : {1, -1, 5}) {
            SCOPED_TRACE(testing::Message() << frame << " + " << offset);
            auto node = PiImageTimeOffsetNode::create(
                make<FrameNumberNode>(Rational(24, 1), FrameNumberNode::INSTANT), frames(offset));
            double const t = frameTime(frame);
            EXPECT_EQ(evaluate(node, t).second, PxValidityInterval(t, t));
        }
    }
}

TEST_F(ImageTimeOffset, MovesIntervalsButNotTheTimeLimits) {
    struct Case {
        PxValidityInterval in;
        double shift;
        PxValidityInterval out;
    };
    double const lo = PxValidityInterval::TIME_MIN;
    double const hi = PxValidityInterval::TIME_MAX;
    Case const cases[] = {
        {PxValidityInterval(1.0, 2.0), 0.5, PxValidityInterval(1.5, 2.5)},
        {PxValidityInterval(1.0, 2.0), -1.5, PxValidityInterval(-0.5, 0.5)},
        {PxValidityInterval::FULL, 3.0, PxValidityInterval::FULL},
        {PxValidityInterval(lo, 2.0), -1.0, PxValidityInterval(lo, 1.0)},
        {PxValidityInterval(hi - 1.0, hi), 5.0, PxValidityInterval(hi, hi)},
        {PxValidityInterval::EMPTY, 1.0, PxValidityInterval::EMPTY},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.in.dump());
        EXPECT_EQ(PiImageTimeOffsetNode::shiftInterval(c.in, c.shift), c.out);
    }
}

TEST_F(ImageTimeOffset, PassesInvalidationsOnMovedBackByTheShiftsItServed) {
    // The image side is a real image; invalidation is driven from it directly.
    auto image = make<FrameNumberNode>(Rational(24, 1));
    auto offset = frames(2);
    auto node = PiImageTimeOffsetNode::create(image, offset);
    auto listener = make<Listener>(node);

    PxValidityInterval const frame5(frameTime(5), frameTime(6));
    image->invalidate(frame5, 0);
    ASSERT_EQ(listener->heard.size(), 1u);
    EXPECT_EQ(listener->heard[0], frame5) << "nothing served yet: passed on as it is";

    evaluate(node, frameTime(3));
    image->invalidate(frame5, 0);
    ASSERT_EQ(listener->heard.size(), 2u);
    EXPECT_NEAR(listener->heard[1].getStart(), frameTime(3), 1e-12);
    EXPECT_NEAR(listener->heard[1].getEnd(), frameTime(4), 1e-12);

    // Once a shift of -1 was served too, both readings of frame 5 are stale.
    offset->setValue(PxResult<int>(-1, PxValidityInterval::FULL));
    ASSERT_EQ(listener->heard.size(), 3u);
    EXPECT_EQ(listener->heard[2], PxValidityInterval::FULL) << "an offset change is not moved";
    evaluate(node, frameTime(3));
    image->invalidate(frame5, 0);
    ASSERT_EQ(listener->heard.size(), 4u);
    EXPECT_NEAR(listener->heard[3].getStart(), frameTime(3), 1e-12);
    EXPECT_NEAR(listener->heard[3].getEnd(), frameTime(7), 1e-12);

    image->invalidate(PxValidityInterval::FULL, 0);
    ASSERT_EQ(listener->heard.size(), 5u);
    EXPECT_EQ(listener->heard[4], PxValidityInterval::FULL);
}
