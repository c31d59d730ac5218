#include "osFile.h"

#include "osFileEx.h"
#include "osFileUtils.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fmt/format.h>
#include <fstream>
#include <sstream>
#include <system_error>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace fs = std::filesystem;

namespace Qv {

namespace {

bool isRegularFile(fs::path const& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

bool isDirectory(fs::path const& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

std::string errnoText(int error) {
    return std::system_category().message(error);
}

// Pushes written data to the device, so that the rename that follows never
// publishes a file whose blocks are still only in memory.
bool syncToDisk(std::FILE* file) {
#ifdef _WIN32
    return _commit(_fileno(file)) == 0;
#else
    return fsync(fileno(file)) == 0;
#endif
}

} // namespace

bool OsFile::exists() const {
    return !_path.isEmpty() && isRegularFile(_path.toStdPath());
}

bool OsFile::isWritable() const {
    if (!exists())
        return false;
#ifdef _WIN32
    std::error_code error;
    auto perms = fs::status(_path.toStdPath(), error).permissions();
    return !error && (perms & fs::perms::owner_write) != fs::perms::none;
#else
    // access() asks the kernel, which knows the user, the groups and the
    // mount flags; the permission bits alone do not tell.
    return access(_path.getChars(), W_OK) == 0;
#endif
}

std::uintmax_t OsFile::getSize() const {
    if (!exists())
        throw OsFileEx::ExFileNotFound(__FILE__, __LINE__,
                                       fmt::format("file not found: '{}'", _path.toString()));
    std::error_code error;
    std::uintmax_t size = fs::file_size(_path.toStdPath(), error);
    if (error)
        throw OsFileEx::ExIOError(
            __FILE__, __LINE__,
            fmt::format("cannot read the size of '{}': {}", _path.toString(), error.message()));
    return size;
}

LiDate OsFile::getModificationDate() const {
    if (isDirectory(_path.toStdPath()))
        throw OsFileEx::ExInvalidPath(
            __FILE__, __LINE__,
            fmt::format("cannot read the modification date of '{}': it is a directory", _path.toString()));
    if (!exists())
        throw OsFileEx::ExFileNotFound(__FILE__, __LINE__,
                                       fmt::format("file not found: '{}'", _path.toString()));
    std::error_code error;
    fs::file_time_type const time = fs::last_write_time(_path.toStdPath(), error);
    if (error)
        throw OsFileEx::ExIOError(
            __FILE__, __LINE__,
            fmt::format("cannot read the modification date of '{}': {}", _path.toString(), error.message()));
    return LiDate(std::chrono::file_clock::to_sys(time));
}

bool OsFile::remove() const {
    fs::path path = _path.toStdPath();
    std::error_code error;
    fs::file_status status = fs::symlink_status(path, error);
    if (_path.isEmpty() || !fs::exists(status))
        return false;
    if (fs::is_directory(status))
        throw OsFileEx::ExInvalidPath(__FILE__, __LINE__,
                                      fmt::format("cannot remove '{}': it is a directory", _path.toString()));
    if (!fs::remove(path, error) && error)
        throw OsFileEx::ExIOError(__FILE__, __LINE__,
                                  fmt::format("cannot remove '{}': {}", _path.toString(), error.message()));
    return true;
}

void OsFile::renameTo(OsFilePath const& target) const {
    if (!exists())
        throw OsFileEx::ExFileNotFound(
            __FILE__, __LINE__,
            fmt::format("cannot rename '{}' to '{}': file not found", _path.toString(), target.toString()));
    std::error_code error;
    fs::rename(_path.toStdPath(), target.toStdPath(), error);
    if (error)
        throw OsFileEx::ExIOError(__FILE__, __LINE__,
                                  fmt::format("cannot rename '{}' to '{}': {}", _path.toString(),
                                              target.toString(), error.message()));
}

std::string OsFile::readText() const {
    if (isDirectory(_path.toStdPath()))
        throw OsFileEx::ExInvalidPath(__FILE__, __LINE__,
                                      fmt::format("cannot read '{}': it is a directory", _path.toString()));
    if (!exists())
        throw OsFileEx::ExFileNotFound(__FILE__, __LINE__,
                                       fmt::format("file not found: '{}'", _path.toString()));
    std::ifstream in(_path.toStdPath(), std::ios::binary);
    std::ostringstream content;
    if (in)
        content << in.rdbuf();
    if (!in || in.bad())
        throw OsFileEx::ExIOError(__FILE__, __LINE__,
                                  fmt::format("cannot read '{}': {}", _path.toString(), errnoText(errno)));
    return std::move(content).str();
}

void OsFile::writeAtomically(std::string_view content) const {
    std::string const& target = _path.toString();
    if (_path.isEmpty() || _path.getBaseName(true).empty())
        throw OsFileEx::ExInvalidPath(__FILE__, __LINE__,
                                      fmt::format("cannot write '{}': it names no file", target));
    if (isDirectory(_path.toStdPath()))
        throw OsFileEx::ExInvalidPath(__FILE__, __LINE__,
                                      fmt::format("cannot write '{}': it is a directory", target));
    if (exists() && !isWritable())
        throw OsFileEx::ExIOError(__FILE__, __LINE__,
                                  fmt::format("cannot write '{}': it is read only", target));

    OsFilePath directory(_path.getDirectoryName());
    // A hidden name keeps the unfinished file out of listings of the
    // directory (image sequences in particular).
    // Long names fall back to a fixed prefix so the whole name stays within
    // the file system's limit.
    std::string baseName = _path.getBaseName(true);
    std::string prefix = "." + (baseName.size() <= 64 ? baseName : std::string("qv")) + "~";
    std::FILE* file = nullptr;
    OsFilePath temporary;
    // "x" fails on a name that appeared since it was drawn; draw again then.
    int openErrno = 0;
    for (int attempt = 0; !file && attempt < 100; ++attempt) {
        temporary = OsFileUtils::createUniqueFileName(directory, prefix, "tmp");
        file = std::fopen(temporary.getChars(), "wbx");
        openErrno = errno;
        if (!file && openErrno != EEXIST)
            break;
    }
    if (!file)
        throw OsFileEx::ExIOError(__FILE__, __LINE__,
                                  fmt::format("cannot write '{}': cannot create a file in '{}': {}", target,
                                              directory.isEmpty() ? "." : directory.toString(),
                                              errnoText(openErrno)));

    bool written = std::fwrite(content.data(), 1, content.size(), file) == content.size() &&
                   std::fflush(file) == 0 && syncToDisk(file);
    int writeErrno = errno;
    bool closed = std::fclose(file) == 0;
    if (!written || !closed) {
        std::error_code ignored;
        fs::remove(temporary.toStdPath(), ignored);
        throw OsFileEx::ExIOError(
            __FILE__, __LINE__,
            fmt::format("cannot write '{}': {}", target, errnoText(written ? errno : writeErrno)));
    }
    std::error_code error;
    fs::rename(temporary.toStdPath(), _path.toStdPath(), error);
    if (error) {
        std::error_code ignored;
        fs::remove(temporary.toStdPath(), ignored);
        throw OsFileEx::ExIOError(__FILE__, __LINE__,
                                  fmt::format("cannot write '{}': {}", target, error.message()));
    }
}

} // namespace Qv
