#include "btVectorIncTool.h"

#include "assertions.h"
#include "btMotionUtils.h"
#include "btUnitTextureParams.h"
#include "btVectorIncProc.h"
#include "piImageInputPolicy.h"
#include "piImageModifierProtocol.h"
#include "pxImageNode.h"
#include "pxImageTexture.h"

namespace Qv {

namespace {

std::string const TOOL_NAME("Vector Increment");
std::string const VECTORS_NAME("Vectors");
std::string const INCREMENTS_NAME("Vector Increments");

class PxVectorIncNode : public PxImageNode {
public:
    PxVectorIncNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& vectors,
                    PxNodePtr<PxImageProtocol const> const& increments)
        : PxNode(init), PxImageNode(init, vectors), _increments(increments) {
        QV_ASSERT(!_increments.isNull());
    }

    ~PxVectorIncNode() override { unregisterChild(_increments); }

    void init() override {
        PxImageNode::init();
        registerChild(_increments);
    }

    PxImageResult getImageResult(PxImageContext const& context) const override {
        PxUPtr<PxImageProtocol const> const vectors(getInput());
        PxUPtr<PxImageProtocol const> const increments(_increments);
        if (!vectors->isChainConnected() || !increments->isChainConnected())
            return vectors->getImageResult(context);
        PxValidityInterval interval = PxValidityInterval::FULL;
        GeRectangle<int> const dstRgn = computeImagePixelRegion(vectors, context.getTimeStreamContext(),
                                                                context.getProxyScale(), interval)
                                            .getIntersection(getTilePixels(context.getTilePosition()));
        if (dstRgn.isEmpty())
            return vectors->getImageResult(context);

        PxImageResult const vec = vectors->getImageResult(context);
        vec.reduceVI(interval);
        // A node that answers with more than the tile (a whole frame) is cut to it.
        IxTile const vecTile =
            vec.getPixelRegion() == dstRgn ? vec.getTile() : createPaddedImage(vec.getTileGuard(), dstRgn);

        // Read so that a lookup at a whole position gives that increment pixel exactly.
        GeRectangle<int> const texels = computeImagePixelRegion(increments, context.getTimeStreamContext(),
                                                                context.getProxyScale(), interval);
        PxImageTexture texture(increments, context,
                               BtUnitTextureParams::create(texels.isEmpty() ? dstRgn : texels));
        IxTile const out = allocateImageBuffer(context, dstRgn);
        BtVectorIncProc(IxReadGuard(vecTile), IxWriteGuard(out)).process(texture);
        texture.accumulateVI(interval);
        return PxImageResult(out, interval);
    }

private:
    PxNodePtr<PxImageProtocol const> _increments;
};

class VectorIncController : public PiImageModifier, public virtual PiNodeController {
protected:
    PxStrongHndl<PxImageProtocol> createImageProcNode(OutputPublisher& publisher) override {
        return BtVectorIncTool::createPxNode(publisher.getInputProcNode(VECTORS_NAME),
                                             publisher.getInputProcNode(INCREMENTS_NAME));
    }
};

} // namespace

template <>
void PiImageModifierInfo<VectorIncController>::describe(PiImageModifier::Descriptor& d) const {
    d.requires_(VECTORS_NAME, PiSocketType::IMAGE,
                PiImageInputPolicy::createPrimary(1, 7, 1, PiImageInputPolicy::RESET_NONE, false), SINGLE);
    d.setPrimaryInput(VECTORS_NAME);
    d.requires_(INCREMENTS_NAME, PiSocketType::IMAGE,
                PiImageInputPolicy::createSecondary(1, 7, 3, 3, PiImageInputPolicy::RESET_NONE, false),
                SINGLE);
    BtMotionUtils::describeModifierValues(d);
}

void BtVectorIncTool::registerTool() {
    BtMotionUtils::registerInnerTool<VectorIncController>(
        TOOL_NAME,
        "Computes vector addition of primary vector image input and incremental vector image input.");
}

std::string const& BtVectorIncTool::getToolName() {
    return TOOL_NAME;
}

PxStrongHndl<PxImageProtocol> BtVectorIncTool::createPxNode(PxStrongHndl<PxNode const> const& vectors,
                                                            PxStrongHndl<PxNode const> const& increments) {
    PxNode::Init init;
    PxStrongHndl<PxVectorIncNode> node(new PxVectorIncNode(init, PxNodePtr<PxImageProtocol const>(vectors),
                                                           PxNodePtr<PxImageProtocol const>(increments)));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

} // namespace Qv
