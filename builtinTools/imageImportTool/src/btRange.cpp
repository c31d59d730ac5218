#include "btRangeSpec.h"
#include "liStringTokenizer.h"

#include <algorithm>
#include <charconv>
#include <climits>

namespace Qv {

int btFrameValue(std::string const& text) {
    int value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() ? value : 0;
}

std::string btPaddedNumber(long long value, int width) {
    std::string digits = std::to_string(value);
    if (static_cast<int>(digits.size()) < width)
        digits.insert(0, static_cast<std::size_t>(width) - digits.size(), '0');
    return digits;
}

namespace {
// A zero-led text of more than one character fixes the width of every frame.
bool isPaddedText(std::string const& text) {
    return text.size() > 1 && text[0] == '0';
}

int clampToInt(long long value) {
    return static_cast<int>(std::clamp<long long>(value, INT_MIN, INT_MAX));
}
} // namespace

BtRangeSpec::BtRange::BtRange(std::string const& text) {
    LiStringTokenizer bounds(text, ":", LiStringTokenizer::NotEmpty);
    if (bounds.hasMoreTokens()) {
        std::string firstText = bounds.nextToken();
        if (isPaddedText(firstText))
            _padded = static_cast<int>(firstText.size());
        _first = btFrameValue(firstText);
    }
    _last = _first;
    if (bounds.hasMoreTokens()) {
        LiStringTokenizer lastAndStep(bounds.nextToken(), "|", LiStringTokenizer::NotEmpty);
        if (lastAndStep.hasMoreTokens()) {
            std::string lastText = lastAndStep.nextToken();
            _last = btFrameValue(lastText);
            if (_padded > 0)
                _padded = static_cast<int>(lastText.size());
        }
        if (lastAndStep.hasMoreTokens())
            _step = std::max(1, btFrameValue(lastAndStep.nextToken()));
    }
    countItems();
}

BtRangeSpec::BtRange::BtRange(int first, int last, int step, int padded)
    : _first(first), _last(last), _step(std::max(1, step)), _padded(padded) {
    countItems();
}

void BtRangeSpec::BtRange::countItems() {
    long long n = static_cast<long long>(_last) - _first + 1;
    // A reversed range ("10:5") claims nothing.
    _nbItems = clampToInt(std::max(0LL, _step > 1 ? n / _step + n % _step : n));
}

bool BtRangeSpec::BtRange::addItem(int value) {
    if (static_cast<long long>(value) == static_cast<long long>(_first) - _step)
        _first = value;
    else if (static_cast<long long>(value) == static_cast<long long>(_last) + _step)
        _last = value;
    else
        return false;
    if (_nbItems < INT_MAX)
        ++_nbItems;
    return true;
}

bool BtRangeSpec::BtRange::merge(BtRange const& other) {
    if (_padded != other._padded || _step != other._step ||
        static_cast<long long>(_last) + _step != other._first)
        return false;
    _last = other._last;
    _nbItems = clampToInt(static_cast<long long>(_nbItems) + other._nbItems);
    return true;
}

bool BtRangeSpec::BtRange::belongs(std::string const& text, int padding, bool& tooSmall,
                                   bool& notAligned) const {
    tooSmall = false;
    notAligned = false;
    long long value = btFrameValue(text);
    long long low = static_cast<long long>(_first) - _step;
    long long high = static_cast<long long>(_last) + _step;
    if (value < low) {
        tooSmall = true;
        return false;
    }
    if (padding != _padded && _padded != static_cast<int>(text.size()))
        return false;
    if (value > high)
        return false;
    if ((value - low) % _step > 0) {
        notAligned = true;
        return false;
    }
    return (value - low) / _step <= static_cast<long long>(_nbItems) + 2;
}

std::string BtRangeSpec::BtRange::getValueAt(int index) const {
    if (index < 0 || index >= _nbItems)
        return {};
    return btPaddedNumber(static_cast<long long>(_first) + static_cast<long long>(_step) * index, _padded);
}

std::string BtRangeSpec::BtRange::getSpec() const {
    std::string spec = btPaddedNumber(_first, _padded);
    // A single frame is written alone: "4|2" is not a path a user could type.
    if (_last > _first) {
        spec += ":" + btPaddedNumber(_last, _padded);
        if (_step > 1)
            spec += "|" + std::to_string(_step);
    }
    return spec;
}

} // namespace Qv
