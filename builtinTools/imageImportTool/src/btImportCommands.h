#pragma once
// `qv import` (footage as a node of a composition) and `qv footage` (footage
// as entries of a project). qv finds the entry points by their C names in
// the loaded library and owns the composition file of `qv import`.
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace Qv {

class PiGraph;

struct BtImportCommandOptions {
    std::optional<std::string> rate;       // "N/D"
    std::optional<std::string> pixelRatio; // "N:D"
    std::optional<std::string> depth;      // "ECR", "HDR"
    std::string name;
};

struct BtFootageCommandOptions {
    std::string project;
    std::vector<std::string> paths;
    std::string folder; // relative to the project; empty: the default folder
    BtImportCommandOptions import;
};

} // namespace Qv

// An "Image Import" node over PATH in the graph; prints its name. Throws
// ExBase naming the path on a refusal.
extern "C" int btImportCommand(Qv::PiGraph& graph, std::string const& path,
                               Qv::BtImportCommandOptions const& options, std::ostream& out);
// Each path imported; "<display path>: <description>" a line for each entry
// made. Status 1 when any path was refused (each reported as a warning).
extern "C" int btFootageCommand(Qv::BtFootageCommandOptions const& options, std::ostream& out);
