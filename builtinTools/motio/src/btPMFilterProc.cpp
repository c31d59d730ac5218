#include "btPMFilterProc.h"

#include "assertions.h"
#include "ixScanlineUtil.h"

#include <climits>

namespace Qv {

namespace {

using Rgba = CoRgbaColorTyped<float>;

// Rows y - 1, y and y + 1 land in three different slots.
inline int slotOf(int y) {
    return ((y % 3) + 3) % 3;
}

inline float const* floats(Rgba const* p) {
    return reinterpret_cast<float const*>(p);
}
inline float* floats(Rgba* p) {
    return reinterpret_cast<float*>(p);
}

} // namespace

IpPMExtractGNode::IpPMExtractGNode(IpScanlinePipePtr coefficients, int comp) : _comp(comp) {
    QV_ASSERT(comp == 0 || comp == 1);
    addInput(std::move(coefficients));
}

void IpPMExtractGNode::initializeProcessing() {
    _input = IxScanline<Rgba>(getDstRegion().getXInterval());
}

void IpPMExtractGNode::processOutputScanline(int y) {
    getInput(0).getOutputScanline(y, _input);
    IxScanlineUtil::extractChannel(getOutputLine(), _comp, _input, IxScanlineUtil::NO_INVERT, nullptr);
}

IpPMFilterNode::IpPMFilterNode(IpScanlinePipePtr image, IpScanlinePipePtr coefficient) {
    image->setExtraLinesBuffered(3);
    coefficient->setExtraLinesBuffered(3);
    addInput(std::move(image));
    addInput(std::move(coefficient));
    setInputMargin(1);
}

void IpPMFilterNode::initializeProcessing() {
    GeInterval<int> const& columns = getDstRegion().getXInterval();
    GeInterval<int> const wide{columns.x1 - 1, columns.x2 + 1};
    for (int i = 0; i < 3; ++i) {
        _image[i] = IxScanline<Rgba>(wide);
        _coefficient[i] = IxScanline<float>(wide);
        _rows[i] = INT_MIN;
    }
}

void IpPMFilterNode::fetchRows(int y) {
    for (int row = y - 1; row <= y + 1; ++row) {
        int const slot = slotOf(row);
        if (_rows[slot] == row)
            continue;
        getInput(0).getOutputScanline(row, _image[slot]);
        getInput(1).getOutputScanline(row, _coefficient[slot]);
        _rows[slot] = row;
    }
}

void IpPMFilterNode::processOutputScanline(int y) {
    fetchRows(y);
    int const above = slotOf(y - 1);
    int const here = slotOf(y);
    int const below = slotOf(y + 1);
    // Each line starts one column left of the output: index 1 is the first output pixel.
    float const* up = floats(_image[above].getData() + 1);
    float const* centre = floats(_image[here].getData() + 1);
    float const* down = floats(_image[below].getData() + 1);
    float const* gUp = _coefficient[above].getData() + 1;
    float const* gHere = _coefficient[here].getData() + 1;
    float const* gDown = _coefficient[below].getData() + 1;
    float* out = floats(getOutputLine().getData());
    int const n = getOutputLine().getLength();
    for (int i = 0; i < n; ++i) {
        // The four neighbours' coefficients, each spread over the four components.
        float const wDown = gDown[i];
        float const wUp = gUp[i];
        float const wRight = gHere[i + 1];
        float const wLeft = gHere[i - 1];
        float const* c = centre + 4 * i;
        float const* u = up + 4 * i;
        float const* d = down + 4 * i;
        float* o = out + 4 * i;
        for (int k = 0; k < 4; ++k)
            o[k] = c[k] + STEP * (wDown * (d[k] - c[k]) + wUp * (u[k] - c[k]) + wRight * (c[k + 4] - c[k]) +
                                  wLeft * (c[k - 4] - c[k]));
    }
}

void BtPMFilterProc::process(std::vector<IxReadGuard> vectors, std::vector<IxReadGuard> coefficients,
                             IxWriteGuard const& out, int iterations) {
    IpScanlinePipePtr stage(new IpSourceNode(std::move(vectors)));
    if (iterations > 0) {
        IpScanlinePipePtr const source(new IpSourceNode(std::move(coefficients)));
        IpScanlinePipePtr const g[2] = {IpScanlinePipePtr(new IpPMExtractGNode(source, 0)),
                                        IpScanlinePipePtr(new IpPMExtractGNode(source, 1))};
        for (int i = 0; i < iterations; ++i)
            for (IpScanlinePipePtr const& coefficient : g)
                stage = IpScanlinePipePtr(new IpPMFilterNode(stage, coefficient));
        // Every stage of one kind reads the same coefficient rows, each two
        // rows lower than the stage before it: keep them all made once.
        for (IpScanlinePipePtr const& coefficient : g)
            coefficient->setExtraLinesBuffered(iterations);
    }
    IpDestNode(stage).process(out);
}

} // namespace Qv
