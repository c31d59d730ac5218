#pragma once
// Caches the tiles of an image node in memory (the motion tools keep their
// warped frames so). Everything but the tiles is the input's. A tile is
// computed once: the first asker posts a request that computes it and stores
// it, and whoever asks for the same tile meanwhile waits for that request
// (helping the request manager with other work as waits do) instead of
// computing it again.
//
// An input that produces full frames gives the same frame for every tile: it
// is computed and kept once, under the tile of the frame's first pixel, and
// served whole to every tile that asks.
//
// Its entries belong to this node alone (a storage id of its own, made anew
// for each node), since two nodes of the same name may have different
// inputs; they go when the node goes.
#include "lkLock.h"
#include "pxHandles.h"
#include "pxRequestPtr.h"
#include "stImageCacheBaseNode.h"
#include "stTileKey.h"

#include <atomic>
#include <string>
#include <unordered_map>

namespace Qv {

class StImageCacheNode : public StImageCacheBaseNode {
public:
    // `name` says what is cached ("Motion Warped Frame Cache"), for statistics and logs.
    StImageCacheNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> input, std::string name);
    ~StImageCacheNode() override;

    PxResult<PxImageFormat> getImageFormat() const override;
    PxRODResult getImageROD(PxTimeStreamContext const& context) const override;
    // The cached tile, or the input's, computed once and then cached.
    PxImageResult getImageResult(PxImageContext const& context) const override;
    bool isChainConnected() const override;
    bool producesFullFrames() const override;
    int getNbStreams() const override;

    void init() override;

    std::string const& getName() const { return _name; }
    // Askers that found their tile being computed and waited for it.
    std::size_t getNbJoinedComputations() const { return _nbJoined.load(std::memory_order_relaxed); }
    // Computations of a tile by the input.
    std::size_t getNbComputations() const { return _nbComputed.load(std::memory_order_relaxed); }

private:
    class ComputeRequest;

    // The context the tile is computed and kept for: the context itself, or
    // for a full-frame input the frame's first tile.
    PxImageContext getComputeContext(PxImageContext const& context) const;
    // Runs in the request: computes the tile from the input and caches it.
    PxImageResult compute(PxImageContext const& context) const;

    PxNodePtr<PxImageProtocol const> _input;
    std::string _name;
    // Tiles being computed, by key; an entry goes when its poster is done with it.
    mutable LkLock _inFlightLock{"StImageCacheNodeInFlightLock"};
    mutable std::unordered_map<StTileKey, PxRequestPtr<ComputeRequest>, StTileKeyHash> _inFlight;
    mutable std::atomic<std::size_t> _nbJoined{0};
    mutable std::atomic<std::size_t> _nbComputed{0};
};

} // namespace Qv
