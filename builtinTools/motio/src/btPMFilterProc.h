#pragma once
// Explicit Perona-Malik diffusion of a vector image as a scanline pipe: no
// intermediate image is allocated, each stage keeps the few rows that the
// next one reads. One stage, with c = in(x, y) and g one coefficient plane:
//
//   out = c + 0.2 * (g(x, y+1) (in(x, y+1) - c) + g(x, y-1) (in(x, y-1) - c)
//                  + g(x+1, y) (in(x+1, y) - c) + g(x-1, y) (in(x-1, y) - c))
//
// The flow from a neighbour is weighed by that neighbour's coefficient, so a
// pixel on an edge lets nothing through, whichever side it is read from. An
// iteration is two stages, with the exponential coefficient and then the
// rational one.
#include "ipScanlinePipe.h"

namespace Qv {

// One coefficient (component 0 or 1) of the coefficient image, as a float line.
class IpPMExtractGNode : public IpScanlinePipeOutput<float> {
public:
    IpPMExtractGNode(IpScanlinePipePtr coefficients, int comp);

protected:
    void initializeProcessing() override;
    void processOutputScanline(int y) override;

private:
    int _comp;
    IxScanline<Rgba> _input;
};

// One diffusion stage of a 4-component image with one coefficient plane.
// Outside the region it is asked for it gives CoRgbaColorTyped::ZERO, as
// every stage does; a zero coefficient there keeps that out of the image.
class IpPMFilterNode : public IpScanlinePipeOutput<CoRgbaColorTyped<float>> {
public:
    IpPMFilterNode(IpScanlinePipePtr image, IpScanlinePipePtr coefficient);

    // The step: 0.2, so that with every coefficient 1 a stage is the mean of
    // the five-point stencil.
    static constexpr float STEP = 0.2f;

protected:
    void initializeProcessing() override;
    void processOutputScanline(int y) override;

private:
    // Rows y - 1, y, y + 1 of both inputs over the region widened by one
    // column, each row pulled once as the rows move down.
    void fetchRows(int y);

    IxScanline<Rgba> _image[3];
    IxScanline<float> _coefficient[3];
    int _rows[3] = {};
};

class BtPMFilterProc {
public:
    // `iterations` diffusion iterations of the vectors with the two
    // coefficient planes, written over `out`'s region. The sources must
    // reach 2 * iterations pixels past it to give the same pixels as one
    // whole-image pass; outside them they read as zero. With no iteration
    // the vectors are copied.
    static void process(std::vector<IxReadGuard> vectors, std::vector<IxReadGuard> coefficients,
                        IxWriteGuard const& out, int iterations);
};

} // namespace Qv
