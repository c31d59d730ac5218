#pragma once
// The controller of an "Image Reader" (or "Rendered Result Reader") node: it
// keeps the footage's attributes in the node, makes every change one undo
// step, and keeps a transient processing graph (the reader node over the
// sequence) in step with them. Everything here runs on the application
// thread.
//
// The node keeps its sequence as an XML fragment ("Image Sequence"); the
// attributes the footage gives (size, depth, rate, pixel ratio, vectors,
// marks) are read from it once, when "Image Sequence Initialized" is false,
// and are the user's from then on.
#include "btImageReaderTransientGraph.h"
#include "cbHandler.h"
#include "coColor.h"
#include "coMotionVectorInfo.h"
#include "piExternalDependencyInterface.h"
#include "piImageFormatValue.h"
#include "piImageSequence.h"
#include "piNodeController.h"
#include "piNodeControllerManip.h"
#include "piToolInterface.h"
#include "piToolTopologyInterface.h"
#include "piUndoGuard.h"
#include "piUserInterface.h"
#include "piValueChangeInterface.h"
#include "rational.h"
#include "rcStrongPtr.h"
#include "tmTypes.h"

#include <memory>
#include <string>

namespace Qv {

class PiImageSequence;

class BtImageReaderController : public PiToolInterface,
                                public PiToolTopologyInterface,
                                public PiUserInterface,
                                public PiValueChangeInterface,
                                public PiExternalDependencyInterface,
                                public PiNodeControllerManip,
                                public virtual PiNodeController {
public:
    // `renderedResult` selects the "Rendered Result Reader" record.
    explicit BtImageReaderController(bool renderedResult = false);
    ~BtImageReaderController() override;

    // The footage. Refusals keep their text for getErrorString and return
    // false: "No path was specified", "Error parsing the path: ...", "No
    // files match the query: ...", "Format of specified files is not
    // supported", "Could not create the image sequence.". A node still of its
    // default name takes the sequence's name.
    bool setSequencePath(std::string const& path);
    bool reloadImageSequence();
    void setImageSequence(OPtr<PiImageSequence> imageSequence);
    void setImageSequence(RCStrongPtr<PiImageSequence> const& imageSequence);
    RCStrongPtr<PiImageSequence> getImageSequence() const { return _imageSequence; }
    std::string getSequenceString() const;
    std::string const& getErrorString() const { return _errorString; }

    void setFileFormatOptions(std::string const& options);
    void setFileFormatOptions(std::string const& extension, std::string const& options);
    std::string getFileFormatOptions() const;

    void setPixelRatio(Rational const& ratio);
    Rational getPixelRatio() const;
    void setRate(Rational const& rate);
    Rational getRate() const;
    // An IxPixelFormat::Depth.
    void setDepth(unsigned depth);
    unsigned getDepth() const;
    void setLayout(PiImageFormat const& format, int width, int height);

    void setUnpremultiplyState(bool unpremultiply);
    bool getUnpremultiplyState() const;
    void setUnpremultiplyBgColor(CoRgbColorTyped<float> const& colour);
    CoRgbColorTyped<float> getUnpremultiplyBgColor() const;
    // Asks the next read of a frame to guess the colour from its pixels; the
    // guess arrives as its own undo step ("Guess Unpremultiply Background
    // Color"). Until then the colour is the unspecified one, not logged.
    void guessUnpremultiplyBgColor();

    void setMotionVectorInfo(CoMotionVectorInfo const& info);
    CoMotionVectorInfo getMotionVectorInfo() const;

    // Frames of the footage's rate. The plain getters read the constant; the
    // Sync ones evaluate the input (an expression or keyframes) at time 0.
    void setInTime(long long inTime);
    long long getInTime() const;
    long long getInTimeSync() const;
    long long getDefaultInTime() const;
    void setOutTime(long long outTime);
    long long getOutTime() const;
    long long getOutTimeSync() const;
    long long getDefaultOutTime() const;
    void setOffset(long long offset);
    long long getOffset() const;
    long long getOffsetSync() const;
    void setRepeatMode(TmTypes::RepeatMode mode);
    TmTypes::RepeatMode getRepeatMode() const;
    void setSourceTime(long long sourceTime);
    long long getSourceTime() const;

    // The transient graph's cache identity text, empty when the cache is
    // fresh (not kept over sessions) or there is no graph.
    std::string getCacheIdentity() const;
    std::shared_ptr<BtImageReaderTransientGraph> getTransientGraph() const { return _transientGraph; }

    // Host hooks.
    void nodeCreated() override;
    void nodeLoaded() override;
    void createProcNodes(OutputPublisher& publisher) override;
    bool canAddDynamicInput(std::string const& name, PiSocketType type, Cardinality cardinality) override;
    void valueChanged(PiNodeEvent::ValueChanged const& event) override;
    std::vector<std::string> getExternalDependencies(int flags) const override;
    bool relocateExternalDependencies(std::vector<Relocation> const& relocations) override;
    std::string getXmlFileName() const override;
    bool isRenderedResultReader() const { return _renderedResult; }

    // The colour a read guessed, on the application thread.
    void unpremultiplyBgColorGuessedCb(BtImageReaderNode::ColorGuess& guess);

    // Whether a node's name is the one it was given by default (the tool's
    // short name and a number), which the footage's name then replaces.
    static bool isDefaultName(std::string const& name, std::string const& toolShortName);
    // Renames a node still of its default name after its footage.
    static void takeSequenceName(RCShdPtr<PiNode> const& node, std::string const& sequenceName);

    // Panels of the reader for a host with a user interface: the main one
    // (with its description file) and the file format options. Such a host
    // registers them while its packages initialise and unregisters them while
    // they finalise; `qv` has no panels and registers none. A factory makes the
    // panel of a node and returns it as the host's own object.
    using UiFactory = void* (*)(PiNode& node);
    static void registerMainUiFactory(std::string const& imageReaderXmlFile, UiFactory imageReaderUiFactory);
    static void registerOptionsUiFactory(UiFactory imageReaderOptionsUiFactory);
    static void unregisterMainUiFactory();
    static void unregisterOptionsUiFactory();
    // Null, and an empty file name, when none is registered.
    static UiFactory getMainUiFactory();
    static std::string const& getMainUiXmlFile();
    static UiFactory getOptionsUiFactory();

private:
    bool fail(std::string text);
    // `initialize`: read the footage's attributes again (a new source), or
    // keep them (the same footage moved).
    void setImageSequenceProc(RCStrongPtr<PiImageSequence> const& sequence, bool initialize = true);
    void initImageSequence();
    // The sequence again from the stored fragment (a load, an undo).
    void restoreImageSequence();
    bool isUndoOrRedoOngoing() const;
    PiCommandStack* getCommandStack() const;
    // One undo step labelled `label`, or part of the step under way.
    std::unique_ptr<PiUndoGuard> makeGuard(std::string const& label) const;
    void setStored(std::string const& name, PiVariant const& value, std::string const& label);
    PiVariant getStored(std::string const& name) const;
    void setInput(std::string const& name, PiVariant const& value, std::string const& label);
    PiVariant getInputConstant(std::string const& name) const;
    int evaluateInteger(std::string const& name) const;
    BtImageReaderTransientGraph::State makeState() const;
    void dropTransientGraph();
    void rebuildOutput();

    bool _renderedResult;
    RCStrongPtr<PiImageSequence> _imageSequence;
    std::string _errorString;
    std::shared_ptr<BtImageReaderTransientGraph> _transientGraph;
    // Set while the controller itself stores a new fragment.
    bool _storingSequence = false;
    CbMethod<BtImageReaderController, BtImageReaderNode::ColorGuess> _guessHandler{
        this, &BtImageReaderController::unpremultiplyBgColorGuessedCb};
};

} // namespace Qv
