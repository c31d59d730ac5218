// Invalidation travels from a child to its parents, remapped on the way.
#include "pxAnimValueProtocol.h"
#include "pxValueNodes.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace Qv;

namespace {

struct Heard {
    PxValidityInterval interval = PxValidityInterval::EMPTY;
    int stream = -1;
    int times = 0;
};

// A parent of one child that records what reaches it and can shift time.
class ListenerNode : public PxAnimValueProtocol<double> {
public:
    ListenerNode(PxNode::Init const& init, PxStrongHndl<PxAnimValueProtocol<double> const> const& child,
                 Heard& heard, double shift = 0.0, bool stop = false)
        : PxNode(init), PxAnimValueProtocol<double>(init), _child(child), _heard(heard), _shift(shift),
          _stop(stop) {}
    ~ListenerNode() override { unregisterChild(_child); }
    void init() override {
        PxNode::init();
        registerChild(_child);
    }
    bool propagateAndRemapInvalidation(PxValidityInterval* interval, PxUPtr<PxNode const> const& child,
                                       int* stream) const override {
        *interval = PxValidityInterval(interval->getStart() + _shift, interval->getEnd() + _shift);
        *stream += 1;
        return !_stop;
    }
    void invalidateAndReinitialize(PxValidityInterval const& interval, PxUPtr<PxNode const> const&,
                                   int stream) override {
        _heard.interval = interval;
        _heard.stream = stream;
        ++_heard.times;
    }
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        _child->getAnimValue(result, context);
    }

private:
    PxNodePtr<PxAnimValueProtocol<double> const> _child;
    Heard& _heard;
    double _shift;
    bool _stop;
};

template <class Node, class... Args>
PxStrongHndl<Node> build(Args&&... args) {
    PxNode::Init init;
    PxStrongHndl<Node> handle(new Node(init, std::forward<Args>(args)...));
    PxNode::init(handle);
    return handle;
}

} // namespace

TEST(PxInvalidation, TravelsUpThroughARemappingNode) {
    struct Case {
        char const* what;
        double shift;
        bool stopInMiddle;
        int topTimes;
        PxValidityInterval topInterval;
        int topStream;
    };
    Case const cases[] = {
        {"plain", 0.0, false, 1, PxValidityInterval(1.0, 2.0), 2},
        {"shifted by ten", 10.0, false, 1, PxValidityInterval(11.0, 12.0), 2},
        {"stopped in the middle", 0.0, true, 0, PxValidityInterval::EMPTY, -1},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.what);
        Heard middleHeard, topHeard;
        auto leaf = build<PxAnimValueNode<double>>(PxResult<double>(1.0, PxValidityInterval(1.0, 2.0)));
        auto middle = build<ListenerNode>(leaf, middleHeard, c.shift, c.stopInMiddle);
        auto top = build<ListenerNode>(middle, topHeard);
        EXPECT_EQ(leaf->getNbParents(), 1);
        EXPECT_EQ(leaf->getParent(0), static_cast<PxNode*>(middle.get()));

        leaf->invalidate(PxValidityInterval(1.0, 2.0), 0);
        EXPECT_EQ(middleHeard.times, c.stopInMiddle ? 0 : 1);
        EXPECT_EQ(topHeard.times, c.topTimes);
        if (c.topTimes) {
            EXPECT_EQ(topHeard.interval, c.topInterval);
            EXPECT_EQ(topHeard.stream, c.topStream);
        }
    }
}

TEST(PxInvalidation, ADestroyedParentNoLongerHears) {
    Heard heard;
    auto leaf = build<PxAnimValueNode<double>>(PxResult<double>(1.0, PxValidityInterval::FULL));
    {
        auto parent = build<ListenerNode>(leaf, heard);
        EXPECT_EQ(leaf->getNbParents(), 1);
    }
    EXPECT_EQ(leaf->getNbParents(), 0);
    leaf->invalidate(PxValidityInterval::FULL, 0);
    EXPECT_EQ(heard.times, 0);
}

TEST(PxValidityInterval, FrameIntervalsAndIntersections) {
    struct Case {
        double rate, time, start, next;
    };
    Case const cases[] = {
        {24.0, 0.0, 0.0, 1.0 / 24},
        {24.0, 1.0 / 24, 1.0 / 24, 2.0 / 24}, // a frame's own start time belongs to it
        {25.0, 0.5, 0.48, 0.52},
        {30000.0 / 1001, 1.0, 29.0 * 1001 / 30000, 30.0 * 1001 / 30000},
        {24.0, -0.01, -1.0 / 24, 0.0},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.time);
        PxValidityInterval frame = PxValidityInterval::createFrameInterval(c.rate, c.time);
        EXPECT_DOUBLE_EQ(frame.getStart(), c.start);
        EXPECT_TRUE(frame.contains(c.time));
        EXPECT_NEAR(frame.getEnd(), c.next, 1e-12);
        // The next frame follows without a gap or an overlap.
        double const after = std::nextafter(frame.getEnd(), 1e9);
        PxValidityInterval next = PxValidityInterval::createFrameInterval(c.rate, after);
        EXPECT_EQ(next.getStart(), after);
        EXPECT_TRUE(frame.getIntersection(next).isEmpty());
    }
    PxValidityInterval full = PxValidityInterval::FULL;
    EXPECT_TRUE(full.contains(PxValidityInterval::TIME_MIN) && full.contains(PxValidityInterval::TIME_MAX));
    EXPECT_EQ(full.getIntersection(PxValidityInterval(1, 2)), PxValidityInterval(1, 2));
    EXPECT_TRUE(PxValidityInterval(1, 2).getIntersection(PxValidityInterval(3, 4)).isEmpty());
    EXPECT_TRUE(PxValidityInterval(1, 2).getIntersection(PxValidityInterval(2, 4)).isNonEmpty());
    EXPECT_TRUE(PxValidityInterval::EMPTY.getIntersection(full).isEmpty());
}
