// The settings of an image reader: each setter is one undo step under its
// label; the transient graph follows through valueChanged, undo and redo
// included.
#include "assertions.h"
#include "btImageImportServices.h"
#include "btImageReaderController.h"
#include "btImageReaderTool.h"
#include "piGraph.h"
#include "piImageSequence.h"
#include "piInput.h"
#include "piNode.h"
#include "piTypedAnimSocket.h"

#include <cstdint>
#include <limits>

namespace Qv {

PiCommandStack* BtImageReaderController::getCommandStack() const {
    RCShdPtr<PiNode> const node = getNode();
    PiGraph* const graph = node ? node->getGraph() : nullptr;
    return graph ? &graph->getCommandStack() : nullptr;
}

bool BtImageReaderController::isUndoOrRedoOngoing() const {
    PiCommandStack const* const stack = getCommandStack();
    return stack && stack->isUndoRedoOngoing();
}

std::unique_ptr<PiUndoGuard> BtImageReaderController::makeGuard(std::string const& label) const {
    PiCommandStack* const stack = getCommandStack();
    return stack && !label.empty() ? std::make_unique<PiUndoGuard>(*stack, label) : nullptr;
}

void BtImageReaderController::setStored(std::string const& name, PiVariant const& value,
                                        std::string const& label) {
    auto const guard = makeGuard(label);
    getNode()->getValue(name, true)->setData(value);
}

PiVariant BtImageReaderController::getStored(std::string const& name) const {
    return getNode()->getValue(name, true)->getData();
}

void BtImageReaderController::setInput(std::string const& name, PiVariant const& value,
                                       std::string const& label) {
    auto const guard = makeGuard(label);
    getNode()->getInput(name, true)->setConstantValue(value);
}

PiVariant BtImageReaderController::getInputConstant(std::string const& name) const {
    return getNode()->getInput(name, true)->getValueAt(0.0);
}

int BtImageReaderController::evaluateInteger(std::string const& name) const {
    return PiTypedAnimSocket<int, PiInput>(getNode()->getInput(name, true)).getValue(0.0);
}

void BtImageReaderController::setFileFormatOptions(std::string const& options) {
    setStored(BtImageReaderTool::getCustomName(), options, "Modify File Format Import Options");
    if (!_imageSequence.isNull())
        _imageSequence->setFileFormatOptions(options);
}

void BtImageReaderController::setFileFormatOptions(std::string const& extension, std::string const& options) {
    // Options are for the footage's own format; another extension's are not ours.
    std::string const path = getSequenceString();
    std::string const suffix = "." + extension;
    if (path.size() >= suffix.size() &&
        std::equal(suffix.rbegin(), suffix.rend(), path.rbegin(),
                   [](char a, char b) { return std::tolower(a) == std::tolower(b); }))
        setFileFormatOptions(options);
}

std::string BtImageReaderController::getFileFormatOptions() const {
    return std::get<std::string>(getStored(BtImageReaderTool::getCustomName()));
}

void BtImageReaderController::setPixelRatio(Rational const& ratio) {
    PiImageFormatValue value(getNode()->getValue(BtImageReaderTool::getImageFormatName(), true));
    PiImageFormat format = value.getValue();
    format.pixelAspect = ratio;
    auto const guard = makeGuard("Set Pixel Ratio");
    value.setValue(format);
}

Rational BtImageReaderController::getPixelRatio() const {
    PiImageFormat const format =
        PiImageFormatValue(getNode()->getValue(BtImageReaderTool::getImageFormatName(), true)).getValue();
    return format.pixelAspect.getDouble() > 0.0 ? format.pixelAspect : Rational(1, 1);
}

void BtImageReaderController::setRate(Rational const& rate) {
    PiImageFormatValue value(getNode()->getValue(BtImageReaderTool::getImageFormatName(), true));
    PiImageFormat format = value.getValue();
    format.rate = rate;
    auto const guard = makeGuard("Set Rate");
    value.setValue(format);
}

Rational BtImageReaderController::getRate() const {
    PiImageFormat const format =
        PiImageFormatValue(getNode()->getValue(BtImageReaderTool::getImageFormatName(), true)).getValue();
    return format.rate.getDouble() > 0.0 ? format.rate : Rational(24, 1);
}

void BtImageReaderController::setDepth(unsigned depth) {
    QV_ASSERT(depth == IxPixelFormat::UINT8 || depth == IxPixelFormat::FLOAT16 ||
              depth == IxPixelFormat::FLOAT32);
    setStored(BtImageReaderTool::getDepthName(), static_cast<int>(depth), "Set Depth");
}

unsigned BtImageReaderController::getDepth() const {
    int const depth = std::get<int>(getStored(BtImageReaderTool::getDepthName()));
    return depth == IxPixelFormat::UINT8 || depth == IxPixelFormat::FLOAT32 ? static_cast<unsigned>(depth)
                                                                            : IxPixelFormat::FLOAT16;
}

void BtImageReaderController::setLayout(PiImageFormat const& format, int width, int height) {
    auto const guard = makeGuard("Set Layout");
    PiImageFormatValue(getNode()->getValue(BtImageReaderTool::getImageFormatName(), true)).setValue(format);
    setStored(BtImageReaderTool::getWidthName(), width, {});
    setStored(BtImageReaderTool::getHeightName(), height, {});
}

void BtImageReaderController::setUnpremultiplyState(bool unpremultiply) {
    setStored(BtImageReaderTool::getUnpremultiplyName(), unpremultiply, "Toggle Unpremultiply");
}

bool BtImageReaderController::getUnpremultiplyState() const {
    return std::get<bool>(getStored(BtImageReaderTool::getUnpremultiplyName()));
}

void BtImageReaderController::setUnpremultiplyBgColor(CoRgbColorTyped<float> const& colour) {
    auto const guard = makeGuard("Set Unpremultiply Background Color");
    setStored(BtImageReaderTool::getBgRedName(), static_cast<double>(colour.r), {});
    setStored(BtImageReaderTool::getBgGreenName(), static_cast<double>(colour.g), {});
    setStored(BtImageReaderTool::getBgBlueName(), static_cast<double>(colour.b), {});
}

CoRgbColorTyped<float> BtImageReaderController::getUnpremultiplyBgColor() const {
    auto channel = [&](std::string const& name) {
        return static_cast<float>(std::get<double>(getStored(name)));
    };
    return {channel(BtImageReaderTool::getBgRedName()), channel(BtImageReaderTool::getBgGreenName()),
            channel(BtImageReaderTool::getBgBlueName())};
}

void BtImageReaderController::guessUnpremultiplyBgColor() {
    {
        // The unspecified colour is a request, not a user's colour: not a step.
        PiUndoGuardNoLog const noLog;
        setUnpremultiplyBgColor(BtImageImportServices::getUnspecifiedBgColor());
    }
    forceCreateProcNodes();
}

void BtImageReaderController::setMotionVectorInfo(CoMotionVectorInfo const& info) {
    auto const guard = makeGuard("Set Motion Vector Info");
    setStored(BtImageReaderTool::getMotionVectorStatusName(), static_cast<int>(info.status), {});
    setStored(BtImageReaderTool::getMotionVectorTypeName(), static_cast<int>(info.type), {});
    setStored(BtImageReaderTool::getMotionVectorMaxDisplacementName(),
              static_cast<double>(info.maxDisplacement), {});
}

CoMotionVectorInfo BtImageReaderController::getMotionVectorInfo() const {
    CoMotionVectorInfo info;
    info.status = std::get<int>(getStored(BtImageReaderTool::getMotionVectorStatusName())) ==
                          CoMotionVectorInfo::HAS_VECTORS
                      ? CoMotionVectorInfo::HAS_VECTORS
                      : CoMotionVectorInfo::NO_VECTORS;
    info.type = std::get<int>(getStored(BtImageReaderTool::getMotionVectorTypeName())) ==
                        CoMotionVectorInfo::NORMALIZED
                    ? CoMotionVectorInfo::NORMALIZED
                    : CoMotionVectorInfo::ABSOLUTE;
    info.maxDisplacement = static_cast<float>(
        std::get<double>(getStored(BtImageReaderTool::getMotionVectorMaxDisplacementName())));
    return info;
}

void BtImageReaderController::setInTime(long long inTime) {
    QV_ASSERT(inTime <= std::numeric_limits<std::int32_t>::max());
    auto const guard = makeGuard("Set In Time");
    // A locked duration carries the mark out along.
    if (std::get<bool>(getInputConstant(BtImageReaderTool::getLockDurationName()))) {
        long long const outTime = getOutTime() + (inTime - getInTime());
        QV_ASSERT(outTime <= std::numeric_limits<std::int32_t>::max());
        setInput(BtImageReaderTool::getMarkOutName(), static_cast<int>(outTime), {});
    }
    setInput(BtImageReaderTool::getMarkInName(), static_cast<int>(inTime), {});
}

long long BtImageReaderController::getInTime() const {
    return std::get<int>(getInputConstant(BtImageReaderTool::getMarkInName()));
}

long long BtImageReaderController::getInTimeSync() const {
    return evaluateInteger(BtImageReaderTool::getMarkInName());
}

void BtImageReaderController::setOutTime(long long outTime) {
    QV_ASSERT(outTime <= std::numeric_limits<std::int32_t>::max());
    setInput(BtImageReaderTool::getMarkOutName(), static_cast<int>(outTime), "Set Out Time");
}

long long BtImageReaderController::getOutTime() const {
    return std::get<int>(getInputConstant(BtImageReaderTool::getMarkOutName()));
}

long long BtImageReaderController::getOutTimeSync() const {
    return evaluateInteger(BtImageReaderTool::getMarkOutName());
}

void BtImageReaderController::setOffset(long long offset) {
    QV_ASSERT(offset <= std::numeric_limits<std::int32_t>::max());
    setInput(BtImageReaderTool::getTimeOffsetName(), static_cast<int>(offset), "Set Time Offset");
}

long long BtImageReaderController::getOffset() const {
    return std::get<int>(getInputConstant(BtImageReaderTool::getTimeOffsetName()));
}

long long BtImageReaderController::getOffsetSync() const {
    return evaluateInteger(BtImageReaderTool::getTimeOffsetName());
}

void BtImageReaderController::setRepeatMode(TmTypes::RepeatMode mode) {
    setInput(BtImageReaderTool::getRepeatModeName(), static_cast<int>(mode), "Set Repeat Mode");
}

TmTypes::RepeatMode BtImageReaderController::getRepeatMode() const {
    return static_cast<TmTypes::RepeatMode>(
        std::get<int>(getInputConstant(BtImageReaderTool::getRepeatModeName())));
}

void BtImageReaderController::setSourceTime(long long sourceTime) {
    QV_ASSERT(sourceTime <= std::numeric_limits<std::int32_t>::max());
    setStored(BtImageReaderTool::getSourceTimeName(), static_cast<int>(sourceTime), "Set Source Time");
}

long long BtImageReaderController::getSourceTime() const {
    return std::get<int>(getStored(BtImageReaderTool::getSourceTimeName()));
}

} // namespace Qv
