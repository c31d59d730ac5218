#pragma once
// The settings of the user, kept across projects ("ProxyScale": 0 for full
// resolution).
#include "piSettings.h"

namespace Qv {

class PiUserSettings : public PiSettings {
public:
    // Asserts isInitialized().
    static PiUserSettings& getInstance();
    static bool isInitialized();
    // The platform package's initialise and finalise steps.
    static void initialize();
    static void finalize();

private:
    PiUserSettings();
};

} // namespace Qv
