#pragma once
// Where the data layer finds controllers for nodes it cannot make from their
// tool: a tool that is not installed, a stored form its tool cannot read, a
// super tool that is not installed. The package providing placeholders
// registers the factories; without one, such a composition does not load.
#include "exBase.h"

namespace Qv {

class PiNodeController;

class OmGraphUtil {
public:
    using NodeCtrlFactory = OPtrRet<PiNodeController> (*)();

    static void registerMissingToolNodeCtrlFactory(NodeCtrlFactory factory);
    static void registerBrokenToolNodeCtrlFactory(NodeCtrlFactory factory);
    static void registerMissingSuperToolNodeCtrlFactory(NodeCtrlFactory factory);

    // Null when none is registered.
    static NodeCtrlFactory getMissingToolNodeCtrlFactory();
    static NodeCtrlFactory getBrokenToolNodeCtrlFactory();
    static NodeCtrlFactory getMissingSuperToolNodeCtrlFactory();
};

} // namespace Qv
