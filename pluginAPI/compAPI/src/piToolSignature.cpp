#include "piToolSignature.h"

#include "assertions.h"

#include <algorithm>

namespace Qv {

namespace {

template <class Decl>
Decl const* findByName(std::vector<Decl> const& decls, std::string_view name) {
    auto it = std::find_if(decls.begin(), decls.end(), [&](Decl const& d) { return d.name == name; });
    return it == decls.end() ? nullptr : &*it;
}

} // namespace

void PiToolSignature::requires_(std::string const& name, PiSocketType type, Cardinality cardinality) {
    QV_ASSERT(findInput(name) == nullptr);
    _inputs.push_back({name, type, cardinality});
}

void PiToolSignature::produces(std::string const& name, PiSocketType type) {
    QV_ASSERT(findOutput(name) == nullptr);
    _outputs.push_back({name, type});
}

void PiToolSignature::stores(std::string const& name, PiValueType type) {
    QV_ASSERT(findValue(name) == nullptr);
    _values.push_back({name, type});
}

PiToolSignature::InputDecl const* PiToolSignature::findInput(std::string_view name) const {
    return findByName(_inputs, name);
}

PiToolSignature::OutputDecl const* PiToolSignature::findOutput(std::string_view name) const {
    return findByName(_outputs, name);
}

PiToolSignature::ValueDecl const* PiToolSignature::findValue(std::string_view name) const {
    return findByName(_values, name);
}

} // namespace Qv
