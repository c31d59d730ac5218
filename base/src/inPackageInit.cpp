#include "inPackageInit.h"

#include "inInitMgr.h"

#include <algorithm>

namespace Qv {

InPackageInit::InPackageInit(char const* name) : _name(name) {}

InPackageInit::~InPackageInit() {
    if (_registered)
        InInitMgr::getInstance().unregisterPackage(*this);
}

void InPackageInit::registerPackage() {
    if (_registered)
        return;
    InInitMgr::getInstance().registerPackage(*this);
    _registered = true;
}

void InPackageInit::addDependency(std::type_info const& package) {
    std::type_index type(package);
    if (std::find(_dependencies.begin(), _dependencies.end(), type) == _dependencies.end())
        _dependencies.push_back(type);
}

void InPackageInit::removeDependency(std::type_info const& package) {
    std::erase(_dependencies, std::type_index(package));
}

} // namespace Qv
