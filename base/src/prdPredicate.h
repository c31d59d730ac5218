#pragma once
// A test on values of T that combines with ! and &: search filters built
// from small named pieces, such as "a tool node and not an expression node".
#include <functional>
#include <utility>

namespace Qv {

template <class T>
class PrdPredicate {
public:
    using Function = std::function<bool(T const&)>;

    // Holds for every value.
    PrdPredicate() : _test([](T const&) { return true; }) {}
    explicit PrdPredicate(Function test) : _test(std::move(test)) {}

    bool operator()(T const& value) const { return _test(value); }

    friend PrdPredicate operator!(PrdPredicate const& p) {
        return PrdPredicate([p](T const& value) { return !p(value); });
    }
    friend PrdPredicate operator&(PrdPredicate const& a, PrdPredicate const& b) {
        return PrdPredicate([a, b](T const& value) { return a(value) && b(value); });
    }
    friend PrdPredicate operator|(PrdPredicate const& a, PrdPredicate const& b) {
        return PrdPredicate([a, b](T const& value) { return a(value) || b(value); });
    }

private:
    Function _test;
};

} // namespace Qv
