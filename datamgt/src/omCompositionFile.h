#pragma once
// Compositions on disk, as XML (the format is described in
// docs/composition-format.md). Saving writes a new file beside the old one
// and renames it over, so that a failure leaves the old file whole. Saving
// what was loaded gives the same bytes back.
#include "osFilePath.h"
#include "piGraph.h"
#include "xmlElement.h"

#include <string>

namespace Qv {

class OmCompositionFile {
public:
    static constexpr int FORMAT_VERSION = 1;

    // Reads a composition: nodes made through their tools (or, for a tool
    // that is missing or cannot read its stored form, through the factories
    // of OmGraphUtil, keeping every socket and value), connections made, then
    // nodeLoaded() for every node and the processing nodes built. Nothing is
    // logged on the new graph's command stack. Throws OmEx::ExBadComposition
    // naming the file and the line.
    static RCShdPtr<PiGraph> load(OsFilePath const& path);
    static RCShdPtr<PiGraph> fromXml(XmlElement const& root, std::string const& sourceName);

    // Throws OsFileEx::ExInvalidPath, ExIOError; the old file stays as it was.
    static void save(PiGraph& graph, OsFilePath const& path);
    static XmlElement toXml(PiGraph& graph);
};

} // namespace Qv
