// The directory side of BtSequencePathBuilder: finding the runs of frames on
// disk and resolving the '#' items against them.
#include "btRangeSpec.h"
#include "btSequencePathBuilder.h"
#include "liStringUtil.h"
#include "osDirectory.h"
#include "osFileEx.h"
#include "osFilePath.h"
#include "osWildcardFilter.h"

#include <algorithm>
#include <charconv>

namespace Qv {

namespace {

// A number found in a file name, with the width of the listing pass that saw it.
struct Numbered {
    int width;
    int value;
};

bool readDigits(std::string_view text, int& value) {
    if (text.empty() || !std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; }))
        return false;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

// The usual case: prefix and suffix are plain text, so a name is seen in the
// pass of width w exactly when w digits stand between them, and one listing
// serves every pass. Numbers are ordered by width, then value, as the passes
// would find them.
std::vector<Numbered> numbersOfPlainNames(OsDirectory const& directory, OsWildcardFilter const& filter,
                                          std::size_t prefixSize, std::size_t suffixSize) {
    std::vector<Numbered> numbers;
    directory.visitChildrenNames(OsDirectory::FILES, filter, [&](std::string_view name) {
        std::string_view const middle = name.substr(prefixSize, name.size() - prefixSize - suffixSize);
        int value = 0;
        if (readDigits(middle, value))
            numbers.push_back({static_cast<int>(middle.size()), value});
    });
    std::sort(numbers.begin(), numbers.end(), [](Numbered const& a, Numbered const& b) {
        return a.width != b.width ? a.width < b.width : a.value < b.value;
    });
    return numbers;
}

// Prefix or suffix hold '*' or '?' themselves: the passes are run one by one,
// each with its own filter, over the sorted names of the first listing; the
// number is what stands from the first '?' to the last '.'.
std::vector<Numbered> numbersOfPatternNames(OsDirectory const& directory, OsWildcardFilter const& filter,
                                            std::string const& prefix, std::string const& suffix) {
    std::vector<std::string> names;
    directory.visitChildrenNames(OsDirectory::FILES, filter,
                                 [&](std::string_view name) { names.emplace_back(name); });
    std::sort(names.begin(), names.end());
    std::size_t maxSize = 0;
    for (std::string const& name : names)
        maxSize = std::max(maxSize, name.size());
    std::vector<Numbered> numbers;
    std::size_t processed = 0;
    for (std::size_t width = 1; processed < names.size() && width <= maxSize; ++width) {
        std::string const pattern = prefix + std::string(width, '?') + suffix;
        OsWildcardFilter const pass(pattern);
        std::size_t const from = pattern.find('?');
        for (std::string const& name : names) {
            if (!pass.matches(name))
                continue;
            ++processed;
            std::size_t const dot = name.rfind('.');
            int value = 0;
            if (dot != std::string::npos && dot >= from &&
                readDigits(std::string_view(name).substr(from, dot - from), value))
                numbers.push_back({static_cast<int>(width), value});
        }
    }
    return numbers;
}

std::string runText(long long first, long long last, int width) {
    std::string text = btPaddedNumber(first, width);
    if (last != first)
        text += ":" + btPaddedNumber(last, width);
    return text;
}

} // namespace

std::vector<BtSequencePathBuilder::Run> BtSequencePathBuilder::collectSequenceInfo() {
    std::size_t const open = _filePath.find('[');
    std::size_t const close = _filePath.find(']', open);
    std::string const path =
        _filePath.substr(0, open) + (close == std::string::npos ? "" : _filePath.substr(close + 1));
    OsFilePath const filePath(path);
    OsDirectory const directory(filePath.getDirectoryName());
    if (directory.getType() != OsDirectory::DIRECTORY)
        throw OsFileEx::ExInvalidPath(__FILE__, __LINE__,
                                      "BtSequencePathBuilder::collectSequenceInfo: '" +
                                          directory.getPath().toString() + "' of '" + path +
                                          "' is not a directory");
    std::string const base = filePath.getBaseName(true);
    std::size_t const dot = base.rfind('.');
    if (dot == std::string::npos)
        throw OsFileEx::ExInvalidPath(__FILE__, __LINE__,
                                      "BtSequencePathBuilder::collectSequenceInfo: the file name of '" +
                                          path + "' has no '.' for the frame number to stand before");
    std::string const prefix = base.substr(0, dot);
    std::string const suffix = base.substr(dot);
    OsWildcardFilter const filter(prefix + "*" + suffix);
    bool const plain = (prefix + suffix).find_first_of("*?") == std::string::npos;
    std::vector<Numbered> const numbers =
        plain ? numbersOfPlainNames(directory, filter, prefix.size(), suffix.size())
              : numbersOfPatternNames(directory, filter, prefix, suffix);

    // Runs of consecutive numbers within each width.
    std::vector<Run> runs;
    _totalFrames = 0;
    for (std::size_t i = 0; i < numbers.size();) {
        Run run{numbers[i].value, numbers[i].value, numbers[i].width};
        long long previous = run.first;
        std::size_t j = i + 1;
        for (; j < numbers.size() && numbers[j].width == run.width; ++j) {
            long long const n = numbers[j].value;
            // Runs only ever go up: a number not above the one before it (the
            // written name itself holds '*' or '?') opens a run of its own.
            if (n != previous + 1) {
                _totalFrames += run.last - run.first + 1;
                runs.push_back(run);
                run.first = run.last = static_cast<int>(n);
            } else {
                run.last = static_cast<int>(n);
            }
            previous = n;
        }
        _totalFrames += run.last - run.first + 1;
        runs.push_back(run);
        i = j;
    }
    return runs;
}

void BtSequencePathBuilder::mergeSequences(std::vector<Run>& runs) {
    // An unpadded counter that grew a digit: "8:9" goes on in "10:11".
    std::vector<Run> merged;
    merged.reserve(runs.size());
    for (Run const& run : runs) {
        if (!merged.empty()) {
            Run& before = merged.back();
            long long const next = static_cast<long long>(before.last) + 1;
            if (next == run.first &&
                std::to_string(next).size() == btPaddedNumber(before.last, before.width).size() + 1) {
                before.last = run.last;
                continue;
            }
        }
        merged.push_back(run);
    }
    runs = std::move(merged);
}

void BtSequencePathBuilder::normalizeUnresolvedSequences() {
    if (_unresolved.empty())
        return;
    std::vector<Run> found = collectSequenceInfo();
    mergeSequences(found);
    std::vector<AllFramesSequencePtr> runs;
    runs.reserve(found.size());
    for (Run const& run : found) {
        AllFramesSequencePtr record(new AllFramesSequence());
        record->first = run.first;
        record->last = run.last;
        record->width = run.width;
        record->hasRange = run.first != run.last;
        runs.push_back(record);
    }
    std::string texts;
    for (AllFramesSequencePtr const& wish : _unresolved) {
        std::string const text = resolve(*wish, runs);
        if (!text.empty())
            texts += (texts.empty() ? "" : ",") + text;
    }
    if (texts.empty()) {
        // A wildcard that selects nothing is an empty path, not an error.
        _filePath.clear();
        return;
    }
    std::size_t const close = _filePath.find(']');
    if (close > 0 && _filePath[close - 1] != '[')
        texts.insert(0, ",");
    _filePath.insert(close, texts);
}

std::string BtSequencePathBuilder::resolve(AllFramesSequence const& wish,
                                           std::vector<AllFramesSequencePtr> const& runs) const {
    long long const skip = wish.skip;
    long long const step = std::max(1, wish.step);
    long long count = wish.frameCount;
    std::string text;
    auto add = [&text](long long first, long long last, int width, long long step) {
        text += (text.empty() ? "" : ",") + runText(first, last, width);
        if (step >= 2 && last != first)
            text += "|" + std::to_string(step);
    };
    if (count == 0) {
        if (skip < 1 && step < 2) {
            for (AllFramesSequencePtr const& run : runs)
                add(run->first, run->last, run->width, 1);
            return text;
        }
        count = _totalFrames - skip;
        if (count < 1)
            return text;
    }
    long long passed = 0; // frames skipped so far
    long long taken = 0;
    long long carry = -1; // from the break after the last run taken from; -1 before the first frame
    for (AllFramesSequencePtr const& run : runs) {
        if (taken >= count)
            break;
        long long const length = static_cast<long long>(run->last) - run->first + 1;
        long long first = 0;
        if (carry < 0) {
            if (passed + length <= skip) {
                passed += length;
                continue;
            }
            first = run->first + (skip - passed);
            passed = skip;
        } else {
            // The break before this run counts as one frame of the stepping.
            long long entry = carry - 1;
            if (entry < 0)
                entry += step;
            if (entry >= length) {
                carry -= length + 1;
                continue;
            }
            first = run->first + entry;
        }
        long long last = first;
        long long items = 1;
        if (first + step <= run->last) {
            long long const whole = (run->last - first) / step;
            last = first + whole * step;
            items = whole + 1;
        }
        if (taken + items >= count) {
            last = first + (count - taken - 1) * step;
            add(first, last, run->width, step);
            break;
        }
        taken += items;
        carry = step - (run->last - last) - 1;
        add(first, last, run->width, step);
    }
    return text;
}

} // namespace Qv
