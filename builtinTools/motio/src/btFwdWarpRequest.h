#pragma once
// One of the parallel requests of a forward warp. It walks the source tiles
// in rows from the top, counting every tile of the range, and splats tile c
// when c mod count equals its index, into its own accumulators: each tile is
// read once, and no two requests write the same buffers.
#include "btWarpPxRequest.h"
#include "ixTile.h"
#include "pxHandles.h"
#include "pxImageProtocol.h"
#include "pxValidityInterval.h"

namespace Qv {

class FwdWarpRequest : public BtWarpPxRequest {
public:
    // `tiles`: the source tile range, in tile units.
    FwdWarpRequest(int index, int count, double time, int proxyScale, int stream,
                   GeRectangle<int> const& tiles, IxTile acc, IxTile cov, float warpCoef,
                   PxNodePtr<PxImageProtocol const> image, PxNodePtr<PxImageProtocol const> vectors);

    std::string getRequestType() const override { return "FwdWarp"; }
    void performExecute() override;

    // What the tiles read hold for; read once the request is done.
    PxValidityInterval const& getVI() const { return _interval; }

private:
    double const _time;
    int const _proxyScale;
    int const _stream;
    GeRectangle<int> const _tiles;
    IxTile const _acc;
    IxTile const _cov;
    float const _warpCoef;
    PxNodePtr<PxImageProtocol const> const _image;
    PxNodePtr<PxImageProtocol const> const _vectors;
    PxValidityInterval _interval = PxValidityInterval::FULL;
};

} // namespace Qv
