#pragma once
// The controllers of a group's boundary nodes. An input boundary node gives
// the inner graph what feeds the group's input of its name; an output
// boundary node only marks where the inner graph feeds the group's output.
#include "piNodeController.h"
#include "piToolTopologyInterface.h"

namespace Qv {

class PiInputBoundaryController : public PiToolTopologyInterface, public virtual PiNodeController {
public:
    void createProcNodes(OutputPublisher& publisher) override;
};

class PiOutputBoundaryController : public PiToolTopologyInterface, public virtual PiNodeController {
public:
    void createProcNodes(OutputPublisher&) override {}
};

} // namespace Qv
