// The time offset node: an image read some frames away, with the validity of
// what it gives and the invalidations it passes on moved to match.
#include "compTestTools.h"
#include "ixPixelUtil.h"
#include "piImageTimeOffsetNode.h"
#include "pxImageMultiTileRequest.h"
#include "pxRequestMgr.h"
#include "pxValueNodes.h"

#include <cmath>

using namespace Qv;
using namespace Qv::CompTest;

namespace {

constexpr double RATE = 24.0;

double frameTime(double frame) {
    return frame / RATE;
}

// A 4x4 image whose red is the number of the frame asked for, valid over
// that frame, or only at the instant asked for.
class FrameNumberNode : public PxImageProtocol {
public:
    FrameNumberNode(PxNode::Init const& init, Rational const& rate, bool instant = false)
        : PxNode(init), PxImageProtocol(init),
          _format(PxImageFormat(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32), rate),
                  PxValidityInterval::FULL),
          _instant(instant) {}

    PxResult<PxImageFormat> getImageFormat() const override { return _format; }
    PxRODResult getImageROD(PxTimeStreamContext const&) const override {
        return PxRODResult(GeRectangle<float>{0, 4, 0, 4}, PxValidityInterval::FULL);
    }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        GeRectangle<int> const region =
            GeRectangle<int>{0, 4, 0, 4}.getIntersection(getTilePixels(context.getTilePosition()));
        PxValidityInterval const frame =
            _instant ? PxValidityInterval(context.getTime(), context.getTime())
                     : PxValidityInterval::createFrameInterval(RATE, context.getTime());
        IxTile tile = allocateImageBuffer(context, region);
        IxWriteGuard const out(tile);
        float const number = static_cast<float>(std::floor(context.getTime() * RATE + 1e-6));
        for (int y = region.y1; y < region.y2; ++y)
            for (int x = region.x1; x < region.x2; ++x)
                IxPixelUtil::setPixelColor(out, x, y, {number, 0.0f, 0.0f, 1.0f});
        return PxImageResult(tile, frame);
    }

private:
    PxResult<PxImageFormat> _format;
    bool _instant;
};

// Records the invalidations that reach it from its child.
class Listener : public PxNode {
public:
    Listener(PxNode::Init const& init, PxStrongHndl<PxNode const> const& child)
        : PxNode(init), _child(child) {}
    ~Listener() override { unregisterChild(_child); }
    void init() override { registerChild(_child); }
    void invalidateAndReinitialize(PxValidityInterval const& interval, PxUPtr<PxNode const> const&,
                                   int) override {
        heard.push_back(interval);
    }
    std::vector<PxValidityInterval> heard;

private:
    PxNodePtr<PxNode const> _child;
};

template <class Node, class... Args>
PxStrongHndl<Node> make(Args&&... args) {
    PxNode::Init init;
    PxStrongHndl<Node> node(new Node(init, std::forward<Args>(args)...));
    PxNode::init(node);
    return node;
}

PxStrongHndl<PxAnimValueNode<int>> frames(int k, PxValidityInterval const& vi = PxValidityInterval::FULL) {
    return make<PxAnimValueNode<int>>(PxResult<int>(k, vi));
}

// The red of pixel (1, 1) at time t, and the interval the tile holds for.
std::pair<float, PxValidityInterval> evaluate(PxStrongHndl<PxImageProtocol> const& node, double t) {
    PxRequestPtr<PxImageMultiTileRequest> request(
        new PxImageMultiTileRequest(PxNodePtr<PxImageProtocol const>(node), 0, PxTimeInfo(t), 0));
    PxRequestMgr::getInstance().postRequest(request, 0);
    PxImageMultiTileRequest::Results const results = *request->getResults();
    PxRequestMgr::getInstance().releaseRequest(request);
    EXPECT_EQ(results.size(), 1u);
    IxReadGuard const guard(results.at(0).getTile());
    return {IxPixelUtil::getPixelColor(guard, 1, 1).r, results.at(0).getVI()};
}

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
            auto node =
                PiImageTimeOffsetNode::create(make<FrameNumberNode>(Rational(24, 1), true), frames(offset));
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
