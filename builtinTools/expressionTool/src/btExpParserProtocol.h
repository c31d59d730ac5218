#pragma once
// What the grammar tells whoever listens to a parse. Calls come in a strict
// post-order walk of the text, left operand first: when an operator, function
// or vector is heard, its operands have been heard already, in text order.
// Columns are 1 based; the last one is just past the text concerned.
//
// Every on... operation returns true to go on, or false to end the parse, in
// which case it has first stored a pending exception: btExpParse throws that
// one, wrapped in BtExpExRethrow, once the parser has wound down.
#include "btExpEx.h"
#include "liString.h"
#include "lkCounter.h"
#include "rcBase.h"

namespace Qv {

class BtExpParserProtocol : public RCBase<LkCounter<int>> {
public:
    ~BtExpParserProtocol() override;

    // Once before the first token; clears the pending exception.
    virtual void beginParse();
    // Once after the last token, also when the parse failed.
    virtual void endParse();

    virtual bool onConstant(LiString const& text, int firstColumn, int lastColumn) = 0;
    // The texts are those of the first token of each component.
    virtual bool onVector3(LiString const& x, LiString const& y, LiString const& z, int firstColumn,
                           int lastColumn) = 0;
    virtual bool onVector2(LiString const& x, LiString const& y, int firstColumn, int lastColumn) = 0;
    // A name, a digit name or a reference, untrimmed.
    virtual bool onAttribute(LiString const& text, int firstColumn, int lastColumn) = 0;
    // Operators come with their own columns.
    virtual bool onUnaryOperator(LiString const& op, int firstColumn, int lastColumn) = 0;
    virtual bool onBinaryOperator(LiString const& op, int firstColumn, int lastColumn) = 0;
    // Functions come with the name's first column and the call's last one.
    // The time variable is onFunction0 of "t".
    virtual bool onFunction0(LiString const& name, int firstColumn, int lastColumn) = 0;
    virtual bool onFunction1(LiString const& name, int firstColumn, int lastColumn) = 0;
    virtual bool onFunction2(LiString const& name, int firstColumn, int lastColumn) = 0;
    virtual bool onFunction3(LiString const& name, int firstColumn, int lastColumn) = 0;
    virtual bool onFunction4(LiString const& name, int firstColumn, int lastColumn) = 0;
    virtual bool onComparison(LiString const& op, int firstColumn, int lastColumn) = 0;
    virtual bool onBooleanBinaryOperator(LiString const& op, int firstColumn, int lastColumn) = 0;
    virtual bool onBooleanUnaryOperator(LiString const& op, int firstColumn, int lastColumn) = 0;
    // A character of no token where the grammar admits one. By default stores
    // ExSyntaxError with MSG_EXPR_UNKNOWN_TOKEN and returns false.
    virtual bool onUnknownToken(LiString const& text, int firstColumn, int lastColumn);

    // Takes ownership; an earlier pending exception is deleted.
    void setPendingException(OPtr<BtExpEx> exception);
    // Moves the pending exception out, leaving none.
    OPtr<BtExpEx> takePendingException();
    // The grammar cannot continue at these columns: stores ExSyntaxError with
    // MSG_EXPR_PARSE_ERROR.
    void onParseError(int firstColumn, int lastColumn);

protected:
    BtExpParserProtocol();

private:
    OPtr<BtExpEx> _pendingException;
};

} // namespace Qv
