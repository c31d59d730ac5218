#pragma once
// The settings of the project: default frame rate and image size of new
// compositions ("FrameRateNumerator", "FrameRateDenominator", "ImageWidth",
// "ImageHeight").
#include "piSettings.h"

namespace Qv {

class PiProjectSettings : public PiSettings {
public:
    // Asserts isInitialized().
    static PiProjectSettings& getInstance();
    static bool isInitialized();
    // The platform package's initialise and finalise steps.
    static void initialize();
    static void finalize();

private:
    PiProjectSettings();
};

} // namespace Qv
