// The optical flow against pairs whose motion is known exactly: 320 x 240
// frames of a band-limited texture, frame 1 the texture moved by a shift, a
// rotation or a zoom about the centre. The forward vectors of frame 0 and the
// backward vectors of frame 1 are each within a fifth of a pixel of the truth
// on average over the interior; a still pair gives no motion at all.
#include "btMotioTool.h"
#include "btPxMotioNode.h"
#include "btPxMotioOutputNode.h"
#include "motioTestSupport.h"
#include "motioTexturePair.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <vector>

using namespace Qv;
using namespace Qv::MotioTest;

namespace {

constexpr int WIDTH = 320;
constexpr int HEIGHT = 240;
GeRectangle<int> const FRAME{0, WIDTH, 0, HEIGHT};
// The mean end-point error allowed, in pixels.
constexpr double MAX_MEAN_ERROR = 0.2;

// Both frames of the pair as footage: frame 0 at time 0, frame 1 at 1/24 (and
// held on either side), each result valid for its frame only. Every proxy
// scale down to one pixel is rendered beforehand.
PxStrongHndl<PxImageProtocol> footage(TexturePair const& pair) {
    using Levels = std::vector<std::array<TextureImage, 2>>;
    auto levels = std::make_shared<Levels>();
    GeRectangle<float> const rod = PxImageProtocol::pixelizedToNominal(FRAME, 1.0, 1.0);
    for (int proxy = 0; (1 << proxy) < 2 * std::max(WIDTH, HEIGHT); ++proxy) {
        GeRectangle<int> const r =
            PxImageProtocol::nominalToPixelized(rod, 1.0, PxImageProtocol::proxyScaleToFactor(proxy));
        levels->push_back(
            {pair.render(0, proxy, r.x1, r.x2, r.y1, r.y2), pair.render(1, proxy, r.x1, r.x2, r.y1, r.y2)});
    }
    ImageOptions options;
    options.perFrame = true;
    return functionImage(
        FRAME,
        [levels](int x, int y, double frame, int proxy) {
            TextureImage const& image =
                (*levels)[std::min<std::size_t>(proxy, levels->size() - 1)][frame < 0.5 ? 0 : 1];
            float const v = image.at(x, y);
            return Rgba{v, v, v, 1.0f};
        },
        options);
}

// The forward vectors of frame 0 and the backward vectors of frame 1, whole
// frames at proxy 0 at "Full" quality.
struct Vectors {
    IxTile forward;
    IxTile backward;
};

Vectors analyse(TexturePair const& pair) {
    PxStrongHndl<BtPxMotioNode> const node = BtMotioTool::createPxNode(footage(pair), 0);
    return {evaluateFrame(BtPxMotioOutputNode<BtPxMotioNode>::create(node, BtMotioTypes::FORWARD_VECTORS),
                          {0.0, 0}),
            evaluateFrame(BtPxMotioOutputNode<BtPxMotioNode>::create(node, BtMotioTypes::BACKWARD_VECTORS),
                          {1.0 / RATE, 0})};
}

// The mean end-point error of the vectors of `frame` (0 forward, 1 backward).
double meanError(TexturePair const& pair, int frame, IxTile const& vectors) {
    IxReadGuard const guard(vectors);
    return pair.meanEndPointError(frame, [&guard](int x, int y) {
        Rgba const v = IxPixelUtil::getPixelColor(guard, x, y);
        return TextureFlow{v.r, v.g};
    });
}

// The first pixel whose vector is not exactly zero, as text; empty when none.
std::string firstMotion(IxTile const& vectors) {
    IxReadGuard const guard(vectors);
    for (int y = FRAME.y1; y < FRAME.y2; ++y)
        for (int x = FRAME.x1; x < FRAME.x2; ++x) {
            Rgba const v = IxPixelUtil::getPixelColor(guard, x, y);
            if (v.r != 0.0f || v.g != 0.0f)
                return "(" + std::to_string(x) + ", " + std::to_string(y) + "): " + std::to_string(v.r) +
                       ", " + std::to_string(v.g);
        }
    return {};
}

struct MotionCase {
    char const* name;
    TextureMotion motion;
};

class MotioAccuracy : public MotioTestBase, public ::testing::WithParamInterface<MotionCase> {};
class MotioAccuracyStill : public MotioTestBase {};

} // namespace

TEST_P(MotioAccuracy, BothDirectionsFindTheMotionWithinAFifthOfAPixel) {
    TexturePair const pair(WIDTH, HEIGHT, GetParam().motion, CAMERA_STD);
    Vectors const vectors = analyse(pair);
    ASSERT_EQ(vectors.forward.getPixelRegion(), FRAME);
    ASSERT_EQ(vectors.backward.getPixelRegion(), FRAME);
    double const forward = meanError(pair, 0, vectors.forward);
    double const backward = meanError(pair, 1, vectors.backward);
    RecordProperty("forwardMeanError", std::to_string(forward));
    RecordProperty("backwardMeanError", std::to_string(backward));
    EXPECT_LE(forward, MAX_MEAN_ERROR) << "forward vectors of frame 0";
    EXPECT_LE(backward, MAX_MEAN_ERROR) << "backward vectors of frame 1";
}

INSTANTIATE_TEST_SUITE_P(Motions, MotioAccuracy,
                         ::testing::Values(MotionCase{"Shift", {3.25, -1.5, 0.0, 1.0}},
                                           MotionCase{"LargeShift", {12.6, 7.3, 0.0, 1.0}},
                                           MotionCase{"Rotation", {0.0, 0.0, 3.0, 1.0}},
                                           MotionCase{"Zoom", {0.0, 0.0, 0.0, 1.05}}),
                         [](::testing::TestParamInfo<MotionCase> const& info) { return info.param.name; });

TEST_F(MotioAccuracyStill, NoMotionGivesExactlyZeroVectors) {
    TexturePair const pair(WIDTH, HEIGHT, {}, CAMERA_STD);
    Vectors const vectors = analyse(pair);
    ASSERT_EQ(vectors.forward.getPixelRegion(), FRAME);
    ASSERT_EQ(vectors.backward.getPixelRegion(), FRAME);
    EXPECT_EQ(firstMotion(vectors.forward), "") << "forward";
    EXPECT_EQ(firstMotion(vectors.backward), "") << "backward";
}
