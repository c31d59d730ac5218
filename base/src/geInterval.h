#pragma once
// A one-dimensional range [x1, x2): x2 is exclusive, so the length is x2 - x1
// and touching intervals do not overlap. Used for scanlines.
#include <algorithm>
#include <fmt/format.h>
#include <ostream>
#include <string>

namespace Qv {

template <class T>
struct GeInterval {
    T x1{};
    T x2{};

    T getLength() const { return x2 - x1; }
    bool isEmpty() const { return !(x2 > x1); }
    bool contains(T x) const { return x1 <= x && x < x2; }

    // An empty intersection collapses to length zero at this interval's x1.
    GeInterval getIntersection(GeInterval const& other) const {
        GeInterval const result{std::max(x1, other.x1), std::min(x2, other.x2)};
        return result.isEmpty() ? GeInterval{x1, x1} : result;
    }
    // The smallest interval holding both; an empty one adds nothing.
    GeInterval getBounding(GeInterval const& other) const {
        if (other.isEmpty())
            return *this;
        if (isEmpty())
            return other;
        return {std::min(x1, other.x1), std::max(x2, other.x2)};
    }
    GeInterval getTranslated(T d) const { return {x1 + d, x2 + d}; }

    std::string dump() const { return fmt::format("[{}, {})", x1, x2); }

    friend bool operator==(GeInterval const&, GeInterval const&) = default;
    friend std::ostream& operator<<(std::ostream& os, GeInterval const& i) { return os << i.dump(); }
};

} // namespace Qv
