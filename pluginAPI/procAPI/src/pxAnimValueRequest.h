#pragma once
// Evaluates a value node at a time, as a request: what a reader on the
// application thread posts and waits for.
#include "assertions.h"
#include "pxAnimValueProtocol.h"
#include "pxRequest.h"

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

    T const& getValue() const { return _result.getValue(); }
    PxResult<T> const& getResult() const { return _result; }

private:
    PxNodePtr<PxAnimValueProtocol<T> const> _node;
    PxTimeContext _context;
    PxResult<T> _result;
};

} // namespace Qv
