#include "piSocketUtil.h"

#include "piColorProcNode.h"
#include "piEx.h"
#include "piGraph.h"
#include "piToolInterface.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace Qv {

RCShdPtr<PiInput> PiSocketUtil::getInput(RCShdPtr<PiNode> const& node, std::string_view name) {
    return node ? node->getInput(name) : RCShdPtr<PiInput>();
}

RCShdPtr<PiInput> PiSocketUtil::getPrimaryInput(RCShdPtr<PiNode> const& node) {
    PiToolInterface* tool = node ? node->getInterface<PiToolInterface>() : nullptr;
    return tool ? tool->getPrimaryInput() : RCShdPtr<PiInput>();
}

RCShdPtr<PiOutput> PiSocketUtil::getPrimaryOutput(RCShdPtr<PiNode> const& node, PiSocketType type) {
    if (node)
        for (RCShdPtr<PiOutput> const& output : node->getOutputs())
            if (output->getType() == type)
                return output;
    return {};
}

RCShdPtr<PiInput> PiSocketUtil::findSiblingInput(RCShdPtr<PiInput> const& input, std::string_view name) {
    PiNode* node = input ? input->getNodePtr() : nullptr;
    return node ? node->getInput(name) : RCShdPtr<PiInput>();
}

std::string PiSocketUtil::getName(RCShdPtr<PiSocket const> const& socket, NameMode mode) {
    if (!socket)
        return {};
    return mode == NODE_AND_SOCKET_NAME ? socket->getFullName() : socket->getName();
}

std::string const& PiSocketUtil::getSocketSeparator() {
    static std::string const separator = ".";
    return separator;
}

std::pair<std::string, std::string> PiSocketUtil::splitPath(std::string_view path) {
    std::size_t at = path.find(getSocketSeparator());
    if (at == std::string_view::npos)
        throw PiEx::ExUnknownSocket(__FILE__, __LINE__,
                                    "'" + std::string(path) + "' names no socket: write <node>" +
                                        getSocketSeparator() + "<socket>");
    return {std::string(path.substr(0, at)), std::string(path.substr(at + getSocketSeparator().size()))};
}

RCShdPtr<PiInput> PiSocketUtil::findNodeInput(PiNode const& node, std::string_view name, bool checked) {
    if (RCShdPtr<PiInput> input = node.getInput(name))
        return input;
    std::size_t at = name.rfind(getSocketSeparator());
    if (at != std::string_view::npos) {
        std::string_view const channel = name.substr(at + getSocketSeparator().size());
        if (RCShdPtr<PiInput> structured = node.getInput(name.substr(0, at));
            structured && structured->isStructured()) {
            RCShdPtr<PiInput> found = structured->getChannel(channel);
            if (!found && checked)
                throw PiEx::ExUnknownSocket(__FILE__, __LINE__,
                                            fmt::format("input {} has no channel '{}' (it has {})",
                                                        structured->getFullName(), channel,
                                                        fmt::join(PiColorProcNode::getChannelNames(), ", ")));
            return found;
        }
    }
    return node.getInput(name, checked);
}

RCShdPtr<PiInput> PiSocketUtil::findInput(PiGraph const& graph, std::string_view path) {
    auto [node, socket] = splitPath(path);
    return findNodeInput(*graph.getNode(node), socket, true);
}

RCShdPtr<PiOutput> PiSocketUtil::findOutput(PiGraph const& graph, std::string_view path) {
    auto [node, socket] = splitPath(path);
    return graph.getNode(node)->getOutput(socket, true);
}

} // namespace Qv
