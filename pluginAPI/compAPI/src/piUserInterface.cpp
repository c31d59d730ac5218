#include "piUserInterface.h"

#include "piUserInterfaceServices.h"

namespace Qv {

PiUserInterface::~PiUserInterface() = default;

std::string PiUserInterface::getXmlDescription() const {
    if (!_description.empty())
        return _description;
    std::string file = getXmlFileName();
    return file.empty() ? std::string() : PiUserInterfaceServices::getInstance().getXmlDescription(file);
}

std::string PiUserInterface::getXmlFileName() const {
    return {};
}

void PiUserInterface::setXmlDescription(std::string const& description) {
    _description = description;
}

bool PiUserInterface::hasDynamicXml() const {
    return false;
}

void PiUserInterface::enableXmlEditing(bool enable) {
    _xmlEditing = enable;
}

bool PiUserInterface::isXmlEditingEnabled() const {
    return _xmlEditing;
}

void PiUserInterface::startUiCreation() {}

void PiUserInterface::endUiCreation() {}

std::string PiUserInterface::createInstanceData() const {
    return {};
}

std::string PiUserInterface::createInstanceData(std::string const&) const {
    return {};
}

} // namespace Qv
