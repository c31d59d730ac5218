#pragma once
// A listener that writes down every call it hears, one line each, in order:
// the operation, each text in double quotes, then the first and last column,
// separated by single blanks (`onBinaryOperator "+" 2 3`). It accepts every
// call; an unknown character is refused as by the base listener.
#include "btExpParserProtocol.h"
#include "btExpTraceReport.h"

#include <string>
#include <vector>

namespace Qv {

class BtExpTracer : public BtExpParserProtocol {
public:
    BtExpTracer() = default;

    // Parses text with this listener: its calls, and whether and where the
    // text was refused. Exceptions other than BtExpEx pass through.
    BtExpTraceReport trace(std::string const& text);
    // The lines of the last parse.
    std::vector<std::string> const& getCalls() const { return _calls; }

    void beginParse() override;
    bool onConstant(LiString const& text, int firstColumn, int lastColumn) override;
    bool onVector3(LiString const& x, LiString const& y, LiString const& z, int firstColumn,
                   int lastColumn) override;
    bool onVector2(LiString const& x, LiString const& y, int firstColumn, int lastColumn) override;
    bool onAttribute(LiString const& text, int firstColumn, int lastColumn) override;
    bool onUnaryOperator(LiString const& op, int firstColumn, int lastColumn) override;
    bool onBinaryOperator(LiString const& op, int firstColumn, int lastColumn) override;
    bool onFunction0(LiString const& name, int firstColumn, int lastColumn) override;
    bool onFunction1(LiString const& name, int firstColumn, int lastColumn) override;
    bool onFunction2(LiString const& name, int firstColumn, int lastColumn) override;
    bool onFunction3(LiString const& name, int firstColumn, int lastColumn) override;
    bool onFunction4(LiString const& name, int firstColumn, int lastColumn) override;
    bool onComparison(LiString const& op, int firstColumn, int lastColumn) override;
    bool onBooleanBinaryOperator(LiString const& op, int firstColumn, int lastColumn) override;
    bool onBooleanUnaryOperator(LiString const& op, int firstColumn, int lastColumn) override;
    bool onUnknownToken(LiString const& text, int firstColumn, int lastColumn) override;

private:
    bool record(char const* operation, std::initializer_list<LiString> texts, int firstColumn,
                int lastColumn);

    std::vector<std::string> _calls;
};

} // namespace Qv
