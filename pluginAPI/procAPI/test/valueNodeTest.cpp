// Value nodes read through requests, and changed through set requests.
#include "geVector.h"
#include "pxAnimValueRequest.h"
#include "pxRequestMgr.h"
#include "pxSetRequest.h"
#include "pxValueNodes.h"

#include <gtest/gtest.h>

using namespace Qv;

namespace {

template <class Node, class T>
PxStrongHndl<Node> valueNode(T value, PxValidityInterval vi = PxValidityInterval::FULL) {
    PxNode::Init init;
    PxStrongHndl<Node> node(new Node(init, PxResult<T>(value, vi)));
    PxNode::init(node);
    return node;
}

template <class T>
PxResult<T> readAt(PxNodePtr<PxAnimValueProtocol<T> const> node, double time) {
    PxRequestPtr<PxAnimValueRequest<T>> request(new PxAnimValueRequest<T>(node, PxTimeContext(time)));
    PxRequestMgr::getInstance().postRequest(request, 0);
    PxRequestMgr::getInstance().waitForRequest(request);
    PxResult<T> result = request->getResult();
    PxRequestMgr::getInstance().releaseRequest(request);
    return result;
}

} // namespace

TEST(PxValueNodes, ConstantAndSettableValuesReadThroughRequests) {
    auto constant = valueNode<PxConstantAnimValueNode<GeVector3<double>>>(GeVector3<double>{1, 2, 3});
    PxResult<GeVector3<double>> vector = readAt<GeVector3<double>>(constant, 5.0);
    EXPECT_EQ(vector.getValue(), (GeVector3<double>{1, 2, 3}));
    EXPECT_EQ(vector.getVI(), PxValidityInterval::FULL);

    auto settable = valueNode<PxAnimValueNode<double>>(0.5, PxValidityInterval(0, 10));
    EXPECT_EQ(readAt<double>(settable, 1.0).getValue(), 0.5);

    using Set = PxSetRequest<PxAnimValueNode<double>, PxResult<double> const&>;
    PxRequestPtr<Set> set(new Set(PxNodePtr<PxAnimValueNode<double>>(settable),
                                  &PxAnimValueNode<double>::setValue,
                                  PxResult<double>(2.5, PxValidityInterval::FULL)));
    PxRequestMgr::getInstance().postRequest(set, 0);
    PxRequestMgr::getInstance().waitForRequest(set);
    PxRequestMgr::getInstance().releaseRequest(set);
    PxResult<double> after = readAt<double>(settable, 1.0);
    EXPECT_EQ(after.getValue(), 2.5);
    EXPECT_EQ(after.getVI(), PxValidityInterval::FULL);
}

TEST(PxValueNodes, AResultWithAnEmptyIntervalIsAFault) {
    auto empty = valueNode<PxConstantAnimValueNode<double>>(1.0, PxValidityInterval::EMPTY);
    try {
        readAt<double>(empty, 0.0);
        FAIL() << "empty interval accepted";
    } catch (AssertionsEx::ExAssertionFailed const& error) {
        EXPECT_STREQ(error.what(), "result.getVI().isNonEmpty()");
    }
}
