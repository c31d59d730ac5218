#include "omComposition.h"

#include "omEx.h"
#include "omUtil.h"

#include <algorithm>
#include <fmt/format.h>

namespace Qv {

RCShdPtr<OmComposition> OmComposition::create(std::string name) {
    return RCShdPtr<OmComposition>(new OmComposition(std::move(name)));
}

std::optional<std::size_t> OmComposition::findVersion(std::string_view name) const {
    auto it = std::find(_versions.begin(), _versions.end(), name);
    if (it == _versions.end())
        return std::nullopt;
    return static_cast<std::size_t>(it - _versions.begin());
}

OmVersion OmComposition::makeVersion(std::size_t index) const {
    return OmVersion(RCShdPtr<OmComposition>(const_cast<OmComposition*>(this)), _versions[index],
                     static_cast<int>(index) + 1);
}

std::vector<OmVersion> OmComposition::getVersions() const {
    std::vector<OmVersion> versions;
    versions.reserve(_versions.size());
    for (std::size_t i = 0; i < _versions.size(); ++i)
        versions.push_back(makeVersion(i));
    return versions;
}

OmVersion OmComposition::getVersion(std::string_view name) const {
    std::optional<std::size_t> const index = findVersion(name);
    return index ? makeVersion(*index) : OmVersion();
}

OmVersion OmComposition::addVersion(std::string const& name) {
    if (!OmUtil::isValidName(name))
        throw OmEx::ExInvalidName(__FILE__, __LINE__,
                                  fmt::format("'{}' cannot name a version of '{}'", name, getName()));
    if (findVersion(name))
        throw OmEx::ExNameInUse(__FILE__, __LINE__,
                                fmt::format("'{}' has a version '{}' already", getName(), name));
    _versions.push_back(name);
    markChanged();
    return makeVersion(_versions.size() - 1);
}

OmVersion OmComposition::getWorkingVersion() {
    if (_versions.empty())
        return addVersion(getDefaultWorkingVersionName());
    return makeVersion(0);
}

void OmComposition::approveVersion(OmVersion const& version) {
    if (version.getComposition().get() != this || !findVersion(version.getName()))
        throw OmEx::ExUnknownVersion(
            __FILE__, __LINE__, fmt::format("'{}' is not a version of '{}'", version.getName(), getName()));
    if (_approved == version.getName())
        return;
    _approved = version.getName();
    markChanged();
}

OmVersion OmComposition::getApprovedVersion() const {
    return _approved.empty() ? OmVersion() : getVersion(_approved);
}

OsFilePath OmComposition::getVersionPath(std::string_view name) const {
    if (!isInFolder())
        return {};
    return (getPath() + OsFilePath(name)).addExtension(getFileExtension());
}

void OmComposition::writeContent(XmlElement& entry) const {
    for (std::string const& name : _versions) {
        XmlElement& version = entry.addChild("version");
        version.setAttribute("name", name);
        if (name == _approved)
            version.setAttribute("approved", true);
    }
}

void OmComposition::readContent(XmlElement const& entry, OsFilePath const& sideFile) {
    for (XmlElement const& child : entry.getChildren()) {
        if (child.getNodeName() != "version")
            continue;
        std::string const& name = child.getAttribute("name");
        if (!OmUtil::isValidName(name) || findVersion(name))
            throw OmEx::ExBadEntry(__FILE__, __LINE__,
                                   fmt::format("'{}', line {}: '{}' cannot name a version here",
                                               sideFile.toString(), child.getLine(), name));
        _versions.push_back(name);
        if (child.getBoolAttribute("approved", false))
            _approved = name;
    }
}

} // namespace Qv
