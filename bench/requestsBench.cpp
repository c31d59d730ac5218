// The request manager against oneTBB's task_group for the same work:
//   post_wait  one empty request posted and waited, per operation
//   fanout     10,000 small requests posted, then all waited
//   parallel   PxParallelProc over compute-bound tasks on all workers,
//              against the same tasks in a loop on one thread
// Each measure is the median of several repetitions, ours and the anchor
// taking turns.
#include "benchTiming.h"
#include "cbHandler.h"
#include "pxParallelProc.h"
#include "pxRequestMgr.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <oneapi/tbb/task_group.h>
#include <vector>

namespace {

using namespace Qv;

constexpr int REPETITIONS = 31;

using QvBench::keep;

// Median times in seconds of `ours` and `anchor`, taking turns.
std::pair<double, double> medians(std::function<void()> const& ours, std::function<void()> const& anchor) {
    std::vector<double> const times = QvBench::mediansInTurns({ours, anchor}, REPETITIONS);
    return {times[0], times[1]};
}

// A little integer work that the compiler cannot fold.
std::uint64_t mix(std::uint64_t seed, int rounds) {
    std::uint64_t x = seed;
    for (int i = 0; i < rounds; ++i) {
        x ^= x >> 33;
        x *= 0xff51afd7ed558ccdULL;
        x ^= x >> 29;
    }
    return x;
}

class EmptyRequest : public PxRequest {
public:
    void performExecute() override {}
};

class SmallRequest : public PxRequest {
public:
    explicit SmallRequest(std::uint64_t seed) : _seed(seed) {}
    void performExecute() override { keep(mix(_seed, SMALL_ROUNDS)); }

    static constexpr int SMALL_ROUNDS = 16;

private:
    std::uint64_t _seed;
};

// Runs `body` inside a request on a worker, where node code posts and waits.
void runOnWorker(std::function<void()> const& body) {
    class Body : public PxRequest {
    public:
        explicit Body(std::function<void()> const& body) : _body(body) {}
        void performExecute() override { _body(); }

    private:
        std::function<void()> const& _body;
    };
    PxRequestMgr& mgr = PxRequestMgr::getInstance();
    PxRequestPtr<Body> const request(new Body(body));
    mgr.postRequest(request, 0);
    mgr.waitForRequest(request);
    mgr.releaseRequest(request);
}

void benchPostWait() {
    constexpr int NB_OPS = 20000;
    PxRequestMgr& mgr = PxRequestMgr::getInstance();
    auto const postWait = [&] {
        for (int i = 0; i < NB_OPS; ++i) {
            PxRequestPtr<EmptyRequest> const request(new EmptyRequest);
            mgr.postRequest(request, 0);
            mgr.waitForRequest(request);
            mgr.releaseRequest(request);
        }
    };
    tbb::task_group group;
    auto const tbbRunWait = [&] {
        tbb::task_group inner;
        for (int i = 0; i < NB_OPS; ++i) {
            inner.run([] {});
            inner.wait();
        }
    };
    auto const [ours, tbb] = medians([&] { runOnWorker(postWait); },
                                     [&] {
                                         group.run(tbbRunWait);
                                         group.wait();
                                     });
    auto const [oursOutside, tbbOutside] = medians(postWait, tbbRunWait);
    std::printf("requests.post_wait in a request: ours %.3f us/op, tbb %.3f us/op\n", ours / NB_OPS * 1e6,
                tbb / NB_OPS * 1e6);
    std::printf(
        "requests.post_wait from the application thread: ours %.3f us/op, tbb %.3f us/op (ratio %.3f)\n",
        oursOutside / NB_OPS * 1e6, tbbOutside / NB_OPS * 1e6, oursOutside / tbbOutside);
    std::printf("ratio requests.post_wait %.3f\n", ours / tbb);
}

void benchFanOut() {
    constexpr int NB_REQUESTS = 10000;
    PxRequestMgr& mgr = PxRequestMgr::getInstance();
    std::vector<PxRequestPtr<SmallRequest>> requests;
    requests.reserve(NB_REQUESTS);
    tbb::task_group group;
    auto const [ours, tbb] = medians(
        [&] {
            for (int i = 0; i < NB_REQUESTS; ++i) {
                requests.emplace_back(new SmallRequest(std::uint64_t(i)));
                mgr.postRequest(requests.back(), 0);
            }
            for (PxRequestPtr<SmallRequest> const& request : requests)
                mgr.waitForRequest(request);
            for (PxRequestPtr<SmallRequest> const& request : requests)
                mgr.releaseRequest(request);
            requests.clear();
        },
        [&] {
            for (int i = 0; i < NB_REQUESTS; ++i)
                group.run([seed = std::uint64_t(i)] { keep(mix(seed, SmallRequest::SMALL_ROUNDS)); });
            group.wait();
        });
    std::printf("requests.fanout ours %.3f ms, tbb %.3f ms for %d requests\n", ours * 1e3, tbb * 1e3,
                NB_REQUESTS);
    std::printf("ratio requests.fanout %.3f\n", ours / tbb);
}

void benchParallel() {
    constexpr int NB_TASKS = 64;
    constexpr int ROUNDS = 400000; // about a millisecond each
    std::vector<std::uint64_t> results(NB_TASKS);
    struct Work : CbHandler<int const> {
        std::vector<std::uint64_t>* results;
        void call(int const& task) override {
            (*results)[std::size_t(task)] = mix(std::uint64_t(task), ROUNDS);
        }
    } work;
    work.results = &results;

    auto const [parallel, oneThread] = medians(
        [&] {
            PxParallelProc<int> proc(&work);
            for (int task = 0; task < NB_TASKS; ++task)
                proc.addTask(task);
            proc.run();
        },
        [&] {
            for (int task = 0; task < NB_TASKS; ++task)
                work.call(task);
        });
    keep(results);
    std::printf("requests.parallel one thread %.2f ms, %d workers %.2f ms\n", oneThread * 1e3,
                PxRequestMgr::getInstance().getNbWorkers(), parallel * 1e3);
    std::printf("speedup requests.parallel %.2f\n", oneThread / parallel);
}

} // namespace

int main() {
    benchPostWait();
    benchFanOut();
    benchParallel();
    return 0;
}
