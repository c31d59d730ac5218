#pragma once
// Running a piece of a test inside a request, as node code runs.
#include "assertions.h"
#include "pxRequestMgr.h"

#include <functional>
#include <string>

namespace Qv::PxTest {

class FunctionRequest : public PxRequest {
public:
    explicit FunctionRequest(std::function<void()> work) : _work(std::move(work)) {}
    void performExecute() override { _work(); }

private:
    std::function<void()> _work;
};

// Posts `work` and waits for it: it runs as a request, on a worker or inline.
inline void runAsRequest(std::function<void()> work) {
    PxRequestPtr<PxRequest> request(new FunctionRequest(std::move(work)));
    PxRequestMgr& manager = PxRequestMgr::getInstance();
    manager.postRequest(request, 0);
    manager.waitForRequest(request);
    manager.releaseRequest(request);
}

// The text of the assertion `work` raised inside a request, or "" if none.
inline std::string assertionTextOnWorker(std::function<void()> work) {
    try {
        runAsRequest(std::move(work));
    } catch (AssertionsEx::ExAssertionFailed const& error) {
        return error.getReason();
    }
    return "";
}

} // namespace Qv::PxTest
