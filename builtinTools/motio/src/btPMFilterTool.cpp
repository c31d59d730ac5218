#include "btPMFilterTool.h"

#include "assertions.h"
#include "btMotionUtils.h"
#include "btPMFilterProc.h"
#include "ixWriteGuard.h"
#include "piImageInputPolicy.h"
#include "piImageModifierProtocol.h"
#include "piRangeInputPolicy.h"
#include "pxAnimValueProtocol.h"
#include "pxImageNode.h"
#include "pxValueNodes.h"

#include <algorithm>

namespace Qv {

namespace {

std::string const TOOL_NAME("Perona-Malik Diffusion Filtering");
std::string const VECTORS_NAME("Vectors");
std::string const COEFFICIENTS_NAME("Coefficients");
std::string const ITERATIONS_NAME("Iterations");
std::string const XML_FILE_NAME("<ToolUiDir>/pmFilter.xml");

// The range of "Iterations"; a value node feeding the filter directly is
// held to it too, so that no request builds a pipe of unbounded length.
constexpr int MIN_ITERATIONS = 1;
constexpr int MAX_ITERATIONS = 5;
constexpr int DEFAULT_ITERATIONS = 3;

using Rgba = CoRgbaColorTyped<float>;

class PxPMFilterNode : public PxImageNode {
public:
    PxPMFilterNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& vectors,
                   PxNodePtr<PxImageProtocol const> const& coefficients,
                   PxNodePtr<PxAnimValueProtocol<int> const> const& iterations)
        : PxNode(init), PxImageNode(init, vectors), _coefficients(coefficients), _iterations(iterations) {
        QV_ASSERT(!_coefficients.isNull() && !_iterations.isNull());
    }

    ~PxPMFilterNode() override {
        unregisterChild(_coefficients);
        unregisterChild(_iterations);
    }

    void init() override {
        PxImageNode::init();
        registerChild(_coefficients);
        registerChild(_iterations);
    }

    PxImageResult getImageResult(PxImageContext const& context) const override {
        PxUPtr<PxImageProtocol const> const vectors(getInput());
        PxUPtr<PxImageProtocol const> const coefficients(_coefficients);
        if (!coefficients->isChainConnected())
            return vectors->getImageResult(context);

        PxValidityInterval interval = PxValidityInterval::FULL;
        PxResult<int> value;
        PxUPtr<PxAnimValueProtocol<int> const>(_iterations)->getAnimValue(value, context);
        value.reduceVI(interval);
        int const iterations = BtPMFilterTool::getIterationCount(context.getProxyScale(), value.getValue());

        GeRectangle<int> const pixels = computeImagePixelRegion(vectors, context.getTimeStreamContext(),
                                                                context.getProxyScale(), interval);
        GeRectangle<int> const tile = getTilePixels(context.getTilePosition());
        GeRectangle<int> const dstRgn = tile.getIntersection(pixels);
        if (dstRgn.isEmpty())
            return PxImageResult(allocateEmptyImageBuffer(), interval);
        // Each iteration is two stages that each read one pixel further out.
        int const border = 2 * iterations;
        GeRectangle<int> const srcRgn =
            GeRectangle<int>{tile.x1 - border, tile.x2 + border, tile.y1 - border, tile.y2 + border}
                .getIntersection(pixels);
        std::vector<PxImageResult> const vectorTiles =
            getImageTilesInRegion(context, vectors, interval, srcRgn, Rgba::ZERO);
        std::vector<PxImageResult> const coefficientTiles =
            getImageTilesInRegion(context, coefficients, interval, srcRgn, Rgba::ZERO);

        IxTile const out = allocateImageBuffer(context, dstRgn);
        BtPMFilterProc::process(getGuards(vectorTiles), getGuards(coefficientTiles), IxWriteGuard(out),
                                iterations);
        return PxImageResult(out, interval);
    }

private:
    PxNodePtr<PxImageProtocol const> _coefficients;
    PxNodePtr<PxAnimValueProtocol<int> const> _iterations;
};

class FilterPMController : public PiImageModifier, public virtual PiNodeController {
public:
    FilterPMController() : PiImageModifier(XML_FILE_NAME) {}

protected:
    PxStrongHndl<PxImageProtocol> createImageProcNode(OutputPublisher& publisher) override {
        return BtPMFilterTool::createPxNode(publisher.getInputProcNode(VECTORS_NAME),
                                            publisher.getInputProcNode(COEFFICIENTS_NAME),
                                            publisher.getInputProcNode(ITERATIONS_NAME));
    }
};

} // namespace

template <>
void PiImageModifierInfo<FilterPMController>::describe(PiImageModifier::Descriptor& d) const {
    d.requires_(VECTORS_NAME, PiSocketType::IMAGE,
                PiImageInputPolicy::createPrimary(1, 7, 1, PiImageInputPolicy::RESET_NONE, false), SINGLE);
    d.setPrimaryInput(VECTORS_NAME);
    d.requires_(COEFFICIENTS_NAME, PiSocketType::IMAGE,
                PiImageInputPolicy::createSecondary(1, 7, 3, 3, PiImageInputPolicy::RESET_NONE, false),
                SINGLE);
    d.requires_(
        ITERATIONS_NAME, PiSocketType::INTEGER,
        PiRangeInputPolicy<int>::create(MIN_ITERATIONS, MAX_ITERATIONS, DEFAULT_ITERATIONS, false, false),
        SINGLE);
    BtMotionUtils::describeModifierValues(d);
    d.setMaskingMode(PiImageModifier::MASKING_NONE);
}

void BtPMFilterTool::registerTool() {
    BtMotionUtils::registerInnerTool<FilterPMController>(
        TOOL_NAME, "Uses the two Perona and Malik diffusion coefficients to perform anisotropic diffusion "
                   "filtering.");
}

std::string const& BtPMFilterTool::getToolName() {
    return TOOL_NAME;
}

std::string const& BtPMFilterTool::getIterationsInputName() {
    return ITERATIONS_NAME;
}

int BtPMFilterTool::getIterationCount(int proxyScale, int iterations) {
    // Coarse levels are small and their vectors noisy: they get more smoothing.
    return std::min(std::max(proxyScale, 0) + 1, std::clamp(iterations, 0, MAX_ITERATIONS));
}

PxStrongHndl<PxImageProtocol> BtPMFilterTool::createPxNode(PxStrongHndl<PxNode const> const& vectors,
                                                           PxStrongHndl<PxNode const> const& coefficients,
                                                           PxStrongHndl<PxNode const> const& iterations) {
    PxNode::Init init;
    PxStrongHndl<PxPMFilterNode> node(new PxPMFilterNode(
        init, PxNodePtr<PxImageProtocol const>(vectors), PxNodePtr<PxImageProtocol const>(coefficients),
        PxNodePtr<PxAnimValueProtocol<int> const>(iterations)));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

PxStrongHndl<PxImageProtocol> BtPMFilterTool::createPxNode(PxStrongHndl<PxNode const> const& vectors,
                                                           PxStrongHndl<PxNode const> const& coefficients,
                                                           int iterations) {
    PxNode::Init init;
    PxStrongHndl<PxNode const> constant(
        new PxConstantAnimValueNode<int>(init, PxResult<int>(iterations, PxValidityInterval::FULL)));
    PxNode::init(constant);
    return createPxNode(vectors, coefficients, constant);
}

} // namespace Qv
