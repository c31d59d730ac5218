#include "btExpTracer.h"

#include "btExpParser.h"

#include <sstream>

namespace Qv {

BtExpTraceReport BtExpTracer::trace(std::string const& text) {
    BtExpTraceReport report;
    std::istringstream input(text);
    try {
        btExpParse(*this, input);
        report.accepted = true;
    } catch (BtExpEx const& error) {
        report.firstColumn = error.getFirstColumn();
        report.lastColumn = error.getLastColumn();
        report.reason = error.getReason();
    }
    report.calls = _calls;
    return report;
}

void BtExpTracer::beginParse() {
    BtExpParserProtocol::beginParse();
    _calls.clear();
}

bool BtExpTracer::record(char const* operation, std::initializer_list<LiString> texts, int firstColumn,
                         int lastColumn) {
    std::string line = operation;
    for (LiString const& text : texts)
        line.append(" \"").append(text.toString()).append("\"");
    line.append(" ").append(std::to_string(firstColumn)).append(" ").append(std::to_string(lastColumn));
    _calls.push_back(std::move(line));
    return true;
}

bool BtExpTracer::onConstant(LiString const& text, int firstColumn, int lastColumn) {
    return record("onConstant", {text}, firstColumn, lastColumn);
}

bool BtExpTracer::onVector3(LiString const& x, LiString const& y, LiString const& z, int firstColumn,
                            int lastColumn) {
    return record("onVector3", {x, y, z}, firstColumn, lastColumn);
}

bool BtExpTracer::onVector2(LiString const& x, LiString const& y, int firstColumn, int lastColumn) {
    return record("onVector2", {x, y}, firstColumn, lastColumn);
}

bool BtExpTracer::onAttribute(LiString const& text, int firstColumn, int lastColumn) {
    return record("onAttribute", {text}, firstColumn, lastColumn);
}

bool BtExpTracer::onUnaryOperator(LiString const& op, int firstColumn, int lastColumn) {
    return record("onUnaryOperator", {op}, firstColumn, lastColumn);
}

bool BtExpTracer::onBinaryOperator(LiString const& op, int firstColumn, int lastColumn) {
    return record("onBinaryOperator", {op}, firstColumn, lastColumn);
}

bool BtExpTracer::onFunction0(LiString const& name, int firstColumn, int lastColumn) {
    return record("onFunction0", {name}, firstColumn, lastColumn);
}

bool BtExpTracer::onFunction1(LiString const& name, int firstColumn, int lastColumn) {
    return record("onFunction1", {name}, firstColumn, lastColumn);
}

bool BtExpTracer::onFunction2(LiString const& name, int firstColumn, int lastColumn) {
    return record("onFunction2", {name}, firstColumn, lastColumn);
}

bool BtExpTracer::onFunction3(LiString const& name, int firstColumn, int lastColumn) {
    return record("onFunction3", {name}, firstColumn, lastColumn);
}

bool BtExpTracer::onFunction4(LiString const& name, int firstColumn, int lastColumn) {
    return record("onFunction4", {name}, firstColumn, lastColumn);
}

bool BtExpTracer::onComparison(LiString const& op, int firstColumn, int lastColumn) {
    return record("onComparison", {op}, firstColumn, lastColumn);
}

bool BtExpTracer::onBooleanBinaryOperator(LiString const& op, int firstColumn, int lastColumn) {
    return record("onBooleanBinaryOperator", {op}, firstColumn, lastColumn);
}

bool BtExpTracer::onBooleanUnaryOperator(LiString const& op, int firstColumn, int lastColumn) {
    return record("onBooleanUnaryOperator", {op}, firstColumn, lastColumn);
}

bool BtExpTracer::onUnknownToken(LiString const& text, int firstColumn, int lastColumn) {
    record("onUnknownToken", {text}, firstColumn, lastColumn);
    return BtExpParserProtocol::onUnknownToken(text, firstColumn, lastColumn);
}

} // namespace Qv
