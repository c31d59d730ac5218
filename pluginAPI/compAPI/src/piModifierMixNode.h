#pragma once
// What an image modifier's result becomes when the node affects some
// channels only, or is masked by the frame: per pixel and channel,
//   out = source + (result - source) * affected * mask
// where source is the modifier's primary input, result the tool's own image,
// affected 1 for a channel the node changes and 0 for the others, and mask
// the alpha of the "Mask" image (its fill alpha outside its pixels; 1 when
// the node is not masked). The image covers the source's region and the
// result's, in the result's format.
#include "piImageModifier.h"
#include "pxImageProtocol.h"

#include <array>

namespace Qv {

class PiModifierMixNode : public PxImageProtocol {
public:
    // `mask` may be null: the node is not masked.
    PiModifierMixNode(PxNode::Init const& init, PxStrongHndl<PxNode const> const& source,
                      PxStrongHndl<PxNode const> const& result, PxStrongHndl<PxNode const> const& mask,
                      PiImageModifier::AffectType affect);
    ~PiModifierMixNode() override;

    void init() override;
    PxResult<PxImageFormat> getImageFormat() const override;
    PxRODResult getImageROD(PxTimeStreamContext const& context) const override;
    PxImageResult getImageResult(PxImageContext const& context) const override;

    // The weight of each of red, green, blue and alpha for an affect type.
    static std::array<float, 4> getChannelWeights(PiImageModifier::AffectType affect);

private:
    PxNodePtr<PxImageProtocol const> _source;
    PxNodePtr<PxImageProtocol const> _result;
    PxNodePtr<PxImageProtocol const> _mask;
    std::array<float, 4> _weights;
};

} // namespace Qv
