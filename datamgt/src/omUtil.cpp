#include "omUtil.h"

#include "liStringUtil.h"
#include "omComponent.h"
#include "omEx.h"
#include "omStoreFile.h"

#include <optional>

namespace Qv {

namespace {

// `path` as a relative text inside the project, or none when it leaves it.
std::optional<std::string> insideProject(OmProject const& project, OsFilePath const& path) {
    OsFilePath const absolute = path.isEmpty()      ? project.getPath()
                                : path.isAbsolute() ? path
                                                    : project.getPath() + path;
    return OmStoreFile::relativeTo(OmStoreFile::makeAbsolute(absolute), project.getPath());
}

} // namespace

bool OmUtil::isValidName(std::string_view name) {
    return !name.empty() && name.front() != '.' &&
           LiStringUtil::sanitizeComponentName(name, LiStringUtil::getReplacementChar()) == name;
}

OmFolder OmUtil::locateOrCreateFolder(OmProject const& project, OsFilePath const& path) {
    if (project.isNull())
        return {};
    std::optional<std::string> const relative = insideProject(project, path);
    if (!relative)
        return {};
    OmFolder folder = project.getRootFolder();
    if (relative->empty())
        return folder;
    for (std::string const& name : LiStringUtil::split(*relative, "/")) {
        if (!isValidName(name))
            return {};
        OmLink const entry = folder.getEntry(name);
        if (entry.isFolder()) {
            folder = entry.getFolder();
            continue;
        }
        if (!entry.isNull())
            return {}; // a component is in the way
        try {
            folder = folder.createFolder(name);
        } catch (OmEx::ExNameInUse const&) {
            return {}; // a file the store does not know is in the way
        }
    }
    return folder;
}

OmLink OmUtil::resolvePath(OsFilePath const& path) {
    if (path.isAbsolute())
        return resolvePath(OmProject::locate(path), path);
    return resolvePath(OmProject::getCurrent(), path);
}

OmLink OmUtil::resolvePath(OmProject const& project, OsFilePath const& path) {
    if (project.isNull())
        return {};
    std::optional<std::string> const relative = insideProject(project, path);
    if (!relative)
        return {};
    if (relative->empty())
        return OmLink(project, {}, false, {});
    std::vector<std::string> const names = LiStringUtil::split(*relative, "/");
    OmFolder folder = project.getRootFolder();
    for (std::size_t i = 0; i + 1 < names.size() && !folder.isNull(); ++i)
        folder = folder.getFolder(names[i]);
    return folder.getEntry(names.back());
}

std::string OmUtil::toSymbolicPath(OsFilePath const& absolutePath) {
    std::optional<std::string> const relative =
        OmStoreFile::relativeTo(absolutePath, OmProject::getCurrentProjectHomeFolderPath());
    if (!relative)
        return absolutePath.toString();
    return relative->empty() ? std::string(getProjectHomeAlias()) : getProjectHomeAlias() + ('/' + *relative);
}

OsFilePath OmUtil::fromSymbolicPath(std::string_view text) {
    std::string_view const alias = getProjectHomeAlias();
    if (!text.starts_with(alias) || (text.size() > alias.size() && text[alias.size()] != '/'))
        return OsFilePath(text);
    return OsFilePath(OmProject::getCurrentProjectHomeFolderPath().toString() +
                      std::string(text.substr(alias.size())));
}

} // namespace Qv
