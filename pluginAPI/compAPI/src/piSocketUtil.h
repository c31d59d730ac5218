#pragma once
// Finding sockets: by name, the primary ones, siblings, and by the text
// "<node>.<socket>" that users write.
#include "piSocketType.h"
#include "rcShdPtr.h"

#include <string>
#include <string_view>

namespace Qv {

class PiGraph;
class PiInput;
class PiNode;
class PiOutput;
class PiSocket;

class PiSocketUtil {
public:
    enum NameMode { SOCKET_NAME = 0, NODE_AND_SOCKET_NAME = 1 };

    static RCShdPtr<PiInput> getInput(RCShdPtr<PiNode> const& node, std::string_view name);
    // The input the node's controller calls primary; null when none.
    static RCShdPtr<PiInput> getPrimaryInput(RCShdPtr<PiNode> const& node);
    // The first output of that type; null when none.
    static RCShdPtr<PiOutput> getPrimaryOutput(RCShdPtr<PiNode> const& node, PiSocketType type);
    // Another input of the same node.
    static RCShdPtr<PiInput> findSiblingInput(RCShdPtr<PiInput> const& input, std::string_view name);
    static std::string getName(RCShdPtr<PiSocket const> const& socket, NameMode mode = SOCKET_NAME);
    // ".": between a node's name and its socket's, which node names never hold.
    static std::string const& getSocketSeparator();

    // "<node>.<socket>" split at the first separator. Throws
    // PiEx::ExUnknownSocket when there is no separator.
    static std::pair<std::string, std::string> splitPath(std::string_view path);
    // An input of the node by name, or a channel of a structured input as
    // "<input>.<channel>" ("Color.Red"). Null when absent, or
    // PiEx::ExUnknownSocket naming what is missing when `checked`.
    static RCShdPtr<PiInput> findNodeInput(PiNode const& node, std::string_view name, bool checked);
    // Throw PiEx::ExUnknownNode, ExUnknownSocket naming what is missing. An
    // input path may name a channel: "<node>.<input>.<channel>".
    static RCShdPtr<PiInput> findInput(PiGraph const& graph, std::string_view path);
    static RCShdPtr<PiOutput> findOutput(PiGraph const& graph, std::string_view path);
};

} // namespace Qv
