// qv snapshot: the whole frame of an image output at a time and proxy scale,
// computed tile by tile on the workers and written through the file layer in
// the format of the file's extension.
#include "ffImageWriteUtil.h"
#include "piEx.h"
#include "piImageSocket.h"
#include "pxImageProtocol.h"
#include "qvCommands.h"
#include "qvComposition.h"

#include <fmt/format.h>
#include <memory>
#include <optional>

namespace Qv {

namespace {

struct SnapshotOptions {
    std::string composition;
    std::string output;
    double time = 0.0;
    std::optional<long long> frame;
    std::string file;
    int proxyScale = 0;
};

int snapshot(SnapshotOptions const& options, std::ostream&) {
    QvComposition::checkProxyScale(options.proxyScale);
    // Warnings of the load (a missing tool) reach standard error through the message sink.
    RCShdPtr<PiGraph> graph = QvComposition::load(options.composition);
    RCShdPtr<PiOutput> output = QvComposition::findImageOutput(*graph, options.output);
    double time = options.time;
    if (options.frame) {
        // A frame of the output's own rate.
        PxStrongHndl<PxImageProtocol const> const image(output->getProcNode());
        Rational const rate = image->getImageFormat().getValue().getRate();
        if (rate.getDouble() <= 0.0)
            throw PiEx::ExBadValue(__FILE__, __LINE__,
                                   "output " + options.output + " has no frame rate: give --time in seconds");
        time = static_cast<double>(*options.frame) / rate.getDouble();
    }
    IxTile const frame = PiImageSocket<PiOutput>(output).getValue(time, options.proxyScale);
    if (!frame.isValid() || frame.getPixelRegion().isEmpty())
        throw PiEx::ExUnknownSocket(__FILE__, __LINE__,
                                    fmt::format("output {} gives an empty image at time {}: nothing to write",
                                                options.output, PiVariantUtil::toString(time)));
    FfImageWriteUtil::writeTile(OsFilePath(options.file), frame);
    return 0;
}

} // namespace

void addSnapshotCommand(CLI::App& app, QvAction& action) {
    auto options = std::make_shared<SnapshotOptions>();
    CLI::App* command = app.add_subcommand(
        "snapshot",
        "Compute the whole frame of an image output at a time and write it to an image file, in the "
        "format of the file's extension");
    command->add_option("COMP", options->composition, "The composition file")->required();
    command->add_option("NODE.OUTPUT", options->output, "The image output, such as C.Output")->required();
    CLI::Option* time = command->add_option("--time", options->time, "The time, in seconds (default 0)");
    command->add_option("--frame", options->frame, "The time as a frame of the output's rate")
        ->excludes(time);
    command->add_option("-o,--output", options->file, "The image file to write, such as frame.exr")
        ->required();
    command->add_option("--proxy", options->proxyScale,
                        "The proxy scale: the frame is computed at 1/2^P of its size (default 0, full size)");
    command->callback(
        [&action, options] { action = [options](std::ostream& out) { return snapshot(*options, out); }; });
}

} // namespace Qv
