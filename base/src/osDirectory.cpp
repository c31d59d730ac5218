#include "osDirectory.h"

#include "osFileEx.h"
#include "osWildcardFilter.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <memory>
#include <sys/stat.h>
#include <system_error>

namespace fs = std::filesystem;

namespace Qv {

namespace {

// The directory part of a bare file name is "", which is the current directory.
fs::path toDirectoryPath(OsFilePath const& path) {
    return path.isEmpty() ? fs::path(".") : path.toStdPath();
}

OsDirectory::PathType typeOf(fs::file_status status) {
    if (fs::is_directory(status))
        return OsDirectory::DIRECTORY;
    if (fs::is_regular_file(status))
        return OsDirectory::REGULAR_FILE;
    return fs::exists(status) ? OsDirectory::OTHER_ENTRY : OsDirectory::NOT_FOUND;
}

bool isWanted(OsDirectory::PathType type, OsDirectory::PathTypes types) {
    switch (types) {
    case OsDirectory::FILES:
        return type == OsDirectory::REGULAR_FILE;
    case OsDirectory::DIRECTORIES:
        return type == OsDirectory::DIRECTORY;
    case OsDirectory::FILES_AND_DIRECTORIES:
        return type == OsDirectory::REGULAR_FILE || type == OsDirectory::DIRECTORY;
    }
    return false;
}

} // namespace

OsDirectory::PathType OsDirectory::getType() const {
    std::error_code error;
    return typeOf(fs::status(toDirectoryPath(_path), error));
}

bool OsDirectory::create() const {
    PathType type = getType();
    if (type == DIRECTORY)
        return false;
    if (type != NOT_FOUND)
        throw OsFileEx::ExInvalidPath(
            __FILE__, __LINE__,
            fmt::format("cannot create the directory '{}': another entry has its name", _path.toString()));
    std::error_code error;
    fs::create_directories(_path.toStdPath(), error);
    if (error) {
        // create_directories reports a file that stands in place of a parent
        // as a plain failure; name it for what it is.
        if (error == std::errc::not_a_directory || error == std::errc::file_exists)
            throw OsFileEx::ExInvalidPath(
                __FILE__, __LINE__,
                fmt::format("cannot create the directory '{}': {}", _path.toString(), error.message()));
        throw OsFileEx::ExIOError(
            __FILE__, __LINE__,
            fmt::format("cannot create the directory '{}': {}", _path.toString(), error.message()));
    }
    return true;
}

std::vector<OsFilePath> OsDirectory::getChildrenPath(PathTypes types) const {
    return listChildren(types, nullptr);
}

std::vector<OsFilePath> OsDirectory::getChildrenPath(PathTypes types, OsWildcardFilter const& filter) const {
    return listChildren(types, &filter);
}

std::vector<OsFilePath> OsDirectory::listChildren(PathTypes types, OsWildcardFilter const* filter) const {
    if (getType() != DIRECTORY)
        throw OsFileEx::ExInvalidPath(
            __FILE__, __LINE__, fmt::format("cannot list '{}': it is not a directory", _path.toString()));
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator it(toDirectoryPath(_path), error);
    for (; !error && it != fs::directory_iterator(); it.increment(error)) {
        std::string name = it->path().filename().string();
        if (filter && !filter->matches(name))
            continue;
        std::error_code statusError;
        if (isWanted(typeOf(it->status(statusError)), types))
            names.push_back(std::move(name));
    }
    if (error)
        throw OsFileEx::ExIOError(__FILE__, __LINE__,
                                  fmt::format("cannot list '{}': {}", _path.toString(), error.message()));
    std::sort(names.begin(), names.end());
    std::vector<OsFilePath> paths;
    paths.reserve(names.size());
    for (std::string const& name : names)
        paths.push_back(_path + OsFilePath(name));
    return paths;
}

void OsDirectory::visitChildrenNames(PathTypes types, OsWildcardFilter const& filter,
                                     std::function<void(std::string_view name)> const& visit) const {
    if (getType() != DIRECTORY)
        throw OsFileEx::ExInvalidPath(
            __FILE__, __LINE__, fmt::format("cannot list '{}': it is not a directory", _path.toString()));
    // readdir gives the entry type with the name on the file systems we use;
    // only links and unknown types cost a stat.
    std::unique_ptr<DIR, int (*)(DIR*)> dir(opendir(toDirectoryPath(_path).c_str()), closedir);
    if (!dir)
        throw OsFileEx::ExIOError(
            __FILE__, __LINE__, fmt::format("cannot list '{}': {}", _path.toString(), std::strerror(errno)));
    errno = 0;
    while (dirent const* entry = readdir(dir.get())) {
        std::string_view const name(entry->d_name);
        if (name == "." || name == ".." || !filter.matches(name)) {
            errno = 0;
            continue;
        }
        PathType type = OTHER_ENTRY;
        if (entry->d_type == DT_REG) {
            type = REGULAR_FILE;
        } else if (entry->d_type == DT_DIR) {
            type = DIRECTORY;
        } else if (entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN) {
            struct stat status;
            if (fstatat(dirfd(dir.get()), entry->d_name, &status, 0) == 0)
                type = S_ISREG(status.st_mode)   ? REGULAR_FILE
                       : S_ISDIR(status.st_mode) ? DIRECTORY
                                                 : OTHER_ENTRY;
            else
                type = NOT_FOUND;
        }
        if (isWanted(type, types))
            visit(name);
        errno = 0;
    }
    if (errno != 0)
        throw OsFileEx::ExIOError(
            __FILE__, __LINE__, fmt::format("cannot list '{}': {}", _path.toString(), std::strerror(errno)));
}

} // namespace Qv
