#pragma once
// The frame of every expression value node: a result of type R computed from
// children of the types Args, held for the node's life.
//
// The common evaluation asks every child in turn, first argument first, at the
// same time, and intersects their intervals; the value is then computed from
// theirs. A node that departs from it (one branch only, another time, another
// interval) evaluates its children one by one with evaluateArg.
//
// Evaluation runs on workers, through the node pointers the node holds; it
// allocates nothing.
#include "pxAnimValueProtocol.h"
#include "pxHandles.h"

#include <cstddef>
#include <tuple>
#include <utility>

namespace Qv {

template <class R, class... Args>
class BtExpFuncNode : public PxAnimValueProtocol<R> {
public:
    template <class T>
    using Handle = PxStrongHndl<PxAnimValueProtocol<T> const>;

    BtExpFuncNode(PxNode::Init const& init, Handle<Args> const&... args)
        : PxNode(init), PxAnimValueProtocol<R>(init), _args(Child<Args>(args)...) {}
    ~BtExpFuncNode() override {
        std::apply([this](auto const&... child) { (PxNode::unregisterChild(child), ...); }, _args);
    }

    void init() override {
        PxNode::init();
        std::apply([this](auto const&... child) { (PxNode::registerChild(child), ...); }, _args);
    }

protected:
    template <class T>
    using Child = PxNodePtr<PxAnimValueProtocol<T> const>;
    template <std::size_t I>
    using ArgType = std::tuple_element_t<I, std::tuple<Args...>>;

    // The value of argument I at `context`; narrows `vi` by its interval.
    template <std::size_t I>
    ArgType<I> evaluateArg(PxTimeContext const& context, PxValidityInterval& vi) const {
        PxResult<ArgType<I>> child;
        std::get<I>(_args)->getAnimValue(child, context);
        vi.intersect(child.getVI());
        return child.getValue();
    }

    template <std::size_t I>
    Child<ArgType<I>> const& getArg() const {
        return std::get<I>(_args);
    }

    // The common evaluation, `compute` taking the arguments' values in order.
    template <class F>
    void evaluate(PxResult<R>& result, PxTimeContext const& context, F const& compute) const {
        PxValidityInterval vi = PxValidityInterval::FULL;
        evaluateAll(result, context, vi, compute, std::index_sequence_for<Args...>{});
    }

private:
    template <class F, std::size_t... I>
    void evaluateAll(PxResult<R>& result, PxTimeContext const& context, PxValidityInterval& vi,
                     F const& compute, std::index_sequence<I...>) const {
        // A braced list evaluates its elements left to right: the children go in order.
        std::tuple<Args...> const values{evaluateArg<I>(context, vi)...};
        result.set(std::apply(compute, values), vi);
    }

    std::tuple<Child<Args>...> const _args;
};

// The roles of the family, by arity.
template <class R, class A>
using BtUnaryOpNode = BtExpFuncNode<R, A>;
template <class R, class A, class B>
using BtBinaryOpNode = BtExpFuncNode<R, A, B>;
template <class R, class A>
using BtFunc1Node = BtExpFuncNode<R, A>;
template <class R, class A, class B>
using BtFunc2Node = BtExpFuncNode<R, A, B>;
template <class R, class A, class B, class C>
using BtFunc3Node = BtExpFuncNode<R, A, B, C>;
template <class R, class A, class B, class C, class D>
using BtFunc4Node = BtExpFuncNode<R, A, B, C, D>;

// The constructor of a concrete node: the processing node base is virtual, so
// the most derived class names it.
#define BT_EXP_NODE_CONSTRUCTOR(Class, ...)                                                                  \
    template <class... Handles>                                                                              \
    explicit Class(PxNode::Init const& init, Handles const&... args)                                         \
        : PxNode(init), __VA_ARGS__(init, args...) {}

} // namespace Qv
