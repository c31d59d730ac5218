// Expressions on parameters against what they replace:
//   eval  a Value Source driven by a 23-node expression over three other
//         nodes' outputs, evaluated at 100,000 times in one request on a
//         worker, against a Value Source keyframed with 20 keys;
//   load  a composition of 2,000 parameters each driven by an expression,
//         read from its text, against the same composition with constants.
// Each measure is the median of several repetitions, the contenders taking turns.
#include "benchTiming.h"
#include "benchWorkerLoop.h"
#include "inInitMgr.h"
#include "omCompositionFile.h"
#include "piExpressionInterface.h"
#include "piExpressionServices.h"
#include "piGraph.h"
#include "piSocketUtil.h"
#include "pxAnimValueProtocol.h"
#include "pxRequestMgr.h"
#include "xmlElement.h"
#include "xmlWriter.h"

#include <cstdio>
#include <functional>
#include <string>

namespace {

using namespace Qv;

using QvBench::TIMES;
constexpr int PARAMETERS = 2000;

constexpr char const* EXPRESSION =
    "(A.Output*2 + B.Output*3 - C.Output/4) * (t+1) - (A.Output - B.Output)*(C.Output + 0.5)";

double evaluateOnWorker(PxNodePtr<PxAnimValueProtocol<double> const> const& node) {
    std::function<double(double)> const evaluate = [&node](double t) {
        PxResult<double> result;
        node->getAnimValue(result, PxTimeContext(t));
        return result.getValue();
    };
    return QvBench::sumOnWorker(evaluate);
}

PiExpressionInterface& drive(PiGraph& graph, std::string const& path, std::string const& text) {
    PiExpressionInterface& expression =
        PiExpressionServices::getInstance()->getOrCreateExpression(PiSocketUtil::findInput(graph, path));
    expression.setExpression(text);
    if (!expression.isExpressionValid())
        throw std::runtime_error(path + ": " + expression.getErrorText());
    return expression;
}

void compareEvaluation() {
    RCShdPtr<PiGraph> graph(new PiGraph);
    char const* sources[] = {"A", "B", "C"};
    for (int i = 0; i < 3; ++i) {
        RCShdPtr<PiNode> node = graph->createNode("Value Source", sources[i]);
        node->getInput("Value")->getValueInterface().setKeyframeVariant(0.0, 0.1 * (i + 1));
        node->getInput("Value")->getValueInterface().setKeyframeVariant(10.0, 0.9 - 0.1 * i);
    }
    graph->createNode("Value Source", "P");
    drive(*graph, "P.Value", EXPRESSION);
    RCShdPtr<PiNode> keyed = graph->createNode("Value Source", "K");
    for (int key = 0; key < 20; ++key)
        keyed->getInput("Value")->getValueInterface().setKeyframeVariant(key * 0.5, (key % 7) / 7.0);

    PxNodePtr<PxAnimValueProtocol<double> const> const expression(
        graph->getNode("P")->getOutput("Output")->getProcNode());
    PxNodePtr<PxAnimValueProtocol<double> const> const keyframes(keyed->getOutput("Output")->getProcNode());
    std::vector<double> const medians =
        QvBench::mediansInTurns({[&] { QvBench::keep(evaluateOnWorker(expression)); },
                                 [&] { QvBench::keep(evaluateOnWorker(keyframes)); }},
                                21);
    std::printf("# eval: %.1f ns per evaluation of the expression, %.1f ns of the keyframes\n",
                medians[0] / TIMES * 1e9, medians[1] / TIMES * 1e9);
    std::printf("ratio exprtool.eval.keyframes %.2f\n", medians[0] / medians[1]);
}

// The composition's text: a source and PARAMETERS Value Sources, driven by
// expressions over the source or set to constants.
std::string composition(bool expressions) {
    RCShdPtr<PiGraph> graph(new PiGraph);
    graph->createNode("Value Source", "S")->getInput("Value")->setConstantValue(0.25);
    for (int i = 0; i < PARAMETERS; ++i) {
        std::string const name = "P" + std::to_string(i);
        graph->createNode("Value Source", name);
        if (expressions)
            drive(*graph, name + ".Value", "S.Output*2 + " + std::to_string(i % 10) + "*0.01");
        else
            graph->getNode(name)->getInput("Value")->setConstantValue(0.5 + (i % 10) * 0.01);
    }
    return XmlWriter::toString(OmCompositionFile::toXml(*graph));
}

void compareLoading() {
    std::string const withExpressions = composition(true);
    std::string const withConstants = composition(false);
    auto load = [](std::string const& text) {
        RCShdPtr<PiGraph> graph = OmCompositionFile::fromXml(XmlElement::parse(text), "bench");
        QvBench::keep(graph->getNodes().size());
    };
    std::vector<double> const medians =
        QvBench::mediansInTurns({[&] { load(withExpressions); }, [&] { load(withConstants); }}, 7);
    std::printf("# load: %d expression-driven parameters in %.1f ms, with constants %.1f ms\n", PARAMETERS,
                medians[0] * 1e3, medians[1] * 1e3);
    std::printf("ratio exprtool.load.constants %.2f\n", medians[0] / medians[1]);
}

} // namespace

// An argument names the one comparison to run (for a profiler); none runs both.
int main(int argc, char** argv) {
    std::string const only = argc > 1 ? argv[1] : "";
    InInitMgr::getInstance().initializeAll();
    if (only.empty() || only == "eval")
        compareEvaluation();
    if (only.empty() || only == "load")
        compareLoading();
    InInitMgr::getInstance().finalizeAll();
    return 0;
}
