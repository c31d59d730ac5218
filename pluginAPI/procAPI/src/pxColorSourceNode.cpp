#include "pxColorSourceNode.h"

#include "assertions.h"
#include "ipSet.h"
#include "ixWriteGuard.h"

namespace Qv {

PxColorSourceNode::PxColorSourceNode(PxNode::Init const& init, PxStrongHndl<PxNode const> const& format,
                                     PxStrongHndl<PxNode const> const& width,
                                     PxStrongHndl<PxNode const> const& height,
                                     PxStrongHndl<PxNode const> const& fillColor,
                                     PxStrongHndl<PxNode const> const& fillAlpha,
                                     PxStrongHndl<PxNode const> const& color,
                                     PxStrongHndl<PxNode const> const& alpha)
    : PxNode(init), PxImageProtocol(init), _format(format), _width(width), _height(height),
      _fillColor(fillColor), _fillAlpha(fillAlpha), _color(color), _alpha(alpha) {
    QV_ASSERT(!_format.isNull() && !_width.isNull() && !_height.isNull());
    QV_ASSERT(!_fillColor.isNull() && !_fillAlpha.isNull() && !_color.isNull() && !_alpha.isNull());
}

PxColorSourceNode::~PxColorSourceNode() {
    unregisterChild(_format);
    unregisterChild(_width);
    unregisterChild(_height);
    unregisterChild(_fillColor);
    unregisterChild(_fillAlpha);
    unregisterChild(_color);
    unregisterChild(_alpha);
}

void PxColorSourceNode::init() {
    PxImageProtocol::init();
    registerChild(_format);
    registerChild(_width);
    registerChild(_height);
    registerChild(_fillColor);
    registerChild(_fillAlpha);
    registerChild(_color);
    registerChild(_alpha);
}

PxResult<PxImageFormat> PxColorSourceNode::getImageFormat() const {
    return _format->getImageFormat();
}

PxRODResult PxColorSourceNode::getImageROD(PxTimeStreamContext const& context) const {
    PxValidityInterval interval = PxValidityInterval::FULL;
    PxResult<PxImageFormat> const format = getImageFormat();
    format.reduceVI(interval);
    PxResult<int> width;
    PxResult<int> height;
    _width->getAnimValue(width, context);
    _height->getAnimValue(height, context);
    width.reduceVI(interval);
    height.reduceVI(interval);
    // A size below one pixel is no image: an empty region, not a failure.
    if (width.getValue() <= 0 || height.getValue() <= 0)
        return PxRODResult(GeRectangle<float>{}, interval);
    return PxRODResult(createCenteredNominalROD(width.getValue(), height.getValue(),
                                                format.getValue().getAspectRatio().getDouble()),
                       interval);
}

CoRgbaColorTyped<float>
PxColorSourceNode::readColor(PxNodePtr<PxAnimValueProtocol<CoRgbColorTyped<float>> const> const& rgb,
                             PxNodePtr<PxAnimValueProtocol<double> const> const& alpha,
                             PxTimeContext const& context, PxValidityInterval& interval) {
    PxResult<CoRgbColorTyped<float>> colour;
    PxResult<double> a;
    rgb->getAnimValue(colour, context);
    alpha->getAnimValue(a, context);
    colour.reduceVI(interval);
    a.reduceVI(interval);
    CoRgbColorTyped<float> const& c = colour.getValue();
    return {c.r, c.g, c.b, static_cast<float>(a.getValue())};
}

PxImageResult PxColorSourceNode::getImageResult(PxImageContext const& context) const {
    PxValidityInterval interval = PxValidityInterval::FULL;
    PxRODResult const rod = getImageROD(context.getTimeStreamContext());
    rod.reduceVI(interval);
    GeRectangle<int> const pixels =
        nominalToPixelized(rod.getROD(), getImageFormat().getValue().getAspectRatio().getDouble(),
                           proxyScaleToFactor(context.getProxyScale()));
    CoRgbaColorTyped<float> const fill = readColor(_fillColor, _fillAlpha, context, interval);
    GeRectangle<int> const region = pixels.getIntersection(getTilePixels(context.getTilePosition()));
    if (region.isEmpty())
        return PxImageResult(allocateEmptyImageBuffer(fill), interval);
    CoRgbaColorTyped<float> const colour = readColor(_color, _alpha, context, interval);
    IxTile const out = allocateImageBuffer(context, fill, region);
    ipSet(IxWriteGuard(out), colour, &region);
    return PxImageResult(out, interval);
}

} // namespace Qv
