#include "btSequencePathParser.h"

#include "btSequencePath.h"
#include "btSequencePathBuilder.h"
#include "btSequencePathEx.h"
#include "btSequencePathGrammar.h"
#include "btSequencePathScanner.h"
#include "lkLock.h"
#include "osFilePath.h"

namespace Qv {

namespace {

LkRecLock& getParserLock() {
    static LkRecLock lock("SequencePathParserLock");
    return lock;
}

// One scanner over one bracket text, released however the parse ends.
class Scanner {
public:
    Scanner(BtSequencePathGrammarContext& context, std::string const& text) {
        if (btSequencePathlex_init_extra(&context, &_scanner) != 0)
            throw BtSequencePathEx::ExInternalError(__FILE__, __LINE__, "the scanner cannot start");
        btSequencePath_scan_bytes(text.data(), static_cast<int>(text.size()), _scanner);
    }
    ~Scanner() { btSequencePathlex_destroy(_scanner); }
    Scanner(Scanner const&) = delete;
    Scanner& operator=(Scanner const&) = delete;
    yyscan_t get() const { return _scanner; }

private:
    yyscan_t _scanner = nullptr;
};

// Runs the grammar on "[...]", which starts at column offset of the whole path.
void parseBracket(BtSequencePathBuilder& builder, std::string const& bracket, int offset) {
    BtSequencePathGrammarContext context{builder};
    int result = 0;
    {
        Scanner scanner(context, bracket);
        BtSequencePathGrammar::Parser parser(scanner.get(), context);
        result = parser.parse();
    }
    if (result == 0)
        return;
    if (BtSequencePathEx const* failure = builder.getFailureException())
        throw BtSequencePathExRethrow(__FILE__, __LINE__, *failure);
    int const from = offset + context.lastBegin - 1;
    int const to = offset + std::max(context.lastBegin, context.lastEnd - 1) - 1;
    throw BtSequencePathEx::ExSyntaxError(__FILE__, __LINE__, BtSequencePathEx::getParseErrorText(), from,
                                          to);
}

} // namespace

namespace BtSequencePathParser {

void parse(BtSequencePathBuilder& builder, std::string const& text) {
    LkRecLock::Guard guard(getParserLock());
    std::string const path = OsFilePath(text).toString();
    std::size_t const open = path.find('[');
    std::size_t const close = path.find(']');
    int const length = static_cast<int>(path.size());
    if (open == std::string::npos && close == std::string::npos) {
        builder.addToFilePath(path);
    } else if (close == std::string::npos) {
        throw BtSequencePathEx::ExSyntaxError(__FILE__, __LINE__, "Syntax error found - no closing ]",
                                              static_cast<int>(open), length - 1);
    } else if (open == std::string::npos || close < open) {
        throw BtSequencePathEx::ExSyntaxError(__FILE__, __LINE__, "Syntax error found - unexpected ]", 0,
                                              static_cast<int>(close));
    } else {
        // Brackets after the first pair are literal text of the suffix.
        builder.addToFilePath(path.substr(0, open));
        parseBracket(builder, path.substr(open, close - open + 1), static_cast<int>(open));
        builder.addToFilePath(path.substr(close + 1));
    }
    builder.notifyParseComplete();
}

std::string resolveSequencePath(std::string const& text) {
    BtSequencePathBuilder builder;
    parse(builder, text);
    return builder.getResult();
}

std::string resolveFullSequencePath(std::string const& filePath) {
    return resolveSequencePath(BtSequencePath::createFromFilePath(filePath)->getPattern());
}

} // namespace BtSequencePathParser

} // namespace Qv
