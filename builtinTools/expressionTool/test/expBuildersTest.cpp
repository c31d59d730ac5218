// From text to nodes: which node each function and operator builds, the case
// of function names, constant folding of vectors, the function registry, and
// every way a text is refused by the builders, with its message and columns.
#include "btAngleNodes.h"
#include "btArithmeticNodes.h"
#include "btConditionalNode.h"
#include "btCurrentTimeNode.h"
#include "btEvalNode.h"
#include "btExpFunctionRegistry.h"
#include "btExpParser.h"
#include "btExpPxGraphBase.h"
#include "btMinMaxNodes.h"
#include "btVectorNodes.h"
#include "expTestSupport.h"
#include "pxValueNodes.h"

#include <locale>
#include <sstream>
#include <typeinfo>

using namespace Qv;
using Qv::ExpTest::evaluate;

namespace {

using V3 = GeVector3<double>;

// References become animated values, which are not constants, so that
// vectors of them do not fold.
class TestGraph : public BtExpPxGraphBase {
public:
    bool onAttribute(LiString const&, int, int) override {
        PxNode::Init init;
        PxStrongHndl<PxAnimValueNode<double>> node(
            new PxAnimValueNode<double>(init, PxResult<double>(1.0, PxValidityInterval::FULL)));
        PxNode::init(node);
        push(node);
        return true;
    }
    using BtExpPxGraphBase::pop;
};

class ExpressionBuilders : public ExpTest::PackagesTest {
protected:
    static std::type_info const& build(std::string const& text) {
        RCShdPtr<TestGraph> graph(new TestGraph);
        std::istringstream input(text);
        btExpParse(*graph, input);
        return typeid(*graph->getResult().get());
    }
};

// A locale that writes decimal commas, as many users' do.
struct CommaPoint : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
};

} // namespace

TEST_F(ExpressionBuilders, NamesAndOperatorsPickTheirNodesWhateverTheCase) {
    struct Case {
        char const* text;
        std::type_info const& node;
    } const cases[] = {
        {"sin(1)", typeid(BtSineNode)},
        {"SIN(1)", typeid(BtSineNode)},
        {"Min(1,2,3)", typeid(BtMin3Node)},
        {"min(1,2)", typeid(BtMinNode)},
        {"T", typeid(BtCurrentTimeNode)},
        {"eval(1,2)", typeid(BtEvalNode<double>)},
        {"eval((1,2,3),2)", typeid(BtEvalNode<V3>)},
        {"if(1==1,2,3)", typeid(BtConditionalNode<double>)},
        {"degrees(1)", typeid(BtRadToDegNode)},
        {"1-2", typeid(BtBinarySubtractNode<double>)},
        {"(1,2,3)-(1,2,3)", typeid(BtBinarySubtractNode<V3>)},
        {"-a", typeid(BtUnarySubtractNode<double>)},
        {"2^3", typeid(BtPowNode)},
        {"pow(2,3)", typeid(BtPowNode)},
        {"5%3", typeid(BtIntegerModNode)},
        // Constant components fold into one constant; others make a vector node.
        {"(1,2,3)", typeid(PxConstantAnimValueNode<V3>)},
        {"(1,2)", typeid(PxConstantAnimValueNode<GeVector2<double>>)},
        {"(a,2,3)", typeid(BtVector3Node)},
        {"(1,a)", typeid(BtVector2Node)},
        {"((1))", typeid(PxConstantAnimValueNode<double>)},
    };
    for (Case const& c : cases)
        EXPECT_EQ(build(c.text), c.node) << c.text;
}

TEST_F(ExpressionBuilders, RefusalsNameWhatAndWhere) {
    struct Case {
        char const* text;
        int first, last;
        char const* reason;
    } const cases[] = {
        {"sin((1,2,3))", 1, 13, "Unknown function \"sin\" with 1 argument(s)"},
        {"min(1)", 1, 7, "Unknown function \"min\" with 1 argument(s)"},
        {"FOO()", 1, 6, "Unknown function \"foo\" with 0 argument(s)"},
        {"if(1,2,3)", 1, 10, "Unknown function \"if\" with 3 argument(s)"},
        {"eval(1,(1,2,3))", 1, 16, "Syntax error: \"eval\" does not accept arguments of these types"},
        {"if(1<2,(1,2,3),(4,5,6))", 1, 24, "Syntax error: \"if\" does not accept arguments of these types"},
        {"relscale(1,2,3,4)", 1, 18, "Syntax error: \"relscale\" does not accept arguments of these types"},
        {"(1,2,3)*2", 8, 9,
         "Syntax error: the binary operator \"*\" does not accept operands of these types"},
        {"(1,2,3)+1", 8, 9,
         "Syntax error: the binary operator \"+\" does not accept operands of these types"},
        {"(1,2)+(3,4)", 6, 7,
         "Syntax error: the binary operator \"+\" does not accept operands of these types"},
        {"-(1,2)", 1, 2, "Syntax error: the unary operator \"-\" does not accept operands of these types"},
        {"(1,2,3)*(4,5,6)", 8, 9, "Unknown function or operator \"*\""},
        {"(1,2,3)<(4,5,6)", 8, 9, "Unknown function or operator \"<\""},
        {"(1,2)<(4,5)", 6, 7, "Syntax error: \"<\" does not accept arguments of these types"},
        {"2*Blur.Radius", 3, 14, "Unknown attribute: Blur.Radius"},
        {"t()", 2, 3, "Syntax error: the expression is incomplete or malformed"},
    };
    for (Case const& c : cases) {
        BtExpEvalReport const report = evaluate(c.text);
        EXPECT_FALSE(report.accepted) << c.text;
        EXPECT_EQ(report.reason, c.reason) << c.text;
        EXPECT_EQ(report.firstColumn, c.first) << c.text;
        EXPECT_EQ(report.lastColumn, c.last) << c.text;
    }
}

TEST_F(ExpressionBuilders, ConstantsReadTheSameInEveryLocale) {
    std::locale const previous = std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
    BtExpEvalReport const report = evaluate("1.5+1");
    std::locale::global(previous);
    ASSERT_TRUE(report.accepted) << report.reason;
    EXPECT_EQ(report.values[0], 2.5);
}

TEST_F(ExpressionBuilders, AnOperatorOnAnEmptyStackIsAProgrammingError) {
    RCShdPtr<TestGraph> graph(new TestGraph);
    try {
        graph->onBinaryOperator("+", 1, 2);
        FAIL() << "no assertion";
    } catch (AssertionsEx::ExAssertionFailed const& error) {
        EXPECT_EQ(error.getReason(), "!_nodesStack.empty()");
    }
}

TEST_F(ExpressionBuilders, TheRegistryListsTheFunctionsForPresentation) {
    // The package's own registry may be gone in this program (a test stops the packages);
    // a fresh one holds the same list.
    BtExpFunctionRegistry registry;
    registry.registerLanguageFunctions();
    std::vector<LiString> const& names = registry.getAllFunctionNames();
    ASSERT_EQ(names.size(), 44u);
    if (BtExpFunctionRegistry::isInitialized()) {
        EXPECT_EQ(BtExpFunctionRegistry::getInstance().getAllFunctionNames(), names)
            << "the package's registry";
    }
    EXPECT_EQ(names.front(), "rand");
    EXPECT_EQ(names[20], "noise3");
    EXPECT_EQ(names[22], "truerand");
    EXPECT_EQ(names[35], "turbulence3");
    EXPECT_EQ(names.back(), "relangle");
    EXPECT_TRUE(registry.isRegistered("lookat"));
    EXPECT_FALSE(registry.isRegistered("LOOKAT")) << "the search is exact";
    // Both work in expressions, unlisted.
    EXPECT_FALSE(registry.isRegistered("t"));
    EXPECT_FALSE(registry.isRegistered("align"));
    // Every listed name builds with some arguments: none is a stale entry.
    for (LiString const& name : names) {
        bool built = false;
        for (char const* args : {"(1)", "((1,2,3))", "(1,2)", "((1,2,3),(1,2,3))", "((1,2,3),2)", "(1,2,3)",
                                 "((1,2,3),(1,2,3),(0,1,0))", "(1<2,2,3)", "((1,2),(1,2),(1,2),(1,2))"})
            built = built || evaluate(name.toString() + args).accepted;
        EXPECT_TRUE(built) << name;
    }
}
