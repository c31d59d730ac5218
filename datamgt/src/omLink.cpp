#include "omLink.h"

#include "omComponent.h"
#include "omFolder.h"

namespace Qv {

OmLink::OmLink() = default;
OmLink::~OmLink() = default;
OmLink::OmLink(OmLink const&) = default;
OmLink& OmLink::operator=(OmLink const&) = default;

OmLink::OmLink(OmProject project, std::string displayPath, bool isComponent, RCShdPtr<OmComponent> component)
    : _project(std::move(project)), _displayPath(std::move(displayPath)), _isComponent(isComponent),
      _component(std::move(component)) {}

OmFolder OmLink::getFolder() const {
    if (!isFolder())
        return {};
    return OmFolder(_project, _displayPath);
}

RCShdPtr<OmComponent> OmLink::getComponent() const {
    if (_component.isNull() && _isComponent)
        _component = OmComponent::load(getPath());
    return _component;
}

void OmLink::sync() {
    if (!_component.isNull())
        _component->sync();
}

OsFilePath OmLink::getPath() const {
    if (isNull() || _displayPath.empty())
        return _project.getPath();
    return _project.getPath() + OsFilePath(_displayPath);
}

} // namespace Qv
