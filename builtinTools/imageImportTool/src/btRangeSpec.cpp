#include "btRangeSpec.h"

#include "liStringTokenizer.h"

#include <climits>

namespace Qv {

BtRangeSpec::BtRangeSpec(std::string const& spec) {
    LiStringTokenizer items(spec, ",", LiStringTokenizer::NotEmpty);
    long long total = 0;
    while (items.hasMoreTokens()) {
        _ranges.emplace_back(items.nextToken());
        total += _ranges.back().getNbItems();
    }
    _nbItems = static_cast<int>(std::min<long long>(total, INT_MAX));
}

BtRangeSpec::BtRangeSpec(int first, int last, int padded) : _ranges{BtRange(first, last, 1, padded)} {
    _nbItems = _ranges.front().getNbItems();
}

bool BtRangeSpec::addItem(std::string const& text, int padding) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos ||
        (text.size() > 1 && btFrameValue(text) == 0 && text.find_first_not_of('0') != std::string::npos))
        return false;
    int const value = btFrameValue(text);
    bool inserted = false;
    for (std::size_t i = 0; i < _ranges.size() && !inserted; ++i) {
        BtRange& range = _ranges[i];
        bool tooSmall = false;
        bool notAligned = false;
        if (range.belongs(text, padding, tooSmall, notAligned)) {
            // Inside the range the frame is already there; the walk goes on.
            if (range.addItem(value)) {
                mergeRanges(i);
                inserted = true;
            }
        } else if (tooSmall) {
            _ranges.insert(_ranges.begin() + static_cast<std::ptrdiff_t>(i),
                           BtRange(value, value, 1, padding));
            mergeRanges(i);
            inserted = true;
        } else if (notAligned) {
            // Cut the range around the frame: the steps below it, the frame, the steps above it.
            BtRange const old = range;
            int const step = old.getStep();
            std::vector<BtRange> parts;
            long long below = static_cast<long long>(old.getFirst()) +
                              (value > old.getFirst() ? (value - old.getFirst()) / step * step : -step);
            if (below >= old.getFirst())
                parts.emplace_back(old.getFirst(), static_cast<int>(below), step, old.getPadded());
            std::size_t framePart = parts.size();
            parts.emplace_back(value, value, step, old.getPadded());
            long long above = below + step;
            if (above <= old.getLast())
                parts.emplace_back(static_cast<int>(above), old.getLast(), step, old.getPadded());
            _ranges.erase(_ranges.begin() + static_cast<std::ptrdiff_t>(i));
            _ranges.insert(_ranges.begin() + static_cast<std::ptrdiff_t>(i), parts.begin(), parts.end());
            mergeRanges(i + framePart);
            inserted = true;
        }
    }
    if (!inserted)
        _ranges.emplace_back(value, value, 1, padding);
    if (_nbItems < INT_MAX)
        ++_nbItems;
    _specStale = 1;
    return true;
}

void BtRangeSpec::mergeRanges(std::size_t position) {
    while (position > 0 && _ranges[position - 1].merge(_ranges[position])) {
        _ranges.erase(_ranges.begin() + static_cast<std::ptrdiff_t>(position));
        --position;
    }
    while (position + 1 < _ranges.size() && _ranges[position].merge(_ranges[position + 1]))
        _ranges.erase(_ranges.begin() + static_cast<std::ptrdiff_t>(position + 1));
}

std::string BtRangeSpec::getValueAt(int index) const {
    if (index < 0)
        return {};
    for (BtRange const& range : _ranges) {
        if (index < range.getNbItems())
            return range.getValueAt(index);
        if (range.getNbItems() > 0)
            index -= range.getNbItems();
    }
    return {};
}

std::string const& BtRangeSpec::getSpec() const {
    if (_specStale) {
        _spec.clear();
        for (BtRange const& range : _ranges) {
            if (!_spec.empty())
                _spec += ',';
            _spec += range.getSpec();
        }
        _specStale = 0;
    }
    return _spec;
}

} // namespace Qv
