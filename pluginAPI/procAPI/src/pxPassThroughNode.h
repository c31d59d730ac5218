#pragma once
// A node that stands in for another: its child can be swapped on a worker
// (through a set request) without rebuilding the nodes above, and listeners
// hear of every invalidation that passes through it.
#include "assertions.h"
#include "cbHandler.h"
#include "lkLock.h"
#include "pxNode.h"
#include "rcStrongPtr.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace Qv {

class PxPassThroughProtocol : public virtual PxNode {
public:
    struct InvalidationInfo {
        PxValidityInterval interval;
        int stream = 0;
    };
    using InvalidateCb = CbHandler<InvalidationInfo const>;

    explicit PxPassThroughProtocol(PxNode::Init const& init) : PxNode(init) {}

    virtual void setChild(PxUPtr<PxNode const> const& child) = 0;
    // Worker side; adding a callback already there, or expired, does nothing.
    virtual void addInvalidateCb(RCWeakPtr<InvalidateCb> const& callback) = 0;
    virtual void removeInvalidateCb(RCWeakPtr<InvalidateCb> const& callback) = 0;
};

template <class Protocol, class ChildProtocol>
class PxPassThroughBaseNode : public Protocol, public PxPassThroughProtocol {
public:
    PxPassThroughBaseNode(PxNode::Init const& init, PxStrongHndl<ChildProtocol const> const& child)
        : PxNode(init), Protocol(init), PxPassThroughProtocol(init), _child(child),
          _callbacksLock("PxInvalidation callback dispatcher lock") {
        QV_ASSERT(!_child.isNull());
    }
    ~PxPassThroughBaseNode() override { PxNode::unregisterChild(_child); }

    void init() override {
        PxNode::init();
        PxNode::registerChild(_child);
    }

    void setChild(PxUPtr<PxNode const> const& child) override {
        QV_ASSERT(!child.isNull());
        setChildTyped(PxUPtr<ChildProtocol const>(child));
    }
    void setChildTyped(PxUPtr<ChildProtocol const> const& child) {
        QV_ASSERT(!child.isNull());
        PxThreadRules::assertOnWorker(__FILE__, __LINE__);
        PxNodePtr<ChildProtocol const> next(child);
        PxNode::unregisterChild(_child);
        _child = next;
        PxNode::registerChild(_child);
        this->invalidate(PxValidityInterval::FULL, 0);
        notify(InvalidationInfo{PxValidityInterval::FULL, 0});
    }
    PxNodePtr<ChildProtocol const> const& getChild() const { return _child; }

    void addInvalidateCb(RCWeakPtr<InvalidateCb> const& callback) override {
        PxThreadRules::assertOnWorker(__FILE__, __LINE__);
        LkLock::Guard guard(_callbacksLock);
        if (callback.isExpired())
            return;
        if (!_callbacks)
            _callbacks = std::make_unique<std::vector<RCWeakPtr<InvalidateCb>>>();
        if (std::find(_callbacks->begin(), _callbacks->end(), callback) == _callbacks->end())
            _callbacks->push_back(callback);
    }
    void removeInvalidateCb(RCWeakPtr<InvalidateCb> const& callback) override {
        PxThreadRules::assertOnWorker(__FILE__, __LINE__);
        LkLock::Guard guard(_callbacksLock);
        if (_callbacks)
            std::erase(*_callbacks, callback);
    }

    void invalidateAndReinitialize(PxValidityInterval const& interval, PxUPtr<PxNode const> const& child,
                                   int stream) override {
        notify(InvalidationInfo{interval, stream});
    }

protected:
    void notify(InvalidationInfo const& info) {
        std::vector<RCStrongPtr<InvalidateCb>> live;
        {
            LkLock::Guard guard(_callbacksLock);
            if (!_callbacks)
                return;
            std::erase_if(*_callbacks, [](auto const& weak) { return weak.isExpired(); });
            for (auto const& weak : *_callbacks)
                if (RCStrongPtr<InvalidateCb> strong = weak.getStrong())
                    live.push_back(strong);
        }
        // Called outside the lock: a callback may add or remove callbacks.
        for (auto const& callback : live)
            callback->call(info);
    }

private:
    PxNodePtr<ChildProtocol const> _child;
    // Made on first use: most pass-throughs never have a listener.
    std::unique_ptr<std::vector<RCWeakPtr<InvalidateCb>>> _callbacks;
    LkLock _callbacksLock;
};

// A pass-through whose protocol operations the subclass writes, usually by
// forwarding to getChild().
template <class Protocol, class ChildProtocol>
class PxPassThroughNode : public PxPassThroughBaseNode<Protocol, ChildProtocol> {
public:
    PxPassThroughNode(PxNode::Init const& init, PxStrongHndl<ChildProtocol const> const& child)
        : PxNode(init), PxPassThroughBaseNode<Protocol, ChildProtocol>(init, child) {}
};

} // namespace Qv
