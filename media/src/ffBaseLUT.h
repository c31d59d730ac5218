#pragma once
// A lookup applied to the colour of a tile on its way to a file: the identity,
// the sRGB encoding of linear light, or a 1D table read from a text file.
// Alpha passes unchanged. Shared by the renders that use it; immutable.
#include "coColor.h"
#include "ixTile.h"
#include "osFilePath.h"
#include "rcStrongPtr.h"

namespace Qv {

class FfBaseLUT {
public:
    virtual ~FfBaseLUT() = default;

    // False for the identity: callers skip process() then.
    virtual bool applies() const { return true; }
    // A new tile of the same format, region and fill colour with the lookup
    // applied; the tile itself when it does not apply or holds only alpha.
    // COMPLEX pixels throw IxEx::ExUnsupportedFormat.
    IxTile process(IxTile const& tile) const;

    static RCStrongPtr<FfBaseLUT> createIdentity();
    static RCStrongPtr<FfBaseLUT> createSrgbEncode();
    // A text file of entries, one a line: one number (the same curve for red,
    // green and blue) or three, at least two lines; "#" starts a comment. The
    // entries cover [0, 1] evenly, values in between are interpolated and
    // values outside are clamped to the ends. Throws FfIOEx::ExFileNotFound,
    // FfIOEx::ExReadError naming the line of a bad entry.
    static RCStrongPtr<FfBaseLUT> readTable(OsFilePath const& path);

protected:
    // The lookup over a run of colours, in place.
    virtual void applyRow(CoRgbaColorTyped<float>* colours, int count) const = 0;
};

} // namespace Qv
