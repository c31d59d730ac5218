// resolveSequencePath on arbitrary text. Every outcome is a result or one of
// the exceptions the language documents; anything else (a crash, a hang, a
// foreign exception) is a fault. The texts run in a scratch folder of a few
// numbered files, so that '#' items meet real runs, gaps and odd names, and
// only a '#' inside the bracket reads it.
#include "btSequencePath.h"
#include "btSequencePathBuilder.h"
#include "btSequencePathEx.h"
#include "btSequencePathParser.h"
#include "msgFileGuard.h"
#include "osFileEx.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {
// The scratch folder lives as long as the process.
struct ScratchFolder {
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("qvSeqPathFuzz_" + std::to_string(getpid()));
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
};
} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    {
        Qv::MsgFileGuard catalogue("imageImport.msg");
        Qv::BtSequencePathBuilder::initialize();
    }
    static ScratchFolder const folder;
    std::filesystem::create_directories(folder.path);
    for (char const* name : {"p.1.exr", "p.2.exr", "p.3.exr", "p.7.exr", "p.8.exr", "p.9.exr", "p.10.exr",
                             "p.011.exr", "p.0099.exr", "p.x1.exr", "p..exr", "p1", "a.1", "a.2", "[.1.e"})
        std::ofstream(folder.path / name);
    std::filesystem::current_path(folder.path);
    return 0;
}

namespace {
// A path read as written, without the grammar, and its first file names
// added one by one to a new path.
void readPath(std::string const& text) {
    Qv::OPtrRet<Qv::BtSequencePath> path = Qv::BtSequencePath::create(text);
    Qv::OPtrRet<Qv::BtSequencePath> rebuilt = Qv::BtSequencePath::create();
    for (int i = 0; i < std::min(path->getNbFiles(), 16); ++i)
        rebuilt->addFileName(path->getFileNameAt(i));
    (void)rebuilt->getPath();
    (void)path->getStartFileNo();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const text(reinterpret_cast<char const*>(data), size);
    readPath(text);
    std::string resolved;
    try {
        resolved = Qv::BtSequencePathParser::resolveSequencePath(text);
    } catch (Qv::BtSequencePathEx const&) {
        return 0;
    } catch (Qv::OsFileEx::ExInvalidPath const&) {
        return 0;
    }
    // The canonical form is a path of the language again. (Not always its
    // own canonical form: a skip past the end of a range leaves it reversed,
    // "[0:1+23]" gives "[23:1]", which then reads with the width of "23".)
    if (!resolved.empty() && resolved.find('#') == std::string::npos) {
        try {
            Qv::BtSequencePathParser::resolveSequencePath(resolved);
            readPath(resolved);
        } catch (Qv::BtSequencePathEx const&) {
            __builtin_trap();
        }
    }
    return 0;
}
