#pragma once
// Base of every processing node, held as a virtual base by the protocols a
// node implements. A node is built on the application thread, wrapped in a
// strong handle, initialised with PxNode::init(handle), and evaluated on
// worker threads, several at a time for different tiles.
//
// Two counts keep a node: the strong count of its handles' control block
// decides when destroy() runs; the node's own count (PxNodePtr, and the
// strong handles together as one) decides when its memory goes.
#include "pxValidityInterval.h"

#include <atomic>
#include <mutex>
#include <vector>

namespace Qv {

template <class T>
class PxStrongHndl;
template <class T>
class PxWeakHndl;
template <class T>
class PxNodePtr;
template <class T>
class PxUPtr;

class PxNode {
public:
    // Construction token: held by the creating code for the length of the
    // construction; every constructor along the chain takes it.
    class Init {
    public:
        Init() = default;
        Init(Init const&) = delete;
        Init& operator=(Init const&) = delete;
    };

    explicit PxNode(Init const& init);
    PxNode(PxNode const&) = delete;
    PxNode& operator=(PxNode const&) = delete;
    virtual ~PxNode();

    // The last strong handle went: drop what the node holds (strong handles on
    // other nodes above all). Runs on the application thread.
    virtual void destroy();
    // Runs once, from PxNode::init(handle); a node registers its inputs here.
    virtual void init();
    // Called on a parent as an invalidation passes up from `child`: may remap
    // the interval and the stream (a node that shifts time shifts the interval)
    // and returns whether the invalidation goes on through this node.
    virtual bool propagateAndRemapInvalidation(PxValidityInterval* interval,
                                               PxUPtr<PxNode const> const& child, int* stream) const;
    // Drops what the node cached for the interval.
    virtual void invalidateAndReinitialize(PxValidityInterval const& interval,
                                           PxUPtr<PxNode const> const& child, int stream);

    // Tells every node above this one that its results changed for the interval.
    void invalidate(PxValidityInterval const& interval, int stream) const;
    // Makes this node a parent of `child`, so that invalidation of the child reaches it.
    void registerChild(PxNodePtr<PxNode const> const& child);
    void unregisterChild(PxNodePtr<PxNode const> const& child);
    PxNode* getParent(int index) const;
    int getNbParents() const;

    template <class T>
    static void init(PxStrongHndl<T> const& handle);

    bool isInitialized() const { return _initialized.load(std::memory_order_acquire); }

    // The node's own count, for PxNodePtr and the strong-handle family.
    void addNodeRef() const { _nodeRefCount.fetch_add(1, std::memory_order_relaxed); }
    void releaseNodeRef() const;
    int getNodeRefCount() const { return _nodeRefCount.load(std::memory_order_acquire); }

private:
    void addParent(PxNode* parent) const;
    void removeParent(PxNode* parent) const;
    void runInit();

    mutable std::atomic<int> _nodeRefCount{0};
    std::atomic<bool> _initialized{false};
    mutable std::mutex _parentsLock;
    mutable std::vector<PxNode*> _parents;
};

} // namespace Qv

#include "pxHandles.h"

namespace Qv {

template <class T>
void PxNode::init(PxStrongHndl<T> const& handle) {
    const_cast<PxNode*>(static_cast<PxNode const*>(handle.get()))->runInit();
}

} // namespace Qv
