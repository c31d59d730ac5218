#include "osFilePath.h"

#include "osFileEx.h"

#include <fmt/format.h>

namespace Qv {

namespace {
bool isSeparator(char c) {
    return c == '/' || c == '\\';
}
} // namespace

OsFilePath::OsFilePath(std::string_view text) {
    _path.reserve(text.size());
    for (char c : text) {
        if (!isSeparator(c))
            _path.push_back(c);
        else if (_path.empty() || _path.back() != '/')
            _path.push_back('/');
    }
    if (_path.size() > 1 && _path.back() == '/')
        _path.pop_back();
}

bool OsFilePath::isAbsolute() const {
    return toStdPath().is_absolute();
}

std::string_view OsFilePath::getFileName() const {
    std::string_view path(_path);
    std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::size_t OsFilePath::findExtensionDot(std::string_view name) const {
    if (name == "." || name == "..")
        return std::string_view::npos;
    std::size_t dot = name.rfind('.');
    return dot == 0 ? std::string_view::npos : dot;
}

std::string OsFilePath::getDirectoryName() const {
    std::size_t slash = _path.rfind('/');
    if (slash == std::string::npos)
        return {};
    return slash == 0 ? std::string("/") : _path.substr(0, slash);
}

std::string OsFilePath::getBaseName(bool withExtension) const {
    std::string_view name = getFileName();
    if (!withExtension)
        name = name.substr(0, findExtensionDot(name));
    return std::string(name);
}

std::string OsFilePath::getExtension() const {
    std::string_view name = getFileName();
    std::size_t dot = findExtensionDot(name);
    return dot == std::string_view::npos ? std::string() : std::string(name.substr(dot + 1));
}

OsFilePath& OsFilePath::addExtension(std::string_view extension) {
    if (!extension.empty() && extension.front() == '.')
        extension.remove_prefix(1);
    if (extension.find_first_of("/\\") != std::string_view::npos)
        throw OsFileEx::ExInvalidPath(
            __FILE__, __LINE__,
            fmt::format("cannot add the extension '{}' to '{}': it holds a separator", extension, _path));
    std::string_view name = getFileName();
    if (name.empty())
        throw OsFileEx::ExInvalidPath(
            __FILE__, __LINE__,
            fmt::format("cannot add the extension '{}' to '{}': it has no file name", extension, _path));
    if (extension.empty())
        return *this;
    if (name.back() != '.')
        _path.push_back('.');
    _path.append(extension);
    return *this;
}

OsFilePath& OsFilePath::operator+=(OsFilePath const& child) {
    std::string_view tail(child._path);
    if (!tail.empty() && tail.front() == '/')
        tail.remove_prefix(1);
    if (tail.empty())
        return *this;
    if (!_path.empty() && _path.back() != '/')
        _path.push_back('/');
    _path.append(tail);
    return *this;
}

int OsFilePath::compare(OsFilePath const& other) const {
    int result = _path.compare(other._path);
    return (result > 0) - (result < 0);
}

} // namespace Qv
