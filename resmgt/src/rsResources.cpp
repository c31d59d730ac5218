#include "rsResources.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fmt/format.h>
#include <system_error>

#ifndef QV_SOURCE_RESOURCES
#define QV_SOURCE_RESOURCES ""
#endif

namespace Qv {

namespace fs = std::filesystem;

namespace {

constexpr char const* kEnvironmentVariable = "QV_RESOURCES";

bool isDirectory(fs::path const& path) {
    std::error_code error;
    return !path.empty() && fs::is_directory(path, error);
}

fs::path getShareDirBesideExecutable() {
    std::error_code error;
    fs::path const executable = fs::read_symlink("/proc/self/exe", error);
    if (error)
        return {};
    return executable.parent_path() / ".." / "share" / "qv";
}

struct Alias {
    std::string_view name;
    std::string_view subDir;
};
constexpr std::array kAliases{Alias{"ToolUiDir", "ui"}, Alias{"MsgDir", "msg"}};

bool isAliasChar(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

} // namespace

fs::path RsResources::getResourcesDir() {
    std::optional<std::string> fromEnvironment;
    if (char const* value = std::getenv(kEnvironmentVariable); value && *value)
        fromEnvironment = value;
    return locate(fromEnvironment, getShareDirBesideExecutable(), fs::path(QV_SOURCE_RESOURCES));
}

fs::path RsResources::locate(std::optional<std::string> const& fromEnvironment,
                             fs::path const& besideExecutable, fs::path const& fromSourceTree) {
    // A value given on purpose must not be silently replaced by another folder.
    if (fromEnvironment) {
        if (!isDirectory(*fromEnvironment))
            throw RsEx::ExResourcesNotFound(
                __FILE__, __LINE__,
                fmt::format("{}={} is not a folder of resources", kEnvironmentVariable, *fromEnvironment));
        return fs::path(*fromEnvironment).lexically_normal();
    }
    if (isDirectory(besideExecutable))
        return besideExecutable.lexically_normal();
    if (isDirectory(fromSourceTree))
        return fromSourceTree.lexically_normal();
    throw RsEx::ExResourcesNotFound(
        __FILE__, __LINE__,
        fmt::format("No resources folder: {} is not set, and neither {} nor {} exists", kEnvironmentVariable,
                    besideExecutable.empty() ? "<no executable path>" : besideExecutable.string(),
                    fromSourceTree.empty() ? "<no source tree>" : fromSourceTree.string()));
}

std::string RsResources::expandAliases(std::string_view path) {
    std::string result;
    std::optional<fs::path> resources; // looked up once, and only when an alias is present
    std::size_t pos = 0;
    while (pos < path.size()) {
        auto const open = path.find('<', pos);
        if (open == std::string_view::npos)
            break;
        auto close = open + 1;
        while (close < path.size() && isAliasChar(path[close]))
            ++close;
        if (close == path.size() || path[close] != '>' || close == open + 1) {
            // Not of the form <Name>: ordinary text.
            result.append(path.substr(pos, close - pos));
            pos = close;
            continue;
        }
        std::string_view const name = path.substr(open + 1, close - open - 1);
        auto const alias = std::find_if(kAliases.begin(), kAliases.end(),
                                        [&](Alias const& candidate) { return candidate.name == name; });
        if (alias == kAliases.end())
            throw RsEx::ExUnknownAlias(__FILE__, __LINE__,
                                       fmt::format("Unknown path alias <{}> in \"{}\"", name, path));
        if (!resources)
            resources = getResourcesDir();
        result.append(path.substr(pos, open - pos));
        result += (*resources / alias->subDir).string();
        pos = close + 1;
    }
    result.append(path.substr(std::min(pos, path.size())));
    return result;
}

} // namespace Qv
