#pragma once
// A file path as a value. Separators are normalised on construction: '\' is
// read as '/' (paths stored by Windows hosts keep working), runs of separators
// collapse to one, and a trailing separator is dropped, so "a/b/" and "a//b"
// name the same entry as "a/b".
//
// The extension is what follows the last '.' of the file name, without the
// dot; a leading dot does not start one (".profile" has none).
#include <compare>
#include <filesystem>
#include <string>
#include <string_view>

namespace Qv {

class OsFilePath {
public:
    OsFilePath() = default;
    OsFilePath(std::string_view text);
    OsFilePath(std::string const& text) : OsFilePath(std::string_view(text)) {}
    OsFilePath(char const* text) : OsFilePath(std::string_view(text ? text : "")) {}

    std::string const& toString() const { return _path; }
    char const* getChars() const { return _path.c_str(); }
    std::filesystem::path toStdPath() const { return std::filesystem::path(_path); }
    bool isEmpty() const { return _path.empty(); }
    bool isAbsolute() const;

    // Everything before the last separator: "" for a bare name, "/" for an
    // entry of the root.
    std::string getDirectoryName() const;
    // The last component, with or without its extension and its dot.
    std::string getBaseName(bool withExtension = false) const;
    // Without the dot; "" when there is none.
    std::string getExtension() const;

    // Appends "." and the extension (a leading dot in it is ignored).
    // Throws OsFileEx::ExInvalidPath when there is no file name to extend or
    // the extension holds a separator.
    OsFilePath& addExtension(std::string_view extension);

    // Joins a relative component under this path with one separator.
    OsFilePath& operator+=(OsFilePath const& child);
    friend OsFilePath operator+(OsFilePath parent, OsFilePath const& child) { return parent += child; }

    // Byte order of the normalised texts, as strcmp: file systems here are
    // case sensitive.
    int compare(OsFilePath const& other) const;
    friend bool operator==(OsFilePath const& a, OsFilePath const& b) { return a._path == b._path; }
    friend std::strong_ordering operator<=>(OsFilePath const& a, OsFilePath const& b) {
        return a._path <=> b._path;
    }

private:
    std::string_view getFileName() const;
    // Position of the extension's dot in the file name, or npos.
    std::size_t findExtensionDot(std::string_view name) const;

    std::string _path;
};

} // namespace Qv
