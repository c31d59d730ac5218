#include "piToolPolicyDescriptor.h"

namespace Qv {

void PiToolPolicyDescriptor::requires_(std::string const& name, PiSocketType type,
                                       RCShdPtr<PiInputPolicy const> policy, Cardinality cardinality) {
    if (_descriptor)
        _descriptor->requires_(name, type, cardinality);
    if (policy)
        _policies.emplace_back(name, std::move(policy));
}

void PiToolPolicyDescriptor::produces(std::string const& name, PiSocketType type) {
    if (_descriptor)
        _descriptor->produces(name, type);
}

void PiToolPolicyDescriptor::stores(std::string const& name, PiValueType type) {
    if (_descriptor)
        _descriptor->stores(name, type);
}

} // namespace Qv
