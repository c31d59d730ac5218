#pragma once
// States the image reader's output format downstream: one PxImageFormat,
// changed by PxSetRequest<BtImageFormatNode, PxImageFormat const&>.
#include "pxImageFormatProtocol.h"

namespace Qv {

class BtImageFormatNode : public PxImageFormatProtocol {
public:
    BtImageFormatNode(PxNode::Init const& init, PxImageFormat const& format)
        : PxNode(init), PxImageFormatProtocol(init), _format(format) {}

    PxResult<PxImageFormat> getImageFormat() const override {
        return PxResult<PxImageFormat>(_format, PxValidityInterval::FULL);
    }
    void setImageFormat(PxImageFormat const& format) {
        _format = format;
        invalidate(PxValidityInterval::FULL, 0);
    }

private:
    PxImageFormat _format;
};

} // namespace Qv
