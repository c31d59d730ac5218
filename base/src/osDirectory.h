#pragma once
// A directory on disk, through its path.
#include "osFilePath.h"

#include <functional>
#include <string_view>
#include <vector>

namespace Qv {

class OsWildcardFilter;

class OsDirectory {
public:
    // What a path names on disk. The values are kept: callers compare them.
    enum PathType { REGULAR_FILE = 0, DIRECTORY = 1, OTHER_ENTRY = 2, NOT_FOUND = 3 };
    // Which children a listing returns.
    enum PathTypes { FILES = 0, DIRECTORIES = 1, FILES_AND_DIRECTORIES = 2 };

    explicit OsDirectory(OsFilePath path) : _path(std::move(path)) {}

    OsFilePath const& getPath() const { return _path; }
    // Of the path itself; a link counts as what it points to.
    PathType getType() const;
    bool exists() const { return getType() == DIRECTORY; }

    // Creates the directory and its missing parents; false when it was
    // already there. Throws OsFileEx::ExInvalidPath when a file stands in the
    // way, ExIOError when the system refuses.
    bool create() const;

    // Full paths of the children of the kind asked, whose names the filter
    // matches when one is given, sorted by name. Throws OsFileEx::ExInvalidPath
    // when this is not a directory, ExIOError when it cannot be read.
    std::vector<OsFilePath> getChildrenPath(PathTypes types) const;
    std::vector<OsFilePath> getChildrenPath(PathTypes types, OsWildcardFilter const& filter) const;

    // Calls visit with the name of every child of the kind asked that the
    // filter matches, in the order the system lists them, without copying the
    // names: for callers that scan large folders once. Throws as getChildrenPath.
    void visitChildrenNames(PathTypes types, OsWildcardFilter const& filter,
                            std::function<void(std::string_view name)> const& visit) const;

private:
    std::vector<OsFilePath> listChildren(PathTypes types, OsWildcardFilter const* filter) const;

    OsFilePath _path;
};

} // namespace Qv
