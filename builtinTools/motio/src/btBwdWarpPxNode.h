#pragma once
// The backward warp as an image node: each pixel of the vector input's
// region takes the image input's colour at its own position moved by its
// vector (pixelized, red x, green y), read bilinearly; beyond the image's
// pixels the image's fill colour. The output has the image's format and,
// since its pixels are the vectors', the vector input's region.
//
// Without both inputs connected, or for an image without pixels, the node
// gives the image as it is.
#include "pxImageNode.h"

namespace Qv {

class BwdWarpPxNode : public PxImageNode {
public:
    BwdWarpPxNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& image,
                  PxNodePtr<PxImageProtocol const> const& vectors);
    ~BwdWarpPxNode() override;

    void init() override;
    PxRODResult getImageROD(PxTimeStreamContext const& context) const override;
    PxImageResult getImageResult(PxImageContext const& context) const override;

private:
    PxNodePtr<PxImageProtocol const> _vectors;
};

} // namespace Qv
