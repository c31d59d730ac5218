#pragma once
// Services of the image import tools shared by their controllers and nodes.
#include "coColor.h"

namespace Qv {

class BtImageImportServices {
public:
    // The background colour that stands for "not chosen yet: guess it from
    // the pixels". Far below any colour a user would pick, so that the
    // comparison's tolerance of 1.0 never mistakes a real colour for it.
    static CoRgbColorTyped<float> const& getUnspecifiedBgColor();
    // Whether `colour` is the unspecified one, within a tolerance of 1.0 per component.
    static bool isUnspecifiedBgColor(CoRgbColorTyped<float> const& colour);
};

} // namespace Qv
