// The repeat node: a clip's own frames between its marks and, outside them,
// nothing, its frames again, its end frames, or its frames back and forth;
// with the validity of what it gives and the invalidations it passes on.
#include "../../procAPI/test/pxTestUtil.h"
#include "imageTimeTestTools.h"
#include "piImageRepeatNode.h"

#include <limits>
#include <optional>

using namespace Qv;
using namespace Qv::CompTest;

namespace {

constexpr double OPEN = std::numeric_limits<double>::infinity();
constexpr int NONE = TmTypes::NONE, LOOP = TmTypes::LOOP, HOLD = TmTypes::HOLD, BOUNCE = TmTypes::BOUNCE;
constexpr FrameNumberNode::Validity FRAME = FrameNumberNode::FRAME, INSTANT = FrameNumberNode::INSTANT,
                                    STILL = FrameNumberNode::ALWAYS;

// Frames [first, end) at RATE as the interval of a result; an infinite end
// is the host's time limit.
PxValidityInterval span(double first, double end) {
    return PxValidityInterval(first == -OPEN ? PxValidityInterval::TIME_MIN : frameTime(first),
                              end == OPEN ? PxValidityInterval::TIME_MAX
                                          : std::nextafter(frameTime(end), -OPEN));
}

void expectNear(PxValidityInterval const& actual, PxValidityInterval const& expected) {
    EXPECT_NEAR(actual.getStart(), expected.getStart(), 1e-12) << actual.dump();
    EXPECT_NEAR(actual.getEnd(), expected.getEnd(), 1e-12) << actual.dump();
}

// A repeat node over a FrameNumberNode and value nodes the test can change.
struct Clip {
    Clip(int mode, int in, int out, FrameNumberNode::Validity validity = FRAME,
         Rational const& rate = Rational(24, 1), PxValidityInterval const& outVI = PxValidityInterval::FULL)
        : image(make<FrameNumberNode>(rate, validity)), markIn(frames(in)), lockDuration(value(false)),
          node(PiImageRepeatNode::create(image, frames(mode), markIn, frames(out, outVI), lockDuration)) {}

    PxStrongHndl<FrameNumberNode> image;
    PxStrongHndl<PxAnimValueNode<int>> markIn;
    PxStrongHndl<PxAnimValueNode<bool>> lockDuration;
    PxStrongHndl<PxImageProtocol> node;
};

class ImageRepeat : public GraphTest {};

} // namespace

TEST_F(ImageRepeat, ShowsTheSourceFrameOfItsModeValidWhileTheMappingHolds) {
    struct Case {
        int mode, in, out;
        double frame;
        FrameNumberNode::Validity source;
        std::optional<float> red; // none: no pixels
        PxValidityInterval vi;    // EMPTY: the instant asked
        Rational rate = Rational(24, 1);
        PxValidityInterval outVI = PxValidityInterval::FULL;
    };
    PxValidityInterval const instant = PxValidityInterval::EMPTY;
    Case const cases[] = {
        {LOOP, 10, 14, 12, FRAME, 12.0f, span(12, 13)},
        {LOOP, 10, 14, 15, FRAME, 11.0f, span(15, 16)},
        {LOOP, 10, 14, 9, FRAME, 13.0f, span(9, 10)},
        {LOOP, 10, 14, 2, FRAME, 10.0f, span(2, 3)},
        {LOOP, 10, 14, -3, FRAME, 13.0f, span(-3, -2)},
        {HOLD, 10, 14, 20, FRAME, 13.0f, span(14, OPEN)},
        {HOLD, 10, 14, 3, FRAME, 10.0f, span(-OPEN, 10)},
        {BOUNCE, 10, 14, 14, FRAME, 13.0f, span(14, 15)},
        {BOUNCE, 10, 14, 15, FRAME, 12.0f, span(15, 16)},
        {BOUNCE, 10, 14, 17, FRAME, 10.0f, span(17, 18)},
        {BOUNCE, 10, 14, 18, FRAME, 10.0f, span(18, 19)},
        {BOUNCE, 10, 14, 9, FRAME, 10.0f, span(9, 10)},
        {BOUNCE, 10, 14, 5, FRAME, 13.0f, span(5, 6)},
        {NONE, 10, 14, 10, FRAME, 10.0f, span(10, 11)},
        {NONE, 10, 14, 14, FRAME, std::nullopt, span(14, OPEN)},
        {NONE, 10, 14, 9, FRAME, std::nullopt, span(-OPEN, 10)},
        {7, 10, 14, 20, FRAME, std::nullopt, span(14, OPEN)}, // an unknown mode
        {LOOP, 14, 10, 20, FRAME, 20.0f, span(20, 21)},       // no frame between the marks
        {HOLD, 10, 10, 3, FRAME, 3.0f, span(3, 4)},
        {LOOP, 10, 14, 20, FRAME, 20.0f, span(20, 21), Rational()},
        // At 12 frames a second frame 20 here is frame 10, which loops to 6.
        {LOOP, 5, 7, 20, FRAME, 12.0f, span(20, 21), Rational(12, 1)},
        // Between frames the fraction stays.
        {LOOP, 10, 14, 15.25, INSTANT, 11.25f, instant},
        {LOOP, 10, 14, -2.5, INSTANT, 13.5f, instant},
        {BOUNCE, 10, 14, 14.5, INSTANT, 13.5f, instant},
        {HOLD, 10, 14, 3.75, INSTANT, 10.75f, instant},
        // A still holds over the frames read at one shift.
        {LOOP, 10, 14, 15, STILL, 0.0f, span(14, 18)},
        {LOOP, 10, 14, 9, STILL, 0.0f, span(6, 10)},
        {LOOP, 10, 14, 12, STILL, 0.0f, span(10, 14)},
        {LOOP, 10, 14, 15, STILL, 0.0f, span(16, 18), Rational(24, 1),
         PxValidityInterval(frameTime(16), 9.0)},
        {BOUNCE, 10, 14, 15, STILL, 0.0f, span(15, 16)},
        {BOUNCE, 10, 14, 19, STILL, 0.0f, span(18, 22)},
        {BOUNCE, 10, 14, 5, STILL, 0.0f, span(2, 6)},
        {LOOP, 14, 10, 3, STILL, 0.0f, PxValidityInterval::FULL},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::Message() << "mode " << c.mode << " [" << c.in << ", " << c.out << ") frame "
                                        << c.frame << " source " << c.source);
        Clip const clip(c.mode, c.in, c.out, c.source, c.rate, c.outVI);
        double const t = frameTime(c.frame);
        PxValidityInterval const vi = c.vi.isEmpty() ? PxValidityInterval(t, t) : c.vi;
        if (c.red) {
            auto const [red, actualVI] = evaluate(clip.node, t);
            EXPECT_NEAR(red, *c.red, 1e-4);
            expectNear(actualVI, vi);
            continue;
        }
        PxRODResult const rod = clip.node->getImageROD(PxTimeStreamContext(t));
        EXPECT_TRUE(rod.getROD().isEmpty());
        expectNear(rod.getVI(), vi);
        PxImageResult tile;
        PxTest::runAsRequest([&] {
            tile = PxUPtr<PxImageProtocol const>(PxNodePtr<PxImageProtocol const>(clip.node))
                       ->getImageResult(PxImageContext(t, {0, 0}));
        });
        EXPECT_TRUE(tile.getPixelRegion().isEmpty());
        expectNear(tile.getVI(), vi);
    }
}

TEST_F(ImageRepeat, AChangedSourceFrameReachesEveryTimeThatReadIt) {
    struct Case {
        int mode;
        std::vector<double> served;
        PxValidityInterval changed;
        PxValidityInterval heard;
    };
    PxValidityInterval const all = PxValidityInterval::FULL;
    Case const cases[] = {
        {LOOP, {12}, span(11, 12), span(11, 12)}, // nothing served outside
        {LOOP, {100}, span(11, 12), all},
        {LOOP, {100}, span(20, 21), span(20, 21)}, // read at itself only
        {BOUNCE, {17}, span(12, 13), all},
        {HOLD, {3}, span(10, 11), span(-OPEN, 11)},
        {HOLD, {3}, span(13, 14), span(13, 14)},
        {HOLD, {20}, span(13, 14), span(13, OPEN)},
        {HOLD, {3, 20}, span(10, 14), all},
        {NONE, {20}, span(13, 14), span(13, 14)},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::Message() << "mode " << c.mode << " changed " << c.changed.dump());
        Clip const clip(c.mode, 10, 14);
        auto listener = make<Listener>(clip.node);
        for (double frame : c.served)
            evaluateTiles(clip.node, frameTime(frame));
        clip.image->invalidate(c.changed, 0);
        ASSERT_EQ(listener->heard.size(), 1u);
        expectNear(listener->heard[0], c.heard);
    }
}

TEST_F(ImageRepeat, TheLockChangesNoResultAndAMarkChangesItsTimes) {
    Clip const clip(LOOP, 10, 14);
    auto listener = make<Listener>(clip.node);
    clip.lockDuration->setValue(PxResult<bool>(true, PxValidityInterval::FULL));
    EXPECT_TRUE(listener->heard.empty());
    clip.markIn->setValue(PxResult<int>(11, span(0, 50)));
    EXPECT_EQ(listener->heard, (std::vector<PxValidityInterval>{PxValidityInterval::FULL, span(0, 50)}));
}

TEST_F(ImageRepeat, ModesHaveTheirNamesInOrderAndTheirPolicy) {
    std::vector<std::string> const names = {"None", "Loop", "Hold", "Bounce"};
    RCShdPtr<PiEnumPolicy const> const policy = PiImageRepeatNode::getRepeatModeInputPolicy();
    EXPECT_EQ(policy->getDomainLabels(), names);
    EXPECT_EQ(policy->getDomain(), (std::vector<PiVariant>{0, 1, 2, 3}));
    EXPECT_EQ(policy->getDefault(), PiVariant(0));
    for (TmTypes::RepeatMode mode : TmTypes::getRepeatModes())
        EXPECT_EQ(TmTypes::repeatModeToString(mode), names.at(mode));
    EXPECT_EQ(TmTypes::repeatModeFromString("bOuNcE"), TmTypes::BOUNCE);
    EXPECT_EQ(TmTypes::repeatModeFromString("none"), TmTypes::NONE);
    for (char const* text : {"Hold ", "", "1"})
        EXPECT_EQ(TmTypes::repeatModeFromString(text), std::nullopt) << text;
    EXPECT_EQ(TmTypes::repeatModeFromInt(3), TmTypes::BOUNCE);
    EXPECT_EQ(TmTypes::repeatModeFromInt(4), std::nullopt);
}
