#pragma once
// The composition graph of one version file. A handle: copies share the
// graph and its generation number; a default-made one is null.
#include "omBaseInterface.h"
#include "omVersion.h"
#include "piGraph.h"

namespace Qv {

class OmGraph : public OmBaseInterface {
public:
    OmGraph();
    ~OmGraph() override;
    OmGraph(OmGraph const&);
    OmGraph& operator=(OmGraph const&);

    // Reads the version's file through OmCompositionFile, or gives an empty
    // graph when the file is not there yet. Asserts "!version.isNull()" and
    // that its composition is in a folder. Throws OmEx::ExBadComposition.
    static OmGraph open(OmVersion const& version);

    RCShdPtr<PiGraph> const& getInterface() const;
    OmVersion const& getVersion() const;
    // Grows with every change of the graph: the steps of its command stack
    // done, undone and redone since it was opened, plus its saves. Changes
    // made while logging is off count when they are saved. 0 when opened.
    int getGenerationNumber() const;

    bool isNull() const override { return _state.isNull(); }
    // Syncs the composition (so its side file lists the version), then saves
    // the graph atomically. Throws OmEx::ExWriteFailed naming the file.
    void sync() override;
    OsFilePath getPath() const override;
    // The version's name.
    std::string getName() const override;

private:
    class State;
    explicit OmGraph(RCShdPtr<State> state);

    RCShdPtr<State> _state;
};

} // namespace Qv
