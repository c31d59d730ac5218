#pragma once
// Turns vectors in pixels of a proxy scale into nominal ones (proxy 0,
// square pixels): at proxy p with pixel aspect a, (x, y) becomes
// (x * a * 2^p, y * 2^p). Asserts "pixAspectRatio != 0".
#include "pxHandles.h"
#include "pxImageNode.h"

namespace Qv {

class NormalizeVectorsPxNode : public PxImageNode {
public:
    NormalizeVectorsPxNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& vectors);
    ~NormalizeVectorsPxNode() override;

    static PxStrongHndl<PxImageProtocol> create(PxStrongHndl<PxNode const> const& vectors);

    PxImageResult getImageResult(PxImageContext const& context) const override;
};

} // namespace Qv
