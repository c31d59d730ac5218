// The gradient node: derivatives per pixel by central differences, edge
// pixels repeated at the image's border, the same whatever the tile grid.
#include "btPxGradientNode.h"
#include "motioTestSupport.h"

#include <gtest/gtest.h>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

class GradientNode : public MotioTestBase {};

} // namespace

// Red = 3 x + 0.5 y over [-3, 5) x [-2, 4): inside, (3, 0.5); on the border
// one side of the difference repeats the edge pixel, which halves it.
TEST_F(GradientNode, AllTheRampsDerivativesWhateverTheTiles) {
    GeRectangle<int> const region{-3, 5, -2, 4};
    auto const ramp = functionImage(region, [](int x, int y) {
        return Rgba{3.0f * float(x) + 0.5f * float(y), 7.0f, -1.0f, 0.25f};
    });
    for (int tileSize : {2, 3, 16, 256}) {
        SCOPED_TRACE(tileSize);
        TileSize grid(tileSize);
        auto const gradient = PxGradientNode::createPxNode(ramp);
        IxTile const image = evaluateFrame(gradient);
        EXPECT_EQ(image.getPixelRegion(), region);
        EXPECT_EQ(image.getPixelFormat().getComps(), IxPixelFormat::RGB);
        EXPECT_EQ(image.getPixelFormat().getDepth(), IxPixelFormat::FLOAT16);
        for (int y = region.y1; y < region.y2; ++y)
            for (int x = region.x1; x < region.x2; ++x) {
                SCOPED_TRACE(testing::Message() << "pixel " << x << ", " << y);
                bool const xEdge = x == region.x1 || x == region.x2 - 1;
                bool const yEdge = y == region.y1 || y == region.y2 - 1;
                Rgba const p = pixelAt(image, x, y);
                EXPECT_EQ(p.r, xEdge ? 1.5f : 3.0f);
                EXPECT_EQ(p.g, yEdge ? 0.25f : 0.5f);
                EXPECT_EQ(p.b, 0.0f);
            }
    }
}

// A curved image: the difference across two pixels, halved, per pixel.
TEST_F(GradientNode, IsTheCentralDifference) {
    GeRectangle<int> const region{0, 6, 0, 5};
    auto const bowl = functionImage(region, [](int x, int y) {
        return Rgba{float(x * x) - float(y * y * y) / 8.0f, 0.0f, 0.0f, 1.0f};
    });
    IxTile const image = evaluateFrame(PxGradientNode::createPxNode(bowl));
    struct Case {
        int x, y;
        float gx, gy;
    };
    Case const cases[] = {
        {2, 2, 4.0f, -1.625f},  // (9 - 1) / 2, (-27 / 8 + 1 / 8) / 2
        {4, 1, 8.0f, -0.5f},    // (25 - 9) / 2, (-1 - 0) / 2
        {0, 0, 0.5f, -0.0625f}, // the corner: (1 - 0) / 2, (-1 / 8 - 0) / 2
        {5, 4, 4.5f, -2.3125f}, // the far corner: (25 - 16) / 2, (-8 + 27 / 8) / 2
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::Message() << c.x << ", " << c.y);
        Rgba const p = pixelAt(image, c.x, c.y);
        EXPECT_FLOAT_EQ(p.r, c.gx);
        EXPECT_FLOAT_EQ(p.g, c.gy);
    }
}
