#pragma once
// How the composition subcommands reach a file: read it, change it in one
// undo step, and write it back atomically only when every change succeeded,
// so that a refused edit leaves the file as it was.
#include "piGraph.h"

#include <functional>
#include <string>

namespace Qv::QvComposition {

// Throws OmEx::ExBadComposition naming the file and the line.
RCShdPtr<PiGraph> load(std::string const& path);
void edit(std::string const& path, std::string const& label, std::function<void(PiGraph&)> const& change);
// Throws PiEx::ExBadValue unless 0 <= proxyScale <= 16: beyond 16 an image
// is less than a pixel wide at any size a format stores.
void checkProxyScale(int proxyScale);
// The image output NODE.OUTPUT of the graph, with something feeding it;
// throws PiEx::ExUnknownSocket saying what it is instead.
RCShdPtr<PiOutput> findImageOutput(PiGraph const& graph, std::string const& name);

} // namespace Qv::QvComposition
