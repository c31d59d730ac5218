#pragma once
// Runs one callback on many tasks in parallel: one request per task, all
// posted first, then waited for in task order, so that the calling thread
// (usually a worker) takes part in the work.
#include "assertions.h"
#include "cbHandler.h"
#include "pxRequest.h"
#include "pxRequestMgr.h"
#include "pxRequestPtr.h"

#include <cstddef>
#include <exception>
#include <string>
#include <utility>
#include <vector>

namespace Qv {

template <class Task>
class PxParallelProc {
public:
    class Request : public PxRequest {
    public:
        Request(PxParallelProc& owner, Task task) : _owner(owner), _task(std::move(task)) {}

        std::string getRequestType() const override { return "ParallelProc"; }
        void performExecute() override { _owner._procCb->call(_task); }

        Task const& getTask() const noexcept { return _task; }

    private:
        PxParallelProc& _owner;
        Task const _task;
    };

    // The callback is borrowed: it must outlive run().
    explicit PxParallelProc(CbHandler<Task const>* procCb = nullptr,
                            PxRequestMgr& mgr = PxRequestMgr::getInstance())
        : _procCb(procCb), _mgr(mgr) {}
    PxParallelProc(PxParallelProc const&) = delete;
    PxParallelProc& operator=(PxParallelProc const&) = delete;
    ~PxParallelProc() { clear(); }

    void setProcCb(CbHandler<Task const>* procCb) noexcept { _procCb = procCb; }
    void addTask(Task task) { _requests.emplace_back(new Request(*this, std::move(task))); }
    std::size_t getNbTasks() const noexcept { return _requests.size(); }
    Task const& getTask(std::size_t taskIdx) const {
        QV_ASSERT(taskIdx < _requests.size());
        return _requests[taskIdx]->getTask();
    }

    // Posts every task, then waits for each in task order. A failure is
    // rethrown (the first in task order) only once no task runs any more:
    // the others are cancelled and awaited, since they use the callback.
    void run(int priority = 0) {
        QV_ASSERT(_procCb != 0);
        for (PxRequestPtr<Request> const& request : _requests)
            _mgr.postRequest(request, priority);
        std::exception_ptr failure;
        for (std::size_t taskIdx = 0; taskIdx < _requests.size(); ++taskIdx) {
            try {
                waitForTask(taskIdx);
            } catch (...) {
                if (!failure) {
                    failure = std::current_exception();
                    for (PxRequestPtr<Request> const& request : _requests)
                        request->cancel();
                }
            }
        }
        clear();
        if (failure)
            std::rethrow_exception(failure);
    }

    // Releases the requests (cancelling those not finished) and forgets the tasks.
    void clear() noexcept {
        for (PxRequestPtr<Request> const& request : _requests)
            _mgr.releaseRequest(request);
        _requests.clear();
    }

private:
    void waitForTask(std::size_t taskIdx) {
        QV_ASSERT(taskIdx < _requests.size());
        _mgr.waitForRequest(_requests[taskIdx]);
    }

    CbHandler<Task const>* _procCb;
    PxRequestMgr& _mgr;
    std::vector<PxRequestPtr<Request>> _requests;
};

} // namespace Qv
