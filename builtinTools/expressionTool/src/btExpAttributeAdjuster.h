#pragma once
// The listener that rewrites an expression's references from the graph,
// after nodes were renamed or moved: each reference, in text order, is
// rebuilt from the dynamic input of the same rank (the node that owns the
// attribute it is connected to, named relative to the innermost group both
// share, the separator, the attribute's name), and everything between the
// references is copied byte for byte, so spacing and formatting survive
// (the blanks a reference's text carries at its ends stay too). A reference
// that cannot be rebuilt stays as it was and is listed as a problem.
#include "btExpParserProtocol.h"
#include "piNode.h"

#include <string>
#include <vector>

namespace Qv {

class BtExpAttributeAdjuster : public BtExpParserProtocol {
public:
    BtExpAttributeAdjuster(RCShdPtr<PiNode> node, std::string source);

    void beginParse() override;
    void endParse() override;
    bool onAttribute(LiString const& text, int firstColumn, int lastColumn) override;
    bool onConstant(LiString const&, int, int) override { return true; }
    bool onVector3(LiString const&, LiString const&, LiString const&, int, int) override { return true; }
    bool onVector2(LiString const&, LiString const&, int, int) override { return true; }
    bool onUnaryOperator(LiString const&, int, int) override { return true; }
    bool onBinaryOperator(LiString const&, int, int) override { return true; }
    bool onFunction0(LiString const&, int, int) override { return true; }
    bool onFunction1(LiString const&, int, int) override { return true; }
    bool onFunction2(LiString const&, int, int) override { return true; }
    bool onFunction3(LiString const&, int, int) override { return true; }
    bool onFunction4(LiString const&, int, int) override { return true; }
    bool onComparison(LiString const&, int, int) override { return true; }
    bool onBooleanBinaryOperator(LiString const&, int, int) override { return true; }
    bool onBooleanUnaryOperator(LiString const&, int, int) override { return true; }

    std::string const& getResult() const { return _result; }
    bool hasProblems() const { return !_problems.empty(); }
    // "<reference>: <problem>", one per reference left as it was.
    std::vector<std::string> const& getProblems() const { return _problems; }

    // The node holding the attribute a dynamic input of an expression reads,
    // and the attribute's name; null with the problem's text when there is none.
    struct AttributeSource {
        RCShdPtr<PiNode> owner;
        std::string attribute;
        std::string problem;
    };
    static AttributeSource findAttributeSource(PiInput const& input);

private:
    RCShdPtr<PiNode> _node;
    std::string _source;
    std::size_t _copied = 0;
    std::string _result;
    std::size_t _nextInput = 0;
    std::vector<std::string> _problems;
};

} // namespace Qv
