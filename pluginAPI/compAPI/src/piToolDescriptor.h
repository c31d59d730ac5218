#pragma once
// What a tool declares of itself: the inputs it requires, the outputs it
// produces and the values it stores. A tool's describe() calls these; the
// host records them (PiToolSignature) to build each node of the tool.
#include "piSocketType.h"
#include "piValueType.h"

#include <string>

namespace Qv {

class PiToolDescriptor {
public:
    virtual ~PiToolDescriptor() = default;

    // `requires` is a keyword of the language; the underscore keeps the word.
    virtual void requires_(std::string const& name, PiSocketType type, Cardinality cardinality) = 0;
    virtual void produces(std::string const& name, PiSocketType type) = 0;
    virtual void stores(std::string const& name, PiValueType type) = 0;
};

} // namespace Qv
