#pragma once
// The description of a tool's parameter panel: an XML text, usually read
// from a file under <ToolUiDir>.
#include <string>

namespace Qv {

class PiUserInterface {
public:
    virtual ~PiUserInterface();

    // The text set by setXmlDescription, else that of getXmlFileName's file
    // through PiUserInterfaceServices; empty when there is neither.
    virtual std::string getXmlDescription() const;
    virtual std::string getXmlFileName() const;
    virtual void setXmlDescription(std::string const& description);
    virtual bool hasDynamicXml() const;
    virtual void enableXmlEditing(bool enable);
    virtual bool isXmlEditingEnabled() const;
    virtual void startUiCreation();
    virtual void endUiCreation();
    // Data an editor keeps per panel instance, as XML text.
    virtual std::string createInstanceData() const;
    virtual std::string createInstanceData(std::string const& context) const;

private:
    std::string _description;
    bool _xmlEditing = false;
};

} // namespace Qv
