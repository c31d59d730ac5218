#pragma once
// The record of a tool's declarations, in the order they were made: what the
// host builds a node's sockets and stored values from.
#include "piToolDescriptor.h"

#include <vector>

namespace Qv {

class PiToolSignature : public PiToolDescriptor {
public:
    struct InputDecl {
        std::string name;
        PiSocketType type;
        Cardinality cardinality;
    };
    struct OutputDecl {
        std::string name;
        PiSocketType type;
    };
    struct ValueDecl {
        std::string name;
        PiValueType type;
    };

    // A name declared twice in one kind is an assertion.
    void requires_(std::string const& name, PiSocketType type, Cardinality cardinality) override;
    void produces(std::string const& name, PiSocketType type) override;
    void stores(std::string const& name, PiValueType type) override;

    std::vector<InputDecl> const& getInputs() const { return _inputs; }
    std::vector<OutputDecl> const& getOutputs() const { return _outputs; }
    std::vector<ValueDecl> const& getValues() const { return _values; }
    InputDecl const* findInput(std::string_view name) const;
    OutputDecl const* findOutput(std::string_view name) const;
    ValueDecl const* findValue(std::string_view name) const;

private:
    std::vector<InputDecl> _inputs;
    std::vector<OutputDecl> _outputs;
    std::vector<ValueDecl> _values;
};

} // namespace Qv
