// Resolving "p.[#].exr" in a folder of n numbered files against listing the
// same folder with readdir, for n = 1,000, 10,000 and 100,000. The resolution
// lists the folder once and does linear work per name, so the ratio should
// stay flat as the folder grows. Each measure is the median of several
// repetitions, ours and the listing taking turns.
#include "benchTiming.h"
#include "btSequencePathParser.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <dirent.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int REPETITIONS = 15;

// Median times in seconds of `ours` and `anchor`, taking turns.
std::pair<double, double> medians(std::function<void()> const& ours, std::function<void()> const& anchor) {
    std::vector<double> const times = QvBench::mediansInTurns({ours, anchor}, REPETITIONS);
    return {times[0], times[1]};
}

// A scratch folder of n files p.000001.exr ... with a gap every 1,000 frames,
// so that the resolution has runs to close and a list to write.
class SequenceFolder {
public:
    explicit SequenceFolder(int n)
        : _path(std::filesystem::temp_directory_path() /
                ("qvSeqpathBench_" + std::to_string(n) + "_" + std::to_string(std::random_device{}()))) {
        std::filesystem::create_directories(_path);
        char name[32];
        for (int i = 1, made = 0; made < n; ++i) {
            if (i % 1000 == 0)
                continue;
            std::snprintf(name, sizeof name, "p.%06d.exr", i);
            std::ofstream(_path / name);
            ++made;
        }
    }
    ~SequenceFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }
    std::string getPath() const { return _path.string(); }

private:
    std::filesystem::path _path;
};

// The anchor: every name of the folder read once, nothing kept.
std::size_t listNames(std::string const& folder) {
    DIR* dir = opendir(folder.c_str());
    if (!dir)
        throw std::runtime_error("cannot list " + folder);
    std::size_t length = 0;
    while (dirent* entry = readdir(dir))
        length += std::char_traits<char>::length(entry->d_name);
    closedir(dir);
    return length;
}

} // namespace

int main() {
    for (int n : {1000, 10000, 100000}) {
        SequenceFolder const folder(n);
        std::string const text = folder.getPath() + "/p.[#].exr";
        std::string resolved;
        std::size_t listed = 0;
        auto [ours, anchor] = medians([&] { resolved = Qv::BtSequencePathParser::resolveSequencePath(text); },
                                      [&] { listed += listNames(folder.getPath()); });
        if (resolved.empty() || listed == 0)
            throw std::runtime_error("nothing resolved in " + folder.getPath());
        std::printf("seqpath.%d: resolve %.3f ms, readdir %.3f ms\n", n, ours * 1e3, anchor * 1e3);
        std::printf("ratio seqpath.%d.listing %.2f\n", n, ours / anchor);
    }
    return 0;
}
