#pragma once
// "Image Import": the node that stands for imported footage in a
// composition. A group node holding one "Image Reader" named "Reader" whose
// image is the group's "Output Image"; users edit the footage through the
// group, never its inside.
#include "piTool.h"
#include "rcShdPtr.h"

#include <string>

namespace Qv {

class BtImageImportTool {
public:
    static std::string const READER_NODE_NAME; // "Reader"

    static void registerTool();
    static RCShdPtr<PiTool const> getTool();
    static std::string const& getToolName(); // "Image Import"
    static int getVersionNumber();           // the schema number, 2

    static std::string const& getSequenceName();         // "Sequence": the path, for display
    static std::string const& getOutputImageName();      // "Output Image"
    static std::string const& getMainContainerName();    // "ImportMainContainer"
    static std::string const& getOptionsContainerName(); // "OptionsContainer"
};

} // namespace Qv
