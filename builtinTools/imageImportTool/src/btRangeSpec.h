#pragma once
// The ordered set of frame numbers between the brackets of a sequence path:
// ranges "first", "first:last" or "first:last|step", comma separated, each
// with the zero padding its texts were written with.
//
// A range claims (last - first + 1) / step + (last - first + 1) % step items.
// That is not the usual count of every step-th frame ("1:11|3" claims 5 though
// 1, 4, 7 and 10 exist); stored compositions index their files by it, so it
// stays. A step below 1 is read as 1; a range whose last is below its first
// claims no item.
#include <string>
#include <vector>

namespace Qv {

class BtRangeSpec {
public:
    class BtRange {
    public:
        // "first", "first:last" or "first:last|step"; texts that are no number
        // read as 0.
        explicit BtRange(std::string const& text);
        BtRange(int first, int last, int step, int padded);
        virtual ~BtRange() = default;
        BtRange(BtRange const&) = default;
        BtRange& operator=(BtRange const&) = default;

        // Extends the range by v when v is one step before its first or after
        // its last.
        bool addItem(int value);
        // Joins other onto this when it continues it with the same step and padding.
        bool merge(BtRange const& other);
        // Whether the frame of text lies on this range or one step beyond either
        // end. tooSmall: it lies below that; notAligned: it falls between two steps.
        bool belongs(std::string const& text, int padding, bool& tooSmall, bool& notAligned) const;

        int getFirst() const { return _first; }
        int getLast() const { return _last; }
        int getStep() const { return _step; }
        int getPadded() const { return _padded; }
        int getNbItems() const { return _nbItems; }
        // first + step * index, zero filled to the padding; "" past the items.
        std::string getValueAt(int index) const;
        std::string getSpec() const;

    private:
        void countItems();

        int _first = 0;
        int _last = 0;
        int _step = 1;
        int _padded = 0;
        int _nbItems = 0;
    };

    explicit BtRangeSpec(std::string const& spec);
    BtRangeSpec(int first, int last, int padded);
    virtual ~BtRangeSpec() = default;

    // Inserts one frame in order, growing, splitting and merging ranges as it
    // goes; a frame already present at the inside of a range is added again
    // at the end. False when the text is no frame number.
    bool addItem(std::string const& text, int padding);
    int getNbItems() const { return _nbItems; }
    // The frame text at an index of the whole set; "" past its end.
    std::string getValueAt(int index) const;
    std::string const& getSpec() const;
    std::vector<BtRange> const& getRanges() const { return _ranges; }

private:
    void mergeRanges(std::size_t position);

    std::vector<BtRange> _ranges;
    int _nbItems = 0;
    mutable int _specStale = 1;
    mutable std::string _spec;
};

// Decimal value of the leading digits of a text, 0 when there are none or
// they overflow: how frame texts are read wherever a text already passed the
// grammar.
int btFrameValue(std::string const& text);
// Decimal text of a value, zero filled on the left to width characters.
std::string btPaddedNumber(long long value, int width);

} // namespace Qv
