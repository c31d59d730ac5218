#pragma once
// A window of nbLines consecutive rows over a set of tiles, moving down one row
// at a time: each tile row is read (and converted) once, however many windows
// hold it. The k-th getNext() centres the window on row region.y1 + k; rows
// and columns that no tile covers follow the padding policy.
#include "assertions.h"
#include "ixScanline.h"

#include <functional>
#include <vector>

namespace Qv {

template <class T>
class IxRollingScanlineBuffer {
public:
    struct Options {
        // Applied to each line once, as it enters the window (a scaling of the values, say).
        std::function<void(IxScanline<T>& line, int y)> onEntry;
    };

    // Lines to the offset from the window's centre row: lines[-2] is two rows up.
    class Accessor {
    public:
        Accessor(T* const* lines, int centre) : _lines(lines), _centre(centre) {}
        T* operator[](int offset) const { return _lines[_centre + offset]; }

    private:
        T* const* _lines;
        int _centre;
    };

    // Asserts an odd number of lines, so that the window has a centre.
    IxRollingScanlineBuffer(std::vector<IxReadGuard> guards, GeRectangle<int> const& region, int nbLines,
                            IxPaddingPolicy<T> const& padding = {}, Options options = {})
        : _guards(std::move(guards)), _region(region), _nbLines(nbLines), _options(std::move(options)) {
        QV_ASSERT(nbLines > 0 && nbLines % 2 == 1);
        for (int i = 0; i < nbLines; ++i)
            _ring.emplace_back(region.getXInterval(), padding);
        _lines.resize(static_cast<std::size_t>(nbLines));
    }

    bool hasNext() const { return _centre + 1 < _region.y2; }
    // The centre row of the window getNext() last returned.
    int getCentreRow() const { return _centre; }
    int getNbLines() const { return _nbLines; }

    // Moves the window one row down; lines[i] is row centre - nbLines / 2 + i,
    // each pointing at column region.x1.
    T* const* getNext() {
        QV_ASSERT(hasNext());
        int const half = _nbLines / 2;
        if (_centre < _region.y1) {
            _centre = _region.y1;
            for (int i = 0; i < _nbLines; ++i)
                load(i, _centre - half + i);
        } else {
            ++_centre;
            _oldest = (_oldest + 1) % _nbLines;
            load((_oldest + _nbLines - 1) % _nbLines, _centre + half);
        }
        for (int i = 0; i < _nbLines; ++i)
            _lines[static_cast<std::size_t>(i)] =
                _ring[static_cast<std::size_t>((_oldest + i) % _nbLines)].getData();
        return _lines.data();
    }

private:
    void load(int slot, int y) {
        IxScanline<T>& line = _ring[static_cast<std::size_t>(slot)];
        line.readFrom(_guards, y);
        if (_options.onEntry)
            _options.onEntry(line, y);
    }

    std::vector<IxReadGuard> _guards;
    GeRectangle<int> _region;
    int _nbLines;
    Options _options;
    std::vector<IxScanline<T>> _ring;
    std::vector<T*> _lines;
    int _oldest = 0;
    int _centre = _region.y1 - 1;
};

} // namespace Qv
