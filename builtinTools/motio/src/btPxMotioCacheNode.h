#pragma once
// The motion cache: every tile of every proxy scale of a frame's vectors,
// written by the motion node during an analysis and read by it and by the
// iteration graph. It never computes anything: a miss is a result with an
// empty validity interval (and a tile without pixels, which reads as zero
// vectors), and the motion node decides what to do.
//
// The host's cache keeps getNbDiskCachedProxyScales() = N proxy scales per
// node; a chain of two nodes stretches it to 2N levels: the outer one holds
// proxy scales 0 to N - 1 and hands the coarser ones to its child cache at
// proxy scale p - N. The child's region of definition is the image's made
// 2^N times smaller, so that its tiles at p - N are exactly the outer
// node's at p.
//
// Pixels: RGB FLOAT16 whatever comes in, so vectors are rounded to half
// floats every time they pass through the cache; the chain is built around
// that rounding.
//
// Storage identity: the composition's graph, the socket the cache serves
// and its place in the chain, plus a nonce of its own. The disk tier thus
// takes tiles that the memory budget pushes out during a run, but a later
// run never finds them: nothing here could prove that the frames under the
// vectors are still the same.
#include "pxAnimValueProtocol.h"
#include "pxHandles.h"
#include "rcShdPtr.h"
#include "stImageCacheBaseNode.h"

#include <string>

namespace Qv {

class PiGraph;
class PiSocket;

class BtPxMotioCacheNode : public StImageCacheBaseNode {
public:
    // `childCache` null: the last cache of the chain.
    BtPxMotioCacheNode(PxNode::Init const& init, PiGraph const* graph, RCShdPtr<PiSocket const> const& socket,
                       PxNodePtr<PxImageProtocol const> const& image,
                       PxNodePtr<PxAnimValueProtocol<int> const> const& quality,
                       PxNodePtr<BtPxMotioCacheNode const> const& childCache);
    ~BtPxMotioCacheNode() override;

    static PxStrongHndl<BtPxMotioCacheNode> create(PiGraph const* graph,
                                                   RCShdPtr<PiSocket const> const& socket,
                                                   PxStrongHndl<PxNode const> const& image,
                                                   PxStrongHndl<PxNode const> const& quality,
                                                   PxStrongHndl<BtPxMotioCacheNode const> const& childCache);

    void init() override;
    // RGB FLOAT16 with the image's aspect.
    PxResult<PxImageFormat> getImageFormat() const override;
    // The image's region of definition divided by 2^proxyOffset.
    PxRODResult getImageROD(PxTimeStreamContext const& context) const override;
    // The cached tile; a miss has an empty validity interval.
    PxImageResult getImageResult(PxImageContext const& context) const override;
    bool isChainConnected() const override;
    int getNbStreams() const override;

    // Replaces the tile of `context`; asserts "!_childCache.isNull()" beyond the chain.
    void setCachedImageResult(PxImageResult const& result, PxImageContext const& context) const;

    // Drops every tile of this cache and of the caches after it.
    void dropChainEntries() const;

    int getProxyOffset() const { return _proxyOffset; }
    std::string const& getIdentity() const { return _identity; }

private:
    PxImageResult getCachedImageResult(PxImageContext const& context) const;

    PxNodePtr<PxImageProtocol const> _image;
    PxNodePtr<PxAnimValueProtocol<int> const> _quality;
    PxNodePtr<BtPxMotioCacheNode const> _childCache;
    int _proxyOffset;
    std::string _identity;
};

} // namespace Qv
