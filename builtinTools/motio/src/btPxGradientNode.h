#pragma once
// The spatial derivatives of an image, for the flow solve: the x derivative
// in red, the y derivative in green, by central differences of the first
// component over the image's pixel region (edge pixels repeat outside it).
// RGB, FLOAT16.
#include "pxImageNode.h"

namespace Qv {

class PxGradientNode : public PxImageNode {
public:
    PxGradientNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& input);

    PxImageResult getImageResult(PxImageContext const& context) const override;

    static PxStrongHndl<PxImageProtocol> createPxNode(PxStrongHndl<PxNode const> const& image);

protected:
    PxResult<PxImageFormat> computeImageFormat() const override;
};

} // namespace Qv
