#pragma once
// Evaluates a value node at a time, as a request: what a reader on the
// application thread posts and waits for.
#include "assertions.h"
#include "pxAnimValueProtocol.h"
#include "pxRequest.h"
#include "pxRequestMgr.h"

namespace Qv {

template <class T>
class PxAnimValueRequest : public PxRequest {
public:
    PxAnimValueRequest(PxNodePtr<PxAnimValueProtocol<T> const> node, PxTimeContext const& context)
        : _node(std::move(node)), _context(context) {}

    std::string getRequestType() const override { return "AnimValue"; }

    void performExecute() override {
        PxUPtr<PxAnimValueProtocol<T> const> node(_node);
        PxResult<T>& result = _result;
        node->getAnimValue(result, _context);
        QV_ASSERT(result.getVI().isNonEmpty());
    }

    // Posts a request for the node's value at a time, waits for it and
    // releases it: how the application thread reads a value. Rethrows what
    // the evaluation threw.
    static PxResult<T> evaluate(PxNodePtr<PxAnimValueProtocol<T> const> node, double time) {
        PxRequestMgr& manager = PxRequestMgr::getInstance();
        PxRequestPtr<PxAnimValueRequest<T>> request(
            new PxAnimValueRequest<T>(std::move(node), PxTimeContext(time)));
        manager.postRequest(request, 0);
        struct Release {
            PxRequestMgr& manager;
            PxRequestPtr<PxAnimValueRequest<T>>& request;
            ~Release() { manager.releaseRequest(request); }
        } release{manager, request};
        manager.waitForRequest(request);
        return request->getResult();
    }

    T const& getValue() const { return _result.getValue(); }
    PxResult<T> const& getResult() const { return _result; }

private:
    PxNodePtr<PxAnimValueProtocol<T> const> _node;
    PxTimeContext _context;
    PxResult<T> _result;
};

} // namespace Qv
