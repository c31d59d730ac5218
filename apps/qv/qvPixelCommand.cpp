// qv pixel: one pixel of an image output, computing only the tile that holds
// it, so that a kernel can be checked pixel by pixel.
#include "piEx.h"
#include "piImagePixel.h"
#include "qvCommands.h"
#include "qvComposition.h"

#include <fmt/format.h>
#include <memory>

namespace Qv {

namespace {

struct PixelOptions {
    std::string composition;
    std::string output;
    int column = 0;
    int row = 0;
    double time = 0.0;
    int proxyScale = 0;
};

int pixel(PixelOptions const& options, std::ostream& out) {
    QvComposition::checkProxyScale(options.proxyScale);
    RCShdPtr<PiGraph> graph = QvComposition::load(options.composition);
    RCShdPtr<PiOutput> output = QvComposition::findImageOutput(*graph, options.output);
    PiImagePixel const pixel = piComputeImagePixel(output->getProcNode(), options.time, options.proxyScale,
                                                   options.column, options.row);
    if (!pixel.inside)
        throw PiEx::ExBadValue(__FILE__, __LINE__,
                               fmt::format("pixel {} {} is outside {} ({}x{})", options.column, options.row,
                                           options.output, pixel.region.getWidth(),
                                           pixel.region.getHeight()));
    CoRgbaColorTyped<float> const& v = pixel.value;
    out << fmt::format("{:.9g} {:.9g} {:.9g} {:.9g}\n", v.r, v.g, v.b, v.a);
    return 0;
}

} // namespace

void addPixelCommand(CLI::App& app, QvAction& action) {
    auto options = std::make_shared<PixelOptions>();
    CLI::App* command = app.add_subcommand(
        "pixel", "Compute the tile holding one pixel of an image output and print the pixel as R G B A");
    command->add_option("COMP", options->composition, "The composition file")->required();
    command->add_option("NODE.OUTPUT", options->output, "The image output, such as W.Output")->required();
    command->add_option("X", options->column, "The column, from the left of the output's pixel region")
        ->required();
    command->add_option("Y", options->row, "The row, from the top of the output's pixel region")->required();
    command->add_option("--time", options->time, "The time, in seconds (default 0)");
    command->add_option("--proxy", options->proxyScale,
                        "The proxy scale: the image is computed at 1/2^P of its size (default 0, full size)");
    command->callback(
        [&action, options] { action = [options](std::ostream& out) { return pixel(*options, out); }; });
}

} // namespace Qv
