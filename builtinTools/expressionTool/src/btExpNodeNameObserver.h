#pragma once
// Keeps expression texts in step with node names: one instance per package,
// listening to every graph that holds an expression. When a node is renamed
// (not when a rename is undone or redone: the texts come back with it), the
// expressions reading an attribute of that node, or of a node inside it,
// rewrite their references through adjustExpression.
#include "cbHandler.h"
#include "piGraphEvent.h"
#include "uuid.h"

#include <memory>
#include <string>
#include <unordered_map>

namespace Qv {

class PiGraph;
class PiNode;

class BtExpNodeNameObserver : public CbHandler<PiGraphEvent const> {
public:
    // Asserts "nodeNameObserver == 0" when created twice.
    static void initialize();
    static void finalize();
    static BtExpNodeNameObserver& getInstance();

    ~BtExpNodeNameObserver() override;
    // Listens to the graph's root from now on; nothing when it already does.
    void attach(PiGraph& graph);
    void call(PiGraphEvent const& event) override;

private:
    BtExpNodeNameObserver() = default;
    void nodeRenamed(PiNode& renamed);

    std::unordered_map<Uuid, PiGraph*, decltype(&UuidUtil::hashFunc)> _graphs{8, &UuidUtil::hashFunc};
};

} // namespace Qv
