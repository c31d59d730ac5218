#pragma once
// Strong and weak pointers over a separate control block (RCSWCount), for
// objects that do not derive from RCBase or that must be watched without
// being kept alive. A weak pointer never resurrects a dead object: its
// promotion yields null once the last strong owner has let go.
#include "exBase.h"
#include "lkCounter.h"
#include "rcBase.h"
#include "rcExUtil.h"
#include "rcSWCount.h"

#include <compare>
#include <concepts>
#include <cstddef>
#include <functional>
#include <utility>

namespace Qv {

namespace RCStrongPtrDetail {
// The counts plus the way to destroy the object as the type it was created
// with, so that a pointer converted to a base still deletes it correctly.
class Block : public RCSWCount<LkCounter<int>> {
public:
    virtual ~Block() = default;
    virtual void destroyObject() noexcept = 0;
};

template <class Y>
class BlockOf final : public Block {
public:
    explicit BlockOf(Y* object) noexcept : _object(object) {}
    void destroyObject() noexcept override {
        static_assert(sizeof(Y) > 0, "the object type must be complete where ownership is taken");
        delete _object;
    }

private:
    Y* _object;
};
} // namespace RCStrongPtrDetail

template <class T>
class RCStrongPtr;
template <class T>
class RCWeakPtr;
template <class U, class T>
RCStrongPtr<U> rcCast(RCStrongPtr<T> const& from);
template <class U, class T>
RCStrongPtr<U> rcDynamicCast(RCStrongPtr<T> const& from) noexcept;

template <class T>
class RCStrongPtr {
public:
    using element_type = T;

    constexpr RCStrongPtr() noexcept = default;
    constexpr RCStrongPtr(std::nullptr_t) noexcept {}
    // Takes ownership; should the block not be allocated, the object is deleted.
    template <RCConvertibleTo<T> Y>
    explicit RCStrongPtr(Y* object) : _ptr(object) {
        if (!object)
            return;
        try {
            _block = new RCStrongPtrDetail::BlockOf<Y>(object);
        } catch (...) {
            delete object;
            throw;
        }
    }
    // Should the block not be allocated, `object` still owns the object.
    template <RCConvertibleTo<T> Y>
    RCStrongPtr(OPtrRet<Y>&& object) {
        if (!object)
            return;
        _block = new RCStrongPtrDetail::BlockOf<Y>(object.get());
        _ptr = object.release();
    }
    // Promotion: null when the object is already gone.
    template <RCConvertibleTo<T> Y>
    explicit RCStrongPtr(RCWeakPtr<Y> const& weak) noexcept {
        if (weak._block && weak._block->tryAddStrong()) {
            _block = weak._block;
            _ptr = weak._ptr;
        }
    }

    RCStrongPtr(RCStrongPtr const& other) noexcept : _ptr(other._ptr), _block(other._block) { acquire(); }
    RCStrongPtr(RCStrongPtr&& other) noexcept
        : _ptr(std::exchange(other._ptr, nullptr)), _block(std::exchange(other._block, nullptr)) {}
    template <RCConvertibleTo<T> Y>
    RCStrongPtr(RCStrongPtr<Y> const& other) noexcept : _ptr(other._ptr), _block(other._block) {
        acquire();
    }
    template <RCConvertibleTo<T> Y>
    RCStrongPtr(RCStrongPtr<Y>&& other) noexcept
        : _ptr(std::exchange(other._ptr, nullptr)), _block(std::exchange(other._block, nullptr)) {}

    ~RCStrongPtr() { release(); }

    // By value: copy, move, self-assignment and pointers sharing one block all
    // come down to a swap and the release of the old value.
    RCStrongPtr& operator=(RCStrongPtr other) noexcept {
        swap(other);
        return *this;
    }

    void reset() noexcept { RCStrongPtr().swap(*this); }
    template <RCConvertibleTo<T> Y>
    void reset(Y* object) {
        RCStrongPtr(object).swap(*this);
    }
    void swap(RCStrongPtr& other) noexcept {
        std::swap(_ptr, other._ptr);
        std::swap(_block, other._block);
    }

    T* get() const noexcept { return _ptr; }
    bool isNull() const noexcept { return _ptr == nullptr; }
    explicit operator bool() const noexcept { return _ptr != nullptr; }
    T& operator*() const { return *checked(); }
    T* operator->() const { return checked(); }

    // Number of strong owners of the object, 0 for a null pointer.
    int getStrongCount() const noexcept { return _block ? _block->getStrongCount() : 0; }

private:
    template <class Y>
    friend class RCStrongPtr;
    template <class Y>
    friend class RCWeakPtr;
    template <class U, class Y>
    friend RCStrongPtr<U> rcCast(RCStrongPtr<Y> const& from);
    template <class U, class Y>
    friend RCStrongPtr<U> rcDynamicCast(RCStrongPtr<Y> const& from) noexcept;

    // Shares the ownership of `owner` for another view of the same object.
    template <class Y>
    RCStrongPtr(RCStrongPtr<Y> const& owner, T* view) noexcept
        : _ptr(view), _block(view ? owner._block : nullptr) {
        acquire();
    }

    void acquire() const noexcept {
        if (_block)
            _block->addStrong();
    }
    void release() noexcept {
        if (!_block)
            return;
        if (_block->releaseStrong())
            _block->destroyObject();
        if (_block->releaseBlock())
            delete _block;
    }
    T* checked() const {
        if (!_ptr)
            RCExUtil::throwExNullPtr(RCExUtil::getTypeName(typeid(T)));
        return _ptr;
    }

    T* _ptr = nullptr;
    RCStrongPtrDetail::Block* _block = nullptr;
};

template <class T, class U>
bool operator==(RCStrongPtr<T> const& a, RCStrongPtr<U> const& b) noexcept {
    return a.get() == b.get();
}
template <class T>
bool operator==(RCStrongPtr<T> const& a, std::nullptr_t) noexcept {
    return a.isNull();
}
// Orders by address, for sorted containers.
template <class T>
std::strong_ordering operator<=>(RCStrongPtr<T> const& a, RCStrongPtr<T> const& b) noexcept {
    return std::compare_three_way()(a.get(), b.get());
}

template <class T>
class RCWeakPtr {
public:
    using element_type = T;

    constexpr RCWeakPtr() noexcept = default;
    constexpr RCWeakPtr(std::nullptr_t) noexcept {}
    template <RCConvertibleTo<T> Y>
    RCWeakPtr(RCStrongPtr<Y> const& strong) noexcept : _ptr(strong._ptr), _block(strong._block) {
        acquire();
    }

    RCWeakPtr(RCWeakPtr const& other) noexcept : _ptr(other._ptr), _block(other._block) { acquire(); }
    RCWeakPtr(RCWeakPtr&& other) noexcept
        : _ptr(std::exchange(other._ptr, nullptr)), _block(std::exchange(other._block, nullptr)) {}
    // The pointer is converted only while the object is alive: converting the
    // address of a dead object (through a virtual base, say) is not allowed.
    template <RCConvertibleTo<T> Y>
    RCWeakPtr(RCWeakPtr<Y> const& other) noexcept : _block(other._block) {
        acquire();
        _ptr = RCStrongPtr<Y>(other).get();
    }

    ~RCWeakPtr() { release(); }

    RCWeakPtr& operator=(RCWeakPtr other) noexcept {
        swap(other);
        return *this;
    }

    void reset() noexcept { RCWeakPtr().swap(*this); }
    void swap(RCWeakPtr& other) noexcept {
        std::swap(_ptr, other._ptr);
        std::swap(_block, other._block);
    }

    // Never given an object.
    bool isNull() const noexcept { return _block == nullptr; }
    // No object to reach: null, or its last strong owner is gone.
    bool isExpired() const noexcept { return !_block || _block->isExpired(); }
    // A strong pointer on the object, null when it is gone.
    RCStrongPtr<T> getStrong() const noexcept { return RCStrongPtr<T>(*this); }

    // Same object (also after it died), whatever the pointer's view of it.
    template <class U>
    bool operator==(RCWeakPtr<U> const& other) const noexcept {
        return _block == other._block;
    }

private:
    template <class Y>
    friend class RCStrongPtr;
    template <class Y>
    friend class RCWeakPtr;

    void acquire() const noexcept {
        if (_block)
            _block->addWeak();
    }
    void release() noexcept {
        if (_block && _block->releaseBlock())
            delete _block;
    }

    T* _ptr = nullptr;
    RCStrongPtrDetail::Block* _block = nullptr;
};

// Scoped promotion of a weak pointer: holds the object alive for its scope,
// or holds nothing when the object is gone.
template <class T>
class RCWeakAccessor {
public:
    explicit RCWeakAccessor(RCWeakPtr<T> const& weak) noexcept : _strong(weak) {}
    RCWeakAccessor(RCWeakAccessor const&) = delete;
    RCWeakAccessor& operator=(RCWeakAccessor const&) = delete;

    bool isNull() const noexcept { return _strong.isNull(); }
    explicit operator bool() const noexcept { return !_strong.isNull(); }
    T* get() const noexcept { return _strong.get(); }
    T& operator*() const { return *_strong; }
    T* operator->() const { return _strong.operator->(); }
    RCStrongPtr<T> const& getStrong() const noexcept { return _strong; }

private:
    RCStrongPtr<T> _strong;
};

// Checked downcast: null stays null, a non-null object of another type throws
// RCEx::ExCastFailed naming both types. The result shares the ownership.
template <class U, class T>
RCStrongPtr<U> rcCast(RCStrongPtr<T> const& from) {
    if (from.isNull())
        return {};
    U* to = dynamic_cast<U*>(from.get());
    if (!to)
        RCExUtil::throwExCastFailed(RCExUtil::getTypeName(typeid(*from.get())),
                                    RCExUtil::getTypeName(typeid(U)));
    return RCStrongPtr<U>(from, to);
}

// Type test: null when the object is not a U.
template <class U, class T>
RCStrongPtr<U> rcDynamicCast(RCStrongPtr<T> const& from) noexcept {
    return RCStrongPtr<U>(from, dynamic_cast<U*>(from.get()));
}

} // namespace Qv

template <class T>
struct std::hash<Qv::RCStrongPtr<T>> {
    std::size_t operator()(Qv::RCStrongPtr<T> const& p) const noexcept { return std::hash<T*>()(p.get()); }
};
