// The image reader node on 24 frames of 1920 x 1080 RGBA half EXR (ZIP, with
// noise), made by oiiotool in a temporary folder, caches empty (the disk tier
// off):
//   reader.sequence.oiiotool   every frame read through the node and written
//                              as the same EXR, against
//                              "oiiotool --frames 1-24 in.#.exr -o out.#.exr"
//   reader.proxy2.oiiotool     proxy level 2 against "--resize 480x270"
//   reader.cachehit.firstread  the same frames again from the memory tier,
//                              against their first read
//   reader.memory.budget       the growth of the process's peak memory over
//                              100 frames read with a 256 MiB image budget,
//                              against that budget (in a child process, so
//                              that the budget is its own)
// Ours runs in this process (the tool library initialised once); oiiotool
// as a command, its start included (a few hundredths of a second).
#include "benchReaderFrames.h"
#include "benchTiming.h"
#include "btSequenceReadJob.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fmt/format.h>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace Qv;
using QvBench::inChild;
using QvBench::runCommand;
using QvBench::writeNoiseFrames;

constexpr int REPETITIONS = 3;

long long statusKb(char const* field) {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind(field, 0) == 0)
            return std::atoll(line.c_str() + std::strlen(field));
    return 0;
}

BtSequenceReadOptions options(fs::path const& dir, std::string const& frames, std::string const& output,
                              int proxy) {
    BtSequenceReadOptions o;
    o.path = (dir / "in.[0001:0024].exr").string();
    std::vector<long long> list;
    btParseFrameList(frames, list);
    o.frames = list;
    o.output = output.empty() ? "" : (dir / output).string();
    o.proxy = proxy;
    return o;
}

void read(BtSequenceReadOptions const& o) {
    std::ostringstream sink;
    btReadSequence(o, sink);
}

} // namespace

int main() {
    fs::path const dir = fs::temp_directory_path() / fmt::format("qvReaderBench_{}", getpid());
    fs::create_directories(dir);
    setenv("QV_DISK_CACHE", "off", 1);
    writeNoiseFrames(dir);

    std::vector<double> const sequence = QvBench::mediansInTurns(
        {[&] { inChild([&] { read(options(dir, "1-24", "ours.#.exr", 0)); }); },
         [&] {
             runCommand(fmt::format("oiiotool --frames 1-24 {0}/in.#.exr -o {0}/theirs.#.exr", dir.string()));
         }},
        REPETITIONS);
    std::printf("ratio reader.sequence.oiiotool %.3f\n", sequence[0] / sequence[1]);
    std::vector<double> const proxy = QvBench::mediansInTurns(
        {[&] { inChild([&] { read(options(dir, "1-24", "ours2.#.exr", 2)); }); },
         [&] {
             runCommand(fmt::format(
                 "oiiotool --frames 1-24 {0}/in.#.exr --resize 480x270 -o {0}/theirs2.#.exr", dir.string()));
         }},
        REPETITIONS);
    std::printf("ratio reader.proxy2.oiiotool %.3f\n", proxy[0] / proxy[1]);
    std::fflush(stdout);
    inChild([&] {
        BtSequenceReadOptions const all = options(dir, "1-24", "", 0);
        double const first = QvBench::seconds([&] { read(all); });
        double const again = QvBench::seconds([&] { read(all); });
        std::printf("ratio reader.cachehit.firstread %.3f\n", again / first);
    });
    // 100 frames through a 256 MiB budget, more than it can keep.
    setenv("QV_IMAGE_MEMORY_MB", "256", 1);
    inChild([&] {
        long long const before = statusKb("VmRSS:");
        read(options(dir, "1-24,1-24,1-24,1-24,1-4", "", 0));
        long long const peak = statusKb("VmHWM:");
        std::printf("ratio reader.memory.budget %.3f\n",
                    static_cast<double>(peak - before) / (256.0 * 1024.0));
    });
    fs::remove_all(dir);
    return 0;
}
