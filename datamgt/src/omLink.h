#pragma once
// What an entry of a folder is: a sub-folder or a component, named by its
// place in the project. A null link names nothing.
#include "omProject.h"
#include "rcShdPtr.h"

#include <string>

namespace Qv {

class OmComponent;
class OmFolder;

class OmLink : public OmBaseInterface {
public:
    OmLink();
    ~OmLink() override;
    OmLink(OmLink const&);
    OmLink& operator=(OmLink const&);

    // Relative to the project's root, '/' separated, e.g. "Footage/plate";
    // "" for the root folder.
    std::string const& getDisplayPath() const { return _displayPath; }
    OmProject const& getProject() const { return _project; }
    bool isFolder() const { return !isNull() && !_isComponent; }
    // Null unless the entry is a folder.
    OmFolder getFolder() const;
    // The component, read from its side file on the first call and then kept
    // by this link; null for a folder or a null link. Throws OmEx::ExBadEntry.
    RCShdPtr<OmComponent> getComponent() const;

    bool isNull() const override { return _project.isNull(); }
    // The component's pending changes, when it was read.
    void sync() override;
    OsFilePath getPath() const override;
    std::string getName() const override { return getPath().getBaseName(true); }

private:
    friend class OmFolder;
    friend struct OmUtil;
    OmLink(OmProject project, std::string displayPath, bool isComponent, RCShdPtr<OmComponent> component);

    OmProject _project;
    std::string _displayPath;
    bool _isComponent = false;
    mutable RCShdPtr<OmComponent> _component;
};

} // namespace Qv
