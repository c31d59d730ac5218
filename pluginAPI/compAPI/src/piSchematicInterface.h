#pragma once
// How a node shows in the schematic view: its description per orientation,
// what of its inside is visible, and whether the user may edit it.
#include "rcShdPtr.h"

#include <string>

namespace Qv {

class PiNode;

class PiSchematicInterface {
public:
    enum Orientation { VERTICAL = 0, HORIZONTAL = 1 };

    virtual ~PiSchematicInterface();

    virtual std::string getInternalLayout() const;
    virtual bool getTopologyVisibility(RCShdPtr<PiNode const> const& node) const;
    virtual bool isVisibleInHierarchy(RCShdPtr<PiNode const> const& node) const;
    virtual bool canEdit() const;
    // Empty: the schematic's default look.
    virtual std::string getNodeXmlDescription(Orientation orientation) const;
    virtual void cacheNodeXmlDescription();
    virtual bool hasAuxiliaryInformation() const;
    virtual std::string getAuxiliaryInformation() const;

    // The text of a description file named with <ToolUiDir>, read once.
    static std::string readXmlFile(std::string const& fileName);
};

} // namespace Qv
