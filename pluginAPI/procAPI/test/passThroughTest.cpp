// Pass-through nodes: never a null child, callbacks once each, child swaps.
#include "pxPassThroughNode.h"
#include "pxTestUtil.h"
#include "pxValueNodes.h"

#include <gtest/gtest.h>

using namespace Qv;

namespace {

using ValueProtocol = PxAnimValueProtocol<double>;

class ForwardNode : public PxPassThroughNode<ValueProtocol, ValueProtocol> {
public:
    ForwardNode(PxNode::Init const& init, PxStrongHndl<ValueProtocol const> const& child)
        : PxNode(init), PxPassThroughNode<ValueProtocol, ValueProtocol>(init, child) {}
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        PxUPtr<ValueProtocol const>(getChild())->getAnimValue(result, context);
    }
};

class CountingCb : public PxPassThroughProtocol::InvalidateCb {
public:
    void call(PxPassThroughProtocol::InvalidationInfo const&) override { ++calls; }
    int calls = 0;
};

PxStrongHndl<ValueProtocol const> constant(double value) {
    PxNode::Init init;
    PxStrongHndl<PxConstantAnimValueNode<double>> node(
        new PxConstantAnimValueNode<double>(init, PxResult<double>(value, PxValidityInterval::FULL)));
    PxNode::init(node);
    return node;
}

PxStrongHndl<ForwardNode> forward(PxStrongHndl<ValueProtocol const> const& child) {
    PxNode::Init init;
    PxStrongHndl<ForwardNode> node(new ForwardNode(init, child));
    PxNode::init(node);
    return node;
}

double valueOf(PxStrongHndl<ForwardNode> const& node) {
    double value = 0;
    PxNodePtr<ForwardNode const> held(node);
    PxTest::runAsRequest([&] {
        PxResult<double> result;
        PxUPtr<ForwardNode const>(held)->getAnimValue(result, PxTimeContext(0.0));
        value = result.getValue();
    });
    return value;
}

} // namespace

TEST(PxPassThrough, NeverTakesANullChild) {
    try {
        forward(PxStrongHndl<ValueProtocol const>());
        FAIL() << "null child accepted";
    } catch (AssertionsEx::ExAssertionFailed const& error) {
        EXPECT_STREQ(error.what(), "!_child.isNull()");
    }
    auto node = forward(constant(1.0));
    PxNodePtr<ForwardNode> held(node);
    EXPECT_EQ(
        PxTest::assertionTextOnWorker([&] { PxUPtr<ForwardNode>(held)->setChild(PxUPtr<PxNode const>()); }),
        "!child.isNull()");
    EXPECT_EQ(valueOf(node), 1.0); // the old child stays
}

TEST(PxPassThrough, CallbackAddedTwiceIsCalledOnceAndExpiredOnesAreSkipped) {
    auto first = constant(1.0);
    auto second = constant(2.0);
    auto node = forward(first);
    PxNodePtr<ForwardNode> held(node);
    PxNodePtr<ValueProtocol const> secondHeld(second);

    RCStrongPtr<PxPassThroughProtocol::InvalidateCb> callback(new CountingCb);
    RCWeakPtr<PxPassThroughProtocol::InvalidateCb> weak(callback);
    RCWeakPtr<PxPassThroughProtocol::InvalidateCb> expired;
    {
        RCStrongPtr<PxPassThroughProtocol::InvalidateCb> gone(new CountingCb);
        expired = gone;
    }
    PxTest::runAsRequest([&] {
        PxUPtr<ForwardNode> view(held);
        view->addInvalidateCb(weak);
        view->addInvalidateCb(weak);
        view->addInvalidateCb(expired);
        view->setChild(PxUPtr<PxNode const>(secondHeld));
    });
    EXPECT_EQ(static_cast<CountingCb&>(*callback).calls, 1);
    EXPECT_EQ(valueOf(node), 2.0);

    // Invalidation of the new child reaches the listener; the old child no longer counts.
    second->invalidate(PxValidityInterval::FULL, 0);
    first->invalidate(PxValidityInterval::FULL, 0);
    EXPECT_EQ(static_cast<CountingCb&>(*callback).calls, 2);

    PxTest::runAsRequest([&] { PxUPtr<ForwardNode>(held)->removeInvalidateCb(weak); });
    second->invalidate(PxValidityInterval::FULL, 0);
    EXPECT_EQ(static_cast<CountingCb&>(*callback).calls, 2);
}

TEST(PxPassThrough, CallbacksAreAddedOnlyOnAWorker) {
    auto node = forward(constant(1.0));
    RCStrongPtr<PxPassThroughProtocol::InvalidateCb> callback(new CountingCb);
    try {
        node->addInvalidateCb(RCWeakPtr<PxPassThroughProtocol::InvalidateCb>(callback));
        FAIL();
    } catch (AssertionsEx::ExAssertionFailed const& error) {
        EXPECT_STREQ(error.what(), "PxRequestMgr::getInstance().isWorkerThreadCurrent()");
    }
}
