// The file layer on a sequence of 24 frames of 1920 x 1080 RGBA half-float
// EXR (ZIP, as cameras and renderers write them), generated in a temporary
// folder: each frame read in strips as 16-bit RGBA and written back as a
// 16-bit TIFF, against oiiotool doing the same conversion of the same files in
// one run ("oiiotool --frames 1-24 in.#.exr -d uint16 -o out.#.tif").
// Both write through OpenImageIO's TIFF writer with its default compression.
// Prints `ratio media.read_write.oiiotool <x>`.
#include "benchTiming.h"
#include "ffFileFormatMgr.h"
#include "ffFileFormatOptions.h"

#include <Imath/half.h>
#include <OpenImageIO/imageio.h>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fmt/format.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace Qv;
namespace OIIO = OIIO_NAMESPACE;

constexpr int WIDTH = 1920;
constexpr int HEIGHT = 1080;
constexpr int FRAMES = 24;
constexpr int REPETITIONS = 3;

std::string frameName(std::filesystem::path const& dir, char const* prefix, int frame,
                      char const* extension) {
    return (dir / fmt::format("{}.{:04}.{}", prefix, frame, extension)).string();
}

// A smooth picture with some detail, so that compression has real work.
void writeSource(std::string const& name, int frame) {
    std::vector<Imath::half> pixels(static_cast<std::size_t>(WIDTH) * HEIGHT * 4);
    for (int y = 0; y < HEIGHT; ++y)
        for (int x = 0; x < WIDTH; ++x) {
            Imath::half* p = &pixels[(static_cast<std::size_t>(y) * WIDTH + x) * 4];
            p[0] = static_cast<float>(x) / WIDTH + 0.01f * static_cast<float>((x * 7 + y * 3 + frame) % 17);
            p[1] = static_cast<float>(y) / HEIGHT;
            p[2] = 0.5f + 0.25f * static_cast<float>(((x / 8) ^ (y / 8)) & 1);
            p[3] = 1.0f;
        }
    OIIO::ImageSpec spec(WIDTH, HEIGHT, 4, OIIO::TypeDesc::HALF);
    spec.attribute("compression", "zip");
    auto out = OIIO::ImageOutput::create(name);
    if (!out || !out->open(name, spec) || !out->write_image(OIIO::TypeDesc::HALF, pixels.data()) ||
        !out->close()) {
        std::fprintf(stderr, "media bench: cannot write %s\n", name.c_str());
        std::exit(1);
    }
}

void convertWithFileLayer(std::filesystem::path const& dir) {
    FfFileFormatMgr const& formats = FfFileFormatMgr::getInstance();
    for (int frame = 1; frame <= FRAMES; ++frame) {
        PiImageFilePtr const in = formats.openImageFile(OsFilePath(frameName(dir, "in", frame, "exr")));
        in->setFormat(ImFormat(4, ImPixelFormat::UINT16));
        PiImageFilePtr const out = formats.createImageFile(OsFilePath(frameName(dir, "ours", frame, "tif")));
        out->setSize(WIDTH, HEIGHT);
        out->setFormat(ImFormat(4, ImPixelFormat::UINT16));
        for (ImImageConst strip = in->readStrip(); !strip.isNull(); strip = in->readStrip())
            out->writeBlock(strip);
        out->close();
    }
}

void convertWithOiiotool(std::filesystem::path const& dir) {
    std::string const command = fmt::format("oiiotool --frames 1-{} '{}' -d uint16 -o '{}'", FRAMES,
                                            (dir / "in.#.exr").string(), (dir / "theirs.#.tif").string());
    if (std::system(command.c_str()) != 0) {
        std::fprintf(stderr, "media bench: oiiotool failed: %s\n", command.c_str());
        std::exit(1);
    }
}

} // namespace

int main() {
    std::filesystem::path const dir =
        std::filesystem::temp_directory_path() / fmt::format("qvMediaBench-{}", ::getpid());
    std::filesystem::create_directories(dir);
    for (int frame = 1; frame <= FRAMES; ++frame)
        writeSource(frameName(dir, "in", frame, "exr"), frame);

    std::vector<double> const medians = QvBench::mediansInTurns(
        {[&] { convertWithFileLayer(dir); }, [&] { convertWithOiiotool(dir); }}, REPETITIONS);
    auto const size = [&](char const* prefix) {
        return std::filesystem::file_size(frameName(dir, prefix, 1, "tif"));
    };
    std::printf("media: %d frames %dx%d half EXR -> 16-bit TIFF: file layer %.3f s, oiiotool %.3f s "
                "(first TIFF %ju and %ju bytes)\n",
                FRAMES, WIDTH, HEIGHT, medians[0], medians[1], static_cast<std::uintmax_t>(size("ours")),
                static_cast<std::uintmax_t>(size("theirs")));
    std::printf("ratio media.read_write.oiiotool %.3f\n", medians[0] / medians[1]);
    std::filesystem::remove_all(dir);
    return 0;
}
