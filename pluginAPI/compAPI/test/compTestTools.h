#pragma once
// Small tools registered by the composition graph tests: real protocols,
// controllers and processing nodes, as a tool package would write them.
#include "inInitMgr.h"
#include "piAppThread.h"
#include "piColorProcNode.h"
#include "piGraph.h"
#include "piGroupInterface.h"
#include "piGroupTopologyInterface.h"
#include "piOstrandToolProtocol.h"
#include "piRangeInputPolicy.h"
#include "piToolInterface.h"
#include "piToolPolicyProtocol.h"
#include "piToolProtocolImp.h"
#include "piToolRegistry.h"
#include "piToolTopologyInterface.h"
#include "piTypedAnimSocket.h"
#include "pxAnimValueProtocol.h"

#include <atomic>
#include <functional>
#include <future>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>

namespace Qv::CompTest {

// The packages run on the test's thread, which is then the application thread.
class GraphTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { InInitMgr::getInstance().initializeAll(); }
};

// A tool made of functions: how each test states the behaviour it needs.
struct ToolSpec {
    std::string name;
    std::string category = PiToolProtocol::getUtilityCategory();
    ToolVisibility visibility = TOOL_LISTED;
    ToolStructure structure = PLAIN_TOOL;
    std::function<void(PiToolDescriptor&)> describe;
    std::function<OPtrRet<PiNodeController>()> createController;
};

class FunctionTool : public PiOstrandToolProtocol {
public:
    explicit FunctionTool(ToolSpec spec)
        : PiOstrandToolProtocol(spec.name, spec.category, 1, spec.name + " for tests", spec.visibility,
                                spec.structure),
          _spec(std::move(spec)) {}
    void describe(PiToolDescriptor& descriptor) override { _spec.describe(descriptor); }
    OPtrRet<PiNodeController> createController() const override { return _spec.createController(); }

private:
    ToolSpec _spec;
};

// Registers a tool for the scope of a test.
class ScopedTool {
public:
    explicit ScopedTool(OPtr<PiToolProtocol> protocol) : _name(protocol->getToolName()) {
        PiToolRegistry::getInstance().registerTool(std::move(protocol));
    }
    explicit ScopedTool(ToolSpec spec) : ScopedTool(std::make_unique<FunctionTool>(std::move(spec))) {}
    ~ScopedTool() { PiToolRegistry::getInstance().unregisterTool(_name); }
    std::string const& getName() const { return _name; }

private:
    std::string _name;
};

// Output = Value * Gain, with the interval both hold for. Calls `gate`, when
// set, before reading: a test holds the evaluation there.
class ScaleNode : public PxAnimValueProtocol<double> {
public:
    ScaleNode(PxNode::Init const& init, PxStrongHndl<PxNode const> const& value,
              PxStrongHndl<PxNode const> const& gain, std::function<void()> gate)
        : PxNode(init), PxAnimValueProtocol<double>(init), _value(value), _gain(gain),
          _gate(std::move(gate)) {
        ++liveNodes;
    }
    ~ScaleNode() override {
        unregisterChild(_value);
        unregisterChild(_gain);
        --liveNodes;
    }
    void init() override {
        PxNode::init();
        registerChild(_value);
        registerChild(_gain);
    }
    void getAnimValue(PxResult<double>& result, PxTimeContext const& context) const override {
        if (_gate)
            _gate();
        PxResult<double> value, gain;
        PxUPtr<PxAnimValueProtocol<double> const>(_value)->getAnimValue(value, context);
        PxUPtr<PxAnimValueProtocol<double> const>(_gain)->getAnimValue(gain, context);
        result.set(value.getValue() * gain.getValue(), value.getVI().getIntersection(gain.getVI()));
    }

    static inline std::atomic<int> liveNodes{0};

private:
    PxNodePtr<PxAnimValueProtocol<double> const> _value;
    PxNodePtr<PxAnimValueProtocol<double> const> _gain;
    std::function<void()> _gate;
};

class ScaleController : public PiToolTopologyInterface,
                        public PiToolInterface,
                        public virtual PiNodeController {
public:
    void createProcNodes(OutputPublisher& publisher) override {
        ++builds;
        PxNode::Init init;
        PxStrongHndl<PxNode> node(new ScaleNode(init, publisher.getInputProcNode("Value"),
                                                publisher.getInputProcNode("Gain"), gate));
        PxNode::init(node);
        publisher.publish(getNode()->getOutput("Output", true), node);
    }
    bool isRecreateProcNodesDisabled() const override { return frozen; }
    bool canAddDynamicInput(std::string const& name, PiSocketType type, Cardinality) override {
        return type == PiSocketType::DOUBLE && name.starts_with("Extra");
    }
    bool canRemoveDynamicInput(RCShdPtr<PiInput> const&) override { return true; }
    void nodeCreated() override { ++created; }
    void nodeLoaded() override { ++loaded; }

    int builds = 0;
    int created = 0;
    int loaded = 0;
    bool frozen = false;
    std::function<void()> gate;
};

// "Scale": Value (any double), Gain (0 to 10, default 1) -> Output.
inline ToolSpec scaleTool(std::string name = "Scale") {
    ToolSpec spec;
    spec.name = std::move(name);
    spec.describe = [](PiToolDescriptor& d) {
        d.requires_("Value", PiSocketType::DOUBLE, SINGLE);
        d.requires_("Gain", PiSocketType::DOUBLE, SINGLE);
        d.produces("Output", PiSocketType::DOUBLE);
        d.stores("Label", PiValueType::STRING);
    };
    spec.createController = [] {
        auto controller = std::make_unique<ScaleController>();
        controller->addInputPolicy("Gain", PiRangeInputPolicy<double>::create(0.0, 10.0, 1.0, true, false));
        return controller;
    };
    return spec;
}

class GroupController : public PiGroupTopologyInterface,
                        public PiGroupInterface,
                        public PiToolInterface,
                        public virtual PiNodeController {};

// A super tool: its input "In" and output "Out" are boundary nodes inside.
inline ToolSpec groupTool(std::string name = "Group") {
    ToolSpec spec;
    spec.name = std::move(name);
    spec.structure = SUPER_TOOL;
    spec.describe = [](PiToolDescriptor& d) {
        d.requires_("In", PiSocketType::DOUBLE, SINGLE);
        d.produces("Out", PiSocketType::DOUBLE);
    };
    spec.createController = [] { return std::make_unique<GroupController>(); };
    return spec;
}

// Output = Tint as the processing side sees it; When = Mark.
class PaintController : public PiToolTopologyInterface,
                        public PiToolInterface,
                        public virtual PiNodeController {
public:
    void createProcNodes(OutputPublisher& publisher) override {
        PxNode::Init init;
        PxStrongHndl<PiColorProcNode> colour(new PiColorProcNode(init, publisher, "Tint"));
        PxNode::init(colour);
        publisher.publish(getNode()->getOutput("Output", true), colour);
        publisher.publish(getNode()->getOutput("When", true), publisher.getInputProcNode("Mark"));
    }
};

// "Paint": Tint, a colour of channels from 0 to 10 (default 0.5), and Mark, a
// time; Output gives the colour, When the time.
class PaintTool final : public PiToolPolicyProtocol<PaintController>, public PiToolProtocolImp {
public:
    PaintTool()
        : PiToolProtocolImp("Paint", ".", "Tests", "Tester", "1.0", 1, "paint", TOOL_INTERNAL, PLAIN_TOOL) {}
    using PiToolPolicyProtocol<PaintController>::describe;
    void describe(PiToolPolicyDescriptor& d) const override {
        PiColorProcNode::describe("Tint", d, 0.0, 10.0, 0.5);
        d.requires_("Mark", PiSocketType::TIME, nullptr, SINGLE);
        d.produces("Output", PiSocketType::COLOR);
        d.produces("When", PiSocketType::TIME);
    }
};

inline double evaluate(RCShdPtr<PiOutput> const& output, double time = 0.0) {
    return PiTypedAnimSocket<double, PiOutput>(output).getValue(time);
}

inline ScaleController& scaleOf(RCShdPtr<PiNode> const& node) {
    return *node->getInterface<ScaleController>();
}

} // namespace Qv::CompTest
