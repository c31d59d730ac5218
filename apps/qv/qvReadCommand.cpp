// qv read: frames of an image sequence through the image reader node of the
// tool library, computed whole on the workers, optionally written to files.
#include "btSequenceReadJob.h"
#include "qvCommands.h"
#include "qvEntryPoint.h"

#include <memory>

namespace Qv {

namespace {

struct ReadArguments {
    BtSequenceReadOptions options;
    std::string frames;
};

} // namespace

void addReadCommand(CLI::App& app, QvAction& action) {
    auto arguments = std::make_shared<ReadArguments>();
    BtSequenceReadOptions& options = arguments->options;
    CLI::App* command = app.add_subcommand(
        "read", "Read frames of an image sequence through an image reader node, as a composition would");
    command->add_option("PATH", options.path, "The sequence path, such as shot/plate.[1:24#].exr")
        ->required();
    command->add_option("--frames", arguments->frames, "Frames to read in order, such as 1-24 or 1,5,9-12")
        ->required();
    command->add_option("-o,--output", options.output,
                        "Files to write: # becomes the frame number padded to 4 (out.#.exr)");
    command->add_option("--proxy", options.proxy,
                        "The proxy scale: frames at 1/2^P of their size (default 0)");
    command->add_option("--depth", options.depth, "The depth of the output: UINT8, FLOAT16 or FLOAT32");
    command->add_option("--options", options.formatOptions, "The file format options, key=value pairs");
    CLI::Option* unpremultiply =
        command->add_flag("--unpremultiply", options.unpremultiply, "Unpremultiply over a background colour");
    command->add_option("--bg", options.background, "The background colour R,G,B (default black)")
        ->needs(unpremultiply);
    command->add_flag("--guess-bg", options.guessBackground, "Guess the background colour from the pixels")
        ->needs(unpremultiply)
        ->excludes("--bg");
    command->add_option("--vectors", options.vectors,
                        "The pixels are motion vectors: absolute or normalized:MAX");
    command->add_flag("--proxies-on-read", options.proxiesOnRead,
                      "A read at full size also makes the proxy levels the disk cache keeps");
    command->add_flag("--stats", options.stats, "Print file imports, proxy and error tiles and image memory");
    command->callback([&action, arguments] {
        action = [arguments](std::ostream& out) {
            BtSequenceReadOptions options = arguments->options;
            auto const parseFrames =
                findEntryPoint<void (*)(std::string const&, std::vector<long long>&)>("btParseFrameList");
            parseFrames(arguments->frames, options.frames);
            auto const read =
                findEntryPoint<int (*)(BtSequenceReadOptions const&, std::ostream&)>("btReadSequence");
            return read(options, out);
        };
    });
}

} // namespace Qv
