#pragma once
// The descriptor of tools that attach a policy to each input: it collects
// the policies and the primary input, and passes the declarations on to the
// host's descriptor. The host's descriptor may be null: that is how the
// policies of a tool are collected without building anything.
#include "piInputPolicy.h"
#include "piToolDescriptor.h"

#include <string>
#include <vector>

namespace Qv {

class PiToolPolicyDescriptor {
public:
    class PolicyEntry {
    public:
        PolicyEntry(std::string name, RCShdPtr<PiInputPolicy const> policy)
            : _name(std::move(name)), _policy(std::move(policy)) {}
        std::string const& getName() const { return _name; }
        RCShdPtr<PiInputPolicy const> const& getPtr() const { return _policy; }

    private:
        std::string _name;
        RCShdPtr<PiInputPolicy const> _policy;
    };

    // Borrows `descriptor`, which may be null.
    explicit PiToolPolicyDescriptor(PiToolDescriptor* descriptor) : _descriptor(descriptor) {}
    virtual ~PiToolPolicyDescriptor() = default;

    // A null policy leaves the input to its type's default policy.
    void requires_(std::string const& name, PiSocketType type, RCShdPtr<PiInputPolicy const> policy,
                   Cardinality cardinality);
    void produces(std::string const& name, PiSocketType type);
    void stores(std::string const& name, PiValueType type);
    void setPrimaryInput(std::string name) { _primaryInput = std::move(name); }
    std::string const& getPrimaryInput() const { return _primaryInput; }
    std::vector<PolicyEntry> const& getPolicies() const { return _policies; }
    PiToolDescriptor* getDescriptor() const { return _descriptor; }

private:
    PiToolDescriptor* _descriptor;
    std::string _primaryInput;
    std::vector<PolicyEntry> _policies;
};

} // namespace Qv
