#pragma once
// Everything a node is made from: its identity, its controller, its sockets
// and its stored values with their contents. Built from a tool's signature
// for a new node, or from a composition for a loaded one (which may name a
// tool that is not installed and still keeps every socket and value).
#include "exBase.h"
#include "piNodeController.h"
#include "piTool.h"
#include "piValueInterface.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace Qv {

class PiNodeController;

struct PiNodeSpec {
    struct Curve {
        PiVariant constant;
        std::vector<PiKeyframe> keyframes;
    };
    struct Input {
        std::string name;
        PiSocketType type;
        Cardinality cardinality = SINGLE;
        bool dynamic = false;
        // The value as stored; the policy's default when absent.
        std::optional<Curve> curve;
        // For a structured input (a colour), the value of each channel in
        // its order (red, green, blue) instead.
        std::array<std::optional<Curve>, 3> channels{};
    };
    struct Output {
        std::string name;
        PiSocketType type;
        bool dynamic = false;
    };
    struct Value {
        std::string name;
        PiValueType type;
        PiVariant data;
    };

    std::string name;
    std::string toolName;
    int schemaNb = 0;
    // Null for a node whose tool is not installed.
    RCShdPtr<PiTool const> tool;
    // Made from the tool when null.
    OPtrRet<PiNodeController> controller;
    // The node holds an inner graph.
    bool group = false;
    std::vector<Input> inputs;
    std::vector<Output> outputs;
    std::vector<Value> values;

    // A new node of the tool: the declared sockets, values at zero.
    static PiNodeSpec fromTool(RCShdPtr<PiTool const> const& tool);
};

} // namespace Qv
