#pragma once
// Carries an image from proxy scale p + 1 to proxy scale p: each tile at p is
// made from the half-size tile area one level up, doubled by BtUpscaleProc,
// with the values multiplied by the "Scale" value on the way. It keeps its
// input's region of definition and format. Levels finer than the pyramid
// allows (L < p with L = log2ceil of the smaller side at full size) give no
// pixels.
#include "pxAnimValueProtocol.h"
#include "pxImageNode.h"

namespace Qv {

class BtPxUpscaleNode : public PxImageNode {
public:
    BtPxUpscaleNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& image,
                    PxNodePtr<PxAnimValueProtocol<double> const> const& scale);
    ~BtPxUpscaleNode() override;

    void init() override;
    PxImageResult getImageResult(PxImageContext const& context) const override;

private:
    PxNodePtr<PxAnimValueProtocol<double> const> _scale;
};

} // namespace Qv
