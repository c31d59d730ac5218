#pragma once
// "Motio": analyses its input images and publishes forward and backward
// optical-flow vectors beside a pass-through of the image. The analysis
// itself is a chain of processing nodes (the motion node over two motion
// caches per vector type and an iteration graph of the inner tools), which
// createPxNode builds without a controller, so that other tools, `qv motio`
// and the benchmarks run the same chain.
#include "btMotioTypes.h"
#include "piInputPolicy.h"
#include "piSocket.h"
#include "pxHandles.h"
#include "pxImageProtocol.h"
#include "rcShdPtr.h"

#include <array>
#include <string>

namespace Qv {

class BtPxMotioNode;
class PiGraph;

class BtMotioTool {
public:
    // Registers "Motio" in the Vectors category.
    static void registerTool();
    static std::string const& getToolName();         // "Motio"
    static std::string const& getQualityInputName(); // "Quality"
    // 0 "Full" to 6 "Sixty-fourth", default 0, not animatable.
    static RCShdPtr<PiInputPolicy const> getQualityInputPolicy();

    // The sockets that give the four motion caches their storage identity:
    // [type] for the outer cache of each vector type, [type + 2] for its
    // inner one. Any may be null (a chain without a composition).
    using CacheSockets = std::array<RCShdPtr<PiSocket const>, 4>;

    // The whole chain on `image` (any image; reduced to luminance here) with
    // `quality` a PxAnimValueProtocol<int>; the vectors come from
    // BtPxMotioOutputNode<BtPxMotioNode> on the returned node. Off the workers.
    static PxStrongHndl<BtPxMotioNode> createPxNode(PxStrongHndl<PxNode const> const& image,
                                                    PxStrongHndl<PxNode const> const& quality,
                                                    PiGraph const* graph, CacheSockets const& sockets);
    // The same with a constant quality and no composition.
    static PxStrongHndl<BtPxMotioNode> createPxNode(PxStrongHndl<PxNode const> const& image, int quality);

    // One iteration of the analysis at one level: `vectors` (pixelized) in,
    // better vectors out, from the mono `image` and the frame it goes towards.
    static PxStrongHndl<PxImageProtocol> createIterationNodes(PxStrongHndl<PxNode const> const& image,
                                                              PxStrongHndl<PxNode const> const& vectors,
                                                              BtMotioTypes::VectorType type);
};

} // namespace Qv
