#include "btMotioController.h"

#include "btMotioTool.h"
#include "btMotionControllerBase.h"
#include "btMotionUtils.h"
#include "piGraph.h"
#include "piImageModifier.h"
#include "piNode.h"
#include "piTypedValueUtil.h"
#include "piUndoGuard.h"

namespace Qv {

MotioController::MotioController() = default;

MotioController::~MotioController() = default;

void MotioController::nodeCreated() {
    setColors();
}

std::string MotioController::getXmlFileName() const {
    static std::string const fileName("<ToolUiDir>/motio.xml");
    return fileName;
}

void MotioController::createProcNodes(OutputPublisher& publisher) {
    RCShdPtr<PiNode> const node = getNode();
    // No vectors inputs: the analysis always runs; the image passes on to "Output".
    BtMotionControllerBase::PublishedVectors const vectors =
        BtMotionControllerBase::createVectorComputationProcNodes(
            publisher, *node, publisher.getInputProcNode(PiImageModifier::getSingleInputName()),
            PiImageModifier::getOutputName(), {}, {},
            publisher.getInputProcNode(BtMotioTool::getQualityInputName()));
    for (auto type = BtMotioTypes::FORWARD_VECTORS; type < BtMotioTypes::NB_VECTOR_TYPES;
         type = BtMotioTypes::next(type))
        _vectorsData[type] = RCShdPtr<VectorsData const>(new VectorsData(type, vectors[type]));
}

void MotioController::reset() {
    RCShdPtr<PiNode> const node = getNode();
    QV_ASSERT(node && node->getGraph());
    PiUndoGuard const guard(node->getGraph()->getCommandStack(), "Reset " + node->getName());
    PiToolInterface::reset();
    PiShowVectorsControllerHelper::reset();
    setColors();
}

void MotioController::setColors() {
    RCShdPtr<PiNode> const node = getNode();
    PiTypedValueArrayUtil<double>(node->getValue(getFwdVectorsColorName(), true))
        .setValue(getDefaultFwdVectorsColor());
    PiTypedValueArrayUtil<double>(node->getValue(getBwdVectorsColorName(), true))
        .setValue(getDefaultBwdVectorsColor());
}

void MotioController::connectFwdVectors(RCShdPtr<PiInput> const& input) {
    connectVectors(BtMotionUtils::getFwdVectorsSocketName(), input);
}

void MotioController::connectBwdVectors(RCShdPtr<PiInput> const& input) {
    connectVectors(BtMotionUtils::getBwdVectorsSocketName(), input);
}

void MotioController::connectVectors(std::string const& outputName, RCShdPtr<PiInput> const& input) {
    RCShdPtr<PiNode> const node = getNode();
    QV_ASSERT(node && node->getGraph());
    node->getGraph()->connect(node->getOutput(outputName, true), input);
}

RCShdPtr<BtMotioInterface::VectorsData const> MotioController::getFwdVectorsData() const {
    return _vectorsData[BtMotioTypes::FORWARD_VECTORS];
}

RCShdPtr<BtMotioInterface::VectorsData const> MotioController::getBwdVectorsData() const {
    return _vectorsData[BtMotioTypes::BACKWARD_VECTORS];
}

} // namespace Qv
