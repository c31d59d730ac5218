#pragma once
// A node that depends on files outside the composition (footage): it lists
// them, so that a project can be gathered or checked, and follows them when
// they move.
#include <string>
#include <utility>
#include <vector>

namespace Qv {

class PiExternalDependencyInterface {
public:
    // Kinds of dependency a caller asks for, a set of bits.
    enum Flags { FILES = 1, ALL = FILES };
    using Relocation = std::pair<std::string, std::string>; // (old path, new path)

    virtual ~PiExternalDependencyInterface() = default;
    // Absolute file names, in the node's own order.
    virtual std::vector<std::string> getExternalDependencies(int flags) const = 0;
    // Follows files moved from each old path to its new one; true when
    // something changed.
    virtual bool relocateExternalDependencies(std::vector<Relocation> const& relocations) = 0;
};

} // namespace Qv
