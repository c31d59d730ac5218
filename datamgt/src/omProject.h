#pragma once
// A project: a directory holding the marker file "qvproject.xml"; its root
// folder is that directory (docs/project-format.md). A handle: copies name
// the same project, and a default-made one is null.
#include "omBaseInterface.h"

namespace Qv {

class OmFolder;

class OmProject : public OmBaseInterface {
public:
    static constexpr int FORMAT_VERSION = 1;
    static char const* getMarkerFileName() { return "qvproject.xml"; }

    OmProject() = default;

    // Reads the marker. Throws OmEx::ExNotAProject when the directory has
    // none, OmEx::ExBadEntry for a marker that cannot be read or is of a
    // format this program does not know.
    static OmProject open(OsFilePath const& path);
    // Makes the directory, with missing parents, and writes the marker.
    // Throws OmEx::ExNameInUse when it is a project already or a file stands
    // there, OmEx::ExWriteFailed.
    static OmProject create(OsFilePath const& path);
    // The directory holds a marker.
    static bool isProject(OsFilePath const& path);
    // The project whose directory is `path` or holds it, the nearest one;
    // null when there is none. Looks for markers, reads none.
    static OmProject locate(OsFilePath const& path);

    // Where the user's projects live: $QV_PROJECT_HOME when set and not
    // empty, else $HOME/qvProjects. Absolute.
    static OsFilePath getCurrentProjectHomeFolderPath();
    // The project that relative paths are taken in (OmUtil::resolvePath);
    // null until one is set. Application thread only.
    static OmProject getCurrent();
    static void setCurrent(OmProject const& project);

    OmFolder getRootFolder() const;

    bool isNull() const override { return _path.isEmpty(); }
    // Nothing waits: folders are made at once and the marker at creation.
    void sync() override {}
    OsFilePath getPath() const override { return _path; }
    // The directory's name.
    std::string getName() const override { return _path.getBaseName(true); }

    friend bool operator==(OmProject const& a, OmProject const& b) { return a._path == b._path; }

private:
    explicit OmProject(OsFilePath absolutePath) : _path(std::move(absolutePath)) {}

    OsFilePath _path;
};

} // namespace Qv
