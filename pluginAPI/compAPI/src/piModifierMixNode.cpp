#include "piModifierMixNode.h"

#include "ixScanline.h"
#include "ixWriteGuard.h"

namespace Qv {

namespace {

using Rgba = CoRgbaColorTyped<float>;

Rgba mix(Rgba const& source, Rgba const& result, std::array<float, 4> const& w, float mask) {
    return {
        source.r + (result.r - source.r) * (w[0] * mask), source.g + (result.g - source.g) * (w[1] * mask),
        source.b + (result.b - source.b) * (w[2] * mask), source.a + (result.a - source.a) * (w[3] * mask)};
}

} // namespace

PiModifierMixNode::PiModifierMixNode(PxNode::Init const& init, PxStrongHndl<PxNode const> const& source,
                                     PxStrongHndl<PxNode const> const& result,
                                     PxStrongHndl<PxNode const> const& mask,
                                     PiImageModifier::AffectType affect)
    : PxNode(init), PxImageProtocol(init), _source(source), _result(result),
      _weights(getChannelWeights(affect)) {
    if (!mask.isNull())
        _mask = mask;
}

PiModifierMixNode::~PiModifierMixNode() {
    unregisterChild(_source);
    unregisterChild(_result);
    if (!_mask.isNull())
        unregisterChild(_mask);
}

void PiModifierMixNode::init() {
    PxImageProtocol::init();
    registerChild(_source);
    registerChild(_result);
    if (!_mask.isNull())
        registerChild(_mask);
}

std::array<float, 4> PiModifierMixNode::getChannelWeights(PiImageModifier::AffectType affect) {
    switch (affect) {
    case PiImageModifier::AFFECT_RGB:
        return {1.0f, 1.0f, 1.0f, 0.0f};
    case PiImageModifier::AFFECT_ALPHA:
        return {0.0f, 0.0f, 0.0f, 1.0f};
    case PiImageModifier::AFFECT_RGBA:
        break;
    }
    return {1.0f, 1.0f, 1.0f, 1.0f};
}

PxResult<PxImageFormat> PiModifierMixNode::getImageFormat() const {
    return _result->getImageFormat();
}

PxRODResult PiModifierMixNode::getImageROD(PxTimeStreamContext const& context) const {
    PxRODResult const source = _source->getImageROD(context);
    PxRODResult result = _result->getImageROD(context);
    result.setROD(result.getROD().getBounding(source.getROD()));
    PxValidityInterval interval = result.getVI();
    source.reduceVI(interval);
    result.setVI(interval);
    return result;
}

PxImageResult PiModifierMixNode::getImageResult(PxImageContext const& context) const {
    PxValidityInterval interval = PxValidityInterval::FULL;
    PxTimeStreamContext const timeStream = context.getTimeStreamContext();
    int const scale = context.getProxyScale();
    GeRectangle<int> const region =
        computeImagePixelRegion(PxUPtr<PxImageProtocol const>(_source), timeStream, scale, interval)
            .getBounding(
                computeImagePixelRegion(PxUPtr<PxImageProtocol const>(_result), timeStream, scale, interval))
            .getIntersection(getTilePixels(context.getTilePosition()));

    auto tiles = [&](PxNodePtr<PxImageProtocol const> const& input, Rgba& fill) {
        PxUPtr<PxImageProtocol const> node(input);
        fill = getImageFillColor(context, node);
        return getImageTilesInRegion(context, node, interval, region, fill);
    };
    Rgba sourceFill, resultFill, maskFill{0.0f, 0.0f, 0.0f, 1.0f};
    std::vector<PxImageResult> const sources = tiles(_source, sourceFill);
    std::vector<PxImageResult> const results = tiles(_result, resultFill);
    std::vector<PxImageResult> const masks =
        _mask.isNull() ? std::vector<PxImageResult>() : tiles(_mask, maskFill);
    Rgba const fill = mix(sourceFill, resultFill, _weights, maskFill.a);
    if (region.isEmpty())
        return PxImageResult(allocateEmptyImageBuffer(fill), interval);

    IxTile tile = allocateImageBuffer(context, fill, region);
    {
        std::vector<IxReadGuard> const sourceGuards = getGuards(sources);
        std::vector<IxReadGuard> const resultGuards = getGuards(results);
        std::vector<IxReadGuard> const maskGuards = getGuards(masks);
        IxWriteGuard const out(tile);
        GeInterval<int> const columns{region.x1, region.x2};
        IxScanline<Rgba> source(columns), result(columns), mask(columns), line(columns);
        // Unmasked, every pixel takes the whole change.
        for (int x = region.x1; x < region.x2; ++x)
            mask[x] = maskFill;
        for (int y = region.y1; y < region.y2; ++y) {
            source.readFrom(sourceGuards, y);
            result.readFrom(resultGuards, y);
            if (!maskGuards.empty())
                mask.readFrom(maskGuards, y);
            for (int x = region.x1; x < region.x2; ++x)
                line[x] = mix(source[x], result[x], _weights, mask[x].a);
            line.writeTo(out, y);
        }
    }
    return PxImageResult(tile, interval);
}

} // namespace Qv
