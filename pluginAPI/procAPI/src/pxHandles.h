#pragma once
// Handles on processing nodes.
//
// PxStrongHndl<T>  owns the node: pointer and control block; application thread only.
// PxWeakHndl<T>    observes it; promoted to strong only while the node lives.
// PxNodePtr<T>     keeps the node's memory: the node's own count; what nodes hold of their inputs.
// PxUPtr<T>        borrowed view for the length of a call; worker threads only.
//
// A handle converts implicitly to a handle of a base protocol (and to const).
// Going to any other protocol is a checked cast: a non-null handle whose node
// does not implement it throws through RCExUtil::throwExCastFailed.
#include "lkCounter.h"
#include "pxNode.h"
#include "pxThreadRules.h"
#include "rcExUtil.h"
#include "rcSWCount.h"

#include <type_traits>
#include <utility>

namespace Qv {

class PxNode;

namespace PxHandleDetail {

using Block = RCSWCount<LkCounter<int>>;

template <class T>
PxNode const* asNode(T* ptr) {
    return static_cast<PxNode const*>(ptr);
}

// The pointer as a U*: an upcast when it is one, otherwise a checked dynamic cast.
template <class U, class T>
U* convert(T* ptr) {
    if constexpr (std::is_convertible_v<T*, U*>) {
        return ptr;
    } else {
        if (!ptr)
            return nullptr;
        U* result = dynamic_cast<U*>(ptr);
        if (!result)
            RCExUtil::throwExCastFailed(RCExUtil::getTypeName(typeid(*ptr)),
                                        RCExUtil::getTypeName(typeid(U)));
        return result;
    }
}

} // namespace PxHandleDetail

#define QV_PX_NOT_ON_WORKER() ::Qv::PxThreadRules::assertNotOnWorker(__FILE__, __LINE__)

template <class T>
class PxStrongHndl {
public:
    PxStrongHndl() noexcept = default;
    PxStrongHndl(std::nullptr_t) noexcept {}
    // Takes ownership of a freshly built node, with a new control block.
    explicit PxStrongHndl(T* node) : _ptr(node) {
        if (_ptr) {
            _block = new PxHandleDetail::Block;
            PxHandleDetail::asNode(_ptr)->addNodeRef();
        }
    }
    PxStrongHndl(PxStrongHndl const& other) : _ptr(other._ptr), _block(other._block) {
        QV_PX_NOT_ON_WORKER();
        if (_block)
            _block->addStrong();
    }
    template <class U>
    PxStrongHndl(PxStrongHndl<U> const& other)
        : _ptr(PxHandleDetail::convert<T>(other._ptr)), _block(other._block) {
        QV_PX_NOT_ON_WORKER();
        if (_block)
            _block->addStrong();
    }
    PxStrongHndl(PxStrongHndl&& other) noexcept
        : _ptr(std::exchange(other._ptr, nullptr)), _block(std::exchange(other._block, nullptr)) {}
    // Promotion: null when the node's strong count has reached zero.
    template <class U>
    explicit PxStrongHndl(PxWeakHndl<U> const& weak);

    // A destructor cannot throw: a handle dropped on a worker is reported on
    // the log, and released all the same.
    ~PxStrongHndl() {
        if (_block) {
            PxThreadRules::reportIfOnWorker(__FILE__, __LINE__);
            release();
        }
    }

    PxStrongHndl& operator=(PxStrongHndl const& other) {
        QV_PX_NOT_ON_WORKER();
        assign(other._ptr, other._block);
        return *this;
    }
    template <class U>
    PxStrongHndl& operator=(PxStrongHndl<U> const& other) {
        QV_PX_NOT_ON_WORKER();
        assign(PxHandleDetail::convert<T>(other._ptr), other._block);
        return *this;
    }
    PxStrongHndl& operator=(PxStrongHndl&& other) {
        QV_PX_NOT_ON_WORKER();
        if (this != &other) {
            PxStrongHndl old(std::move(*this));
            _ptr = std::exchange(other._ptr, nullptr);
            _block = std::exchange(other._block, nullptr);
        }
        return *this;
    }
    void swap(PxStrongHndl& other) {
        QV_PX_NOT_ON_WORKER();
        std::swap(_ptr, other._ptr);
        std::swap(_block, other._block);
    }
    void reset() { *this = PxStrongHndl(); }

    // The same node without const, sharing the counts: for builders whose
    // node constructors take mutable handles of nodes they were given const.
    template <class U>
    static PxStrongHndl constCast(PxStrongHndl<U const> const& other) {
        QV_PX_NOT_ON_WORKER();
        PxStrongHndl result;
        result.assign(PxHandleDetail::convert<T>(const_cast<U*>(other._ptr)), other._block);
        return result;
    }

    T* get() const noexcept { return _ptr; }
    T* operator->() const { return checked(); }
    T& operator*() const { return *checked(); }
    bool isNull() const noexcept { return _ptr == nullptr; }
    explicit operator bool() const noexcept { return _ptr != nullptr; }
    int getStrongCount() const noexcept { return _block ? _block->getStrongCount() : 0; }
    int getBlockCount() const noexcept { return _block ? _block->getBlockCount() : 0; }

    template <class U>
    bool operator==(PxStrongHndl<U> const& other) const noexcept {
        return PxHandleDetail::asNode(_ptr) == PxHandleDetail::asNode(other.get());
    }

private:
    template <class U>
    friend class PxStrongHndl;
    template <class U>
    friend class PxWeakHndl;

    T* checked() const {
        if (!_ptr)
            RCExUtil::throwExNullPtr(RCExUtil::getTypeName(typeid(T)));
        return _ptr;
    }

    void assign(T* ptr, PxHandleDetail::Block* block) {
        if (block == _block) {
            // Same node family: only the view may change; the counts stay.
            _ptr = ptr;
            return;
        }
        if (block)
            block->addStrong();
        release();
        _ptr = ptr;
        _block = block;
    }

    void release() {
        if (!_block)
            return;
        PxHandleDetail::Block* block = std::exchange(_block, nullptr);
        T* ptr = std::exchange(_ptr, nullptr);
        if (block->releaseStrong()) {
            PxNode* node = const_cast<PxNode*>(PxHandleDetail::asNode(ptr));
            destroyNode(node);
        }
        if (block->releaseBlock())
            delete block;
    }

    // Out of line in pxNode.cpp: destroy(), then the family's node count.
    static void destroyNode(PxNode* node);

    T* _ptr = nullptr;
    PxHandleDetail::Block* _block = nullptr;
};

namespace PxHandleDetail {
void destroyNode(PxNode* node);
}

template <class T>
void PxStrongHndl<T>::destroyNode(PxNode* node) {
    PxHandleDetail::destroyNode(node);
}

template <class T>
class PxWeakHndl {
public:
    PxWeakHndl() noexcept = default;
    template <class U>
    PxWeakHndl(PxStrongHndl<U> const& strong)
        : _ptr(PxHandleDetail::convert<T>(strong._ptr)), _block(strong._block) {
        QV_PX_NOT_ON_WORKER();
        if (_block)
            _block->addWeak();
    }
    PxWeakHndl(PxWeakHndl const& other) : _ptr(other._ptr), _block(other._block) {
        QV_PX_NOT_ON_WORKER();
        if (_block)
            _block->addWeak();
    }
    ~PxWeakHndl() {
        if (_block) {
            PxThreadRules::reportIfOnWorker(__FILE__, __LINE__);
            release();
        }
    }
    PxWeakHndl& operator=(PxWeakHndl const& other) {
        QV_PX_NOT_ON_WORKER();
        if (other._block != _block) {
            if (other._block)
                other._block->addWeak();
            release();
            _block = other._block;
        }
        _ptr = other._ptr;
        return *this;
    }

    bool isNull() const noexcept { return _block == nullptr; }
    bool isExpired() const noexcept { return !_block || _block->isExpired(); }
    PxStrongHndl<T> lock() const { return PxStrongHndl<T>(*this); }

private:
    template <class U>
    friend class PxStrongHndl;

    void release() {
        if (PxHandleDetail::Block* block = std::exchange(_block, nullptr); block && block->releaseBlock())
            delete block;
        _ptr = nullptr;
    }

    T* _ptr = nullptr;
    PxHandleDetail::Block* _block = nullptr;
};

template <class T>
template <class U>
PxStrongHndl<T>::PxStrongHndl(PxWeakHndl<U> const& weak) {
    QV_PX_NOT_ON_WORKER();
    if (weak._block && weak._block->tryAddStrong()) {
        _block = weak._block;
        _ptr = PxHandleDetail::convert<T>(weak._ptr);
    }
}

// Keeps the node's memory alive through the node's own count. What a node
// holds of its inputs; made from a strong handle on the application thread or
// from a PxUPtr on a worker.
template <class T>
class PxNodePtr {
public:
    PxNodePtr() noexcept = default;
    PxNodePtr(std::nullptr_t) noexcept {}
    template <class U>
    PxNodePtr(PxStrongHndl<U> const& strong) : PxNodePtr(PxHandleDetail::convert<T>(strong.get()), 0) {}
    template <class U>
    PxNodePtr(PxUPtr<U> const& borrowed);
    template <class U>
    PxNodePtr(PxNodePtr<U> const& other) : PxNodePtr(PxHandleDetail::convert<T>(other.get()), 0) {}
    PxNodePtr(PxNodePtr const& other) : PxNodePtr(other._ptr, 0) {}
    PxNodePtr(PxNodePtr&& other) noexcept : _ptr(std::exchange(other._ptr, nullptr)) {}
    ~PxNodePtr() { release(); }

    PxNodePtr& operator=(PxNodePtr other) noexcept {
        std::swap(_ptr, other._ptr);
        return *this;
    }
    void reset() noexcept { release(); }

    T* get() const noexcept { return _ptr; }
    T* operator->() const { return checked(); }
    T& operator*() const { return *checked(); }
    bool isNull() const noexcept { return _ptr == nullptr; }
    explicit operator bool() const noexcept { return _ptr != nullptr; }
    template <class U>
    bool operator==(PxNodePtr<U> const& other) const noexcept {
        return PxHandleDetail::asNode(_ptr) == PxHandleDetail::asNode(other.get());
    }

private:
    PxNodePtr(T* ptr, int) : _ptr(ptr) {
        if (_ptr)
            PxHandleDetail::asNode(_ptr)->addNodeRef();
    }
    T* checked() const {
        if (!_ptr)
            RCExUtil::throwExNullPtr(RCExUtil::getTypeName(typeid(T)));
        return _ptr;
    }
    void release() noexcept;

    T* _ptr = nullptr;
};

// A borrowed view for the length of a call on a worker thread.
template <class T>
class PxUPtr {
public:
    PxUPtr() noexcept = default;
    template <class U>
    PxUPtr(PxNodePtr<U> const& held) : _ptr(PxHandleDetail::convert<T>(held.get())) {
        PxThreadRules::assertOnWorker(__FILE__, __LINE__);
    }
    template <class U>
    PxUPtr(PxUPtr<U> const& other) : _ptr(PxHandleDetail::convert<T>(other.get())) {}

    T* get() const noexcept { return _ptr; }
    T* operator->() const { return checked(); }
    T& operator*() const { return *checked(); }
    bool isNull() const noexcept { return _ptr == nullptr; }
    explicit operator bool() const noexcept { return _ptr != nullptr; }

private:
    friend class PxNode;
    struct Unchecked {};
    // The platform's own view of a node outside a worker (invalidation runs
    // where the change happens).
    PxUPtr(T* ptr, Unchecked) noexcept : _ptr(ptr) {}
    T* checked() const {
        if (!_ptr)
            RCExUtil::throwExNullPtr(RCExUtil::getTypeName(typeid(T)));
        return _ptr;
    }

    T* _ptr = nullptr;
};

template <class T>
template <class U>
PxNodePtr<T>::PxNodePtr(PxUPtr<U> const& borrowed)
    : PxNodePtr(PxHandleDetail::convert<T>(borrowed.get()), 0) {}

template <class T>
void PxNodePtr<T>::release() noexcept {
    if (T* ptr = std::exchange(_ptr, nullptr))
        PxHandleDetail::asNode(ptr)->releaseNodeRef();
}

// Checked casts that keep the handle's kind.
template <class U, class T>
PxStrongHndl<U> pxCast(PxStrongHndl<T> const& handle) {
    return PxStrongHndl<U>(handle);
}
template <class U, class T>
PxNodePtr<U> pxCast(PxNodePtr<T> const& ptr) {
    return PxNodePtr<U>(ptr);
}

} // namespace Qv
