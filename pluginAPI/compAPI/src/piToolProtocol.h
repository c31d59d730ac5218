#pragma once
// A tool's identity and factory: one object per tool type, owned by the
// registry from registration to the end of the process. describe() declares
// the sockets and stored values; createController() makes the controller of
// one node.
#include "exBase.h"
#include "piToolDescriptor.h"

#include <string>
#include <string_view>

namespace Qv {

class PiNodeController;

// 0: no menu lists the tool; it is created by name. 1: listed.
enum ToolVisibility { TOOL_INTERNAL = 0, TOOL_LISTED = 1 };
// 1: the node is a group holding an inner graph.
enum ToolStructure { PLAIN_TOOL = 0, SUPER_TOOL = 1 };

class PiToolProtocol {
public:
    virtual ~PiToolProtocol();

    virtual std::string getProductName() const = 0;
    virtual std::string getCategory() const = 0;
    virtual std::string getManufacturer() const = 0;
    virtual std::string getVersion() const = 0;
    // Recorded with each node: raising it marks a change of the stored form.
    virtual int getSchemaNb() const = 0;
    virtual std::string getDescription() const = 0;
    virtual bool isInternal() const = 0;
    virtual bool isSuperTool() const = 0;
    // Empty when the tool has no primary input.
    virtual std::string getPrimaryInput() const;
    virtual void describe(PiToolDescriptor& descriptor) = 0;
    virtual OPtrRet<PiNodeController> createController() const = 0;
    // A composition of an older schema loads without conversion.
    virtual bool allowsAutomaticBackwardComp() const;
    virtual std::string getShortToolName() const = 0;

    // The full name, the registry's key: "<manufacturer>/<short name>".
    std::string getToolName() const;
    static std::string makeToolName(std::string_view manufacturer, std::string_view shortName);

    // The categories of the menus. The literal "." lists a tool nowhere.
    static std::string getImageGenerationCategory();
    static std::string getUtilityCategory();
    static std::string getTestCategory();
    static std::string getVectorsCategory();
    static std::string getUnlistedCategory();
};

} // namespace Qv
