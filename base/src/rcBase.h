#pragma once
// Base of objects shared through RCShdPtr: the count lives in the object, so
// a pointer can be rebuilt from a bare `this` without a second count.
#include "lkCounter.h"

#include <concepts>

namespace Qv {

// A smart pointer to Y converts to one to T when the bare pointers do: to a
// base, to the const form, never back.
template <class Y, class T>
concept RCConvertibleTo = std::convertible_to<Y*, T*>;

template <class Counter = LkCounter<int>>
class RCBase {
public:
    // The count is mutable: holders of a const pointer share ownership too.
    void addRef() const noexcept { _refCount.increment(); }
    // Deletes the object when the last reference goes. The destructor is
    // reached virtually, so a derived class may keep it protected.
    void releaseRef() const noexcept {
        if (_refCount.decrement() == 0)
            delete this;
    }
    int getRefCount() const noexcept { return _refCount.get(); }

protected:
    RCBase() noexcept = default;
    // A copy is a new object: it starts with no owners of its own.
    RCBase(RCBase const&) noexcept {}
    RCBase& operator=(RCBase const&) noexcept { return *this; }
    virtual ~RCBase() = default;

private:
    mutable Counter _refCount{0};
};

} // namespace Qv
