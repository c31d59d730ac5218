#pragma once
// The application thread's synchronous read of an image socket: the whole
// frame at a time and proxy scale, every tile computed in parallel on the
// workers through one multi-tile request and assembled. Never call it from a
// worker: nodes read their inputs themselves.
#include "assertions.h"
#include "ixTile.h"
#include "piInput.h"
#include "piOutput.h"

namespace Qv {

// What the template shares: the frame of one processing node.
IxTile piComputeImageFrame(PxStrongHndl<PxNode const> const& node, double time, int proxyScale);

template <class Socket>
class PiImageSocket {
public:
    explicit PiImageSocket(RCShdPtr<Socket const> socket) : _socket(std::move(socket)) {
        QV_ASSERT(!_socket.isNull());
    }

    // The frame's pixels over its region of definition, with the image's
    // fill colour outside; INVALID_TILE when the frame holds no pixel.
    // Rethrows what the evaluation threw; throws RCEx::ExNullPtr when nothing
    // is published and RCEx::ExCastFailed when the socket gives no image.
    IxTile getValue(double time, int proxyScale) const {
        return piComputeImageFrame(_socket->getProcNode(), time, proxyScale);
    }

private:
    RCShdPtr<Socket const> _socket;
};

} // namespace Qv
