#include "piImageGenerator.h"

#include "piColorProcNode.h"
#include "piEnumPolicy.h"
#include "piGraph.h"
#include "piNode.h"
#include "piNodeRate.h"
#include "piProjectSettings.h"
#include "piRangeInputPolicy.h"
#include "piToolRegistry.h"
#include "piTypedAnimSocket.h"
#include "piUndoGuard.h"
#include "pxImageFormatProtocol.h"

#include <limits>

namespace Qv {

namespace {

std::string const OUTPUT_NAME("Output");
std::string const FORMAT_NAME("Format");
std::string const WIDTH_NAME("Width");
std::string const HEIGHT_NAME("Height");
std::string const DEPTH_NAME("Depth");
std::string const START_TIME_NAME("Start Time");
std::string const END_TIME_NAME("End Time");
std::string const FILL_COLOR_NAME("Fill Color");
std::string const FILL_ALPHA_NAME("Fill Alpha");

// The limits of the time line, a year either side of zero.
constexpr double TIME_LIMIT = 31536000.0;
constexpr int MAX_SIZE = 65536;
constexpr double DEFAULT_END_TIME = 10.0;

IxPixelFormat::Depth toDepth(PiVariant const& value) {
    int const* depth = std::get_if<int>(&value);
    if (depth && (*depth == IxPixelFormat::UINT8 || *depth == IxPixelFormat::FLOAT16))
        return static_cast<IxPixelFormat::Depth>(*depth);
    return IxPixelFormat::FLOAT32;
}

} // namespace

std::string const& PiImageGenerator::getOutputName() {
    return OUTPUT_NAME;
}
std::string const& PiImageGenerator::getFormatValueName() {
    return FORMAT_NAME;
}
std::string const& PiImageGenerator::getWidthInputName() {
    return WIDTH_NAME;
}
std::string const& PiImageGenerator::getHeightInputName() {
    return HEIGHT_NAME;
}
std::string const& PiImageGenerator::getDepthInputName() {
    return DEPTH_NAME;
}
std::string const& PiImageGenerator::getStartTimeInputName() {
    return START_TIME_NAME;
}
std::string const& PiImageGenerator::getEndTimeInputName() {
    return END_TIME_NAME;
}
std::string const& PiImageGenerator::getFillColorInputName() {
    return FILL_COLOR_NAME;
}
std::string const& PiImageGenerator::getFillAlphaInputName() {
    return FILL_ALPHA_NAME;
}

void PiImageGenerator::describeGenerator(PiToolPolicyDescriptor& descriptor) {
    descriptor.requires_(WIDTH_NAME, PiSocketType::INTEGER,
                         PiRangeInputPolicy<int>::create(1, MAX_SIZE, 1920, true, false), SINGLE);
    descriptor.requires_(HEIGHT_NAME, PiSocketType::INTEGER,
                         PiRangeInputPolicy<int>::create(1, MAX_SIZE, 1080, true, false), SINGLE);
    descriptor.requires_(DEPTH_NAME, PiSocketType::INTEGER,
                         PiEnumPolicy::Builder()
                             .addPair(IxPixelFormat::UINT8, "8-bit")
                             .addPair(IxPixelFormat::FLOAT16, "16-bit float")
                             .addPair(IxPixelFormat::FLOAT32, "32-bit float")
                             .setDefaultValue(IxPixelFormat::FLOAT32)
                             .setAnimatable(false)
                             .create(),
                         SINGLE);
    descriptor.requires_(START_TIME_NAME, PiSocketType::DOUBLE,
                         PiRangeInputPolicy<double>::create(-TIME_LIMIT, TIME_LIMIT, 0.0, true, false),
                         SINGLE);
    descriptor.requires_(
        END_TIME_NAME, PiSocketType::DOUBLE,
        PiRangeInputPolicy<double>::create(-TIME_LIMIT, TIME_LIMIT, DEFAULT_END_TIME, true, false), SINGLE);
    PiColorProcNode::describe(FILL_COLOR_NAME, descriptor, -std::numeric_limits<float>::max(),
                              std::numeric_limits<float>::max(), 0.0);
    descriptor.requires_(FILL_ALPHA_NAME, PiSocketType::DOUBLE,
                         PiRangeInputPolicy<double>::create(-std::numeric_limits<double>::max(),
                                                            std::numeric_limits<double>::max(), 0.0, true,
                                                            false),
                         SINGLE);
    descriptor.stores(FORMAT_NAME, PiValueType::DOUBLE_ARRAY);
    descriptor.produces(OUTPUT_NAME, PiSocketType::IMAGE);
}

void PiImageGenerator::registerTool(OPtr<PiToolProtocol> protocol) {
    PiToolRegistry::getInstance().registerTool(std::move(protocol));
}

PiImageGenerator::PiImageGenerator(std::string xmlFileName) : _xmlFileName(std::move(xmlFileName)) {}

PiImageGenerator::~PiImageGenerator() = default;

void PiImageGenerator::nodeCreated() {
    resetFormat();
}

PiImageFormat PiImageGenerator::getFormat() const {
    RCShdPtr<PiNode> node = getNode();
    QV_ASSERT(node != nullptr);
    return PiImageFormatValue(node->getValue(FORMAT_NAME, true)).getValue();
}

PxStrongHndl<PxNode const> PiImageGenerator::createFormatNode() const {
    PiImageFormat const format = getFormat();
    // A stored aspect or rate that is no ratio (a file edited by hand) gives
    // square pixels and no rate rather than a node that cannot be built.
    Rational const aspect = format.pixelAspect.getDouble() > 0.0 ? format.pixelAspect : Rational(1, 1);
    Rational const rate = format.rate.getDouble() >= 0.0 ? format.rate : Rational(0, 1);
    IxPixelFormat const pixels(IxPixelFormat::RGBA, toDepth(getInputValue(DEPTH_NAME)), aspect);
    PxNode::Init init;
    PxStrongHndl<PxImageFormatNode> node(new PxImageFormatNode(init, PxImageFormat(pixels, rate)));
    PxNode::init(node);
    return node;
}

void PiImageGenerator::createProcNodes(OutputPublisher& publisher) {
    RCShdPtr<PiOutput> output = getNode()->getOutput(OUTPUT_NAME, true);
    PxStrongHndl<PxNode const> const format = createFormatNode();
    PxStrongHndl<PxNode const> const width = publisher.getInputProcNode(WIDTH_NAME);
    PxStrongHndl<PxNode const> const height = publisher.getInputProcNode(HEIGHT_NAME);
    PxStrongHndl<PxNode const> const fillAlpha = publisher.getInputProcNode(FILL_ALPHA_NAME);
    PxStrongHndl<PxNode const> fillColor;
    {
        PxNode::Init init;
        PxStrongHndl<PiColorProcNode> node(new PiColorProcNode(init, publisher, FILL_COLOR_NAME));
        PxNode::init(node);
        fillColor = node;
    }
    PxStrongHndl<PxImageProtocol> image =
        createImageProcNode(publisher, format, width, height, fillColor, fillAlpha);
    QV_ASSERT(!image.isNull() && image->isInitialized());
    publisher.publish(output, image);
}

void PiImageGenerator::reset() {
    RCShdPtr<PiNode> node = getNode();
    QV_ASSERT(node && node->getGraph());
    PiUndoGuard guard(node->getGraph()->getCommandStack(), "Reset " + node->getName());
    PiToolInterface::reset();
    resetFormat();
}

void PiImageGenerator::resetFormat() {
    RCShdPtr<PiNode> node = getNode();
    QV_ASSERT(node != nullptr);
    PiImageFormat format;
    format.width = 1920;
    format.height = 1080;
    format.rate = PiNodeRate::getProjectRate();
    if (PiProjectSettings::isInitialized()) {
        PiProjectSettings const& project = PiProjectSettings::getInstance();
        auto number = [&](char const* key, int fallback) {
            PiVariant const value = project.getValue(key);
            int const* n = std::get_if<int>(&value);
            return n ? *n : fallback;
        };
        format.width = number("ImageWidth", format.width);
        format.height = number("ImageHeight", format.height);
    }
    std::unique_ptr<PiUndoGuard> guard;
    if (PiGraph* graph = node->getGraph())
        guard = std::make_unique<PiUndoGuard>(graph->getCommandStack(), "Reset Format");
    PiImageFormatValue(node->getValue(FORMAT_NAME, true)).setValueAssumed(format);
    // The size follows even when the stored format was already this one.
    setInputValue(WIDTH_NAME, format.width, "Reset Format");
    setInputValue(HEIGHT_NAME, format.height, "Reset Format");
}

void PiImageGenerator::resetStartEndTime() {
    resetInputs({START_TIME_NAME, END_TIME_NAME});
}

void PiImageGenerator::resetFill() {
    resetInputs({FILL_COLOR_NAME, FILL_ALPHA_NAME});
}

void PiImageGenerator::resetInputs(std::initializer_list<std::string> names) {
    RCShdPtr<PiNode> node = getNode();
    QV_ASSERT(node && node->getGraph());
    PiUndoGuard guard(node->getGraph()->getCommandStack(), "Reset " + node->getName());
    for (std::string const& name : names)
        PiToolInterface::reset(node->getInput(name, true));
}

void PiImageGenerator::formatChanged() {
    if (!isReplaying()) {
        PiImageFormat const format = getFormat();
        if (format.width > 0 && format.height > 0) {
            setInputValue(WIDTH_NAME, format.width, "Set Format");
            setInputValue(HEIGHT_NAME, format.height, "Set Format");
        }
    }
    forceCreateProcNodesIfBuilt();
}

void PiImageGenerator::valueChanged(PiNodeEvent::ValueChanged const& event) {
    if (!event.isInput() && event.getName() == FORMAT_NAME)
        formatChanged();
    else if (event.isInput() && event.getName() == DEPTH_NAME)
        forceCreateProcNodesIfBuilt();
}

bool PiImageGenerator::isReplaying() const {
    RCShdPtr<PiNode> node = getNode();
    PiGraph* graph = node ? node->getGraph() : nullptr;
    return graph && graph->getCommandStack().isUndoRedoOngoing();
}

PiVariant PiImageGenerator::getInputValue(std::string const& name) const {
    return getNode()->getInput(name, true)->getValueAt(0.0);
}

double PiImageGenerator::evaluateInput(std::string const& name) const {
    return PiTypedAnimSocket<double, PiInput>(getNode()->getInput(name, true)).getValue(0.0);
}

void PiImageGenerator::setInputValue(std::string const& name, PiVariant const& value,
                                     std::string const& label) {
    RCShdPtr<PiNode> node = getNode();
    std::unique_ptr<PiUndoGuard> guard;
    if (PiGraph* graph = node->getGraph())
        guard = std::make_unique<PiUndoGuard>(graph->getCommandStack(), label);
    node->getInput(name, true)->setConstantValue(value);
}

Rational PiImageGenerator::getRate(RCShdPtr<PiOutput const> const&) const {
    return getFormat().rate;
}

void PiImageGenerator::setOffset(double) {}

double PiImageGenerator::getOffset() const {
    return 0.0;
}

double PiImageGenerator::getOffsetSync() const {
    return 0.0;
}

void PiImageGenerator::setInTime(double time) {
    setInputValue(START_TIME_NAME, time, "Set In Time");
}

double PiImageGenerator::getInTime() const {
    return std::get<double>(getInputValue(START_TIME_NAME));
}

double PiImageGenerator::getInTimeSync() const {
    return evaluateInput(START_TIME_NAME);
}

void PiImageGenerator::setOutTime(double time) {
    setInputValue(END_TIME_NAME, time, "Set Out Time");
}

double PiImageGenerator::getOutTime() const {
    return std::get<double>(getInputValue(END_TIME_NAME));
}

double PiImageGenerator::getOutTimeSync() const {
    return evaluateInput(END_TIME_NAME);
}

void PiImageGenerator::setRepeatMode(TmTypes::RepeatMode) {}

TmTypes::RepeatMode PiImageGenerator::getRepeatMode() const {
    return TmTypes::HOLD;
}

} // namespace Qv
