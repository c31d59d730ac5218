#include "omFolder.h"

#include "assertions.h"
#include "omComponent.h"
#include "omEx.h"
#include "omUtil.h"
#include "osDirectory.h"
#include "osFile.h"
#include "osFileEx.h"
#include "osFileUtils.h"

#include <filesystem>
#include <fmt/format.h>

namespace Qv {

namespace {

bool holdsSideFile(OsFilePath const& directory) {
    return OsFile(directory + OsFilePath(OmComponent::getSideFileName())).exists();
}

} // namespace

OsFilePath OmFolder::getPath() const {
    if (_displayPath.empty())
        return _project.getPath();
    return _project.getPath() + OsFilePath(_displayPath);
}

std::string OmFolder::childDisplayPath(std::string const& name) const {
    return _displayPath.empty() ? name : _displayPath + '/' + name;
}

OmLink OmFolder::makeLink(std::string const& name) const {
    OsFilePath const path = getPath() + OsFilePath(name);
    return OmLink(_project, childDisplayPath(name), holdsSideFile(path), {});
}

OmLink OmFolder::getEntry(std::string const& name) const {
    if (isNull() || !OmUtil::isValidName(name) || !OsDirectory(getPath() + OsFilePath(name)).exists())
        return {};
    return makeLink(name);
}

std::vector<OmLink> OmFolder::getEntries() const {
    std::vector<OmLink> entries;
    if (isNull())
        return entries;
    try {
        for (OsFilePath const& child : OsDirectory(getPath()).getChildrenPath(OsDirectory::DIRECTORIES)) {
            std::string const name = child.getBaseName(true);
            if (OmUtil::isValidName(name))
                entries.push_back(makeLink(name));
        }
    } catch (OsFileEx::ExFileError const& error) {
        throw OmEx::ExBadEntry(__FILE__, __LINE__, error.getReason());
    }
    return entries;
}

std::vector<OmFolder> OmFolder::getFolders() const {
    std::vector<OmFolder> folders;
    for (OmLink const& entry : getEntries())
        if (entry.isFolder())
            folders.push_back(entry.getFolder());
    return folders;
}

OmFolder OmFolder::getFolder(std::string const& name) const {
    return getEntry(name).getFolder();
}

namespace {

void checkNewName(OsFilePath const& folder, std::string const& name) {
    if (!OmUtil::isValidName(name))
        throw OmEx::ExInvalidName(__FILE__, __LINE__,
                                  fmt::format("'{}' cannot name an entry of '{}'", name, folder.toString()));
    if (OsDirectory(folder + OsFilePath(name)).getType() != OsDirectory::NOT_FOUND)
        throw OmEx::ExNameInUse(__FILE__, __LINE__,
                                fmt::format("'{}' is already in use in '{}'", name, folder.toString()));
}

} // namespace

OmFolder OmFolder::createFolder(std::string const& name) const {
    QV_ASSERT(!isNull());
    OsFilePath const path = getPath();
    checkNewName(path, name);
    std::error_code error;
    if (!std::filesystem::create_directory((path + OsFilePath(name)).toStdPath(), error) || error)
        throw OmEx::ExWriteFailed(__FILE__, __LINE__,
                                  fmt::format("cannot make the folder '{}' in '{}': {}", name,
                                              path.toString(),
                                              error ? error.message() : "something is in the way"));
    return OmFolder(_project, childDisplayPath(name));
}

OmLink OmFolder::addEntry(std::string const& name, RCShdPtr<OmComponent> const& component) const {
    QV_ASSERT(!isNull());
    QV_ASSERT(!component.isNull());
    QV_ASSERT(!component->isInFolder());
    OsFilePath const path = getPath();
    checkNewName(path, name);
    OsFilePath const target = path + OsFilePath(name);

    // Made complete under a hidden name, then renamed: a listing never shows
    // an entry without its side file.
    OsFilePath temporary;
    std::error_code error;
    try {
        temporary =
            OsFileUtils::createUniqueFileName(path, "." + (name.size() <= 64 ? name : "entry") + "~", "tmp");
        if (!std::filesystem::create_directory(temporary.toStdPath(), error) || error)
            throw OmEx::ExWriteFailed(__FILE__, __LINE__,
                                      fmt::format("cannot make the entry '{}' in '{}': {}", name,
                                                  path.toString(),
                                                  error ? error.message() : "something is in the way"));
        component->writeSideFile(temporary);
        std::filesystem::rename(temporary.toStdPath(), target.toStdPath(), error);
        if (error)
            throw OmEx::ExWriteFailed(__FILE__, __LINE__,
                                      fmt::format("cannot make the entry '{}' in '{}': {}", name,
                                                  path.toString(), error.message()));
    } catch (OsFileEx::ExFileError const& failure) {
        if (!temporary.isEmpty())
            std::filesystem::remove_all(temporary.toStdPath(), error);
        throw OmEx::ExWriteFailed(__FILE__, __LINE__, failure.getReason());
    } catch (...) {
        if (!temporary.isEmpty())
            std::filesystem::remove_all(temporary.toStdPath(), error);
        throw;
    }
    component->placeIn(target);
    return OmLink(_project, childDisplayPath(name), true, component);
}

} // namespace Qv
