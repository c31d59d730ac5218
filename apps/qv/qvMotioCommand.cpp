// qv motio: the motion vectors of a pair of images or of the frames of a
// sequence, computed by the Motio chain of the tool library over an image
// reader, whole frames at full size; written as EXR files of vectors, shown
// through the flow colour wheel, or summed up on standard output.
#include "assertions.h"
#include "btMotioSequenceJob.h"
#include "exBase.h"
#include "qvCommands.h"
#include "qvEntryPoint.h"
#include "qvVectorImage.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <iostream>
#include <memory>
#include <unistd.h>

namespace Qv {

namespace {

std::string const FRAME_NO = "<FrameNo>";

template <class T>
using PerType = std::array<T, BtMotioTypes::NB_VECTOR_TYPES>;

struct MotioArguments {
    std::vector<std::string> inputs;
    std::string frames;
    std::string quality = "Full";
    PerType<std::string> files;  // --forward, --backward
    PerType<std::string> wheels; // --forward-wheel, --backward-wheel
    float wheelMax = 0.0f;
    bool stats = false;
    BtMotioSequenceOptions job;
};

char const* typeName(BtMotioTypes::VectorType type) {
    return type == BtMotioTypes::FORWARD_VECTORS ? "forward" : "backward";
}

long long parseFrame(std::string const& text, std::string const& whole) {
    try {
        std::size_t used = 0;
        long long const value = std::stoll(text, &used);
        if (used == text.size())
            return value;
    } catch (std::exception const&) {
    }
    throw CLI::ValidationError("--frames", "\"" + whole + "\" is not a range of frames A-B");
}

// "A-B" or one frame "A"; a leading dash is a sign.
void parseFrames(std::string const& text, BtMotioSequenceOptions& job) {
    std::size_t const dash = text.find('-', 1);
    job.hasFrames = true;
    job.firstFrame = parseFrame(text.substr(0, dash), text);
    job.lastFrame = dash == std::string::npos ? job.firstFrame : parseFrame(text.substr(dash + 1), text);
    if (job.lastFrame < job.firstFrame)
        throw CLI::ValidationError("--frames", "\"" + text + "\" runs from high to low");
}

std::string fileName(std::string const& pattern, std::string const& frameText) {
    std::string name = pattern;
    for (std::size_t at = name.find(FRAME_NO); at != std::string::npos; at = name.find(FRAME_NO, at))
        name.replace(at, FRAME_NO.size(), frameText), at += frameText.size();
    return name;
}

// Progress on standard error: one line rewritten on a terminal, plain lines otherwise.
class Progress {
public:
    Progress() : _terminal(isatty(STDERR_FILENO) == 1) {}
    ~Progress() {
        if (_terminal && _shown)
            std::cerr << '\n';
    }
    Progress(Progress const&) = delete;
    Progress& operator=(Progress const&) = delete;

    void show(std::string const& text) {
        std::cerr << (_terminal ? "\r\033[K" : "") << text << (_terminal ? "" : "\n") << std::flush;
        _shown = true;
    }

private:
    bool _terminal;
    bool _shown = false;
};

// An interruption (Ctrl-C, a farm's kill) while a file is written waits for
// its rename: a file is whole under its name or absent, and no temporary file
// is left behind. Otherwise the signal ends qv at once, as it would anyway.
std::atomic<bool> gWriting{false};
std::atomic<int> gPendingSignal{0};
constexpr std::array<int, 3> INTERRUPTIONS{SIGINT, SIGTERM, SIGHUP};

extern "C" void onInterruption(int signal) {
    if (gWriting.load()) {
        gPendingSignal.store(signal);
        return;
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

class WritingFiles {
public:
    WritingFiles() { gWriting.store(true); }
    ~WritingFiles() {
        gWriting.store(false);
        if (int const signal = gPendingSignal.exchange(0)) {
            std::signal(signal, SIG_DFL);
            std::raise(signal);
        }
    }
    WritingFiles(WritingFiles const&) = delete;
    WritingFiles& operator=(WritingFiles const&) = delete;

    static void catchInterruptions() {
        for (int const signal : INTERRUPTIONS)
            std::signal(signal, onInterruption);
    }
};

class Outputs : public BtMotioSequenceSink {
public:
    Outputs(MotioArguments const& arguments, std::ostream& out) : _arguments(arguments), _out(out) {}

    void analysing(BtMotioTypes::VectorType type, long long frame, int done, int total) override {
        _progress.show("motio: " + std::string(typeName(type)) + " " + std::to_string(frame) + " (" +
                       std::to_string(done + 1) + "/" + std::to_string(total) + ")");
    }

    void vectors(BtMotioTypes::VectorType type, long long frame, std::string const& frameText,
                 IxTile const& tile) override {
        QvVectorImage const image(tile);
        WritingFiles const writing;
        if (std::string const& file = _arguments.files[type]; !file.empty())
            image.writeExr(OsFilePath(fileName(file, frameText)));
        if (std::string const& wheel = _arguments.wheels[type]; !wheel.empty())
            image.writeWheel(OsFilePath(fileName(wheel, frameText)), _arguments.wheelMax);
        if (_arguments.stats)
            _out << typeName(type) << ' ' << frame << ": " << QvVectorImage::formatStats(image.getStats())
                 << std::endl;
    }

private:
    MotioArguments const& _arguments;
    std::ostream& _out;
    Progress _progress;
};

int fail(std::string const& reason) {
    std::cerr << "qv: motio: " << reason << std::endl;
    return 1;
}

int motio(MotioArguments arguments, std::ostream& out) {
    // The tool's own values and labels: known once its library is loaded.
    std::string labels;
    arguments.job.quality = findEntryPoint<int (*)(std::string const&, std::string&)>("btMotioQuality")(
        arguments.quality, labels);
    if (arguments.job.quality < 0) {
        std::cerr << "qv: motio: --quality: \"" << arguments.quality << "\" is not 0 to "
                  << std::count(labels.begin(), labels.end(), ',') << " nor one of " << labels << std::endl;
        return 2;
    }
    // A sequence writes a file per frame: each name needs the frame's number.
    if (arguments.inputs.size() == 1)
        for (auto const* patterns : {&arguments.files, &arguments.wheels})
            for (std::string const& pattern : *patterns)
                if (!pattern.empty() && pattern.find(FRAME_NO) == std::string::npos)
                    return fail(pattern + ": no " + FRAME_NO + " for the frame numbers of a sequence");
    WritingFiles::catchInterruptions();
    try {
        Outputs outputs(arguments, out);
        findEntryPoint<void (*)(BtMotioSequenceOptions const&, BtMotioSequenceSink&)>("btMotioSequence")(
            arguments.job, outputs);
    } catch (AssertionsEx::ExAssertionFailed const&) {
        throw;
    } catch (ExBase const& error) {
        out.flush();
        return fail(error.getReason());
    }
    return 0;
}

} // namespace

void addMotioCommand(CLI::App& app, QvAction& action) {
    auto arguments = std::make_shared<MotioArguments>();
    CLI::App* command = app.add_subcommand(
        "motio", "Compute optical-flow motion vectors of two images or of the frames of a sequence with the "
                 "Motio tool, and write them as EXR files, show them as colour wheels or sum them up");
    command
        ->add_option("INPUTS", arguments->inputs,
                     "Two image files (frames 0 and 1), or one sequence path such as shot/p.[1:24#].exr")
        ->required()
        ->expected(1, 2);
    command->add_option("--frames", arguments->frames, "The frames in play, A-B (default all)")
        ->option_text("A-B");
    command
        ->add_option("--quality", arguments->quality,
                     "The finest level analysed: 0 to 6, or Full, Half, Quarter, Eighth, Sixteenth, "
                     "Thirty-second, Sixty-fourth (default Full)")
        ->option_text("Q");
    // The vectors are EXR whatever the name says: let the name say it too.
    auto const exr = [](std::string const& name) {
        std::string const extension = name.size() < 4 ? std::string() : name.substr(name.size() - 4);
        return extension == ".exr" || extension == ".EXR" ? std::string() : name + " is not an .exr file";
    };
    command
        ->add_option("--forward", arguments->files[BtMotioTypes::FORWARD_VECTORS],
                     "EXR files of the forward vectors (R horizontal, G vertical, in pixels); "
                     "<FrameNo> becomes the frame's number")
        ->check(exr)
        ->option_text("OUT");
    command
        ->add_option("--backward", arguments->files[BtMotioTypes::BACKWARD_VECTORS],
                     "EXR files of the backward vectors, likewise")
        ->check(exr)
        ->option_text("OUT");
    command
        ->add_option("--forward-wheel", arguments->wheels[BtMotioTypes::FORWARD_VECTORS],
                     "Images (PNG) of the forward vectors in the flow colour coding")
        ->option_text("PNG");
    command
        ->add_option("--backward-wheel", arguments->wheels[BtMotioTypes::BACKWARD_VECTORS],
                     "Images (PNG) of the backward vectors in the flow colour coding")
        ->option_text("PNG");
    command
        ->add_option("--wheel-max", arguments->wheelMax,
                     "The magnitude of full colour, in pixels (default each image's largest)")
        ->option_text("M")
        ->check(CLI::PositiveNumber);
    command->add_flag("--stats", arguments->stats,
                      "Print, per vector image, the means of x and y and the largest magnitude");
    command->callback([&action, arguments] {
        BtMotioSequenceOptions& job = arguments->job;
        job.inputs = arguments->inputs;
        if (!arguments->frames.empty())
            parseFrames(arguments->frames, job);
        for (auto type = BtMotioTypes::FORWARD_VECTORS; type < BtMotioTypes::NB_VECTOR_TYPES;
             type = static_cast<BtMotioTypes::VectorType>(type + 1)) {
            bool const wanted =
                !arguments->files[type].empty() || !arguments->wheels[type].empty() || arguments->stats;
            (type == BtMotioTypes::FORWARD_VECTORS ? job.forward : job.backward) = wanted;
        }
        if (!job.forward && !job.backward)
            throw CLI::ValidationError(
                "motio",
                "nothing to do: give --forward, --backward, --forward-wheel, --backward-wheel or --stats");
        action = [arguments](std::ostream& out) { return motio(*arguments, out); };
    });
}

} // namespace Qv
