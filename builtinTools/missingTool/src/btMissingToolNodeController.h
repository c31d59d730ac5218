#pragma once
// The placeholder of a node whose tool is not installed (MISSING) or cannot
// read the node's stored form (BROKEN). The node keeps every socket and
// value as it was loaded, so that saving loses nothing; its inputs are
// frozen by placeholder policies, it warns once when loaded, and each of its
// outputs gives a neutral value of its type. The data layer makes it through
// the factories registered with OmGraphUtil.
#include "exBase.h"
#include "piNodeController.h"
#include "piSchematicInterface.h"
#include "piToolInterface.h"
#include "piToolTopologyInterface.h"

namespace Qv {

class MsgSubscription;

class BtMissingToolNodeController : public PiToolTopologyInterface,
                                    public PiToolInterface,
                                    public PiSchematicInterface,
                                    public virtual PiNodeController {
public:
    enum Type { MISSING = 0, BROKEN = 1 };

    explicit BtMissingToolNodeController(Type type);

    Type getType() const { return _type; }

    void nodeLoaded() override;
    void createProcNodes(OutputPublisher& publisher) override;
    std::string getNodeXmlDescription(Orientation orientation) const override;

    // The factories of OmGraphUtil.
    static OPtrRet<PiNodeController> createMissing();
    static OPtrRet<PiNodeController> createBroken();

    // The package's steps: the placeholder policies live between them.
    static void initializePolicies();
    static void finalizePolicies();
    static void subscribeMessages();

    // Shared with the super tool's placeholder: attaches a frozen policy to
    // every input of the node that has no explicit one.
    static void freezeInputs(PiToolInterface& controller, PiNode const& node);
    // "<node> (<tool>)", the warning's first parameter; the schema follows.
    static void warn(MsgSubscription const& message, PiNode const& node);
    // The schematic description for an orientation.
    static std::string getSchematicXml(Orientation orientation);

private:
    Type _type;
};

} // namespace Qv
