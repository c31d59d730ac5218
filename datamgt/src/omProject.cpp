#include "omProject.h"

#include "inVariable.h"
#include "omEx.h"
#include "omFolder.h"
#include "omStoreFile.h"
#include "osDirectory.h"
#include "osFile.h"
#include "osFileEx.h"

#include <cstdlib>
#include <fmt/format.h>
#include <pwd.h>
#include <unistd.h>

namespace Qv {

namespace {

InVariable<std::string> const gProjectHome("qv::datamgt::projectHome",
                                           "Folder where the user's projects live.",
                                           InContextAlias<InInitEnv, 0>("QV_PROJECT_HOME"));

OmProject& current() {
    static OmProject project;
    return project;
}

OsFilePath markerPath(OsFilePath const& directory) {
    return directory + OsFilePath(OmProject::getMarkerFileName());
}

std::string userHome() {
    if (char const* home = std::getenv("HOME"); home && *home)
        return home;
    // A service started without an environment still has an account.
    if (passwd const* account = ::getpwuid(::getuid()); account && account->pw_dir)
        return account->pw_dir;
    return "/";
}

} // namespace

OmProject OmProject::open(OsFilePath const& path) {
    OsFilePath const directory = OmStoreFile::makeAbsolute(path);
    OsFilePath const marker = markerPath(directory);
    if (!OsFile(marker).exists())
        throw OmEx::ExNotAProject(
            __FILE__, __LINE__,
            fmt::format("'{}' is not a project: it holds no {}", directory.toString(), getMarkerFileName()));
    XmlElement const root = OmStoreFile::read(marker, "project");
    int version = 0;
    try {
        version = root.getIntAttribute("version");
    } catch (ExBase const& error) {
        throw OmEx::ExBadEntry(__FILE__, __LINE__,
                               fmt::format("'{}': {}", marker.toString(), error.getReason()));
    }
    if (version < 1 || version > FORMAT_VERSION)
        throw OmEx::ExBadEntry(__FILE__, __LINE__,
                               fmt::format("'{}': project format {} is not one this program reads ({})",
                                           marker.toString(), version, FORMAT_VERSION));
    return OmProject(directory);
}

OmProject OmProject::create(OsFilePath const& path) {
    OsFilePath const directory = OmStoreFile::makeAbsolute(path);
    if (isProject(directory))
        throw OmEx::ExNameInUse(__FILE__, __LINE__,
                                fmt::format("'{}' is a project already", directory.toString()));
    try {
        OsDirectory(directory).create();
    } catch (OsFileEx::ExInvalidPath const& error) {
        throw OmEx::ExNameInUse(
            __FILE__, __LINE__,
            fmt::format("cannot make the project '{}': {}", directory.toString(), error.getReason()));
    } catch (OsFileEx::ExFileError const& error) {
        throw OmEx::ExWriteFailed(__FILE__, __LINE__, error.getReason());
    }
    XmlElement root("project");
    root.setAttribute("version", FORMAT_VERSION);
    OmStoreFile::write(markerPath(directory), root);
    return OmProject(directory);
}

bool OmProject::isProject(OsFilePath const& path) {
    return OsFile(markerPath(path)).exists();
}

OmProject OmProject::locate(OsFilePath const& path) {
    OsFilePath directory = OmStoreFile::makeAbsolute(path);
    while (true) {
        if (isProject(directory))
            return OmProject(directory);
        std::string parent = directory.getDirectoryName();
        if (parent.empty() || parent == directory.toString())
            return {};
        directory = OsFilePath(parent);
    }
}

OsFilePath OmProject::getCurrentProjectHomeFolderPath() {
    std::optional<std::string> const home = gProjectHome.getText();
    if (home && !home->empty())
        return OmStoreFile::makeAbsolute(OsFilePath(*home));
    return OmStoreFile::makeAbsolute(OsFilePath(userHome()) + OsFilePath("qvProjects"));
}

OmProject OmProject::getCurrent() {
    return current();
}

void OmProject::setCurrent(OmProject const& project) {
    current() = project;
}

OmFolder OmProject::getRootFolder() const {
    if (isNull())
        return {};
    return OmFolder(*this, {});
}

} // namespace Qv
