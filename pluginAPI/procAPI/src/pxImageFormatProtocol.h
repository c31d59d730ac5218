#pragma once
// A node that gives an image format alone (the format a tool's parameters
// set), and its ready-made constant form.
#include "pxImageFormat.h"
#include "pxNode.h"
#include "pxResult.h"

namespace Qv {

class PxImageFormatProtocol : public virtual PxNode {
public:
    explicit PxImageFormatProtocol(PxNode::Init const& init) : PxNode(init) {}
    virtual PxResult<PxImageFormat> getImageFormat() const = 0;
};

class PxImageFormatNode : public PxImageFormatProtocol {
public:
    PxImageFormatNode(PxNode::Init const& init, PxImageFormat const& format)
        : PxNode(init), PxImageFormatProtocol(init), _format(format, PxValidityInterval::FULL) {}

    PxResult<PxImageFormat> getImageFormat() const override { return _format; }

private:
    PxResult<PxImageFormat> const _format;
};

} // namespace Qv
