#include "osFileUtils.h"

#include "osFileEx.h"

#include <atomic>
#include <fmt/format.h>
#include <mutex>
#include <random>
#include <system_error>

#ifdef _WIN32
#include <process.h>
#define QV_GETPID _getpid
#else
#include <unistd.h>
#define QV_GETPID getpid
#endif

namespace Qv {

namespace {

std::uint32_t drawRandom() {
    static std::mutex lock;
    static std::mt19937 engine{std::random_device{}()};
    std::lock_guard guard(lock);
    return engine();
}

bool holdsSeparator(std::string_view text) {
    return text.find_first_of("/\\") != std::string_view::npos;
}

} // namespace

OsFilePath OsFileUtils::createUniqueFileName(OsFilePath const& directory, std::string_view prefix,
                                             std::string_view extension) {
    static std::atomic<unsigned long> counter{0};
    if (!extension.empty() && extension.front() == '.')
        extension.remove_prefix(1);
    if (holdsSeparator(prefix) || holdsSeparator(extension))
        throw OsFileEx::ExInvalidPath(
            __FILE__, __LINE__,
            fmt::format("cannot make a file name in '{}' from the prefix '{}' and the extension '{}': "
                        "a name holds no separator",
                        directory.toString(), prefix, extension));
    std::error_code error;
    // An empty directory stands for the current one, as the directory part of a bare file name does.
    std::filesystem::path dir = directory.isEmpty() ? std::filesystem::path(".") : directory.toStdPath();
    if (!std::filesystem::is_directory(dir, error))
        throw OsFileEx::ExInvalidPath(
            __FILE__, __LINE__,
            fmt::format("cannot make a file name in '{}': it is not a directory", directory.toString()));
    while (true) {
        std::string name = fmt::format("{}{:x}_{}_{:08x}", prefix, static_cast<unsigned long>(QV_GETPID()),
                                       counter.fetch_add(1), drawRandom());
        if (!extension.empty())
            name = fmt::format("{}.{}", name, extension);
        OsFilePath candidate = directory + OsFilePath(name);
        if (!std::filesystem::exists(std::filesystem::symlink_status(candidate.toStdPath(), error)))
            return candidate;
    }
}

} // namespace Qv
