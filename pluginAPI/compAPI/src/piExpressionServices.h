#pragma once
// How the host attaches expressions to parameters without knowing the
// expression tools: the package that registers them installs one
// implementation at its start. Application thread only.
#include "piSocketType.h"
#include "rcShdPtr.h"

#include <memory>

namespace Qv {

class PiExpressionInterface;
class PiInput;
class PiNode;
class PiOutput;
class PiTool;

class PiExpressionServices {
public:
    virtual ~PiExpressionServices();

    // The expression tool of a value type (boolean, double, integer); null for another type.
    virtual RCShdPtr<PiTool const> createTool(PiSocketType type) const = 0;
    virtual bool isExpressionTool(PiTool const& tool) const = 0;
    virtual bool isExpressionToolOfType(PiTool const& tool, PiSocketType type) const = 0;
    // False for a node without tool.
    virtual bool isExpressionTool(PiNode const& node) const = 0;
    virtual bool isExpressionToolOfType(PiNode const& node, PiSocketType type) const = 0;
    // The expression driving the input, made (a node of the input's graph,
    // its result connected to the input) when there is none. Asserts
    // "supportsExpressions( in )".
    virtual PiExpressionInterface& getOrCreateExpression(RCShdPtr<PiInput> const& in) = 0;
    // The expression whose result `output` is; null when it is not one.
    virtual PiExpressionInterface* getExpression(RCShdPtr<PiOutput const> const& output) const = 0;

    // The expression driving an input; null when none drives it.
    PiExpressionInterface* findExpression(RCShdPtr<PiInput> const& input) const;
    // Takes the expression off the input, as one undo step: its node goes,
    // and the input is back at its own value. False when none drove it.
    bool removeExpression(RCShdPtr<PiInput> const& input) const;

    // An input an expression can drive: a single input of a tool node, of a
    // type the language reads (boolean, double, integer).
    static bool supportsExpressions(RCShdPtr<PiInput> const& input);

    // Installs the implementation; null uninstalls it.
    static void initialize(std::unique_ptr<PiExpressionServices> services);
    // Null when no package installed one.
    static PiExpressionServices* getInstance();
};

} // namespace Qv
