// Expression evaluation against the same formulas written as plain C++:
//   arith  a 20-node arithmetic tree of the time
//   noise  noise, turbulence of four octaves and 3D noise of the time
// Each is evaluated at 100,000 times inside one request on a worker, the way
// a render asks for a parameter frame after frame; the native function runs
// the same loop. Each measure is the median of several repetitions, ours and
// the native taking turns.
#include "benchTiming.h"
#include "benchWorkerLoop.h"
#include "btExpMath.h"
#include "btExpParser.h"
#include "btExpPxGraphBase.h"
#include "btNoiseGenerator.h"
#include "inInitMgr.h"
#include "pxRequestMgr.h"

#include <cmath>
#include <cstdio>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

using namespace Qv;

constexpr int REPETITIONS = 21;
using QvBench::timeAt;
using QvBench::TIMES;

// 20 nodes: 7 times, 5 constants, 7 binary operators and a negation.
constexpr char const* ARITH_TEXT = "-((t*2.5+1)/(t*t+3) - (t-4)*(t+0.5))";
double arithNative(double t) {
    return -((t * 2.5 + 1) / BtExpMath::safeDivisor(t * t + 3) - (t - 4) * (t + 0.5));
}

constexpr char const* NOISE_TEXT = "noise(t*1.7)+turbulence(t,4)*0.5+dot(noise3((t,2*t,1)),(1,1,1))";
double noiseNative(double t) {
    BtNoiseGenerator::Sample const n = BtNoiseGenerator::getNoise(static_cast<float>(t * 1.7), 0.0f, 0.0f);
    BtNoiseGenerator::Sample const turbulence =
        BtNoiseGenerator::computeTurbulence(static_cast<float>(t), 0.0f, 0.0f, 4.0);
    BtNoiseGenerator::Sample const n3 =
        BtNoiseGenerator::getNoise(static_cast<float>(t), static_cast<float>(2 * t), 1.0f);
    return static_cast<double>(n[3]) + static_cast<double>(turbulence[3]) * 0.5 +
           (static_cast<double>(n3[0]) + static_cast<double>(n3[1]) + static_cast<double>(n3[2]));
}

// Expressions without references.
class Graph : public BtExpPxGraphBase {
public:
    bool onAttribute(LiString const&, int, int) override { return false; }
};

PxStrongHndl<PxAnimValueProtocol<double> const> build(char const* text) {
    RCShdPtr<Graph> graph(new Graph);
    std::istringstream input(text);
    btExpParse(*graph, input);
    return BtExpNodeTypes::asTyped<double>(graph->getResult());
}

double runOnWorker(std::function<double(double)> const& evaluate) {
    return QvBench::sumOnWorker(evaluate);
}

void compare(char const* name, char const* text, double (*native)(double)) {
    PxStrongHndl<PxAnimValueProtocol<double> const> const node = build(text);
    PxNodePtr<PxAnimValueProtocol<double> const> const held(node);
    std::function<double(double)> const ours = [&held](double t) {
        PxResult<double> result;
        held->getAnimValue(result, PxTimeContext(t));
        return result.getValue();
    };
    std::function<double(double)> const plain = [native](double t) { return native(t); };
    double const oursSum = runOnWorker(ours);
    double const nativeSum = runOnWorker(plain);
    if (oursSum != nativeSum)
        throw std::runtime_error(std::string(name) + ": the expression and the native formula differ");
    std::vector<double> const medians = QvBench::mediansInTurns(
        {[&] { QvBench::keep(runOnWorker(ours)); }, [&] { QvBench::keep(runOnWorker(plain)); }}, REPETITIONS);
    std::printf("# %s: %.1f ns per evaluation, native %.1f ns\n", name, medians[0] / TIMES * 1e9,
                medians[1] / TIMES * 1e9);
    std::printf("ratio expressions.%s.native %.2f\n", name, medians[0] / medians[1]);
}

} // namespace

// An argument names the one comparison to run (for a profiler); none runs both.
int main(int argc, char** argv) {
    std::string const only = argc > 1 ? argv[1] : "";
    InInitMgr::getInstance().initializeAll();
    if (only.empty() || only == "arith")
        compare("arith", ARITH_TEXT, arithNative);
    if (only.empty() || only == "noise")
        compare("noise", NOISE_TEXT, noiseNative);
    InInitMgr::getInstance().finalizeAll();
    return 0;
}
