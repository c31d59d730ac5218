#include "btSequencePathBuilder.h"

#include "liStringUtil.h"

#include <charconv>
#include <climits>

namespace Qv {

namespace {
// The leading decimal digits of a token ("12" of "12f"); false without a digit
// or on overflow.
bool readNumber(std::string const& text, int& value) {
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc();
}

void padLeft(std::string& text, std::size_t width) {
    if (text.size() < width)
        text.insert(0, width - text.size(), '0');
}
} // namespace

BtSequencePathBuilder::~BtSequencePathBuilder() = default;

void BtSequencePathBuilder::reset() {
    _filePath.clear();
    _spec.clear();
    _itemCount = 0;
    _start = _end = _skip = _frameCount = _kind = _width = _totalFrames = 0;
    _step = 1;
    _unresolved.clear();
    _failure.reset();
}

void BtSequencePathBuilder::initialize() {
    BtSequencePathEx::subscribeMessages();
}

void BtSequencePathBuilder::finalize() {}

void BtSequencePathBuilder::addToFilePath(std::string const& text) {
    _filePath += text;
}

void BtSequencePathBuilder::beginItem() {
    ++_itemCount;
}

void BtSequencePathBuilder::appendToSpec(std::string const& text) {
    // Commas separate what is written: an "a/*f" item counts as an item but
    // leaves its frames to the directory pass.
    if (!_spec.empty())
        _spec += ',';
    _spec += text;
}

bool BtSequencePathBuilder::notifyRangeExists() {
    _filePath += "[" + _spec + "]";
    return true;
}

bool BtSequencePathBuilder::notifyConstant(std::string const& text) {
    beginItem();
    appendToSpec(text);
    _kind = CONSTANT;
    return true;
}

bool BtSequencePathBuilder::notifyRange(std::string const& first, std::string const& last) {
    beginItem();
    _width = static_cast<int>(first.size());
    _kind = RANGE;
    return readNumber(first, _start) && readNumber(last, _end);
}

bool BtSequencePathBuilder::notifyStartFrame(std::string const& text) {
    beginItem();
    _kind = START_FRAME;
    _width = static_cast<int>(text.size());
    if (!readNumber(text, _start) || _start < 0) {
        _start = 0;
        return false;
    }
    return true;
}

bool BtSequencePathBuilder::notifyAllFrames() {
    // "a/*f": a counts frames on disk, so it becomes a skip.
    if (_kind == START_FRAME)
        _skip += _start;
    _kind = ALL_FRAMES;
    return true;
}

bool BtSequencePathBuilder::notifyStep(std::string const& text) {
    return readNumber(text, _step);
}

bool BtSequencePathBuilder::notifySkip(std::string const& text) {
    int value = 0;
    bool const read = readNumber(text, value);
    long long const skip = static_cast<long long>(_skip) + value;
    long long const start = static_cast<long long>(_start) + skip;
    if (!read || skip < 1 || skip > INT_MAX || start > INT_MAX) {
        _skip = 0;
        return false;
    }
    _skip = static_cast<int>(skip);
    _start = static_cast<int>(start);
    return true;
}

bool BtSequencePathBuilder::notifyFrameCount(std::string const& text) {
    // A count of 1 is refused on purpose: "[7/1f]" is an error, not "7".
    bool const read = readNumber(text, _frameCount);
    long long const end = static_cast<long long>(_start) + _frameCount - 1;
    if (!read || _frameCount < 1 || !(_start < end) || end > INT_MAX) {
        _start = 0;
        return false;
    }
    _end = static_cast<int>(end);
    return true;
}

bool BtSequencePathBuilder::notifyEndSequence() {
    if (_kind == ALL_FRAMES) {
        // Resolved once the whole path is known; the working fields stay.
        AllFramesSequencePtr wish(new AllFramesSequence());
        wish->frameCount = _frameCount;
        wish->skip = _skip;
        wish->step = _step;
        _unresolved.push_back(wish);
        return true;
    }
    if (_kind == CONSTANT)
        return true;
    if (_kind == START_FRAME) {
        long long end = _end;
        if (_step > 1)
            end = (static_cast<long long>(_frameCount) - 1) * _step + _start;
        else if (_skip > 0)
            end = static_cast<long long>(_start) + _frameCount - 1;
        if (end > INT_MAX || end < INT_MIN)
            return false;
        _end = static_cast<int>(end);
    }
    std::string startText = LiStringUtil::convertNb(_start);
    std::string endText = LiStringUtil::convertNb(_end);
    if (_width < 1) {
        padLeft(startText, endText.size());
    } else {
        padLeft(startText, static_cast<std::size_t>(_width));
        padLeft(endText, static_cast<std::size_t>(_width));
        _width = 0;
    }
    std::string item = startText + ":" + endText;
    if (_step >= 2)
        item += "|" + LiStringUtil::convertNb(_step);
    appendToSpec(item);
    _step = 1;
    _start = _end = _skip = 0;
    return true;
}

bool BtSequencePathBuilder::notifyParseComplete() {
    normalizeUnresolvedSequences();
    return true;
}

bool BtSequencePathBuilder::notifyUnrecognizedToken(std::string const& text, int from, int to) {
    _failure = std::make_unique<BtSequencePathEx::ExSyntaxError>(
        __FILE__, __LINE__, BtSequencePathEx::getUnknownTokenText(text), from, to);
    return false;
}

void BtSequencePathBuilder::notifyParseError(int from, int to) {
    _failure = std::make_unique<BtSequencePathEx::ExSyntaxError>(
        __FILE__, __LINE__, BtSequencePathEx::getParseErrorText(), from, to);
}

} // namespace Qv
