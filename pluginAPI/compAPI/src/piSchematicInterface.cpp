#include "piSchematicInterface.h"

#include "piUserInterfaceServices.h"

namespace Qv {

PiSchematicInterface::~PiSchematicInterface() = default;

std::string PiSchematicInterface::getInternalLayout() const {
    return {};
}

bool PiSchematicInterface::getTopologyVisibility(RCShdPtr<PiNode const> const&) const {
    return true;
}

bool PiSchematicInterface::isVisibleInHierarchy(RCShdPtr<PiNode const> const&) const {
    return true;
}

bool PiSchematicInterface::canEdit() const {
    return true;
}

std::string PiSchematicInterface::getNodeXmlDescription(Orientation) const {
    return {};
}

void PiSchematicInterface::cacheNodeXmlDescription() {}

bool PiSchematicInterface::hasAuxiliaryInformation() const {
    return false;
}

std::string PiSchematicInterface::getAuxiliaryInformation() const {
    return {};
}

std::string PiSchematicInterface::readXmlFile(std::string const& fileName) {
    return PiUserInterfaceServices::getInstance().getXmlDescription(fileName);
}

} // namespace Qv
