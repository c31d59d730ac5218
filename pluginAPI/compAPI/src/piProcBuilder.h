#pragma once
// Builds and rebuilds the processing nodes of composition nodes. A change
// rebuilds the nodes it touches, then, in the order of the connections, every
// node downstream whose inputs now give other processing nodes. Nodes built
// before stay alive as long as work posted on them holds them.
#include "pxHandles.h"

#include <map>
#include <vector>

namespace Qv {

class PiInput;
class PiNode;
class PiOutput;

class PiProcBuilder {
public:
    // Rebuilds the seeds and what depends on them. `force` rebuilds the seeds
    // even when their controllers disable rebuilding.
    static void rebuild(std::vector<PiNode*> const& seeds, bool force);
    // After a connection into `input` changed.
    static void rebuildReaderOf(PiInput& input);
    // After the node's sockets changed.
    static void rebuildNodeAndValues(PiNode& node);
    // A node new in the graph, with its value nodes and its inner graph.
    static void buildNodeTree(PiNode& node);
    // The value nodes behind the node's inputs, channels of structured values first.
    static void collectValueNodes(PiNode& node, std::vector<PiNode*>& nodes);
    static void collectNodeTree(PiNode& node, std::vector<PiNode*>& nodes);
    // A node out of the graph lets go of its processing nodes.
    static void releaseNodeTree(PiNode& node);

    // Outputs publish other nodes outside a build; what is downstream is rebuilt.
    static void publish(PiNode& node, std::map<PiOutput*, PxStrongHndl<PxNode const>> const& published);

    // What feeds the input: the processing node of its first connection, else
    // a neutral node of its type, made once per input.
    static PxStrongHndl<PxNode const> getInputProcNode(PiInput& input);
    static std::vector<PxStrongHndl<PxNode const>> getInputProcNodes(PiInput& input);
    // Whether `node` is downstream of what reads `input`: connecting an
    // output of `node` there would make a loop.
    static bool reaches(PiInput& input, PiNode& node);
    // Whether `node` is `from` or downstream of it.
    static bool isDownstream(PiNode& from, PiNode& node);

private:
    static PiNode* readerOf(PiInput& input);
    static std::vector<PiNode*> successorsOf(PiNode& node);
    // Returns whether an output now publishes another processing node.
    static bool build(PiNode& node, bool force);
};

} // namespace Qv
