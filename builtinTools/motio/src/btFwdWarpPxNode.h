#pragma once
// The forward warp as an image node: the image input's pixels moved along
// the vector input's (pixelized: pixels at the current proxy scale, red x,
// green y) and splatted, then divided by how much landed on each pixel.
// Holes that nothing reached are zero with alpha 0. Every result is the
// whole frame, since any source pixel may land anywhere.
//
// Without connected vectors, the node gives the image as it is, in one piece.
#include "pxImageNode.h"

namespace Qv {

class FwdWarpPxNode : public PxImageNode {
public:
    FwdWarpPxNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& image,
                  PxNodePtr<PxImageProtocol const> const& vectors);
    ~FwdWarpPxNode() override;

    void init() override;
    bool producesFullFrames() const override { return true; }
    PxImageResult getImageResult(PxImageContext const& context) const override;

protected:
    // With vectors: FLOAT32, ALPHA for an ALPHA image and RGBA for any
    // other, the image's aspect. Without: the image's format.
    PxResult<PxImageFormat> computeImageFormat() const override;

private:
    // The image input's whole frame, its tiles computed in parallel.
    PxImageResult getWholeImage(PxImageContext const& context) const;

    PxNodePtr<PxImageProtocol const> _vectors;
};

} // namespace Qv
