#pragma once
// The language's functions: a lower-case name and typed arguments make a
// node. One overload per signature of argument types; each returns a null
// handle when the name is not a function of that signature, which the caller
// reports as an unknown function.
#include "btExpNodeTypes.h"

#include <string_view>

namespace Qv {

class BtExpFunctionBuilder {
public:
    using Node = BtExpNodeTypes::Node;
    using Double = BtExpNodeTypes::Double;
    using Bool = BtExpNodeTypes::Bool;
    using Vec2 = BtExpNodeTypes::Vec2;
    using Vec3 = BtExpNodeTypes::Vec3;

    Node build(std::string_view name) const;
    Node build(std::string_view name, Double const& argumentNode) const;
    Node build(std::string_view name, Vec3 const& argumentNode) const;
    Node build(std::string_view name, Double const& argumentNode1, Double const& argumentNode2) const;
    Node build(std::string_view name, Vec3 const& argumentNode1, Vec3 const& argumentNode2) const;
    Node build(std::string_view name, Vec3 const& argumentNode1, Double const& argumentNode2) const;
    Node build(std::string_view name, Double const& argumentNode1, Double const& argumentNode2,
               Double const& argumentNode3) const;
    Node build(std::string_view name, Vec3 const& argumentNode1, Vec3 const& argumentNode2,
               Vec3 const& argumentNode3) const;
    Node build(std::string_view name, Vec3 const& argumentNode1, Vec3 const& argumentNode2,
               Double const& argumentNode3) const;
    Node build(std::string_view name, Bool const& argumentNode1, Double const& argumentNode2,
               Double const& argumentNode3) const;
    // The conditional over vectors. The listener never reaches it: if() with
    // vector branches is refused as an unsupported type, a limit of the language.
    Node build(std::string_view name, Bool const& argumentNode1, Vec3 const& argumentNode2,
               Vec3 const& argumentNode3) const;
    Node build(std::string_view name, Vec2 const& argumentNode1, Vec2 const& argumentNode2,
               Vec2 const& argumentNode3, Vec2 const& argumentNode4) const;
};

} // namespace Qv
