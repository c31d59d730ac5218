#pragma once
// A loop over 100,000 times of ten seconds, run inside one request on a
// worker, the way a render asks for a parameter frame after frame: the sum of
// what `evaluate` gives at each time.
#include "pxRequestMgr.h"

#include <functional>

namespace QvBench {

inline constexpr int TIMES = 100000;

inline double timeAt(int i) {
    return i * (10.0 / TIMES);
}

class LoopRequest : public Qv::PxRequest {
public:
    explicit LoopRequest(std::function<double(double)> const& evaluate) : _evaluate(evaluate) {}
    void performExecute() override {
        double sum = 0.0;
        for (int i = 0; i < TIMES; ++i)
            sum += _evaluate(timeAt(i));
        _sum = sum;
    }
    double getSum() const { return _sum; }

private:
    std::function<double(double)> const& _evaluate;
    double _sum = 0.0;
};

inline double sumOnWorker(std::function<double(double)> const& evaluate) {
    Qv::PxRequestMgr& manager = Qv::PxRequestMgr::getInstance();
    Qv::PxRequestPtr<LoopRequest> request(new LoopRequest(evaluate));
    manager.postRequest(request, 0);
    manager.waitForRequest(request);
    manager.releaseRequest(request);
    return request->getSum();
}

} // namespace QvBench
