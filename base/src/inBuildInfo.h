#pragma once
// The build record a library publishes once it is initialised; the host shows
// it (`qv version`) and never asks the library for it again.
#include "exBase.h"

#include <string>
#include <vector>

namespace Qv {

class InBuildInfo {
public:
    virtual ~InBuildInfo() = default;
    virtual std::string getProductName() const = 0;
    virtual std::string getLibraryName() const = 0;
    virtual std::string getRelease() const = 0;
    virtual std::string getVersionString() const = 0;
    virtual std::string getVersionSuffix() const = 0;
    virtual int getMajorVersion() const = 0;
    virtual int getMinorVersion() const = 0;
    virtual int getStage() const = 0;
    virtual std::string getBuildNumber() const = 0;
    virtual std::string getBuildDate() const = 0;
    virtual std::string getBuildConfiguration() const = 0;

    // Every operation as a (name, value) pair, in declaration order.
    std::vector<std::pair<std::string, std::string>> describe() const;
};

namespace InBuildInfoUtil {
// Takes ownership and returns the registered record.
InBuildInfo& registerInfo(OPtr<InBuildInfo> info);
// The records registered so far, oldest first.
std::vector<InBuildInfo const*> getRegisteredInfos();
} // namespace InBuildInfoUtil

} // namespace Qv
