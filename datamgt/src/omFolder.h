#pragma once
// A folder of a project: a directory whose entries are sub-folders and
// components (directories holding a side file). A handle naming the folder
// by its place in the project: copies name the same folder, a default-made
// one is null.
#include "omLink.h"
#include "omProject.h"
#include "rcShdPtr.h"

#include <string>
#include <vector>

namespace Qv {

class OmComponent;

class OmFolder : public OmBaseInterface {
public:
    OmFolder() = default;

    OmProject const& getProject() const { return _project; }
    // Relative to the project's root, '/' separated; "" for the root folder.
    std::string const& getDisplayPath() const { return _displayPath; }

    // The entry of that name: a sub-folder or a component; a null link when
    // there is none (an invalid name never names one).
    OmLink getEntry(std::string const& name) const;
    // Puts a component that is in no folder yet under `name`: its directory
    // and side file are made under a hidden name and renamed into place, so
    // a failure leaves nothing behind. The component takes the entry's name.
    // Throws OmEx::ExInvalidName, OmEx::ExNameInUse naming the entry when
    // anything already has that name, OmEx::ExWriteFailed.
    OmLink addEntry(std::string const& name, RCShdPtr<OmComponent> const& component) const;
    // Every entry, sorted by name (hidden names are never entries).
    std::vector<OmLink> getEntries() const;
    std::vector<OmFolder> getFolders() const;
    // The sub-folder of that name; null when there is none or the entry is a component.
    OmFolder getFolder(std::string const& name) const;
    // Throws OmEx::ExInvalidName, OmEx::ExNameInUse, OmEx::ExWriteFailed.
    OmFolder createFolder(std::string const& name) const;

    bool isNull() const override { return _project.isNull(); }
    // Nothing waits: folders are made at once.
    void sync() override {}
    OsFilePath getPath() const override;
    // The directory's name (the project's for the root folder).
    std::string getName() const override { return getPath().getBaseName(true); }

    friend bool operator==(OmFolder const& a, OmFolder const& b) {
        return a._project == b._project && a._displayPath == b._displayPath;
    }

private:
    friend class OmProject;
    friend class OmLink;
    OmFolder(OmProject project, std::string displayPath)
        : _project(std::move(project)), _displayPath(std::move(displayPath)) {}

    std::string childDisplayPath(std::string const& name) const;
    OmLink makeLink(std::string const& name) const;

    OmProject _project;
    std::string _displayPath;
};

} // namespace Qv
