// qv eval: the value of a value output at a time, computed by the processing
// nodes through a request, with the interval it holds for.
#include "coColor.h"
#include "piEx.h"
#include "piSocketUtil.h"
#include "piTypedAnimSocket.h"
#include "qvCommands.h"
#include "qvComposition.h"

#include <memory>

namespace Qv {

namespace {

struct EvalOptions {
    std::string composition;
    std::string output;
    double time = 0.0;
};

std::string toText(CoRgbColorTyped<float> const& colour) {
    return PiVariantUtil::toString(std::vector<double>{colour.r, colour.g, colour.b});
}

template <class T>
std::string toText(T const& value) {
    return PiVariantUtil::toString(value);
}

template <class T>
void print(RCShdPtr<PiOutput> const& output, double time, std::ostream& out) {
    PxResult<T> result = PiTypedAnimSocket<T, PiOutput>(output).getResult(time);
    out << toText(result.getValue()) << '\n'
        << "validity " << PiVariantUtil::toString(result.getVI().getStart()) << ' '
        << PiVariantUtil::toString(result.getVI().getEnd()) << '\n';
}

int evaluate(EvalOptions const& options, std::ostream& out) {
    RCShdPtr<PiGraph> graph = QvComposition::load(options.composition);
    RCShdPtr<PiOutput> output = PiSocketUtil::findOutput(*graph, options.output);
    if (output->getProcNode().isNull())
        throw PiEx::ExUnknownSocket(__FILE__, __LINE__,
                                    "output " + options.output + " gives nothing: nothing feeds it");
    switch (output->getType().getType()) {
    case PiSocketType::BOOLEAN:
        print<bool>(output, options.time, out);
        break;
    case PiSocketType::DOUBLE:
        print<double>(output, options.time, out);
        break;
    case PiSocketType::INTEGER:
        print<int>(output, options.time, out);
        break;
    case PiSocketType::STRING:
        print<std::string>(output, options.time, out);
        break;
    case PiSocketType::COLOR:
        print<CoRgbColorTyped<float>>(output, options.time, out);
        break;
    case PiSocketType::TIME:
        print<DtTime>(output, options.time, out);
        break;
    case PiSocketType::IMAGE:
        throw PiEx::ExUnknownSocket(__FILE__, __LINE__,
                                    "output " + options.output + " gives images, not values");
    }
    return 0;
}

} // namespace

void addEvalCommand(CLI::App& app, QvAction& action) {
    auto options = std::make_shared<EvalOptions>();
    CLI::App* command = app.add_subcommand(
        "eval",
        "Print the value of a value output at a time, then 'validity <begin> <end>', the times (seconds) "
        "for which it holds");
    command->add_option("COMP", options->composition, "The composition file")->required();
    command->add_option("NODE.OUTPUT", options->output, "The output, such as V.Output")->required();
    command->add_option("--time", options->time, "The time, in seconds (default 0)");
    command->callback(
        [&action, options] { action = [options](std::ostream& out) { return evaluate(*options, out); }; });
}

} // namespace Qv
