#pragma once
// The application thread's synchronous read of a value socket: a request for
// the value at a time, posted to the request manager and waited for. Never
// call it from a worker: nodes read their inputs themselves.
#include "assertions.h"
#include "piInput.h"
#include "piOutput.h"
#include "pxAnimValueRequest.h"
#include "pxRequestMgr.h"

namespace Qv {

template <class T, class Socket>
class PiTypedAnimSocket {
public:
    explicit PiTypedAnimSocket(RCShdPtr<Socket const> socket) : _socket(std::move(socket)) {
        QV_ASSERT(!_socket.isNull());
    }

    T getValue(double time) const { return getResult(time).getValue(); }

    // The value and the interval it holds for. Rethrows what the evaluation
    // threw; throws RCEx::ExNullPtr when nothing is published.
    PxResult<T> getResult(double time) const {
        PxStrongHndl<PxNode const> node = _socket->getProcNode();
        if (node.isNull())
            RCExUtil::throwExNullPtr(RCExUtil::getTypeName(typeid(PxAnimValueProtocol<T>)));
        return PxAnimValueRequest<T>::evaluate(PxNodePtr<PxAnimValueProtocol<T> const>(node), time);
    }

private:
    RCShdPtr<Socket const> _socket;
};

} // namespace Qv
