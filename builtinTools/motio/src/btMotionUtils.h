#pragma once
// Statics shared by the motion analysis: output socket names, what counts as
// the same frame, the validity of a single instant, the memory cache the
// motion graph puts in front of what it reads many times, and the
// registration of its inner tools (image modifiers in the Test category,
// kept for developing and checking the chain; users work with "Motio").
#include "piImageModifierProtocol.h"
#include "piOstrandToolProtocol.h"
#include "piToolProtocol.h"
#include "pxHandles.h"
#include "pxImageProtocol.h"
#include "pxValidityInterval.h"

#include <memory>
#include <string>

namespace Qv {

class BtMotionUtils {
public:
    static std::string const& getFwdVectorsSocketName(); // "Forward Vectors"
    static std::string const& getBwdVectorsSocketName(); // "Backward Vectors"
    // A time distance in frames under which two times are the same frame.
    static double getFrameThreshold();
    // [t - e, t + e] with e = 5.208333333333334e-9; at either time limit
    // (-3.1536e7, 3.1536e7) both ends are t.
    static PxValidityInterval pointValidity(double t);
    // `image` behind a new StImageCacheNode that keeps its tiles in memory
    // under the display name `name`.
    static PxStrongHndl<PxImageProtocol> createMemoryCache(PxStrongHndl<PxNode const> const& image,
                                                           std::string const& name);

    // The pixel aspect ratio of an image format as a number.
    static double getPixelAspect(PxImageFormat const& format);

    // What every inner tool declares for the modifier frame: the mute and
    // affect values it stores and the image it produces.
    static void describeModifierValues(PiImageModifier::Descriptor& descriptor);

    // Registers an inner tool of the family: category Test, the family's
    // manufacturer, product and version string, schema 1, listed.
    template <class Controller>
    static void registerInnerTool(std::string const& name, std::string const& description) {
        PiImageModifier::registerTool(std::make_unique<PiImageModifierInfo<Controller>>(
            name, PiToolProtocol::getTestCategory(), PiOstrandToolProtocol::getOstrandProductName(),
            PiOstrandToolProtocol::getOstrandManufacturer(), PiOstrandToolProtocol::getOstrandVersionString(),
            1, description, TOOL_LISTED, PLAIN_TOOL));
    }
};

} // namespace Qv
