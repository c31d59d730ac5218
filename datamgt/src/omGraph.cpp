#include "omGraph.h"

#include "assertions.h"
#include "omComposition.h"
#include "omCompositionFile.h"
#include "omEx.h"
#include "osFile.h"
#include "osFileEx.h"

namespace Qv {

// Counts the steps of the graph's command stack as they are processed.
class OmGraph::State : public RCBase<>, public CbHandler<PiGraphEvent const> {
public:
    State(OmVersion version, RCShdPtr<PiGraph> graph) : version(std::move(version)), graph(std::move(graph)) {
        this->graph->addCallback(this);
    }
    ~State() override { graph->removeCallback(this); }

    void call(PiGraphEvent const& event) override {
        if (dynamic_cast<PiGraphEvent::CommandProcessed const*>(&event))
            ++generation;
    }

    OmVersion version;
    RCShdPtr<PiGraph> graph;
    int generation = 0;
};

OmGraph::OmGraph() = default;
OmGraph::~OmGraph() = default;
OmGraph::OmGraph(OmGraph const&) = default;
OmGraph& OmGraph::operator=(OmGraph const&) = default;
OmGraph::OmGraph(RCShdPtr<State> state) : _state(std::move(state)) {}

OmGraph OmGraph::open(OmVersion const& version) {
    QV_ASSERT(!version.isNull());
    QV_ASSERT(version.getComposition()->isInFolder());
    OsFilePath const path = version.getPath();
    RCShdPtr<PiGraph> graph =
        OsFile(path).exists() ? OmCompositionFile::load(path) : RCShdPtr<PiGraph>(new PiGraph);
    return OmGraph(RCShdPtr<State>(new State(version, std::move(graph))));
}

RCShdPtr<PiGraph> const& OmGraph::getInterface() const {
    return _state->graph;
}

OmVersion const& OmGraph::getVersion() const {
    return _state->version;
}

int OmGraph::getGenerationNumber() const {
    return isNull() ? 0 : _state->generation;
}

void OmGraph::sync() {
    QV_ASSERT(!isNull());
    _state->version.getComposition()->sync();
    try {
        OmCompositionFile::save(*_state->graph, getPath());
    } catch (OsFileEx::ExFileError const& error) {
        throw OmEx::ExWriteFailed(__FILE__, __LINE__, error.getReason());
    }
    ++_state->generation;
}

OsFilePath OmGraph::getPath() const {
    return isNull() ? OsFilePath() : _state->version.getPath();
}

std::string OmGraph::getName() const {
    return isNull() ? std::string() : _state->version.getName();
}

} // namespace Qv
