#include "omComponent.h"

#include "assertions.h"
#include "omComposition.h"
#include "omEx.h"
#include "omStoreFile.h"

#include <exception>
#include <fmt/format.h>

namespace Qv {

OmComponent::SyncGuard::SyncGuard(OmComponent& component)
    : _component(&component), _exceptions(std::uncaught_exceptions()) {}

OmComponent::SyncGuard::~SyncGuard() noexcept(false) {
    if (std::uncaught_exceptions() == _exceptions)
        _component->sync();
}

RCShdPtr<OmComponent> OmComponent::load(OsFilePath const& directory) {
    OsFilePath const sideFile = directory + OsFilePath(getSideFileName());
    XmlElement const root = OmStoreFile::read(sideFile, "entry");
    RCShdPtr<OmComponent> component;
    try {
        int const version = root.getIntAttribute("version");
        if (version < 1 || version > FORMAT_VERSION)
            throw OmEx::ExBadEntry(__FILE__, __LINE__,
                                   fmt::format("'{}': entry format {} is not one this program reads ({})",
                                               sideFile.toString(), version, FORMAT_VERSION));
        std::string const& kind = root.getAttribute("kind");
        if (kind != OmComposition::getKindName())
            throw OmEx::ExBadEntry(
                __FILE__, __LINE__,
                fmt::format("'{}': unknown kind of entry '{}'", sideFile.toString(), kind));
        component = OmComposition::create(directory.getBaseName(true));
        if (XmlElement const* description = root.findChild("description"))
            component->_description = description->getData();
        component->readContent(root, sideFile);
    } catch (OmEx::ExBadEntry const&) {
        throw;
    } catch (ExBase const& error) {
        throw OmEx::ExBadEntry(__FILE__, __LINE__,
                               fmt::format("'{}': {}", sideFile.toString(), error.getReason()));
    }
    component->placeIn(directory);
    return component;
}

void OmComponent::setDescription(std::string description) {
    if (description == _description)
        return;
    _description = std::move(description);
    markChanged();
}

void OmComponent::sync() {
    QV_ASSERT(isInFolder());
    if (!_changed)
        return;
    OmStoreFile::write(_path + OsFilePath(getSideFileName()), toXml());
    _changed = false;
}

XmlElement OmComponent::toXml() const {
    XmlElement root("entry");
    root.setAttribute("version", FORMAT_VERSION);
    root.setAttribute("kind", getKind());
    root.addChild("description").setData(_description);
    writeContent(root);
    return root;
}

void OmComponent::writeSideFile(OsFilePath const& directory) const {
    OmStoreFile::write(directory + OsFilePath(getSideFileName()), toXml());
}

void OmComponent::placeIn(OsFilePath const& directory) {
    _path = directory;
    _name = directory.getBaseName(true);
    _changed = false;
}

} // namespace Qv
