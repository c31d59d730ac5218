#include "inBuildInfo.h"

#include "assertions.h"

#include <mutex>

namespace Qv {

std::vector<std::pair<std::string, std::string>> InBuildInfo::describe() const {
    return {
        {"productName", getProductName()},
        {"libraryName", getLibraryName()},
        {"release", getRelease()},
        {"versionString", getVersionString()},
        {"versionSuffix", getVersionSuffix()},
        {"majorVersion", std::to_string(getMajorVersion())},
        {"minorVersion", std::to_string(getMinorVersion())},
        {"stage", std::to_string(getStage())},
        {"buildNumber", getBuildNumber()},
        {"buildDate", getBuildDate()},
        {"buildConfiguration", getBuildConfiguration()},
    };
}

namespace InBuildInfoUtil {

namespace {
struct Registry {
    std::mutex mutex;
    std::vector<OPtr<InBuildInfo>> infos;
};
Registry& registry() {
    // Never destroyed: a record's code lives in the library that made it, which
    // the host may already have unloaded at exit.
    static Registry* instance = new Registry;
    return *instance;
}
} // namespace

InBuildInfo& registerInfo(OPtr<InBuildInfo> info) {
    QV_ASSERT(info != nullptr);
    Registry& reg = registry();
    std::lock_guard<std::mutex> lock(reg.mutex);
    reg.infos.push_back(std::move(info));
    return *reg.infos.back();
}

std::vector<InBuildInfo const*> getRegisteredInfos() {
    Registry& reg = registry();
    std::lock_guard<std::mutex> lock(reg.mutex);
    std::vector<InBuildInfo const*> result;
    for (auto const& info : reg.infos)
        result.push_back(info.get());
    return result;
}

} // namespace InBuildInfoUtil
} // namespace Qv
