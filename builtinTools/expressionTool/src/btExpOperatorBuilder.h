#pragma once
// The language's operators: an operator text and typed operands make a node.
// One overload per operand types; each returns a null handle when the text is
// not an operator of those types, which the caller reports as an unknown
// operator. Vectors have "+" and "-" only, and 2D vectors no operator at all.
#include "btExpNodeTypes.h"

#include <string_view>

namespace Qv {

class BtExpOperatorBuilder {
public:
    using Node = BtExpNodeTypes::Node;
    using Double = BtExpNodeTypes::Double;
    using Bool = BtExpNodeTypes::Bool;
    using Vec3 = BtExpNodeTypes::Vec3;

    // Unary "-".
    Node build(std::string_view op, Double const& val) const;
    Node build(std::string_view op, Vec3 const& vec) const;
    // Arithmetic "+", "-", "*", "/", "^", "%" and the comparisons.
    Node build(std::string_view op, Double const& lhs, Double const& rhs) const;
    // "+" and "-".
    Node build(std::string_view op, Vec3 const& vec1, Vec3 const& vec2) const;
    // "!".
    Node build(std::string_view op, Bool const& val) const;
    // "&&" and "||".
    Node build(std::string_view op, Bool const& lhs, Bool const& rhs) const;
};

} // namespace Qv
