// The proxy upscale on one frame of 4-component float vectors, 960 x 540 one
// level up to 1920 x 1080, every destination tile in parallel on the request
// manager's workers, against cv::resize with INTER_LINEAR on as many
// threads. The scale is 1, as when the motion node fills the levels finer
// than its analysis: both sides do the resampling only.
// Prints `ratio motio.upscale.resize <ours/anchor>`.
#include "benchTiming.h"
#include "btUpscaleTool.h"
#include "ixPixelUtil.h"
#include "ixWriteGuard.h"
#include "motioBench.h"
#include "motioBenchFrame.h"
#include "pxImageMultiTileRequest.h"
#include "pxRequestMgr.h"

#include <cstdio>
#include <map>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <utility>

namespace {

using namespace Qv;

constexpr int WIDTH = 1920;
constexpr int HEIGHT = 1080;
constexpr int REPETITIONS = 9;
GeRectangle<int> const FRAME{0, WIDTH, 0, HEIGHT};
GeRectangle<int> const HALF{0, WIDTH / 2, 0, HEIGHT / 2};

// Smooth random vectors, as a coarse level's are.
cv::Mat smoothVectors() {
    cv::Mat noise(HEIGHT / 2, WIDTH / 2, CV_32FC4);
    cv::RNG random(7);
    random.fill(noise, cv::RNG::UNIFORM, -4.0f, 4.0f);
    cv::GaussianBlur(noise, noise, cv::Size(0, 0), 3.0);
    return noise;
}

PxImageMultiTileRequest::Results runOurs(PxStrongHndl<PxImageProtocol> const& node) {
    return QvBench::evaluateAllTiles(node);
}

} // namespace

namespace QvBench {

void runUpscaleBench(int workers) {
    cv::Mat const half = smoothVectors();
    PxStrongHndl<PxImageProtocol> const upscale = BtUpscaleTool::createPxNode(
        QvBench::tiledFrame(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32), HALF, 1,
                            QvBench::fromRgbaMat(half)),
        1.0);
    cv::Mat full;
    // Each side makes a new image per run, as a node makes new tiles: the
    // first touch of 33 MB of fresh memory is part of both.
    auto resize = [&] {
        full = cv::Mat();
        cv::resize(half, full, cv::Size(WIDTH, HEIGHT), 0, 0, cv::INTER_LINEAR);
    };

    std::vector<double> const medians = mediansInTurns({[&] { runOurs(upscale); }, resize}, REPETITIONS);

    // Both are smooth interpolations of the same field: close, not equal
    // ((0.8, 0.2) against (0.75, 0.25) weights).
    IxTile const tile = PxImageMultiTileRequest::assembleTiles(runOurs(upscale), {600, 601, 400, 401});
    CoRgbaColorTyped<float> const ours = IxPixelUtil::getPixelColor(IxReadGuard(tile), 600, 400);
    cv::Vec4f const theirs = full.at<cv::Vec4f>(400, 600);
    std::printf(
        "motio.upscale: %d workers, ours %.2f ms, resize %.2f ms; pixel (600, 400) ours (%.4f, %.4f), "
        "OpenCV (%.4f, %.4f)\n",
        workers, medians[0] * 1e3, medians[1] * 1e3, ours.r, ours.g, theirs[0], theirs[1]);
    std::printf("ratio motio.upscale.resize %.3f\n", medians[0] / medians[1]);
}

} // namespace QvBench
