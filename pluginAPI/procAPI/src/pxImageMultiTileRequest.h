#pragma once
// Evaluates an image node over many tiles at once: every tile of the frame's
// region of definition, or every tile that covers a pixel region. The tiles
// run in parallel, one request each, and come back in rows from the top. A
// node that produces full frames is asked once, for the first tile: its one
// result holds them all.
// assembleTiles joins such results into one tile.
#include "cbHandler.h"
#include "pxImageProtocol.h"
#include "pxRequest.h"
#include "pxTimeContext.h"
#include "rcStrongPtr.h"

#include <string>
#include <vector>

namespace Qv {

class PxImageMultiTileRequest : public PxRequest {
public:
    // Called on the thread that ran the request, once every tile is done.
    using Callback = CbHandler<PxImageMultiTileRequest>;
    using Results = std::vector<PxImageResult>;

    // Every tile of the node's region of definition at the proxy scale.
    PxImageMultiTileRequest(PxNodePtr<PxImageProtocol const> node, int stream, PxTimeInfo const& time,
                            int proxyScale, RCWeakPtr<Callback> callback = {});
    // The tiles that cover `region`, pixels at the proxy scale; made on a worker.
    PxImageMultiTileRequest(PxUPtr<PxImageProtocol const> const& node, int stream, PxTimeInfo const& time,
                            GeRectangle<int> const& region, int proxyScale,
                            RCWeakPtr<Callback> callback = {});

    std::string getRequestType() const override { return "ImageMultiTile"; }
    void performExecute() override;
    void completeExecution() override;

    // Waits for the request (running it here if it has not started) and gives
    // its tiles; rethrows its failure.
    RCStrongPtr<Results> getResults();

    // One tile with the pixels of all results, over the smallest region that
    // holds them; INVALID_TILE when there is no result.
    static IxTile assembleTiles(Results const& results);
    // The same, limited to `region`: the tile covers the part of `region` that
    // the results hold pixels for, which may be less than `region`.
    static IxTile assembleTiles(Results const& results, GeRectangle<int> const& region);

private:
    PxNodePtr<PxImageProtocol const> _node;
    int _stream;
    double _time;
    int _proxyScale;
    bool _wholeFrame;
    GeRectangle<int> _region;
    RCWeakPtr<Callback> _callback;
    RCStrongPtr<Results> _results;
};

} // namespace Qv
