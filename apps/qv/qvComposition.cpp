#include "qvComposition.h"

#include "omCompositionFile.h"
#include "piUndoGuard.h"

namespace Qv::QvComposition {

RCShdPtr<PiGraph> load(std::string const& path) {
    return OmCompositionFile::load(OsFilePath(path));
}

void edit(std::string const& path, std::string const& label, std::function<void(PiGraph&)> const& change) {
    RCShdPtr<PiGraph> graph = load(path);
    {
        PiUndoGuard step(graph->getCommandStack(), label);
        change(*graph);
    }
    OmCompositionFile::save(*graph, OsFilePath(path));
}

} // namespace Qv::QvComposition
