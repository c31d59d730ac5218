#include "qvComposition.h"

#include "omCompositionFile.h"
#include "piEx.h"
#include "piSocketUtil.h"
#include "piUndoGuard.h"

#include <fmt/format.h>

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

void checkProxyScale(int proxyScale) {
    constexpr int MAX_PROXY_SCALE = 16;
    if (proxyScale < 0 || proxyScale > MAX_PROXY_SCALE)
        throw PiEx::ExBadValue(
            __FILE__, __LINE__,
            fmt::format("proxy scale {} is not one of 0 to {}", proxyScale, MAX_PROXY_SCALE));
}

RCShdPtr<PiOutput> findImageOutput(PiGraph const& graph, std::string const& name) {
    RCShdPtr<PiOutput> output = PiSocketUtil::findOutput(graph, name);
    if (output->getType() != PiSocketType::IMAGE)
        throw PiEx::ExUnknownSocket(__FILE__, __LINE__,
                                    "output " + name + " gives values, not images: use qv eval");
    if (output->getProcNode().isNull())
        throw PiEx::ExUnknownSocket(__FILE__, __LINE__,
                                    "output " + name + " gives nothing: nothing feeds it");
    return output;
}

} // namespace Qv::QvComposition
