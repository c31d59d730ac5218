#pragma once
// Failures of the composition graph. Each reason names what was wrong: the
// node, the socket, the tool or the value, as a user typed or saw it.
#include "exBase.h"

namespace Qv {

struct PiEx {
    QV_DECLARE_EX(ExGraphError, ExBase);
    // No tool of that name is registered.
    QV_DECLARE_EX(ExUnknownTool, ExGraphError);
    // No node of that name in the graph.
    QV_DECLARE_EX(ExUnknownNode, ExGraphError);
    // The node has no socket or stored value of that name.
    QV_DECLARE_EX(ExUnknownSocket, ExGraphError);
    // A node name that is empty, holds the socket separator, or is taken.
    QV_DECLARE_EX(ExInvalidName, ExGraphError);
    // The input's policy does not accept the value.
    QV_DECLARE_EX(ExValueRefused, ExGraphError);
    // A text that is not a value of the socket's type.
    QV_DECLARE_EX(ExBadValue, ExGraphError);
    // Types that differ, a loop, sockets of different graphs.
    QV_DECLARE_EX(ExConnectionRefused, ExGraphError);
    // The controller refuses a dynamic socket.
    QV_DECLARE_EX(ExSocketRefused, ExGraphError);
};

} // namespace Qv
