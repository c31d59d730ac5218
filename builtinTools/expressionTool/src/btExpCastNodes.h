#pragma once
// The typed edges of an expression node. Inside the language every attribute
// is a double: CastInputNode turns an integer or boolean attribute into one.
// The result is a double or a boolean: CastOutputNode turns it into the type
// of the parameter it drives. Each is a pass-through with one conversion and
// the child's validity.
#include "assertions.h"
#include "pxAnimValueProtocol.h"
#include "pxPassThroughNode.h"

#include <cmath>
#include <limits>
#include <type_traits>

namespace Qv {

namespace BtExpCasts {
// Below this a double result reads as false.
inline constexpr double TRUE_THRESHOLD = 2.220446049250313e-16;

template <class To, class From>
To convert(From value) {
    if constexpr (std::is_same_v<To, double>)
        return value ? (std::is_same_v<From, bool> ? 1.0 : static_cast<double>(value)) : 0.0;
    else if constexpr (std::is_same_v<To, bool> && std::is_same_v<From, double>)
        return value > TRUE_THRESHOLD;
    else if constexpr (std::is_same_v<To, int> && std::is_same_v<From, double>) {
        // Floor, then truncation: -0.5 reads -1. NaN and values past an
        // integer's range read as 0 and as its ends.
        double const floored = std::floor(value);
        if (!(floored == floored))
            return 0;
        if (floored <= static_cast<double>(std::numeric_limits<int>::min()))
            return std::numeric_limits<int>::min();
        if (floored >= static_cast<double>(std::numeric_limits<int>::max()))
            return std::numeric_limits<int>::max();
        return static_cast<int>(floored);
    } else
        return static_cast<To>(value ? 1 : 0);
}
} // namespace BtExpCasts

template <class A, class B>
class BtExpCastNode : public PxPassThroughNode<PxAnimValueProtocol<B>, PxAnimValueProtocol<A>> {
public:
    using Base = PxPassThroughNode<PxAnimValueProtocol<B>, PxAnimValueProtocol<A>>;

    BtExpCastNode(PxNode::Init const& init, PxStrongHndl<PxAnimValueProtocol<A> const> const& child)
        : PxNode(init), Base(init, child) {}

    void getAnimValue(PxResult<B>& result, PxTimeContext const& context) const override {
        PxResult<A> from;
        PxUPtr<PxAnimValueProtocol<A> const>(this->getChild())->getAnimValue(from, context);
        result.set(BtExpCasts::convert<B>(from.getValue()), from.getVI());
    }
};

// An integer or boolean attribute read as a double.
template <class T>
class CastInputNode final : public BtExpCastNode<T, double> {
public:
    CastInputNode(PxNode::Init const& init, PxStrongHndl<PxAnimValueProtocol<T> const> const& child)
        : PxNode(init), BtExpCastNode<T, double>(init, child) {}
};

// A result of type A given to an output of type B.
template <class A, class B>
class CastOutputNode final : public BtExpCastNode<A, B> {
public:
    CastOutputNode(PxNode::Init const& init, PxStrongHndl<PxAnimValueProtocol<A> const> const& child)
        : PxNode(init), BtExpCastNode<A, B>(init, child) {}
};

} // namespace Qv
