#pragma once
// The value of an expression node at a time, computed on a worker through a
// request and waited for: how the application thread reads an expression.
#include "pxAnimValueRequest.h"
#include "pxRequestMgr.h"

namespace Qv::BtExpEvaluation {

// Rethrows what the evaluation threw; the request is released either way.
template <class T>
PxResult<T> evaluate(PxNodePtr<PxAnimValueProtocol<T> const> const& node, double time) {
    PxRequestMgr& manager = PxRequestMgr::getInstance();
    PxRequestPtr<PxAnimValueRequest<T>> request(new PxAnimValueRequest<T>(node, PxTimeContext(time)));
    manager.postRequest(request, 0);
    struct Release {
        PxRequestMgr& manager;
        PxRequestPtr<PxAnimValueRequest<T>>& request;
        ~Release() { manager.releaseRequest(request); }
    } release{manager, request};
    manager.waitForRequest(request);
    return request->getResult();
}

} // namespace Qv::BtExpEvaluation
