#include "btMotionControllerBase.h"

#include "btBwdWarpTool.h"
#include "btMotioTool.h"
#include "btMotionUtils.h"
#include "btPxMotioNode.h"
#include "btPxMotioOutputNode.h"
#include "btPxVectorSwitchNode.h"
#include "btVectorIncTool.h"
#include "piImageTimeOffsetNode.h"
#include "piNode.h"
#include "pxImagePassThroughNode.h"
#include "pxValueNodes.h"

#include <array>
#include <cstdlib>

namespace Qv {

namespace {

PxStrongHndl<PxNode const> constantInt(int value) {
    PxNode::Init init;
    PxStrongHndl<PxConstantAnimValueNode<int>> node(
        new PxConstantAnimValueNode<int>(init, PxResult<int>(value, PxValidityInterval::FULL)));
    PxNode::init(node);
    return node;
}

std::string const& vectorsName(BtMotioTypes::VectorType type) {
    return type == BtMotioTypes::FORWARD_VECTORS ? BtMotionUtils::getFwdVectorsSocketName()
                                                 : BtMotionUtils::getBwdVectorsSocketName();
}

} // namespace

BtMotionControllerBase::~BtMotionControllerBase() = default;

std::string const& BtMotionControllerBase::getCalculateMotionName() {
    static std::string const name("Calculate Motion");
    return name;
}

void BtMotionControllerBase::addVectorConnectionsChangedCallback(CbHandler<CbEmptyType>* handler) {
    _vectorConnectionsChanged.addCallback(handler);
}

void BtMotionControllerBase::removeVectorConnectionsChangedCallback(CbHandler<CbEmptyType>* handler) {
    _vectorConnectionsChanged.removeCallback(handler);
}

void BtMotionControllerBase::checkVectorConnectionsChanged(RCShdPtr<PiInput const> const& input,
                                                           RCShdPtr<PiOutput const> const&) {
    if (!input)
        return;
    std::string const& name = input->getName();
    if (name == BtMotionUtils::getFwdVectorsSocketName() || name == BtMotionUtils::getBwdVectorsSocketName())
        signalVectorConnectionsChanged();
}

void BtMotionControllerBase::signalVectorConnectionsChanged() {
    _vectorConnectionsChanged.dispatch();
}

BtMotionControllerBase::PublishedVectors BtMotionControllerBase::createVectorComputationProcNodes(
    PiToolTopologyInterface::OutputPublisher& publisher, PiNode const& node,
    PxStrongHndl<PxNode const> const& image, std::string const& outputName,
    PxStrongHndl<PxNode const> const& fwdVectors, PxStrongHndl<PxNode const> const& bwdVectors,
    PxStrongHndl<PxNode const> const& quality) {
    constexpr int NB = BtMotioTypes::NB_VECTOR_TYPES;
    std::array<RCShdPtr<PiOutput>, NB> outputs;
    BtMotioTool::CacheSockets sockets;
    for (auto type = BtMotioTypes::FORWARD_VECTORS; type < NB; type = BtMotioTypes::next(type)) {
        outputs[type] = node.getOutput(vectorsName(type), true);
        RCShdPtr<PiInput> const input = node.getInput(vectorsName(type));
        sockets[type] = outputs[type];
        // A node without vectors inputs: the cache tells inner from outer by role.
        sockets[type + NB] =
            input ? RCShdPtr<PiSocket const>(input) : RCShdPtr<PiSocket const>(outputs[type]);
    }
    PxStrongHndl<PxNode const> const qualityNode = quality ? quality : constantInt(0);
    PxStrongHndl<BtPxMotioNode const> const motio =
        BtMotioTool::createPxNode(image, qualityNode, node.getGraph(), sockets);

    PxStrongHndl<PxNode const> const calculate = node.getInput(getCalculateMotionName())
                                                     ? publisher.getInputProcNode(getCalculateMotionName())
                                                     : PxStrongHndl<PxNode const>();
    std::array<PxStrongHndl<PxNode const>, NB> const external{fwdVectors, bwdVectors};
    PublishedVectors published;
    for (auto type = BtMotioTypes::FORWARD_VECTORS; type < NB; type = BtMotioTypes::next(type)) {
        PxStrongHndl<PxImageProtocol> computed = BtPxMotioOutputNode<BtPxMotioNode>::create(motio, type);
        PxStrongHndl<PxNode const> const& own = external[type];
        PxStrongHndl<PxNode const> const& other = external[NB - 1 - type];
        published[type] = own ? BtPxVectorSwitchNode::create(computed, own, other, calculate) : computed;
        publisher.publish(outputs[type], published[type]);
    }

    if (!outputName.empty()) {
        PxNode::Init init;
        PxStrongHndl<PxImagePassThroughNode> const passThrough(
            new PxImagePassThroughNode(init, PxStrongHndl<PxImageProtocol const>(image)));
        PxNode::init(passThrough);
        publisher.publish(node.getOutput(outputName, true), passThrough);
    }
    return published;
}

PxStrongHndl<PxImageProtocol> BtMotionControllerBase::createWarpedFrameNodes(
    PxStrongHndl<PxNode const> const& image, PxStrongHndl<PxNode const> const& fwdVectors,
    PxStrongHndl<PxNode const> const& bwdVectors, int frameOffset) {
    PxStrongHndl<PxNode const> const& vectors = frameOffset > 0 ? fwdVectors : bwdVectors;
    int const steps = std::abs(frameOffset);
    int const sign = frameOffset > 0 ? 1 : -1;
    // Each further frame's vectors are read where the path so far has
    // reached: the motion of t + j composed onto the motion up to it.
    PxStrongHndl<PxNode const> accumulated = vectors;
    for (int j = 1; j < steps; ++j) {
        PxStrongHndl<PxImageProtocol> const offsetVectors =
            PiImageTimeOffsetNode::create(vectors, constantInt(sign * j));
        accumulated = BtVectorIncTool::createPxNode(accumulated, offsetVectors);
    }
    PxStrongHndl<PxImageProtocol> const offsetImage =
        PiImageTimeOffsetNode::create(image, constantInt(frameOffset));
    return BtMotionUtils::createMemoryCache(BtBwdWarpTool::createPxNode(offsetImage, accumulated),
                                            "Motion Warped Frame Cache");
}

} // namespace Qv
