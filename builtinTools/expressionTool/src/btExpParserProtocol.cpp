#include "btExpParserProtocol.h"

namespace Qv {

BtExpParserProtocol::BtExpParserProtocol() = default;

BtExpParserProtocol::~BtExpParserProtocol() = default;

void BtExpParserProtocol::beginParse() {
    _pendingException.reset();
}

void BtExpParserProtocol::endParse() {}

bool BtExpParserProtocol::onUnknownToken(LiString const& text, int firstColumn, int lastColumn) {
    setPendingException(std::make_unique<BtExpEx::ExSyntaxError>(
        __FILE__, __LINE__, BtExpEx::getUnknownTokenText(text), firstColumn, lastColumn));
    return false;
}

void BtExpParserProtocol::setPendingException(OPtr<BtExpEx> exception) {
    _pendingException = std::move(exception);
}

OPtr<BtExpEx> BtExpParserProtocol::takePendingException() {
    return std::move(_pendingException);
}

void BtExpParserProtocol::onParseError(int firstColumn, int lastColumn) {
    setPendingException(std::make_unique<BtExpEx::ExSyntaxError>(
        __FILE__, __LINE__, BtExpEx::getParseErrorText(), firstColumn, lastColumn));
}

} // namespace Qv
