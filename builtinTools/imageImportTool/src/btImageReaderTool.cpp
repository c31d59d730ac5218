#include "btImageReaderTool.h"

#include "btImageReaderController.h"
#include "piImageRepeatNode.h"
#include "piOstrandToolProtocol.h"
#include "piRangeInputPolicy.h"
#include "piTimeOffsetInputPolicy.h"
#include "piToolPolicyProtocol.h"
#include "piToolRegistry.h"
#include "piTypedInputPolicy.h"

#include <memory>

namespace Qv {

namespace {

std::string const TOOL_NAME("Image Reader");
std::string const RR_TOOL_NAME("Rendered Result Reader");
std::string const CATEGORY("Image Import");
std::string const DESCRIPTION("Convert image file to image");
constexpr int SCHEMA = 3;
// A year of frames at 24 a second, as every time input of the package.
constexpr int TIME_LIMIT = 51840000;

#define QV_READER_NAME(getter, text)                                                                         \
    std::string const& BtImageReaderTool::getter() {                                                         \
        static std::string const name(text);                                                                 \
        return name;                                                                                         \
    }

} // namespace

QV_READER_NAME(getImageSequenceName, "Image Sequence")
QV_READER_NAME(getImageSequenceInitializedName, "Image Sequence Initialized")
QV_READER_NAME(getCustomName, "Custom")
QV_READER_NAME(getSourceTimeName, "Source Time")
QV_READER_NAME(getImageFormatName, "Image Format")
QV_READER_NAME(getWidthName, "Width")
QV_READER_NAME(getHeightName, "Height")
QV_READER_NAME(getDepthName, "Depth")
QV_READER_NAME(getMotionVectorStatusName, "Motion Vector Status")
QV_READER_NAME(getMotionVectorTypeName, "Motion Vector Type")
QV_READER_NAME(getMotionVectorMaxDisplacementName, "Motion Vector Max Displacement")
QV_READER_NAME(getUnpremultiplyName, "Unpremultiply")
QV_READER_NAME(getBgRedName, "BgRed")
QV_READER_NAME(getBgGreenName, "BgGreen")
QV_READER_NAME(getBgBlueName, "BgBlue")
QV_READER_NAME(getTimeOffsetName, "Time Offset")
QV_READER_NAME(getMarkInName, "Mark In")
QV_READER_NAME(getMarkOutName, "Mark Out")
QV_READER_NAME(getRepeatModeName, "Repeat Mode")
QV_READER_NAME(getLockDurationName, "Lock Duration")
QV_READER_NAME(getOutputImageName, "Output Image")
QV_READER_NAME(getToolName, "Image Reader")
QV_READER_NAME(getRRToolName, "Rendered Result Reader")

namespace {

class ImageReaderToolProtocol : public PiToolPolicyProtocol<BtImageReaderController>,
                                public PiOstrandToolProtocol {
public:
    explicit ImageReaderToolProtocol(bool renderedResult)
        : PiOstrandToolProtocol(renderedResult ? RR_TOOL_NAME : TOOL_NAME, CATEGORY, SCHEMA, DESCRIPTION,
                                TOOL_LISTED, PLAIN_TOOL),
          _renderedResult(renderedResult) {}

    using PiToolPolicyProtocol<BtImageReaderController>::describe;

    void describe(PiToolPolicyDescriptor& descriptor) const override {
        descriptor.requires_(BtImageReaderTool::getTimeOffsetName(), PiSocketType::INTEGER,
                             PiTimeOffsetInputPolicy::getInstance(), SINGLE);
        descriptor.requires_(BtImageReaderTool::getMarkInName(), PiSocketType::INTEGER,
                             BtImageReaderTool::getInTimePolicy(), SINGLE);
        descriptor.requires_(BtImageReaderTool::getMarkOutName(), PiSocketType::INTEGER,
                             BtImageReaderTool::getOutTimePolicy(), SINGLE);
        descriptor.requires_(BtImageReaderTool::getRepeatModeName(), PiSocketType::INTEGER,
                             PiImageRepeatNode::getRepeatModeInputPolicy(), SINGLE);
        descriptor.requires_(BtImageReaderTool::getLockDurationName(), PiSocketType::BOOLEAN,
                             BtImageReaderTool::getLockDurationPolicy(), SINGLE);
        descriptor.produces(BtImageReaderTool::getOutputImageName(), PiSocketType::IMAGE);
        descriptor.stores(BtImageReaderTool::getImageSequenceName(), PiValueType::STRING);
        descriptor.stores(BtImageReaderTool::getImageSequenceInitializedName(), PiValueType::BOOL);
        descriptor.stores(BtImageReaderTool::getCustomName(), PiValueType::STRING);
        descriptor.stores(BtImageReaderTool::getSourceTimeName(), PiValueType::INT);
        descriptor.stores(BtImageReaderTool::getImageFormatName(), PiValueType::DOUBLE_ARRAY);
        descriptor.stores(BtImageReaderTool::getWidthName(), PiValueType::INT);
        descriptor.stores(BtImageReaderTool::getHeightName(), PiValueType::INT);
        descriptor.stores(BtImageReaderTool::getDepthName(), PiValueType::INT);
        descriptor.stores(BtImageReaderTool::getMotionVectorStatusName(), PiValueType::INT);
        descriptor.stores(BtImageReaderTool::getMotionVectorTypeName(), PiValueType::INT);
        descriptor.stores(BtImageReaderTool::getMotionVectorMaxDisplacementName(), PiValueType::DOUBLE);
        descriptor.stores(BtImageReaderTool::getUnpremultiplyName(), PiValueType::BOOL);
        descriptor.stores(BtImageReaderTool::getBgRedName(), PiValueType::DOUBLE);
        descriptor.stores(BtImageReaderTool::getBgGreenName(), PiValueType::DOUBLE);
        descriptor.stores(BtImageReaderTool::getBgBlueName(), PiValueType::DOUBLE);
    }

protected:
    OPtrRet<BtImageReaderController> makeController() const override {
        return std::make_unique<BtImageReaderController>(_renderedResult);
    }

private:
    bool _renderedResult;
};

} // namespace

void BtImageReaderTool::registerTool() {
    PiToolRegistry::getInstance().registerTool(std::make_unique<ImageReaderToolProtocol>(false));
    PiToolRegistry::getInstance().registerTool(std::make_unique<ImageReaderToolProtocol>(true));
}

RCShdPtr<PiTool const> BtImageReaderTool::getTool() {
    return PiToolRegistry::getInstance().getTool(PiOstrandToolProtocol::getOstrandToolName(TOOL_NAME));
}

RCShdPtr<PiTool const> BtImageReaderTool::getRRTool() {
    return PiToolRegistry::getInstance().getTool(PiOstrandToolProtocol::getOstrandToolName(RR_TOOL_NAME));
}

// The marks' true defaults are the footage's first and one-past-last frames,
// written when it is first read.
RCShdPtr<PiInputPolicy const> BtImageReaderTool::getInTimePolicy() {
    static RCShdPtr<PiInputPolicy const> const policy =
        PiRangeInputPolicy<int>::create(-TIME_LIMIT, TIME_LIMIT, 0, true, false);
    return policy;
}

RCShdPtr<PiInputPolicy const> BtImageReaderTool::getOutTimePolicy() {
    static RCShdPtr<PiInputPolicy const> const policy =
        PiRangeInputPolicy<int>::create(-TIME_LIMIT, TIME_LIMIT, 0, true, false);
    return policy;
}

RCShdPtr<PiInputPolicy const> BtImageReaderTool::getLockDurationPolicy() {
    static RCShdPtr<PiInputPolicy const> const policy(new PiTypedInputPolicy<bool>(false));
    return policy;
}

} // namespace Qv
