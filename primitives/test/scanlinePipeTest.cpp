#include "ipScanlinePipe.h"
#include "ixScanlineUtil.h"
#include "ixTestUtil.h"

#include <gtest/gtest.h>
#include <map>

using namespace Qv;
using namespace Qv::IxTest;

namespace {

// The mean of rows y - 1, y, y + 1 of its input, counting the rows it makes.
class VerticalMean : public IpScanlinePipeOutput<Rgba> {
public:
    explicit VerticalMean(IpScanlinePipePtr input) {
        input->setExtraLinesBuffered(1);
        addInput(std::move(input));
    }
    std::map<int, int> made;

protected:
    void processOutputScanline(int y) override {
        ++made[y];
        IxScanline<Rgba>& out = getOutputLine();
        IxScanline<Rgba> row(out.getInterval());
        IxScanlineUtil::set(out, Rgba{}, nullptr);
        for (int dy = -1; dy <= 1; ++dy) {
            getInput(0).getOutputScanline(y + dy, row);
            IxScanlineUtil::accumulateScanline(out, row, nullptr);
        }
        IxScanlineUtil::scaleScanline(out, out, 1.0f / 3, nullptr);
    }
};

// Its input's alpha, as one float per pixel.
class AlphaOf : public IpScanlinePipeOutput<float> {
public:
    explicit AlphaOf(IpScanlinePipePtr input) { addInput(std::move(input)); }

protected:
    void processOutputScanline(int y) override {
        IxScanline<Rgba> row(getOutputLine().getInterval());
        getInput(0).getOutputScanline(y, row);
        IxScanlineUtil::extractChannel(getOutputLine(), 3, row, IxScanlineUtil::NO_INVERT, nullptr);
    }
};

TEST(IpScanlinePipeTest, StagesMakeEachRowOnceAndZeroOutsideTheSource) {
    Rect const region{0, 5, 0, 6};
    IxTile const image = makeTile(F(F::RGBA, F::FLOAT32), region, [](int x, int y) {
        return Rgba{0, 0, 0, static_cast<float>(3 * y + x)};
    });
    RCShdPtr<VerticalMean> const mean(
        new VerticalMean(IpScanlinePipePtr(new IpSourceNode({IxReadGuard(image)}))));
    IpScanlinePipePtr const alpha(new AlphaOf(mean));
    EXPECT_TRUE(alpha->inputIsAvailable());

    IxTile const out(F(F::ALPHA, F::FLOAT32), region);
    IpDestNode(alpha).process(IxWriteGuard(out));
    for (int y = region.y1; y < region.y2; ++y)
        for (int x = region.x1; x < region.x2; ++x) {
            // Rows above and below the image come through the source as zero.
            float sum = 0;
            for (int dy = -1; dy <= 1; ++dy)
                sum += region.contains(x, y + dy) ? static_cast<float>(3 * (y + dy) + x) : 0.0f;
            EXPECT_NEAR(IxPixelUtil::getPixelColor(IxReadGuard(out), x, y).a, sum / 3, 1e-5f)
                << x << ',' << y;
        }
    for (auto const& [row, count] : mean->made)
        EXPECT_EQ(count, 1) << row;
    EXPECT_EQ(mean->made.size(), 6u);

    // A second pass over another tile starts afresh.
    IxTile const part(F(F::RGBA, F::FLOAT32), {1, 3, 2, 4});
    IpDestNode(mean).process(IxWriteGuard(part));
    EXPECT_NEAR(IxPixelUtil::getPixelColor(IxReadGuard(part), 2, 3).a, 11.0f, 1e-5f);
}

} // namespace
