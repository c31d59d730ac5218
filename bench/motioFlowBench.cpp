// The whole optical flow against OpenCV on two 1920 x 1080 pairs with the
// same known motion, T(p) = 1.01 R(0.5 deg) (p - c) + c + (2.5, -1.25): a
// textured "camera" pair (luminance deviation 0.15) and a flat "camera_low"
// one (0.05), from the test pairs' texture.
// Ours: the Forward Vectors of a new Motio chain each run, so with cold
// caches, at quality "Full" (and "Half"), the whole frame at proxy 0 on the
// request manager's workers, from float frames whose proxy scales (the
// image reader's halvings) are cut into tiles beforehand.
// Theirs: cv::calcOpticalFlowFarneback (0.5, 5, 15, 3, 5, 1.2) and a new DIS
// PRESET_MEDIUM each run, on the 8-bit luminance (both need 8 bits, or
// 0-255 values), on as many threads.
// Times on the camera pair, median of 5 in turns; end-point errors on both
// pairs, over the pixels 16 or more inside both frames.
// Prints `ratio motio.full.farneback`, `ratio motio.full.dis`,
// `ratio motio.half.farneback`, then per pair `epe motio.<pair>`,
// `epe farneback.<pair>`, `epe dis.<pair>` and `ratio motio.<pair>_epe.farneback`.
#include "benchTiming.h"
#include "btMotioTool.h"
#include "btPxMotioNode.h"
#include "btPxMotioOutputNode.h"
#include "ixPixelUtil.h"
#include "ixWriteGuard.h"
#include "motioBench.h"
#include "motioBenchFrame.h"
#include "motioTexturePair.h"
#include "pxImageMultiTileRequest.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <map>
#include <opencv2/core.hpp>
#include <opencv2/video/tracking.hpp>
#include <tuple>

namespace {

using namespace Qv;
using MotioTest::TextureFlow;
using MotioTest::TextureImage;
using MotioTest::TexturePair;

constexpr int WIDTH = 1920;
constexpr int HEIGHT = 1080;
constexpr int REPETITIONS = 5;
constexpr double RATE = 24.0;
GeRectangle<int> const FRAME{0, WIDTH, 0, HEIGHT};
MotioTest::TextureMotion const MOTION{2.5, -1.25, 0.5, 1.01};
constexpr int FULL = 0;
constexpr int HALF = 1;

// Both frames of a pair as footage: frame 0 at time 0, frame 1 from 1/24 on,
// each result valid for its frame only, every proxy scale down to one pixel
// cut into tiles beforehand, so that reading costs the handle only, as from
// a reader whose tiles are cached.
class PairFramesNode : public PxImageProtocol {
public:
    // With `eightBit`, values rounded to 1/255 at every scale.
    PairFramesNode(PxNode::Init const& init, TexturePair const& pair, bool eightBit)
        : PxNode(init), PxImageProtocol(init), _rod(pixelizedToNominal(FRAME, 1.0, 1.0)) {
        IxPixelFormat const format(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32);
        for (int proxy = 0; (1 << proxy) < 2 * std::max(WIDTH, HEIGHT); ++proxy) {
            GeRectangle<int> const pixels = nominalToPixelized(_rod, 1.0, proxyScaleToFactor(proxy));
            GeRectangle<int> const tiles = convertPixelsToTiles(pixels);
            for (int frame : {0, 1}) {
                TextureImage const image =
                    pair.render(frame, proxy, pixels.x1, pixels.x2, pixels.y1, pixels.y2);
                for (int ty = tiles.y1; ty < tiles.y2; ++ty)
                    for (int tx = tiles.x1; tx < tiles.x2; ++tx) {
                        GeRectangle<int> const region = getTilePixels({tx, ty}).getIntersection(pixels);
                        IxTile tile(format, region);
                        IxWriteGuard const out(tile);
                        for (int y = region.y1; y < region.y2; ++y)
                            for (int x = region.x1; x < region.x2; ++x) {
                                float const v =
                                    eightBit ? std::round(image.at(x, y) * 255.0f) / 255.0f : image.at(x, y);
                                IxPixelUtil::setPixelColor(out, x, y, {v, v, v, 1.0f});
                            }
                        _tiles.emplace(std::tuple{frame, proxy, tx, ty}, tile);
                    }
            }
        }
    }

    PxResult<PxImageFormat> getImageFormat() const override {
        return PxResult<PxImageFormat>(
            PxImageFormat(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32), Rational(24, 1)),
            PxValidityInterval::FULL);
    }
    PxRODResult getImageROD(PxTimeStreamContext const&) const override {
        return PxRODResult(_rod, PxValidityInterval::FULL);
    }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        PxValidityInterval const interval = PxValidityInterval::createFrameInterval(RATE, context.getTime());
        int const frame = std::clamp(int(std::lround(context.getTime() * RATE)), 0, 1);
        auto const found = _tiles.find(
            {frame, context.getProxyScale(), context.getTilePosition().x, context.getTilePosition().y});
        if (found == _tiles.end())
            return PxImageResult(allocateEmptyImageBuffer(), interval);
        return PxImageResult(found->second, interval);
    }

private:
    GeRectangle<float> _rod;
    std::map<std::tuple<int, int, int, int>, IxTile> _tiles;
};

PxStrongHndl<PxImageProtocol> pairFrames(TexturePair const& pair, bool eightBit) {
    PxNode::Init init;
    PxStrongHndl<PairFramesNode> node(new PairFramesNode(init, pair, eightBit));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

// The forward vectors of frame 0 by a new chain at the quality.
PxImageMultiTileRequest::Results runOurs(PxStrongHndl<PxImageProtocol> const& frames, int quality) {
    PxStrongHndl<BtPxMotioNode> const node = BtMotioTool::createPxNode(frames, quality);
    return QvBench::evaluateAllTiles(
        BtPxMotioOutputNode<BtPxMotioNode>::create(node, BtMotioTypes::FORWARD_VECTORS));
}

double oursError(TexturePair const& pair, PxImageMultiTileRequest::Results const& results) {
    IxTile const vectors = PxImageMultiTileRequest::assembleTiles(results);
    if (!vectors.isValid() || vectors.getPixelRegion() != FRAME) {
        std::fprintf(stderr, "motio.flow: our vectors do not cover the frame\n");
        return NAN;
    }
    IxReadGuard const guard(vectors);
    return pair.meanEndPointError(0, [&guard](int x, int y) {
        CoRgbaColorTyped<float> const v = IxPixelUtil::getPixelColor(guard, x, y);
        return TextureFlow{v.r, v.g};
    });
}

double theirError(TexturePair const& pair, cv::Mat const& flow) {
    return pair.meanEndPointError(0, [&flow](int x, int y) {
        cv::Vec2f const v = flow.at<cv::Vec2f>(y, x);
        return TextureFlow{v[0], v[1]};
    });
}

cv::Mat eightBit(TextureImage const& image) {
    cv::Mat mat(image.height, image.width, CV_8UC1);
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
            mat.at<std::uint8_t>(y, x) = cv::saturate_cast<std::uint8_t>(image.at(x, y) * 255.0f);
    return mat;
}

void farneback(cv::Mat const& prev, cv::Mat const& next, cv::Mat& flow) {
    flow = cv::Mat();
    cv::calcOpticalFlowFarneback(prev, next, flow, 0.5, 5, 15, 3, 5, 1.2, 0);
}

void dis(cv::Mat const& prev, cv::Mat const& next, cv::Mat& flow) {
    flow = cv::Mat();
    cv::DISOpticalFlow::create(cv::DISOpticalFlow::PRESET_MEDIUM)->calc(prev, next, flow);
}

// The pair's errors, and on the camera pair the timings first.
void runPair(char const* name, double deviation, bool timed, int workers) {
    TexturePair const pair(WIDTH, HEIGHT, MOTION, deviation);
    PxStrongHndl<PxImageProtocol> const frames = pairFrames(pair, false);
    cv::Mat const prev = eightBit(pair.render(0));
    cv::Mat const next = eightBit(pair.render(1));
    cv::Mat farnebackFlow, disFlow;

    if (timed) {
        std::vector<double> const medians = QvBench::mediansInTurns(
            {[&] { runOurs(frames, FULL); }, [&] { runOurs(frames, HALF); },
             [&] { farneback(prev, next, farnebackFlow); }, [&] { dis(prev, next, disFlow); }},
            REPETITIONS);
        std::printf("motio.flow: %d workers, %s pair: ours Full %.1f ms, Half %.1f ms; Farneback %.1f ms, "
                    "DIS medium %.1f ms\n",
                    workers, name, medians[0] * 1e3, medians[1] * 1e3, medians[2] * 1e3, medians[3] * 1e3);
        std::printf("ratio motio.full.farneback %.3f\n", medians[0] / medians[2]);
        std::printf("ratio motio.full.dis %.3f\n", medians[0] / medians[3]);
        std::printf("ratio motio.half.farneback %.3f\n", medians[1] / medians[2]);
    } else {
        farneback(prev, next, farnebackFlow);
        dis(prev, next, disFlow);
    }

    double const ours = oursError(pair, runOurs(frames, FULL));
    double const ours8 = oursError(pair, runOurs(pairFrames(pair, true), FULL));
    double const theirs = theirError(pair, farnebackFlow);
    std::printf("motio.flow: %s pair: ours on the 8-bit values the peers see, epe %.4f\n", name, ours8);
    std::printf("epe motio.%s %.4f\n", name, ours);
    std::printf("epe farneback.%s %.4f\n", name, theirs);
    std::printf("epe dis.%s %.4f\n", name, theirError(pair, disFlow));
    std::printf("ratio motio.%s_epe.farneback %.3f\n", name, ours / theirs);
}

} // namespace

namespace QvBench {

void runFlowBench(int workers) {
    runPair("camera", MotioTest::CAMERA_STD, true, workers);
    runPair("camera_low", MotioTest::CAMERA_LOW_STD, false, workers);
}

} // namespace QvBench
