#include "pxNode.h"

#include "assertions.h"

#include <algorithm>

namespace Qv {

namespace PxHandleDetail {
void destroyNode(PxNode* node) {
    node->destroy();
    // The strong family held one count of the node's own.
    node->releaseNodeRef();
}
} // namespace PxHandleDetail

PxNode::PxNode(Init const&) {}

PxNode::~PxNode() = default;

void PxNode::destroy() {}

void PxNode::init() {}

bool PxNode::propagateAndRemapInvalidation(PxValidityInterval*, PxUPtr<PxNode const> const&, int*) const {
    return true;
}

void PxNode::invalidateAndReinitialize(PxValidityInterval const&, PxUPtr<PxNode const> const&, int) {}

void PxNode::runInit() {
    init();
    _initialized.store(true, std::memory_order_release);
}

void PxNode::releaseNodeRef() const {
    if (_nodeRefCount.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete this;
}

void PxNode::invalidate(PxValidityInterval const& interval, int stream) const {
    if (interval.isEmpty())
        return;
    std::vector<PxNode*> parents;
    {
        std::lock_guard<std::mutex> lock(_parentsLock);
        parents = _parents;
    }
    PxUPtr<PxNode const> self(this, PxUPtr<PxNode const>::Unchecked{});
    for (PxNode* parent : parents) {
        PxValidityInterval remapped = interval;
        int remappedStream = stream;
        if (!parent->propagateAndRemapInvalidation(&remapped, self, &remappedStream) || remapped.isEmpty())
            continue;
        parent->invalidateAndReinitialize(remapped, self, remappedStream);
        parent->invalidate(remapped, remappedStream);
    }
}

void PxNode::registerChild(PxNodePtr<PxNode const> const& child) {
    QV_ASSERT(!child.isNull());
    child->addParent(this);
}

void PxNode::unregisterChild(PxNodePtr<PxNode const> const& child) {
    if (!child.isNull())
        child->removeParent(this);
}

void PxNode::addParent(PxNode* parent) const {
    std::lock_guard<std::mutex> lock(_parentsLock);
    _parents.push_back(parent);
}

void PxNode::removeParent(PxNode* parent) const {
    std::lock_guard<std::mutex> lock(_parentsLock);
    // One registration goes per call: a parent that uses a child twice registers twice.
    auto found = std::find(_parents.begin(), _parents.end(), parent);
    if (found != _parents.end())
        _parents.erase(found);
}

PxNode* PxNode::getParent(int index) const {
    std::lock_guard<std::mutex> lock(_parentsLock);
    QV_ASSERT(index >= 0 && index < static_cast<int>(_parents.size()));
    return _parents[static_cast<size_t>(index)];
}

int PxNode::getNbParents() const {
    std::lock_guard<std::mutex> lock(_parentsLock);
    return static_cast<int>(_parents.size());
}

} // namespace Qv
