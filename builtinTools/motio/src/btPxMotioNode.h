#pragma once
// The coarse-to-fine driver of the optical flow. It has the outward form of
// an image node but is not pulled tile by tile: the first request for a time
// and vector type runs the whole analysis for that frame (every level of the
// pyramid, every tile, in parallel over the tiles of a level), stores every
// tile of every proxy scale in the motion cache, and then answers this and
// later requests from the cache. The per-pixel work is the iteration graph,
// re-evaluated level by level and iteration by iteration with the cache as
// its feedback path. Its vectors are reached through
// BtPxMotioOutputNode<BtPxMotioNode>; getImageResult itself is not callable.
#include "btMotioTypes.h"
#include "btPxMotioCacheNode.h"
#include "btPxMotioIterSwitchNode.h"
#include "lkLock.h"
#include "pxAnimValueProtocol.h"
#include "pxImageNode.h"
#include "pxRequestPtr.h"

#include <array>
#include <atomic>
#include <cstddef>

namespace Qv {

class BtPxMotioNode : public PxImageNode {
public:
    template <class T>
    using PerType = std::array<T, BtMotioTypes::NB_VECTOR_TYPES>;

    BtPxMotioNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& image,
                  PerType<PxNodePtr<PxImageProtocol const>> const& iterOutput,
                  PerType<PxNodePtr<BtPxMotioCacheNode const>> const& vectorCache,
                  PerType<PxNodePtr<BtPxMotioIterSwitchNode const>> const& iterSwitch,
                  PerType<PxNodePtr<PxImageProtocol const>> const& normalized,
                  PerType<PxNodePtr<PxImageProtocol const>> const& upscaled,
                  PxNodePtr<PxAnimValueProtocol<int> const> const& quality);
    ~BtPxMotioNode() override;

    void init() override;
    // The vectors' format and region: those of the motion cache.
    PxResult<PxImageFormat> getImageFormat() const override;
    PxRODResult getImageROD(PxTimeStreamContext const& context) const override;
    // Throws: "Invalid call to unimplementable BtPxMotioNode::getImageResult()".
    PxImageResult getImageResult(PxImageContext const& context) const override;
    // While the analysis clears its own inner caches, their invalidation
    // stops here: nothing downstream has changed.
    bool propagateAndRemapInvalidation(PxValidityInterval* interval, PxUPtr<PxNode const> const& child,
                                       int* stream) const override;

    // A tile of vectors in nominal units, from the cache, or after one
    // analysis of the frame shared by every thread that asks meanwhile. A
    // proxy scale above the pyramid gives the constant vector of the top
    // level's first pixel.
    PxImageResult getVectorsResult(PxImageContext const& context, BtMotioTypes::VectorType type) const;

    // Analyses run so far (statistics, and proof that askers share one).
    std::size_t getNbAnalyses() const { return _nbAnalyses.load(std::memory_order_relaxed); }

    // Level arithmetic: L = log2ceil(minimum side at proxy 0).
    struct Levels {
        int maxProxyScale = 0; // L - log2ceil(5): the smaller side is still 5 pixels or more
        int analysisLevel = 0; // max(L - 11, quality): never analyse more than 2048 pixels across
    };
    static Levels getLevels(int minDimension, int quality);
    // min(p + 1, 4): level 0 has 1 iteration, level 3 and coarser 4.
    static int getNbIterations(int proxyScale);

private:
    class ProcRequest;
    friend class ProcRequest;

    void performGetVectorsResult(PxImageResult& result, PxImageContext const& context,
                                 BtMotioTypes::VectorType type, float pixAspectRatio,
                                 GeRectangle<float> const& nominalRod) const;
    void compute(double time, GeRectangle<float> const& nominalRod, float pixAspectRatio, int vectorType,
                 int stream) const;
    void seed(double time, GeRectangle<float> const& nominalRod, float pixAspectRatio, int proxyScale,
              int vectorType, int stream) const;
    void computeAndCacheAllTiles(PxNodePtr<PxImageProtocol const> const& node, double time, int proxyScale,
                                 int vectorType, int stream) const;
    void clearCaches(int vectorType, int stream) const;
    PxImageResult getAbovePyramid(PxImageContext const& context, BtMotioTypes::VectorType type,
                                  int maxProxyScale, GeRectangle<int> const& dstRgn,
                                  GeRectangle<int> const& pRodTop) const;

    PxNodePtr<PxImageProtocol const> _image;
    PerType<PxNodePtr<PxImageProtocol const>> _iterOutput;
    PerType<PxNodePtr<BtPxMotioCacheNode const>> _vectorCache;
    PerType<PxNodePtr<BtPxMotioIterSwitchNode const>> _iterSwitch;
    PerType<PxNodePtr<PxImageProtocol const>> _normalized; // NormalizeVectorsPxNode on the cache
    PerType<PxNodePtr<PxImageProtocol const>> _upscaled;   // the cache made larger, scale 1
    PxNodePtr<PxAnimValueProtocol<int> const> _quality;

    mutable LkLock _lock{"BtPxMotioNode"};
    mutable PxRequestPtr<ProcRequest> _procRequest;
    mutable std::atomic<bool> _clearingCaches{false};
    mutable std::atomic<std::size_t> _nbAnalyses{0};
};

} // namespace Qv
