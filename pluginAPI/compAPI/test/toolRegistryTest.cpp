// Tools as the host sees them: registration, lists, descriptors, and the
// policy protocol that describes a tool once.
#include "compTestTools.h"
#include "piEnumPolicy.h"
#include "piEx.h"
#include "piToolPolicyProtocol.h"
#include "piToolProtocolImp.h"
#include "piToolSignature.h"

using namespace Qv;
using namespace Qv::CompTest;

namespace {

class CountedController : public PiToolTopologyInterface,
                          public PiToolInterface,
                          public virtual PiNodeController {
public:
    void createProcNodes(OutputPublisher&) override {}
};

// A tool written the policy way: each describe makes new policy objects, so
// that sharing them shows that they were copied once.
class PolicyTool : public PiToolPolicyProtocol<CountedController>, public PiToolProtocolImp {
public:
    PolicyTool()
        : PiToolProtocolImp("Policy Tool", ".", "Tests", "Tester", "1.0", 3, "policies", TOOL_INTERNAL,
                            PLAIN_TOOL) {}
    using PiToolPolicyProtocol<CountedController>::describe;
    void describe(PiToolPolicyDescriptor& d) const override {
        ++describes;
        d.requires_("Amount", PiSocketType::DOUBLE,
                    PiRangeInputPolicy<double>::create(0.0, 2.0, 1.0, true, false), SINGLE);
        d.requires_("Mode", PiSocketType::INTEGER,
                    PiEnumPolicy::Builder().addPair(0, "Low").addPair(1, "High").create(), SINGLE);
        d.requires_("Free", PiSocketType::DOUBLE, nullptr, SINGLE);
        d.produces("Result", PiSocketType::DOUBLE);
        d.setPrimaryInput("Amount");
    }
    mutable int describes = 0;
};

RCShdPtr<PiInputPolicy const> policyOf(RCShdPtr<PiNode> const& node, std::string const& input) {
    return node->getInput(input, true)->getPolicy();
}

} // namespace

TEST_F(GraphTest, RegisteredToolsAreFoundByFullNameAndListedByCategory) {
    ScopedTool listed(scaleTool("Listed Scale"));
    ToolSpec hidden = scaleTool("Hidden Scale");
    hidden.category = PiToolProtocol::getUnlistedCategory();
    hidden.visibility = TOOL_INTERNAL;
    ScopedTool internal(hidden);
    PiToolRegistry& registry = PiToolRegistry::getInstance();

    EXPECT_EQ(listed.getName(), "Ostrand/Listed Scale");
    EXPECT_EQ(registry.getTool(PiOstrandToolProtocol::getOstrandToolName("Listed Scale"))->getName(),
              listed.getName());
    EXPECT_TRUE(registry.getTool("Listed Scale").isNull()) << "the registry's key is the full name";
    EXPECT_EQ(registry.findTool("Listed Scale")->getName(), listed.getName());

    auto names = [](std::vector<RCShdPtr<PiTool const>> const& tools) {
        std::vector<std::string> result;
        for (auto const& tool : tools)
            result.push_back(tool->getName());
        return result;
    };
    EXPECT_THAT(names(registry.getListedTools(PiToolProtocol::getUtilityCategory())),
                ::testing::Contains(listed.getName()));
    for (std::string const& category : registry.getCategories())
        EXPECT_THAT(names(registry.getListedTools(category)),
                    ::testing::Not(::testing::Contains(internal.getName())))
            << category;
    EXPECT_THAT(registry.getCategories(), ::testing::Not(::testing::Contains(".")));

    // Listed nowhere, yet made by name.
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> node = graph->createNode(internal.getName(), "H");
    EXPECT_EQ(node->getToolName(), internal.getName());
    EXPECT_EQ(node->getInputs().size(), 2u);
}

TEST_F(GraphTest, ARegisteredAgainToolReplacesTheEarlierOneWhileNodesKeepTheirs) {
    RCShdPtr<PiGraph> graph(new PiGraph);
    auto first = std::make_unique<ScopedTool>(scaleTool("Twice"));
    RCShdPtr<PiNode> node = graph->createNode(first->getName(), "A");
    RCShdPtr<PiTool const> old = node->getTool();
    ScopedTool second(scaleTool("Twice"));
    EXPECT_NE(PiToolRegistry::getInstance().getTool(second.getName()).get(), old.get());
    EXPECT_EQ(node->getTool().get(), old.get());
    EXPECT_EQ(evaluate(node->getOutput("Output")), 0.0);
}

TEST_F(GraphTest, PolicyToolsDescribeBeforeAnswerAndCopyThePoliciesOnce) {
    auto owned = std::make_unique<PolicyTool>();
    PolicyTool& tool = *owned;
    EXPECT_EQ(tool.getPrimaryInput(), "Amount") << "asking for the primary input describes the tool";
    EXPECT_EQ(tool.describes, 1);

    ScopedTool registered(std::move(owned));
    RCShdPtr<PiGraph> graph(new PiGraph);
    RCShdPtr<PiNode> a = graph->createNode(registered.getName(), "A"); // the host describes again
    RCShdPtr<PiNode> b = graph->createNode(registered.getName(), "B");
    EXPECT_GE(tool.describes, 2);
    for (std::string input : {"Amount", "Mode"}) {
        EXPECT_EQ(policyOf(a, input).get(), policyOf(b, input).get())
            << input << " policies were copied again";
        EXPECT_TRUE(a->getInterface<PiToolInterface>()->hasExplicitInputPolicy(a->getInput(input)));
    }
    EXPECT_FALSE(a->getInterface<PiToolInterface>()->hasExplicitInputPolicy(a->getInput("Free")));
    EXPECT_EQ(a->getInput("Amount")->getValueAt(0), PiVariant(1.0)) << "a new input starts at the default";
    EXPECT_EQ(a->getInterface<PiToolInterface>()->getPrimaryInput()->getName(), "Amount");
    EXPECT_EQ(a->getTool()->getSignature().getInputs().size(), 3u);
}

TEST_F(GraphTest, APolicyDescriptorOverNothingAcceptsEveryDeclaration) {
    PiToolPolicyDescriptor descriptor(nullptr);
    descriptor.requires_("A", PiSocketType::DOUBLE, PiRangeInputPolicy<double>::create(0, 1, 0, true, false),
                         SINGLE);
    descriptor.requires_("B", PiSocketType::IMAGE, nullptr, MULTIPLE);
    descriptor.produces("Out", PiSocketType::IMAGE);
    descriptor.stores("Notes", PiValueType::STRING);
    descriptor.setPrimaryInput("B");
    ASSERT_EQ(descriptor.getPolicies().size(), 1u);
    EXPECT_EQ(descriptor.getPolicies().front().getName(), "A");
    EXPECT_EQ(descriptor.getPrimaryInput(), "B");

    PiToolSignature signature;
    PiToolPolicyDescriptor forwarding(&signature);
    forwarding.requires_("A", PiSocketType::DOUBLE, nullptr, SINGLE);
    forwarding.produces("Out", PiSocketType::DOUBLE);
    forwarding.stores("Notes", PiValueType::STRING);
    EXPECT_EQ(signature.getInputs().size(), 1u);
    EXPECT_EQ(signature.getOutputs().size(), 1u);
    EXPECT_EQ(signature.getValues().size(), 1u);
}

TEST_F(GraphTest, AnUnknownToolIsRefusedByName) {
    RCShdPtr<PiGraph> graph(new PiGraph);
    try {
        graph->createNode("No Such Tool");
        FAIL() << "created a node of an unknown tool";
    } catch (PiEx::ExUnknownTool const& error) {
        EXPECT_NE(error.getReason().find("No Such Tool"), std::string::npos);
    }
    EXPECT_TRUE(graph->getNodes().empty());
}
