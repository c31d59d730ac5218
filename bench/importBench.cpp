// Footage through a composition against the bare reader and the image library:
//   import.play.reader   the reader benchmark's 24 frames (1920 x 1080 RGBA
//                        half EXR, ZIP, noise) played through the "Output
//                        Image" of an "Image Import" node of a composition
//                        saved and loaded again, against the bare reader node
//                        reading them as `qv read` does; each run in a fresh
//                        child process (caches empty, the disk tier off,
//                        initialisation and loading timed with it)
//   import.load.headers  loading a composition of 200 "Image Import" nodes
//                        over 200 one-frame sequences of 64 x 64 EXR, their
//                        graphs built, against opening those 200 files with
//                        OpenImageIO and reading their headers, both in one
//                        process taking turns
// Each figure is a median of several repetitions, the contenders taking turns.
#include "benchReaderFrames.h"
#include "benchTiming.h"
#include "btImageImportController.h"
#include "btImageImportServices.h"
#include "btImageImportTool.h"
#include "btSequenceReadJob.h"
#include "exBase.h"
#include "imageImportServices.h"
#include "omCompositionFile.h"
#include "piGraph.h"
#include "piImageSequence.h"
#include "piImageSocket.h"
#include "piNode.h"
#include "piOutput.h"
#include "statScalar.h"
#include "statTypes.h"

#include <OpenImageIO/imageio.h>
#include <cstdio>
#include <filesystem>
#include <fmt/format.h>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace Qv;

constexpr int PLAY_REPETITIONS = 7;
constexpr int LOAD_REPETITIONS = 9;
constexpr int SEQUENCES = 200;
constexpr int HEADER_SIZE = 64;
constexpr char const* PLAY_NODE = "Play";

RCStrongPtr<PiImageSequence> sequenceOf(fs::path const& file) {
    std::string problem;
    RCStrongPtr<PiImageSequence> sequence = ImageImportServices::findSequence(file.string(), problem);
    if (sequence.isNull())
        throw ExBase(__FILE__, __LINE__, file.string() + ": " + problem);
    return sequence;
}

// A composition of one "Image Import" node per file, named `names[i]`, saved to `composition`.
void saveImports(std::vector<fs::path> const& files, std::vector<std::string> const& names,
                 fs::path const& composition) {
    RCShdPtr<PiGraph> const graph(new PiGraph);
    for (std::size_t i = 0; i < files.size(); ++i)
        BtImageImportServices::getInstance().createImportNode(*graph, sequenceOf(files[i]), names[i], {});
    OmCompositionFile::save(*graph, OsFilePath(composition.string()));
}

// The bare reader node over in.0001.exr to in.0024.exr, as `qv read` drives it.
void readBare(fs::path const& dir) {
    BtSequenceReadOptions options;
    options.path = (dir / "in.[0001:0024].exr").string();
    btParseFrameList("1-24", options.frames);
    std::ostringstream sink;
    btReadSequence(options, sink);
}

// The same frames through the import node of the loaded composition, at the
// times the reader maps to them (frame number over the footage's rate).
void playImport(fs::path const& composition) {
    RCShdPtr<PiGraph> const graph = OmCompositionFile::load(OsFilePath(composition.string()));
    RCShdPtr<PiNode> const node = graph->getNode(PLAY_NODE);
    double const rate = node->getInterface<BtImageImportController>()->getReader().getRate().getDouble();
    PiImageSocket<PiOutput> const output(node->getOutput(BtImageImportTool::getOutputImageName(), true));
    for (int frame = 1; frame <= QvBench::READER_FRAMES; ++frame) {
        IxTile const tile = output.getValue(frame / rate, 0);
        if (!tile.isValid() || tile.getPixelRegion().isEmpty())
            throw ExBase(__FILE__, __LINE__, fmt::format("import play: frame {} shows nothing", frame));
    }
    if (StatScalar::get(StatTypes::ERROR_TILE_SCALAR_ID) != 0)
        throw ExBase(__FILE__, __LINE__, "import play: a frame was not read");
}

void comparePlay(fs::path const& dir) {
    QvBench::writeNoiseFrames(dir);
    fs::path const composition = dir / "play.qvc";
    QvBench::inChild([&] { saveImports({dir / "in.0001.exr"}, {PLAY_NODE}, composition); });
    std::vector<double> const medians =
        QvBench::mediansInTurns({[&] { QvBench::inChild([&] { playImport(composition); }); },
                                 [&] { QvBench::inChild([&] { readBare(dir); }); }},
                                PLAY_REPETITIONS);
    std::printf("ratio import.play.reader %.3f\n", medians[0] / medians[1]);
}

// shot000.0001.exr to shot199.0001.exr: small RGBA half frames, one a sequence.
std::vector<fs::path> writeHeaderFiles(fs::path const& dir) {
    std::vector<float> const pixels(HEADER_SIZE * HEADER_SIZE * 4, 0.5f);
    std::vector<fs::path> files;
    for (int i = 0; i < SEQUENCES; ++i) {
        fs::path const file = dir / fmt::format("shot{:03}.0001.exr", i);
        auto out = OIIO::ImageOutput::create(file.string());
        OIIO::ImageSpec const spec(HEADER_SIZE, HEADER_SIZE, 4, OIIO::TypeDesc::HALF);
        if (!out || !out->open(file.string(), spec) ||
            !out->write_image(OIIO::TypeDesc::FLOAT, pixels.data()) || !out->close()) {
            std::fprintf(stderr, "bench: cannot write %s\n", file.c_str());
            std::exit(1);
        }
        files.push_back(file);
    }
    return files;
}

void compareLoad(fs::path const& dir) {
    fs::path const folder = dir / "headers";
    fs::create_directories(folder);
    std::vector<fs::path> const files = writeHeaderFiles(folder);
    std::vector<std::string> names;
    for (int i = 0; i < SEQUENCES; ++i)
        names.push_back(fmt::format("Shot{:03}", i));
    fs::path const composition = dir / "headers.qvc";
    QvBench::inChild([&] { saveImports(files, names, composition); });
    QvBench::inChild([&] {
        // Loaded graphs stay until the end, so that no timed load pays for the last one's release.
        std::vector<RCShdPtr<PiGraph>> loaded;
        std::vector<double> const medians = QvBench::mediansInTurns(
            {[&] { loaded.push_back(OmCompositionFile::load(OsFilePath(composition.string()))); },
             [&] {
                 for (fs::path const& file : files) {
                     auto const in = OIIO::ImageInput::open(file.string());
                     if (!in)
                         throw ExBase(__FILE__, __LINE__, file.string() + ": " + OIIO::geterror());
                     QvBench::keep(in->spec().width);
                 }
             }},
            LOAD_REPETITIONS);
        if (StatScalar::get(StatTypes::FILE_IMPORT_SCALAR_ID) != 0)
            std::fprintf(stderr, "bench: loading read %lld image files\n",
                         static_cast<long long>(StatScalar::get(StatTypes::FILE_IMPORT_SCALAR_ID)));
        std::printf("ratio import.load.headers %.3f\n", medians[0] / medians[1]);
    });
}

} // namespace

// An argument names the one comparison to run (for a profiler); none runs both.
int main(int argc, char** argv) {
    std::string const only = argc > 1 ? argv[1] : "";
    fs::path const dir = fs::temp_directory_path() / fmt::format("qvImportBench_{}", getpid());
    fs::create_directories(dir);
    setenv("QV_DISK_CACHE", "off", 1);
    if (only.empty() || only == "play")
        comparePlay(dir);
    if (only.empty() || only == "load")
        compareLoad(dir);
    fs::remove_all(dir);
    return 0;
}
