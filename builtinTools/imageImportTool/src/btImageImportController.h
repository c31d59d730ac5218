#pragma once
// The controller of an "Image Import" node: it makes the inner reader when
// the node is created, finds it again when the node is read from a file, and
// forwards the footage's settings to it. Times of the footage interface are
// seconds at the footage's rate; the reader's own are frames.
//
// Files dropped on the node, or delivered by a tool, replace its footage:
// a dropped file stands for its whole sequence on disk, and the node takes
// one sequence.
#include "btImageReaderController.h"
#include "piFileDndInterface.h"
#include "piFootageInterface.h"
#include "piGroupInterface.h"
#include "piGroupTopologyInterface.h"
#include "piNode.h"
#include "piNodeController.h"
#include "piOutcomeInterface.h"
#include "piSchematicInterface.h"
#include "piToolInterface.h"
#include "piUserInterface.h"

namespace Qv {

class BtImageImportController : public PiGroupTopologyInterface,
                                public PiGroupInterface,
                                public PiToolInterface,
                                public PiSchematicInterface,
                                public PiUserInterface,
                                public PiFootageInterface,
                                public PiOutcomeInterface,
                                public virtual PiNodeController {
public:
    void nodeCreated() override;
    void nodeLoaded() override;

    // The inner reader; asserts that the node has one.
    BtImageReaderController& getReader() const;
    RCShdPtr<PiNode> const& getReaderNode() const { return _imageReaderNode; }

    // A new path for the footage, one undo step ("Change Path"); a node
    // still of its default name takes the sequence's. False with the
    // reader's error text on a refusal.
    bool setSequencePath(std::string const& path);
    // The text of the last refusal; empty after a success.
    std::string const& getErrorString() const { return _errorString; }

    // A drop: each file becomes its whole sequence ("p.0007.exr" gives
    // "p.[0001:0250].exr"), then accept. Files of one sequence are one.
    bool setFileDnd(PiFileDndInterface const& drop);
    // One file item, whose file is a path for setSequencePath.
    bool canAccept(PiOutcome const& outcome) const override;
    // setSequencePath of the item's file: one undo step ("Change Path"), or
    // false with the refusal's text and no step.
    bool accept(PiOutcome const& outcome) override;

    void setImageSequence(RCStrongPtr<PiImageSequence> const& imageSequence);
    void setFileFormatOptions(std::string const& options) { getReader().setFileFormatOptions(options); }
    void setDepth(unsigned depth) { getReader().setDepth(depth); }
    unsigned getDepth() const { return getReader().getDepth(); }
    void setPixelRatio(Rational const& ratio) { getReader().setPixelRatio(ratio); }
    Rational getPixelRatio() const { return getReader().getPixelRatio(); }
    void setRate(Rational const& rate) { getReader().setRate(rate); }
    void setUnpremultiplyState(bool on) { getReader().setUnpremultiplyState(on); }
    bool getUnpremultiplyState() const { return getReader().getUnpremultiplyState(); }
    void setUnpremultiplyBgColor(CoRgbColorTyped<float> const& c) { getReader().setUnpremultiplyBgColor(c); }
    CoRgbColorTyped<float> getUnpremultiplyBgColor() const { return getReader().getUnpremultiplyBgColor(); }
    void guessUnpremultiplyBgColor() { getReader().guessUnpremultiplyBgColor(); }
    void setMotionVectorInfo(CoMotionVectorInfo const& info) { getReader().setMotionVectorInfo(info); }
    CoMotionVectorInfo getMotionVectorInfo() const { return getReader().getMotionVectorInfo(); }

    // Footage.
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
    void setRepeatMode(TmTypes::RepeatMode mode) override { getReader().setRepeatMode(mode); }
    TmTypes::RepeatMode getRepeatMode() const override { return getReader().getRepeatMode(); }

    // Users see the group, not its inside.
    bool canEdit() const override { return false; }
    bool canChangeGroupNode() const { return false; }
    std::string getXmlFileName() const override;
    std::string getNodeXmlDescription(Orientation orientation) const override;

private:
    double toSeconds(long long frames) const;
    long long toFrames(double seconds) const;
    void showSequence();

    RCShdPtr<PiNode> _imageReaderNode;
    std::string _errorString;
};

} // namespace Qv
