#pragma once
// What a tool that carries motion vectors of its own images shares with
// "Motio": vectors either computed by the Motio chain or taken from inputs
// named "Forward Vectors" and "Backward Vectors" (chosen by its "Calculate
// Motion" setting), the callbacks of those inputs' connections, and a
// neighbouring frame brought back to the current one along the vectors.
// Vectors read from files come from an "Image Reader" whose "Motion Vector
// Status" says its files hold them: its "Output Image" gives them in pixels,
// taken here like any other external vectors.
#include "btMotioTypes.h"
#include "cbDispatcher.h"
#include "piToolTopologyInterface.h"
#include "pxHandles.h"
#include "pxImageProtocol.h"

#include <array>
#include <string>

namespace Qv {

class PiInput;
class PiNode;
class PiOutput;

class BtMotionControllerBase {
public:
    virtual ~BtMotionControllerBase();

    static std::string const& getCalculateMotionName(); // "Calculate Motion"

    // Borrowed handlers, told when a vectors input is connected or disconnected.
    void addVectorConnectionsChangedCallback(CbHandler<CbEmptyType>* handler);
    void removeVectorConnectionsChangedCallback(CbHandler<CbEmptyType>* handler);
    // Called by the controller on a connection change of `input` (from
    // `output`, or null when disconnected): tells the handlers when the input
    // is one of the vectors inputs.
    void checkVectorConnectionsChanged(RCShdPtr<PiInput const> const& input,
                                       RCShdPtr<PiOutput const> const& output);

    // Publishes on the node's "Forward Vectors" and "Backward Vectors"
    // outputs the vectors of `image`: computed by the Motio chain (with
    // `quality`, an integer value node; null for "Full") unless the node's
    // "Calculate Motion" is off or external vectors (`fwdVectors`,
    // `bwdVectors`, the nodes of the vectors inputs; null for a node without
    // them, which always computes) are connected. The caches take their storage from
    // the node's vector outputs (outer) and vectors inputs (inner). When
    // `outputName` is not empty the image itself is published on that output.
    // Returns the vector nodes published, forward first.
    using PublishedVectors = std::array<PxStrongHndl<PxImageProtocol>, BtMotioTypes::NB_VECTOR_TYPES>;
    static PublishedVectors
    createVectorComputationProcNodes(PiToolTopologyInterface::OutputPublisher& publisher, PiNode const& node,
                                     PxStrongHndl<PxNode const> const& image, std::string const& outputName,
                                     PxStrongHndl<PxNode const> const& fwdVectors,
                                     PxStrongHndl<PxNode const> const& bwdVectors,
                                     PxStrongHndl<PxNode const> const& quality);

    // The frame at t + frameOffset brought back to t: read at each pixel
    // where the vectors, followed frame by frame, say its content went
    // (forward vectors for a later frame, backward ones otherwise). Kept in a
    // memory cache "Motion Warped Frame Cache". The vectors are read as
    // pixels of the frame: nominal and pixelized agree at proxy scale 0 with
    // square pixels.
    static PxStrongHndl<PxImageProtocol> createWarpedFrameNodes(PxStrongHndl<PxNode const> const& image,
                                                                PxStrongHndl<PxNode const> const& fwdVectors,
                                                                PxStrongHndl<PxNode const> const& bwdVectors,
                                                                int frameOffset);

protected:
    void signalVectorConnectionsChanged();

private:
    CbDispatcher<CbEmptyType> _vectorConnectionsChanged;
};

} // namespace Qv
