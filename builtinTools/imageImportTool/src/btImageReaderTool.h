#pragma once
// "Image Reader": the tool through which footage enters a composition, and
// its twin "Rendered Result Reader" (the same controller over the frames a
// render wrote). Both records share one description; the controller is told
// which one it serves.
//
// Time: the files play at their own numbers (file N at source frame N of the
// footage's rate). "Source Time" slips the footage under its marks: file N
// plays at source frame N + "Source Time" while "Mark In" and "Mark Out" stay.
// The marks (source frames, "Mark Out" exclusive) and "Repeat Mode" say what
// is shown outside the clip; "Time Offset" moves the whole clip, marks and
// all: the output at frame t shows source frame t + "Time Offset".
#include "piInputPolicy.h"
#include "piTool.h"
#include "rcShdPtr.h"

#include <string>

namespace Qv {

class BtImageReaderTool {
public:
    // Registers both records; the package's initialise step calls it.
    static void registerTool();
    static RCShdPtr<PiTool const> getTool();   // "Image Reader"
    static RCShdPtr<PiTool const> getRRTool(); // "Rendered Result Reader"
    static std::string const& getToolName();
    static std::string const& getRRToolName();

    // Sockets and stored values, by name.
    static std::string const& getImageSequenceName();            // "Image Sequence"
    static std::string const& getImageSequenceInitializedName(); // "Image Sequence Initialized"
    static std::string const& getCustomName();                   // "Custom"
    static std::string const& getSourceTimeName();               // "Source Time"
    static std::string const& getImageFormatName();              // "Image Format"
    static std::string const& getWidthName();                    // "Width"
    static std::string const& getHeightName();                   // "Height"
    static std::string const& getDepthName();                    // "Depth"
    static std::string const& getMotionVectorStatusName();       // "Motion Vector Status"
    static std::string const& getMotionVectorTypeName();         // "Motion Vector Type"
    static std::string const& getMotionVectorMaxDisplacementName();
    static std::string const& getUnpremultiplyName(); // "Unpremultiply"
    static std::string const& getBgRedName();         // "BgRed"
    static std::string const& getBgGreenName();       // "BgGreen"
    static std::string const& getBgBlueName();        // "BgBlue"
    static std::string const& getTimeOffsetName();    // "Time Offset"
    static std::string const& getMarkInName();        // "Mark In"
    static std::string const& getMarkOutName();       // "Mark Out"
    static std::string const& getRepeatModeName();    // "Repeat Mode"
    static std::string const& getLockDurationName();  // "Lock Duration"
    static std::string const& getOutputImageName();   // "Output Image"

    // Policies of the time inputs: frames within a year of 24 a second
    // either side of zero; the marks' defaults come from the footage when it
    // is first read.
    static RCShdPtr<PiInputPolicy const> getInTimePolicy();
    static RCShdPtr<PiInputPolicy const> getOutTimePolicy();
    static RCShdPtr<PiInputPolicy const> getLockDurationPolicy();
};

} // namespace Qv
