// Handles on processing nodes: counts, lifetime, casts and the thread rules.
#include "pxAnimValueProtocol.h"
#include "pxTestUtil.h"

#include <gtest/gtest.h>

using namespace Qv;

namespace {

// Records the steps of its life in counters the test reads.
struct Life {
    int destroyed = 0;
    int deleted = 0;
};

class LifeNode : public PxAnimValueProtocol<double> {
public:
    LifeNode(PxNode::Init const& init, Life& life)
        : PxNode(init), PxAnimValueProtocol<double>(init), _life(life) {}
    ~LifeNode() override { ++_life.deleted; }
    void destroy() override { ++_life.destroyed; }
    void getAnimValue(PxResult<double>& result, PxTimeContext const&) const override {
        result.set(1.0, PxValidityInterval::FULL);
    }

private:
    Life& _life;
};

class OtherProtocol : public virtual PxNode {
public:
    explicit OtherProtocol(PxNode::Init const& init) : PxNode(init) {}
};

PxStrongHndl<LifeNode> makeNode(Life& life) {
    PxNode::Init init;
    PxStrongHndl<LifeNode> handle(new LifeNode(init, life));
    PxNode::init(handle);
    return handle;
}

} // namespace

TEST(PxHandles, DeadWeakHandleGivesNullAndNeverResurrects) {
    Life life;
    PxWeakHndl<LifeNode> weak;
    {
        PxStrongHndl<LifeNode> strong = makeNode(life);
        weak = strong;
        EXPECT_FALSE(PxStrongHndl<LifeNode>(weak).isNull());
    }
    EXPECT_EQ(life.destroyed, 1);
    EXPECT_EQ(life.deleted, 1);
    EXPECT_TRUE(weak.isExpired());
    EXPECT_TRUE(PxStrongHndl<LifeNode>(weak).isNull());
    EXPECT_TRUE(PxStrongHndl<LifeNode>(weak).isNull()); // a second try does not bring it back either
    EXPECT_EQ(life.destroyed, 1);
}

TEST(PxHandles, SelfAssignmentAndSameBlockAssignmentKeepTheCounts) {
    Life life;
    PxStrongHndl<LifeNode> strong = makeNode(life);
    PxWeakHndl<LifeNode> weak(strong);
    ASSERT_EQ(strong.getStrongCount(), 1);
    ASSERT_EQ(strong.getBlockCount(), 2);

    PxStrongHndl<LifeNode>& alias = strong;
    strong = alias;
    EXPECT_EQ(strong.getStrongCount(), 1);
    EXPECT_EQ(strong.getBlockCount(), 2);

    // Another view of the same node family: only the pointer changes.
    PxStrongHndl<PxNode const> asNode(strong);
    PxStrongHndl<PxNode const> second(strong);
    EXPECT_EQ(strong.getStrongCount(), 3);
    PxStrongHndl<PxAnimValueProtocol<double> const> asValue(strong);
    asNode = asValue;
    EXPECT_EQ(strong.getStrongCount(), 4);
    EXPECT_EQ(asNode.get(), static_cast<PxNode const*>(strong.get()));
    EXPECT_EQ(life.destroyed, 0);
}

TEST(PxHandles, DestroyRunsAtLastStrongHandleMemoryGoesAtLastNodePtr) {
    Life life;
    PxNodePtr<LifeNode const> kept;
    {
        PxStrongHndl<LifeNode> strong = makeNode(life);
        kept = PxNodePtr<LifeNode const>(strong);
    }
    EXPECT_EQ(life.destroyed, 1);
    EXPECT_EQ(life.deleted, 0);
    kept.reset();
    EXPECT_EQ(life.deleted, 1);
}

TEST(PxHandles, CastToAnotherProtocolIsChecked) {
    Life life;
    PxStrongHndl<LifeNode> strong = makeNode(life);
    PxStrongHndl<PxNode const> asNode(strong);
    // Back down to the protocol the node has.
    PxNodePtr<PxAnimValueProtocol<double> const> value(asNode);
    EXPECT_EQ(value.get(), strong.get());
    try {
        PxNodePtr<OtherProtocol const> other(asNode);
        FAIL() << "cast accepted";
    } catch (RCEx::ExCastFailed const& error) {
        EXPECT_NE(error.getReason().find("LifeNode"), std::string::npos) << error.getReason();
        EXPECT_NE(error.getReason().find("OtherProtocol"), std::string::npos) << error.getReason();
    }
    PxStrongHndl<PxNode const> none;
    EXPECT_TRUE(PxNodePtr<OtherProtocol const>(none).isNull());
    EXPECT_THROW(*none, RCEx::ExNullPtr);
}

TEST(PxHandles, ThreadRulesAreAssertedWithTheirTexts) {
    Life life;
    PxStrongHndl<LifeNode> strong = makeNode(life);
    PxNodePtr<LifeNode const> held(strong);

    // On a worker: no strong handle may be copied.
    std::string onWorker = PxTest::assertionTextOnWorker([&] { PxStrongHndl<LifeNode> copy(strong); });
    EXPECT_EQ(onWorker, "!PxRequestMgr::getInstance().isWorkerThreadCurrent()");
    // A borrowed view is fine there.
    EXPECT_EQ(PxTest::assertionTextOnWorker([&] { PxUPtr<LifeNode const> view(held); }), "");
    // Off a worker, it is not.
    try {
        PxUPtr<LifeNode const> view(held);
        FAIL() << "PxUPtr made off a worker";
    } catch (AssertionsEx::ExAssertionFailed const& error) {
        EXPECT_STREQ(error.what(), "PxRequestMgr::getInstance().isWorkerThreadCurrent()");
    }
}
