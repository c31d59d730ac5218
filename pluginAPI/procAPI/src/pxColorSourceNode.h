#pragma once
// An image of one colour: every pixel of the region of definition is
// (colour, alpha), and everything outside it reads as the fill colour and
// alpha. The region is width by height pixels centred on the origin; the
// pixel format and rate come from the format node. Every value is read at
// the time asked, so animated inputs animate the image, and a result holds
// for the times all the values it was made from hold for.
#include "coColor.h"
#include "pxAnimValueProtocol.h"
#include "pxImageFormatProtocol.h"
#include "pxImageProtocol.h"

namespace Qv {

class PxColorSourceNode : public PxImageProtocol {
public:
    // Each handle is cast to its protocol: PxImageFormatProtocol,
    // PxAnimValueProtocol<int> (width, height), PxAnimValueProtocol<
    // CoRgbColorTyped<float>> (colours) and PxAnimValueProtocol<double>
    // (alphas). A handle of another protocol throws RCEx::ExCastFailed.
    PxColorSourceNode(PxNode::Init const& init, PxStrongHndl<PxNode const> const& format,
                      PxStrongHndl<PxNode const> const& width, PxStrongHndl<PxNode const> const& height,
                      PxStrongHndl<PxNode const> const& fillColor,
                      PxStrongHndl<PxNode const> const& fillAlpha, PxStrongHndl<PxNode const> const& color,
                      PxStrongHndl<PxNode const> const& alpha);
    ~PxColorSourceNode() override;

    void init() override;

    PxResult<PxImageFormat> getImageFormat() const override;
    PxRODResult getImageROD(PxTimeStreamContext const& context) const override;
    PxImageResult getImageResult(PxImageContext const& context) const override;

private:
    // The colour and alpha of two value nodes at a time, narrowing `interval`.
    static CoRgbaColorTyped<float>
    readColor(PxNodePtr<PxAnimValueProtocol<CoRgbColorTyped<float>> const> const& rgb,
              PxNodePtr<PxAnimValueProtocol<double> const> const& alpha, PxTimeContext const& context,
              PxValidityInterval& interval);

    PxNodePtr<PxImageFormatProtocol const> _format;
    PxNodePtr<PxAnimValueProtocol<int> const> _width;
    PxNodePtr<PxAnimValueProtocol<int> const> _height;
    PxNodePtr<PxAnimValueProtocol<CoRgbColorTyped<float>> const> _fillColor;
    PxNodePtr<PxAnimValueProtocol<double> const> _fillAlpha;
    PxNodePtr<PxAnimValueProtocol<CoRgbColorTyped<float>> const> _color;
    PxNodePtr<PxAnimValueProtocol<double> const> _alpha;
};

} // namespace Qv
