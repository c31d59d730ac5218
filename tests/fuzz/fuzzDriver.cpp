// Replays inputs through a fuzz target without libFuzzer: each file named on
// the command line (each file of a named folder) is given whole, then every
// one of its prefixes, since cut-off input is where parsers go wrong most.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);
extern "C" __attribute__((weak)) int LLVMFuzzerInitialize(int* argc, char*** argv);

namespace {
std::vector<std::filesystem::path> inputsOf(std::filesystem::path const& path) {
    if (!std::filesystem::is_directory(path))
        return {path};
    std::vector<std::filesystem::path> files;
    for (auto const& entry : std::filesystem::directory_iterator(path))
        if (entry.is_regular_file())
            files.push_back(entry.path());
    return files;
}

void replay(std::filesystem::path const& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string const bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    // A copy of exactly the given length, so that a read past the end is
    // caught by the sanitizers.
    for (std::size_t size = bytes.size() + 1; size-- > 0;) {
        std::vector<std::uint8_t> const input(bytes.begin(),
                                              bytes.begin() + static_cast<std::ptrdiff_t>(size));
        LLVMFuzzerTestOneInput(input.data(), input.size());
    }
}
} // namespace

int main(int argc, char** argv) {
    if (LLVMFuzzerInitialize)
        LLVMFuzzerInitialize(&argc, &argv);
    std::size_t count = 0;
    for (int i = 1; i < argc; ++i) {
        std::vector<std::filesystem::path> const files = inputsOf(argv[i]);
        if (files.empty()) {
            std::fprintf(stderr, "no inputs in %s\n", argv[i]);
            return 1;
        }
        for (auto const& file : files)
            replay(file);
        count += files.size();
    }
    std::printf("replayed %zu inputs and their prefixes\n", count);
    return 0;
}
