#pragma once
// Owner of a request: a shared pointer on the count inside the request.
#include "pxRequest.h"
#include "rcShdPtr.h"

#include <cstddef>
#include <typeinfo>
#include <utility>

namespace Qv {

// The untyped part, which is all the request manager needs: every
// PxRequestPtr<T> is passed to it as is, without a converted copy.
class PxRequestPtrBase {
public:
    [[noreturn]] static void throwNullPtrException(std::type_info const& type);

    bool isNull() const noexcept { return _strong.isNull(); }
    explicit operator bool() const noexcept { return !_strong.isNull(); }
    PxRequest* getRequest() const noexcept { return _strong.get(); }
    RCShdPtr<PxRequest> const& getShared() const noexcept { return _strong; }

protected:
    PxRequestPtrBase() noexcept = default;
    explicit PxRequestPtrBase(PxRequest* request) noexcept : _strong(request) {}
    ~PxRequestPtrBase() = default;
    PxRequestPtrBase(PxRequestPtrBase const&) noexcept = default;
    PxRequestPtrBase(PxRequestPtrBase&&) noexcept = default;
    PxRequestPtrBase& operator=(PxRequestPtrBase const&) noexcept = default;
    PxRequestPtrBase& operator=(PxRequestPtrBase&&) noexcept = default;

    RCShdPtr<PxRequest> _strong;
};

template <class T>
class PxRequestPtr : public PxRequestPtrBase {
public:
    using element_type = T;

    PxRequestPtr() noexcept = default;
    PxRequestPtr(std::nullptr_t) noexcept {}
    // Shares the ownership of a request, for instance one just made with new.
    template <RCConvertibleTo<T> Y>
    explicit PxRequestPtr(Y* request) noexcept : PxRequestPtrBase(request), _typed(request) {}
    template <RCConvertibleTo<T> Y>
    PxRequestPtr(PxRequestPtr<Y> const& other) noexcept : PxRequestPtrBase(other), _typed(other.get()) {}
    template <RCConvertibleTo<T> Y>
    PxRequestPtr(PxRequestPtr<Y>&& other) noexcept
        : PxRequestPtrBase(std::move(other)), _typed(std::exchange(other._typed, nullptr)) {}

    PxRequestPtr(PxRequestPtr const&) noexcept = default;
    PxRequestPtr(PxRequestPtr&& other) noexcept
        : PxRequestPtrBase(std::move(other)), _typed(std::exchange(other._typed, nullptr)) {}
    PxRequestPtr& operator=(PxRequestPtr other) noexcept {
        swap(other);
        return *this;
    }

    void reset() noexcept { PxRequestPtr().swap(*this); }
    void swap(PxRequestPtr& other) noexcept {
        _strong.swap(other._strong);
        std::swap(_typed, other._typed);
    }

    T* get() const noexcept { return _typed; }
    T& operator*() const { return *checked(); }
    T* operator->() const { return checked(); }

private:
    template <class Y>
    friend class PxRequestPtr;

    T* checked() const {
        if (!_typed)
            throwNullPtrException(typeid(T));
        return _typed;
    }

    T* _typed = nullptr;
};

// What a factory of requests returns: the same owner.
template <class T>
using PxRequestPtrRet = PxRequestPtr<T>;

template <class T, class U>
bool operator==(PxRequestPtr<T> const& a, PxRequestPtr<U> const& b) noexcept {
    return a.getRequest() == b.getRequest();
}
template <class T>
bool operator==(PxRequestPtr<T> const& a, std::nullptr_t) noexcept {
    return a.isNull();
}

} // namespace Qv
