#pragma once
// The luminance image every motion analysis runs on:
// 0.2126 R + 0.7152 G + 0.0722 B per pixel, in float, alpha ignored.
// ALPHA, FLOAT32, on the input's pixel region.
#include "pxImageNode.h"

namespace Qv {

class SingleChannelMonoPxNode : public PxImageNode {
public:
    SingleChannelMonoPxNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& input);

    PxImageResult getImageResult(PxImageContext const& context) const override;

    static PxStrongHndl<PxImageProtocol> createPxNode(PxStrongHndl<PxNode const> const& image);

protected:
    PxResult<PxImageFormat> computeImageFormat() const override;
};

} // namespace Qv
