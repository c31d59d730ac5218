#pragma once
// An image node with one image input: the base of filters. It takes the
// input's region of definition, streams and connection as they are and keeps
// the format it computes from the input's, recomputed when the input changes.
// A subclass writes getImageResult and, when its pixels differ in kind from
// the input's, computeImageFormatComps or computeImageFormat.
#include "pxImageProtocol.h"

#include <mutex>

namespace Qv {

class PxImageNode : public PxImageProtocol {
public:
    PxImageNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& input);
    ~PxImageNode() override;

    PxResult<PxImageFormat> getImageFormat() const override;
    PxRODResult getImageROD(PxTimeStreamContext const& context) const override;
    bool isChainConnected() const override;
    int getNbStreams() const override;

    void init() override;
    void invalidateAndReinitialize(PxValidityInterval const& interval, PxUPtr<PxNode const> const& child,
                                   int stream) override;

protected:
    // The input's format with the components of computeImageFormatComps.
    virtual PxResult<PxImageFormat> computeImageFormat() const;
    // The input's components.
    virtual IxPixelFormat::Comps computeImageFormatComps() const;

    PxNodePtr<PxImageProtocol const> const& getInput() const { return _input; }

private:
    void updateFormat();

    PxNodePtr<PxImageProtocol const> _input;
    mutable std::mutex _formatLock;
    PxResult<PxImageFormat> _format;
};

} // namespace Qv
