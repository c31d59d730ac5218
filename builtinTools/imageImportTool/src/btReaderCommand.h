#pragma once
// `qv reader`: what an image reader node of a composition holds, and its
// edits from the shell. qv loads and saves the composition; it finds
// btReaderCommand by its C name in the loaded library.
#include <iosfwd>
#include <optional>
#include <string>
#include <utility>

namespace Qv {

class PiGraph;

struct BtReaderCommandOptions {
    std::string node;
    std::optional<std::string> path;
    bool reload = false;
    bool guessBackground = false;
    std::optional<long long> frame;
    bool dependencies = false;
    std::optional<std::pair<std::string, std::string>> relocate;
    std::optional<std::string> rate;       // "N/D"
    std::optional<std::string> pixelRatio; // "N:D"
    std::optional<std::string> depth;      // "UINT8", "FLOAT16", "FLOAT32"
    std::optional<std::string> formatOptions;
    std::optional<std::string> unpremultiply; // "on", "off"
    std::optional<std::string> background;    // "R,G,B"
    std::optional<std::string> vectors;       // "none", "absolute", "normalized:MAX"

    // Whether the command changes the node (and the file is saved).
    bool isEdit() const {
        return path || reload || guessBackground || relocate || rate || pixelRatio || depth ||
               formatOptions || unpremultiply || background || vectors;
    }
};

} // namespace Qv

// Edits (in order: path, reload, settings, relocation, guess) then prints
// what was asked: the node's name after a path, the guess, the files, or
// every attribute "key: value". Throws ExBase "NODE: <reason>" on a refusal.
extern "C" int btReaderCommand(Qv::PiGraph& graph, Qv::BtReaderCommandOptions const& options,
                               std::ostream& out);
