#pragma once
// How a PxImageTexture reads an image.
#include "geAffineMatrix2.h"

namespace Qv {

struct SdTextureParams {
    enum Filter { NEAREST = 0, BILINEAR = 1 };

    // From the positions given to a lookup to unit coordinates: (0, 0) is the
    // top-left corner of the image's pixel region, (1, 1) its bottom-right
    // corner. Identity by default, where positions are already unit ones.
    GeAffineMatrix2<double> textureTransform;
    // NEAREST takes the pixel under the position; BILINEAR weighs the four
    // pixel centres around it.
    int filter = NEAREST;
    // Outside the image's pixels, in each axis: the nearest edge pixel
    // (true), or the image's fill colour, the colour of everything outside
    // its region of definition (false).
    bool clampX = true;
    bool clampY = true;
};

} // namespace Qv
