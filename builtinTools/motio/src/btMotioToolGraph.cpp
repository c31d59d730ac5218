// The processing chain of "Motio": one luminance node, and per vector type
// the two motion caches, the upscale that seeds a level from the one above,
// the iteration switch and the iteration graph, all under one motion node.
#include "btFlowLKTool.h"
#include "btFwdWarpTool.h"
#include "btMotioTool.h"
#include "btMotionUtils.h"
#include "btNormalizeVectorsPxNode.h"
#include "btPMCoefsTool.h"
#include "btPMFilterTool.h"
#include "btPxGradientNode.h"
#include "btPxMotioNode.h"
#include "btSingleChannelMonoPxNode.h"
#include "btTimeDerivTool.h"
#include "btUpscaleTool.h"
#include "btVectorIncTool.h"
#include "pxValueNodes.h"

namespace Qv {

namespace {

// The diffusion of the increments runs this many times per iteration.
constexpr int PM_FILTER_ITERATIONS = 3;

PxStrongHndl<PxNode const> cached(PxStrongHndl<PxImageProtocol> const& node, std::string const& name) {
    return PxStrongHndl<PxNode const>(
        BtMotionUtils::createMemoryCache(PxStrongHndl<PxNode const>(node), name));
}

} // namespace

PxStrongHndl<PxImageProtocol> BtMotioTool::createIterationNodes(PxStrongHndl<PxNode const> const& image,
                                                                PxStrongHndl<PxNode const> const& vectors,
                                                                BtMotioTypes::VectorType type) {
    auto const warped = cached(BtFwdWarpTool::createPxNode(image, vectors), "Forward Warp");
    auto const gradient = cached(PxGradientNode::createPxNode(warped), "Gradient");
    auto const timeDeriv = cached(BtTimeDerivTool::createPxNode(image, warped, type), "Time Derivative");
    auto const flow = cached(BtFlowLKTool::createPxNode(gradient, timeDeriv), "Lucas-Kanade Flow");
    // These three depend on the frames only: filled once per level, kept
    // across the level's iterations.
    auto const inputTimeDeriv =
        cached(BtTimeDerivTool::createPxNode(image, image, type), "Input Time Derivative");
    auto const inputGradient = cached(PxGradientNode::createPxNode(image), "Input Gradient");
    auto const coefs =
        cached(BtPMCoefsTool::createPxNode(inputGradient, inputTimeDeriv), "Perona-Malik Coefficients");
    auto const increment = cached(BtVectorIncTool::createPxNode(vectors, flow), "Vector Increment");
    return BtPMFilterTool::createPxNode(increment, coefs, PM_FILTER_ITERATIONS);
}

PxStrongHndl<BtPxMotioNode> BtMotioTool::createPxNode(PxStrongHndl<PxNode const> const& image,
                                                      PxStrongHndl<PxNode const> const& quality,
                                                      PiGraph const* graph, CacheSockets const& sockets) {
    PxStrongHndl<PxNode const> const mono(SingleChannelMonoPxNode::createPxNode(image));
    BtPxMotioNode::PerType<PxNodePtr<PxImageProtocol const>> iterOutput;
    BtPxMotioNode::PerType<PxNodePtr<BtPxMotioCacheNode const>> vectorCache;
    BtPxMotioNode::PerType<PxNodePtr<BtPxMotioIterSwitchNode const>> iterSwitch;
    BtPxMotioNode::PerType<PxNodePtr<PxImageProtocol const>> normalized;
    BtPxMotioNode::PerType<PxNodePtr<PxImageProtocol const>> upscaled;
    for (auto type = BtMotioTypes::FORWARD_VECTORS; type < BtMotioTypes::NB_VECTOR_TYPES;
         type = BtMotioTypes::next(type)) {
        auto const inner = BtPxMotioCacheNode::create(graph, sockets[type + 2], mono, quality, nullptr);
        auto const outer = BtPxMotioCacheNode::create(graph, sockets[type], mono, quality, inner);
        PxStrongHndl<PxNode const> const outerNode(outer);
        // Two-fold: the vectors of the level above, in its pixels, become
        // twice as long in the pixels of this one.
        PxStrongHndl<PxNode const> const up(BtUpscaleTool::createPxNode(outerNode, 2.0));
        auto const switchNode = BtPxMotioIterSwitchNode::create(up, outerNode);
        iterOutput[type] = PxNodePtr<PxImageProtocol const>(
            createIterationNodes(mono, PxStrongHndl<PxNode const>(switchNode), type));
        vectorCache[type] = PxNodePtr<BtPxMotioCacheNode const>(outer);
        normalized[type] = PxNodePtr<PxImageProtocol const>(NormalizeVectorsPxNode::create(outerNode));
        // By the time the finer levels are made the cache holds nominal
        // vectors: the level above made larger, values unchanged.
        upscaled[type] = PxNodePtr<PxImageProtocol const>(BtUpscaleTool::createPxNode(outerNode, 1.0));
        iterSwitch[type] = PxNodePtr<BtPxMotioIterSwitchNode const>(switchNode);
    }
    PxNode::Init init;
    PxStrongHndl<BtPxMotioNode> node(
        new BtPxMotioNode(init, PxNodePtr<PxImageProtocol const>(mono), iterOutput, vectorCache, iterSwitch,
                          normalized, upscaled, PxNodePtr<PxAnimValueProtocol<int> const>(quality)));
    PxNode::init(node);
    return node;
}

PxStrongHndl<BtPxMotioNode> BtMotioTool::createPxNode(PxStrongHndl<PxNode const> const& image, int quality) {
    PxNode::Init init;
    PxStrongHndl<PxNode const> const value(
        new PxConstantAnimValueNode<int>(init, PxResult<int>(quality, PxValidityInterval::FULL)));
    PxNode::init(value);
    return createPxNode(image, value, nullptr, CacheSockets{});
}

} // namespace Qv
