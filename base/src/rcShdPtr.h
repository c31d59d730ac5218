#pragma once
// Shared pointer on an object counted by RCBase. `RCShdPtr<T const>` is the
// read-only form: a non-const pointer converts to it, never the reverse.
#include "rcBase.h"
#include "rcExUtil.h"

#include <compare>
#include <concepts>
#include <cstddef>
#include <functional>
#include <utility>

namespace Qv {

template <class T>
class RCShdPtr {
public:
    using element_type = T;

    constexpr RCShdPtr() noexcept = default;
    constexpr RCShdPtr(std::nullptr_t) noexcept {}
    // Explicit: taking shared ownership of a bare pointer is a decision.
    explicit RCShdPtr(T* object) noexcept : _ptr(object) { acquire(); }

    RCShdPtr(RCShdPtr const& other) noexcept : _ptr(other._ptr) { acquire(); }
    RCShdPtr(RCShdPtr&& other) noexcept : _ptr(std::exchange(other._ptr, nullptr)) {}
    template <RCConvertibleTo<T> U>
    RCShdPtr(RCShdPtr<U> const& other) noexcept : _ptr(other.get()) {
        acquire();
    }
    template <RCConvertibleTo<T> U>
    RCShdPtr(RCShdPtr<U>&& other) noexcept : _ptr(other.detach()) {}

    ~RCShdPtr() { release(); }

    // By value: covers copy, move and self-assignment in one place.
    RCShdPtr& operator=(RCShdPtr other) noexcept {
        swap(other);
        return *this;
    }

    void reset() noexcept { RCShdPtr().swap(*this); }
    void reset(T* object) noexcept { RCShdPtr(object).swap(*this); }
    void swap(RCShdPtr& other) noexcept { std::swap(_ptr, other._ptr); }

    T* get() const noexcept { return _ptr; }
    bool isNull() const noexcept { return _ptr == nullptr; }
    // Holds `other` if it is a T (else nothing); whether it now holds one.
    template <class U>
    bool dynamicAssign(RCShdPtr<U> const& other) noexcept {
        reset(dynamic_cast<T*>(other.get()));
        return _ptr != nullptr;
    }
    explicit operator bool() const noexcept { return _ptr != nullptr; }

    T& operator*() const { return *checked(); }
    T* operator->() const { return checked(); }

private:
    template <class U>
    friend class RCShdPtr;

    // Gives up this pointer's reference without releasing it.
    T* detach() noexcept { return std::exchange(_ptr, nullptr); }

    void acquire() const noexcept {
        if (_ptr)
            _ptr->addRef();
    }
    void release() noexcept {
        if (_ptr)
            _ptr->releaseRef();
    }
    T* checked() const {
        if (!_ptr)
            RCExUtil::throwExNullPtr(RCExUtil::getTypeName(typeid(T)));
        return _ptr;
    }

    T* _ptr = nullptr;
};

template <class T, class U>
bool operator==(RCShdPtr<T> const& a, RCShdPtr<U> const& b) noexcept {
    return a.get() == b.get();
}
template <class T>
bool operator==(RCShdPtr<T> const& a, std::nullptr_t) noexcept {
    return a.isNull();
}
// Orders by address, for sorted containers.
template <class T>
std::strong_ordering operator<=>(RCShdPtr<T> const& a, RCShdPtr<T> const& b) noexcept {
    return std::compare_three_way()(a.get(), b.get());
}

// Checked downcast: null stays null, a non-null object of another type throws
// RCEx::ExCastFailed naming both types.
template <class U, class T>
RCShdPtr<U> rcCast(RCShdPtr<T> const& from) {
    if (from.isNull())
        return {};
    U* to = dynamic_cast<U*>(from.get());
    if (!to)
        RCExUtil::throwExCastFailed(RCExUtil::getTypeName(typeid(*from.get())),
                                    RCExUtil::getTypeName(typeid(U)));
    return RCShdPtr<U>(to);
}

// Type test: null when the object is not a U.
template <class U, class T>
RCShdPtr<U> rcDynamicCast(RCShdPtr<T> const& from) noexcept {
    return RCShdPtr<U>(dynamic_cast<U*>(from.get()));
}

} // namespace Qv

template <class T>
struct std::hash<Qv::RCShdPtr<T>> {
    std::size_t operator()(Qv::RCShdPtr<T> const& p) const noexcept { return std::hash<T*>()(p.get()); }
};
