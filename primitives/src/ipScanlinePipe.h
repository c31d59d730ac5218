#pragma once
// A pull pipeline of scanlines: each stage gives its output row by row, and
// asks its inputs for the rows it needs. IpDestNode drives a chain into a
// tile: it tells every stage the region it will be asked for, then pulls the
// rows top to bottom. A stage keeps its latest rows (1 + the extra lines its
// consumers asked for), so that a filter reading rows y - n .. y + n of its
// input makes each input row once. Outside its region a stage gives
// CoRgbaColorTyped<float>::ZERO.
//
// Line forms: a float line asked of an RGBA stage gets the red component; an
// RGBA line asked of a float stage gets (v, v, v, v).
#include "geRectangle.h"
#include "ixScanline.h"
#include "rcBase.h"
#include "rcShdPtr.h"

#include <vector>

namespace Qv {

class IpScanlinePipe : public RCBase<> {
public:
    using Rgba = CoRgbaColorTyped<float>;

    // Widens the region this stage will be asked for (the consumers' needs
    // add up) and passes the needs on to the inputs.
    virtual void setDstRegion(GeRectangle<int> const& region);
    GeRectangle<int> const& getDstRegion() const { return _region; }
    // Forgets the region and the rows made, for a new pass.
    virtual void resetRegion();

    // Row y over the buffer's interval.
    virtual void getOutputScanline(int y, IxScanline<float>& buffer) = 0;
    virtual void getOutputScanline(int y, IxScanline<Rgba>& buffer) = 0;

    // Whether every input is there to pull from.
    virtual bool inputIsAvailable() const;
    // Appends the stages this one reads.
    virtual void getAllInputs(std::vector<IpScanlinePipe*>& list) const;

    // Rows on each side of the current one that consumers read: kept made.
    void setExtraLinesBuffered(int n);
    int getExtraLinesBuffered() const { return _extraLines; }

protected:
    ~IpScanlinePipe() override = default;
    // Called once per pass, after the regions are set and before the first row.
    virtual void initializeProcessing() {}

private:
    friend class IpDestNode;
    GeRectangle<int> _region;
    bool _hasRegion = false;
    int _extraLines = 0;
};

using IpScanlinePipePtr = RCShdPtr<IpScanlinePipe>;

// The start of a pipe: rows of tiles.
class IpSourceNode : public IpScanlinePipe {
public:
    explicit IpSourceNode(std::vector<IxReadGuard> guards) : _guards(std::move(guards)) {}

    void getOutputScanline(int y, IxScanline<float>& buffer) override;
    void getOutputScanline(int y, IxScanline<Rgba>& buffer) override;

private:
    std::vector<IxReadGuard> _guards;
};

// A stage that computes its rows of type T (float or RGBA) from its inputs.
// A subclass adds its inputs, says how far around a row it reads them
// (setInputMargin, and setExtraLinesBuffered on each input), and writes row y
// into getOutputLine() in processOutputScanline(y).
template <class T>
class IpScanlinePipeOutput : public IpScanlinePipe {
public:
    void setDstRegion(GeRectangle<int> const& region) override;
    void resetRegion() override;
    void getOutputScanline(int y, IxScanline<float>& buffer) override { give(y, buffer); }
    void getOutputScanline(int y, IxScanline<Rgba>& buffer) override { give(y, buffer); }
    bool inputIsAvailable() const override;
    void getAllInputs(std::vector<IpScanlinePipe*>& list) const override;

protected:
    void addInput(IpScanlinePipePtr input) { _inputs.push_back(std::move(input)); }
    IpScanlinePipe& getInput(std::size_t i) const { return *_inputs[i]; }
    // Columns on each side of the region that the inputs must give.
    void setInputMargin(int columns) { _margin = columns; }

    // Computes row y into getOutputLine(), over getDstRegion()'s columns.
    virtual void processOutputScanline(int y) = 0;
    IxScanline<T>& getOutputLine() { return *_current; }

private:
    template <class U>
    void give(int y, IxScanline<U>& buffer);

    std::vector<IpScanlinePipePtr> _inputs;
    int _margin = 0;
    std::vector<IxScanline<T>> _ring;
    std::vector<int> _rows;
    IxScanline<T>* _current = nullptr;
};

// Drives a pipe into a tile.
class IpDestNode {
public:
    explicit IpDestNode(IpScanlinePipePtr pipe) : _pipe(std::move(pipe)) {}
    // Every row of the guard's region, pulled from the pipe and written.
    void process(IxWriteGuard const& guard);

private:
    IpScanlinePipePtr _pipe;
};

extern template class IpScanlinePipeOutput<float>;
extern template class IpScanlinePipeOutput<CoRgbaColorTyped<float>>;

} // namespace Qv
