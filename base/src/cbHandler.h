#pragma once
// Callbacks: a handler is called with a `T&`. A handler that only reads its
// argument is declared with a const type, `CbHandler<Event const>`, and is
// then called with `Event const&`; one that fills in its argument (a text
// substitution, say) takes the plain type.
#include "assertions.h"

namespace Qv {

// The argument of a callback that has nothing to tell but that it happened.
struct CbEmptyType {};

// Common base of all handlers, whatever their argument, so that a CbContainer
// can own handlers of different kinds.
class CbHandlerBase {
public:
    virtual ~CbHandlerBase() = default;

protected:
    CbHandlerBase() = default;
    CbHandlerBase(CbHandlerBase const&) = default;
    CbHandlerBase& operator=(CbHandlerBase const&) = default;
};

template <class T>
class CbHandler : public CbHandlerBase {
public:
    using ArgType = T;
    virtual void call(T& arg) = 0;
};

// Calls a member function of a borrowed object, which must outlive the handler.
template <class Class, class T>
class CbMethod : public CbHandler<T> {
public:
    using Method = void (Class::*)(T&);

    CbMethod(Class* object, Method method) : _object(object), _method(method) {
        QV_ASSERT(object != nullptr);
        QV_ASSERT(method != nullptr);
    }

    void call(T& arg) override { (_object->*_method)(arg); }

private:
    Class* _object;
    Method _method;
};

} // namespace Qv
