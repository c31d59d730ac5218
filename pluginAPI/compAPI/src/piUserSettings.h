#pragma once
// The settings of the user, kept across projects:
// - "ProxyScale" (int): 0 for full resolution.
// - "ProxiesOnRead" (bool, default false): an image reader that reads a frame
//   also filters every proxy level the caches keep, at once, so that later
//   proxy requests find them ready. Readers follow changes through an
//   observer (ObObserver) attached to these settings.
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
