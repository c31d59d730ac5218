#pragma once
// The frame of tools that generate an image from their parameters alone
// (Color Source): the size, depth, pixel aspect and rate of the image, the
// times it starts and ends, and the colour it shows outside its pixels. The
// tool describes its own inputs after describeGenerator's and writes one
// hook, createImageProcNode; everything else is the frame's.
//
// Sockets of every generator:
//   "Width", "Height"     integer inputs, the image's size in pixels
//   "Depth"               integer input: 8, 16 (half float) or 32 (float)
//   "Start Time", "End Time"  floating-point inputs, seconds
//   "Fill Color" (a colour), "Fill Alpha"
//                         the colour outside the image's pixels
//   "Format"              stored value (PiImageFormatValue): the format the
//                         size was taken from, its pixel aspect and rate
//   "Output"              the image
#include "piFootageInterface.h"
#include "piImageFormatValue.h"
#include "piNodeController.h"
#include "piSchematicInterface.h"
#include "piTimeInterface.h"
#include "piToolInterface.h"
#include "piToolPolicyDescriptor.h"
#include "piToolTopologyInterface.h"
#include "piUserInterface.h"
#include "piValueChangeInterface.h"
#include "piVariant.h"
#include "pxImageProtocol.h"

#include <string>

namespace Qv {

class PiToolProtocol;

class PiImageGenerator : public PiToolInterface,
                         public PiToolTopologyInterface,
                         public PiTimeInterface,
                         public PiUserInterface,
                         public PiSchematicInterface,
                         public PiFootageInterface,
                         public PiValueChangeInterface,
                         public virtual PiNodeController {
public:
    static std::string const& getOutputName();
    static std::string const& getFormatValueName();
    static std::string const& getWidthInputName();
    static std::string const& getHeightInputName();
    static std::string const& getDepthInputName();
    static std::string const& getStartTimeInputName();
    static std::string const& getEndTimeInputName();
    // The base name of the fill colour's channel inputs (PiColorProcNode).
    static std::string const& getFillColorInputName();
    static std::string const& getFillAlphaInputName();

    // Declares the generator's sockets, values and policies.
    static void describeGenerator(PiToolPolicyDescriptor& descriptor);
    // Registers a tool built on PiImageGeneratorInfo; the registry owns it.
    static void registerTool(OPtr<PiToolProtocol> protocol);

    ~PiImageGenerator() override;

    // A new node takes the project's image size and rate.
    void nodeCreated() override;

    // Builds the format node, takes the nodes of the size and fill inputs,
    // gathers the fill colour, asks the tool for its image node and
    // publishes it on "Output".
    void createProcNodes(OutputPublisher& publisher) override;

    // Every input to its default and the format to the project's, as one
    // undo step.
    void reset() override;
    using PiToolInterface::reset;
    // The format to the project's (as assumed), and the size with it.
    virtual void resetFormat();
    virtual void resetStartEndTime();
    virtual void resetFill();
    // The stored format changed: the size follows it (unless an undo or redo
    // replays, which restores the size itself) and the processing nodes are
    // rebuilt with its aspect and rate.
    virtual void formatChanged();

    std::string getXmlFileName() const override { return _xmlFileName; }
    void valueChanged(PiNodeEvent::ValueChanged const& event) override;

    // Footage: the rate is the format's; in and out are the start and end
    // times. A generated image is the same whatever its shift or repeat, so
    // its offset is always 0 and it holds outside its times.
    Rational getRate(RCShdPtr<PiOutput const> const& output) const override;
    void setOffset(double offset) override;
    double getOffset() const override;
    double getOffsetSync() const override;
    void setInTime(double time) override;
    double getInTime() const override;
    double getInTimeSync() const override;
    void setOutTime(double time) override;
    double getOutTime() const override;
    double getOutTimeSync() const override;
    void setRepeatMode(TmTypes::RepeatMode mode) override;
    TmTypes::RepeatMode getRepeatMode() const override;

    PiImageFormat getFormat() const;

protected:
    // `xmlFileName`: the tool's interface description ("<ToolUiDir>/...").
    explicit PiImageGenerator(std::string xmlFileName);

    // The tool's hook: build its image node from the generator's nodes (a
    // PxImageFormatProtocol, the integer width and height, the fill colour
    // and fill alpha values) and the publisher's inputs; initialised.
    virtual PxStrongHndl<PxImageProtocol>
    createImageProcNode(OutputPublisher& publisher, PxStrongHndl<PxNode const> const& format,
                        PxStrongHndl<PxNode const> const& width, PxStrongHndl<PxNode const> const& height,
                        PxStrongHndl<PxNode const> const& fillColor,
                        PxStrongHndl<PxNode const> const& fillAlpha) = 0;

private:
    PxStrongHndl<PxNode const> createFormatNode() const;
    // An input's constant (its curve at time 0) and its setting, one undo step.
    PiVariant getInputValue(std::string const& name) const;
    double evaluateInput(std::string const& name) const;
    void setInputValue(std::string const& name, PiVariant const& value, std::string const& label);
    void resetInputs(std::initializer_list<std::string> names);
    bool isReplaying() const;

    std::string _xmlFileName;
};

} // namespace Qv
