#include "piNodeRate.h"

#include "piFootageInterface.h"
#include "piNode.h"
#include "piProjectSettings.h"

namespace Qv::PiNodeRate {

Rational getProjectRate() {
    if (PiProjectSettings::isInitialized()) {
        PiProjectSettings const& settings = PiProjectSettings::getInstance();
        PiVariant const numeratorValue = settings.getValue("FrameRateNumerator");
        PiVariant const denominatorValue = settings.getValue("FrameRateDenominator");
        int const* numerator = std::get_if<int>(&numeratorValue);
        int const* denominator = std::get_if<int>(&denominatorValue);
        if (numerator && denominator && *numerator > 0 && *denominator > 0)
            return Rational(*numerator, *denominator);
    }
    return Rational(24, 1);
}

Rational get(PiNode const* node) {
    // A value node counts in the rate of the node whose input it stands behind.
    while (node && node->isValueNode()) {
        RCShdPtr<PiInput> owner = node->getOwnerInput();
        node = owner ? owner->getNodePtr() : nullptr;
    }
    if (auto* footage = node ? node->getInterface<PiFootageInterface>() : nullptr)
        for (RCShdPtr<PiOutput> const& output : node->getOutputs())
            if (output->getType() == PiSocketType::IMAGE) {
                Rational rate = footage->getRate(output);
                if (rate.getDouble() > 0.0)
                    return rate;
                break;
            }
    return getProjectRate();
}

} // namespace Qv::PiNodeRate
