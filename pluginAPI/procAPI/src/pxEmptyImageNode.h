#pragma once
// The image of nothing: no pixel at any time, transparent black everywhere.
// What an image socket gives when nothing feeds it, and what a placeholder
// publishes; it tells the nodes above that no chain is connected.
#include "pxImageProtocol.h"

namespace Qv {

class PxEmptyImageNode : public PxImageProtocol {
public:
    explicit PxEmptyImageNode(PxNode::Init const& init);

    PxResult<PxImageFormat> getImageFormat() const override;
    PxRODResult getImageROD(PxTimeStreamContext const& context) const override;
    PxImageResult getImageResult(PxImageContext const& context) const override;
    bool isChainConnected() const override { return false; }

    // RGBA, 32-bit float, square pixels, no rate.
    static PxImageFormat const& getEmptyFormat();
};

} // namespace Qv
