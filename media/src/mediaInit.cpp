// The platform package "media": file formats and file-side images.
#include "ffIOEx.h"
#include "inInit.h"
#include "inPlatformPackages.h"
#include "msgFileGuard.h"

namespace Qv {

template <>
InInit<QvInit::media>::InInit() : InPackageInit("media") {
    registerPackage();
    addDependency(InInit<QvInit::primitives>::getType());
    addDependency(InInit<QvInit::resmgt>::getType());
}

template <>
void InInit<QvInit::media>::initialize() {
    MsgFileGuard catalogue("fileFormat.msg");
    FfIOEx::subscribeMessages();
}

template <>
void InInit<QvInit::media>::finalize() {}

namespace {
InInit<QvInit::media> gPackage;
}

} // namespace Qv
