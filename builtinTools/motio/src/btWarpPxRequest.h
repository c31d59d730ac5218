#pragma once
// The requests of the warps: one of `count` requests that share a piece of
// work, request `index` taking its part (tiles, or a strip of rows). They
// are posted together and waited for together by the thread that made them.
#include "geRectangle.h"
#include "pxRequest.h"
#include "pxRequestMgr.h"
#include "pxRequestPtr.h"

#include <exception>
#include <string>
#include <vector>

namespace Qv {

class BtWarpPxRequest : public PxRequest {
public:
    BtWarpPxRequest(int index, int count);

    std::string getRequestType() const override { return "Warp"; }
    int getIndex() const { return _index; }
    int getCount() const { return _count; }

    // The rows of `rgn` that request `index` of `count` takes: strips of
    // ceil(height / count) rows from the top, the last ones shorter or empty.
    static GeRectangle<int> getStrip(GeRectangle<int> const& rgn, int index, int count);

    // Posts every request, then waits for each in turn, so that this thread
    // takes part. A failure is rethrown (the first in order) once none of
    // them runs any more: the others are cancelled and awaited, since they
    // write into buffers the caller owns.
    template <class Request>
    static void runAll(std::vector<PxRequestPtr<Request>> const& requests) {
        PxRequestMgr& mgr = PxRequestMgr::getInstance();
        for (PxRequestPtr<Request> const& request : requests)
            mgr.postRequest(request, 0);
        std::exception_ptr failure;
        for (PxRequestPtr<Request> const& request : requests) {
            try {
                mgr.waitForRequest(request);
            } catch (...) {
                if (!failure) {
                    failure = std::current_exception();
                    for (PxRequestPtr<Request> const& other : requests)
                        other->cancel();
                }
            }
        }
        for (PxRequestPtr<Request> const& request : requests)
            mgr.releaseRequest(request);
        if (failure)
            std::rethrow_exception(failure);
    }

private:
    int const _index;
    int const _count;
};

} // namespace Qv
