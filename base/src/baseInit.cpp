// The platform's base package: the root of every dependency.
#include "inInit.h"
#include "inPlatformPackages.h"
#include "lgLog.h"

namespace Qv {

template <>
InInit<QvInit::base>::InInit() : InPackageInit("base") {
    registerPackage();
}

template <>
void InInit<QvInit::base>::initialize() {
    LgLog::configureFromEnvironment();
}

template <>
void InInit<QvInit::base>::finalize() {}

namespace {
InInit<QvInit::base> gBasePackage;
}

} // namespace Qv
