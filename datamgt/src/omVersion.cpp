#include "omVersion.h"

#include "omComposition.h"

namespace Qv {

OmVersion::OmVersion() = default;
OmVersion::~OmVersion() = default;
OmVersion::OmVersion(OmVersion const&) = default;
OmVersion& OmVersion::operator=(OmVersion const&) = default;

OmVersion::OmVersion(RCShdPtr<OmComposition> composition, std::string name, int number)
    : _composition(std::move(composition)), _name(std::move(name)), _number(number) {}

OsFilePath OmVersion::getPath() const {
    return isNull() ? OsFilePath() : _composition->getVersionPath(_name);
}

bool operator==(OmVersion const& a, OmVersion const& b) {
    return a._composition == b._composition && a._name == b._name;
}

} // namespace Qv
