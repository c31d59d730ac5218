#include "btTimeDerivTool.h"

#include "btMotionUtils.h"
#include "ipArithmetic.h"
#include "piImageInputPolicy.h"
#include "piImageModifierProtocol.h"
#include "piImageTimeOffsetNode.h"
#include "pxImageNode.h"
#include "pxValueNodes.h"

namespace Qv {

namespace {

std::string const TOOL_NAME("Time Derivative");
std::string const DESCRIPTION("Computes difference between next frame and current frame.");

// First minus second, per component, over the union of their regions; the
// format is the first input's.
class ImgSubtractPxNode : public PxImageNode {
public:
    ImgSubtractPxNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& first,
                      PxNodePtr<PxImageProtocol const> const& second)
        : PxNode(init), PxImageNode(init, first), _second(second) {
        QV_ASSERT(!_second.isNull());
    }
    ~ImgSubtractPxNode() override { unregisterChild(_second); }

    void init() override {
        PxImageNode::init();
        registerChild(_second);
    }

    PxRODResult getImageROD(PxTimeStreamContext const& context) const override {
        PxRODResult const first = getInput()->getImageROD(context);
        PxRODResult const second = _second->getImageROD(context);
        // getBounding gives the other side when one is empty.
        return PxRODResult(first.getROD().getBounding(second.getROD()),
                           first.getVI().getIntersection(second.getVI()));
    }

    PxImageResult getImageResult(PxImageContext const& context) const override {
        PxImageResult const first = PxUPtr<PxImageProtocol const>(getInput())->getImageResult(context);
        PxImageResult const second = PxUPtr<PxImageProtocol const>(_second)->getImageResult(context);
        PxValidityInterval const interval = first.getVI().getIntersection(second.getVI());
        IxTile const a = orEmpty(first.getTile());
        IxTile const b = orEmpty(second.getTile());
        CoRgbaColorTyped<float> const fa = a.getFillColor();
        CoRgbaColorTyped<float> const fb = b.getFillColor();
        // What lies outside both is the difference of what each says lies there.
        CoRgbaColorTyped<float> const fill{fa.r - fb.r, fa.g - fb.g, fa.b - fb.b, fa.a - fb.a};
        // Only the tile asked for: a side that produces whole frames gives
        // more, and a larger result would shadow its neighbours' pixels.
        GeRectangle<int> const region = a.getPixelRegion()
                                            .getBounding(b.getPixelRegion())
                                            .getIntersection(getTilePixels(context.getTilePosition()));
        if (region.isEmpty())
            return PxImageResult(allocateEmptyImageBuffer(fill), interval);
        IxTile const tile = allocateImageBuffer(context, fill, region);
        {
            IxReadGuard const ga(a);
            IxReadGuard const gb(b);
            IxWriteGuard const out(tile);
            ipSubtract(out, ga, gb, nullptr);
        }
        return PxImageResult(tile, interval);
    }

private:
    // A side that gave no tile takes part as an empty one, zero throughout.
    IxTile orEmpty(IxTile const& tile) const { return tile.isValid() ? tile : allocateEmptyImageBuffer(); }

    PxNodePtr<PxImageProtocol const> _second;
};

class TimeDerivController : public PiImageModifier, public virtual PiNodeController {
protected:
    PxStrongHndl<PxImageProtocol> createImageProcNode(OutputPublisher& publisher) override {
        PxStrongHndl<PxNode const> const image = publisher.getInputProcNode(getSingleInputName());
        return BtTimeDerivTool::createPxNode(image, image, BtMotioTypes::FORWARD_VECTORS);
    }
};

} // namespace

template <>
void PiImageModifierInfo<TimeDerivController>::describe(PiImageModifier::Descriptor& descriptor) const {
    BtMotionUtils::describeModifierValues(descriptor);
    PiImageModifier::addSingleImageInput(
        descriptor, PiImageInputPolicy::createPrimary(3, 7, 1, PiImageInputPolicy::RESET_NONE, false),
        SINGLE);
    descriptor.setMaskingMode(PiImageModifier::MASKING_NONE);
}

void BtTimeDerivTool::registerTool() {
    BtMotionUtils::registerInnerTool<TimeDerivController>(TOOL_NAME, DESCRIPTION);
}

PxStrongHndl<PxImageProtocol> BtTimeDerivTool::createPxNode(PxStrongHndl<PxNode const> const& image,
                                                            PxStrongHndl<PxNode const> const& second,
                                                            BtMotioTypes::VectorType vectorType) {
    PxNode::Init init;
    PxStrongHndl<PxNode const> frames(
        new PxValueNode<int>(init, PxResult<int>(vectorType != 0 ? -1 : 1, PxValidityInterval::FULL)));
    PxNode::init(frames);
    PxStrongHndl<PxImageProtocol> const offsetImage = PiImageTimeOffsetNode::create(image, frames);
    PxStrongHndl<ImgSubtractPxNode> node(new ImgSubtractPxNode(
        init, PxNodePtr<PxImageProtocol const>(offsetImage), PxNodePtr<PxImageProtocol const>(second)));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

} // namespace Qv
