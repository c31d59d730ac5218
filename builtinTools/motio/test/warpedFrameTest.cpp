// A neighbouring frame brought back to the current one along the vectors: the
// frame k steps away, read where the vectors of each frame in between, one
// after the other, take each pixel; the vectors of later frames for a later
// frame, of earlier ones otherwise.
#include "btMotionControllerBase.h"
#include "motioTestSupport.h"
#include "stImageCacheNode.h"

#include <array>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

class WarpedFrame : public MotioTestBase {};

GeRectangle<int> const FRAME{0, 48, 0, 32};
// The frame asked for.
constexpr int CURRENT = 5;

// Frame f: linear in x and y, so that a bilinear read anywhere inside gives
// the value exactly, and different in every frame.
Rgba frameValue(double x, double y, double f) {
    return {float(x + 100.0 * f), float(y - 50.0 * f), float(f), 1.0f};
}

// Vectors the same over a frame but different from frame to frame, so that
// a sum of the wrong frames shows.
std::pair<float, float> fwdAt(double f) {
    return {float(0.25 * f - 0.5), -0.5f};
}
std::pair<float, float> bwdAt(double f) {
    return {-0.75f, float(0.25 * f - 1.0)};
}

PxStrongHndl<PxImageProtocol> perFrame(std::function<Rgba(int, int, double)> fn) {
    return functionImage(FRAME, [fn = std::move(fn)](int x, int y, double f, int) { return fn(x, y, f); },
                         {.perFrame = true});
}

PxStrongHndl<PxImageProtocol> vectorsOf(std::pair<float, float> (*at)(double)) {
    return perFrame([at](int, int, double f) {
        auto const [vx, vy] = at(f);
        return Rgba{vx, vy, 0.0f, 1.0f};
    });
}

} // namespace

TEST_F(WarpedFrame, ReadsTheFrameAtTheOffsetAlongTheVectorsOfEachFrameBetween) {
    struct Case {
        int offset;
        // The frames whose vectors add up, and the total.
        std::pair<float, float> path;
    } const cases[] = {
        // One frame on: the forward vectors of this frame, nothing added.
        {1, fwdAt(CURRENT)},
        // No offset: this frame along its own backward vectors.
        {0, bwdAt(CURRENT)},
        {-1, bwdAt(CURRENT)},
        // Two back: this frame's backward vectors, then those of the frame
        // before.
        {-2,
         {bwdAt(CURRENT).first + bwdAt(CURRENT - 1).first,
          bwdAt(CURRENT).second + bwdAt(CURRENT - 1).second}},
        {3,
         {fwdAt(CURRENT).first + fwdAt(CURRENT + 1).first + fwdAt(CURRENT + 2).first,
          fwdAt(CURRENT).second + fwdAt(CURRENT + 1).second + fwdAt(CURRENT + 2).second}},
    };
    auto const image = perFrame([](int x, int y, double f) { return frameValue(x, y, f); });
    auto const fwd = vectorsOf(fwdAt);
    auto const bwd = vectorsOf(bwdAt);
    for (Case const& c : cases) {
        SCOPED_TRACE(testing::Message() << "offset " << c.offset);
        PxStrongHndl<PxImageProtocol const> const warped =
            BtMotionControllerBase::createWarpedFrameNodes(image, fwd, bwd, c.offset);
        IxTile const out = evaluateFrame(warped, {CURRENT / RATE, 0});
        ASSERT_EQ(out.getPixelRegion(), FRAME);
        // Pixels whose path stays inside the frames.
        for (int y = 8; y < 24; ++y)
            for (int x = 8; x < 40; ++x) {
                Rgba const expected = frameValue(x + c.path.first, y + c.path.second, CURRENT + c.offset);
                ASSERT_TRUE(near(pixelAt(out, x, y), expected, 1e-3f)) << "at " << x << ", " << y;
            }
    }
}

TEST_F(WarpedFrame, IsKeptInAMemoryCacheOfItsOwnName) {
    auto const image = perFrame([](int x, int y, double f) { return frameValue(x, y, f); });
    PxStrongHndl<PxImageProtocol> const warped =
        BtMotionControllerBase::createWarpedFrameNodes(image, vectorsOf(fwdAt), vectorsOf(bwdAt), 2);
    PxStrongHndl<StImageCacheNode const> const cache(warped);
    EXPECT_EQ(cache->getName(), "Motion Warped Frame Cache");
    evaluateFrame(warped, {CURRENT / RATE, 0});
    std::size_t const computed = cache->getNbComputations();
    EXPECT_GT(computed, 0u);
    evaluateFrame(warped, {CURRENT / RATE, 0});
    EXPECT_EQ(cache->getNbComputations(), computed);
}

TEST_F(WarpedFrame, FollowsTheVectorsOfTheFramesAroundAnotherTime) {
    // The same path asked at another frame: the offsets are relative.
    auto const image = perFrame([](int x, int y, double f) { return frameValue(x, y, f); });
    PxStrongHndl<PxImageProtocol const> const warped =
        BtMotionControllerBase::createWarpedFrameNodes(image, vectorsOf(fwdAt), vectorsOf(bwdAt), -2);
    constexpr int FRAME_ASKED = -4;
    IxTile const out = evaluateFrame(warped, {FRAME_ASKED / RATE, 0});
    float const dx = bwdAt(FRAME_ASKED).first + bwdAt(FRAME_ASKED - 1).first;
    float const dy = bwdAt(FRAME_ASKED).second + bwdAt(FRAME_ASKED - 1).second;
    EXPECT_TRUE(near(pixelAt(out, 20, 15), frameValue(20 + dx, 15 + dy, FRAME_ASKED - 2), 1e-3f));
}
