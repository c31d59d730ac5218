#include "btExpParser.h"

#include "assertions.h"
#include "btExpEx.h"
#include "btExpGrammar.h"
#include "btExpMessages.h"
#include "btExpParserProtocol.h"
#include "btExpScannerControl.h"
#include "lkLock.h"

namespace Qv {

namespace {

struct ParserState {
    LkRecLock lock{"ExpParserLock"};
    yyscan_t scanner = BtExpScannerControl::create();

    ParserState() = default;
    ParserState(ParserState const&) = delete;
    ParserState& operator=(ParserState const&) = delete;
    ~ParserState() { BtExpScannerControl::destroy(scanner); }
};

OPtr<ParserState> gState;
// The package and a test program may each initialise; the last finalize ends it.
int gInitCount = 0;

// The scanner reads one parse's input for a scope, whichever way it ends.
class InputScope {
public:
    InputScope(yyscan_t scanner, std::istream& input) : _scanner(scanner) {
        BtExpScannerControl::pushInput(scanner, input);
    }
    ~InputScope() { BtExpScannerControl::popInput(_scanner); }
    InputScope(InputScope const&) = delete;
    InputScope& operator=(InputScope const&) = delete;

private:
    yyscan_t _scanner;
};

} // namespace

void btExpParse(BtExpParserProtocol& listener, std::istream& input) {
    QV_ASSERT(gState);
    LkRecLock::Guard guard(gState->lock);
    int result = 0;
    {
        InputScope scope(gState->scanner, input);
        listener.beginParse();
        result = btExpparse(gState->scanner, listener);
    }
    listener.endParse();
    OPtr<BtExpEx> pending = listener.takePendingException();
    if (result == 0)
        return;
    if (pending)
        throw BtExpExRethrow(__FILE__, __LINE__, std::move(pending));
    throw BtExpEx::ExSyntaxError(__FILE__, __LINE__, BtExpEx::getParseErrorText(), 1, 1);
}

void BtExpParser::initialize() {
    BtExpEx::subscribeMessages();
    BtExpMessages::subscribe();
    if (gInitCount++ == 0)
        gState = std::make_unique<ParserState>();
}

void BtExpParser::finalize() {
    QV_ASSERT(gInitCount > 0);
    if (--gInitCount == 0)
        gState.reset();
}

} // namespace Qv
