// The backward warp of a 4-channel float 1920x1080 frame by a smooth vector
// field, every tile in parallel on the request manager's workers, against
// OpenCV's bilinear remap (INTER_LINEAR, constant border) on as many
// threads. OpenCV is given the absolute sampling maps ready made, while the
// warp adds the vectors itself: the anchor's side is the lighter one.
// Prints `ratio motio.bwdwarp.remap <ours/anchor>`.
#include "benchTiming.h"
#include "btBwdWarpTool.h"
#include "ixWriteGuard.h"
#include "motioBench.h"
#include "motioBenchFrame.h"
#include "pxImageMultiTileRequest.h"
#include "pxRequestMgr.h"

#include <cmath>
#include <cstdio>
#include <map>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <utility>

namespace {

using namespace Qv;
using Rgba = CoRgbaColorTyped<float>;

constexpr int WIDTH = 1920;
constexpr int HEIGHT = 1080;
constexpr int REPETITIONS = 9;

// A float RGBA frame of the benchmark's size.
PxStrongHndl<PxImageProtocol> frame(cv::Mat const& rgba) {
    return QvBench::tiledFrame(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32),
                               {0, WIDTH, 0, HEIGHT}, 0, QvBench::fromRgbaMat(rgba));
}

} // namespace

namespace QvBench {

void runBwdWarpBench(int workers) {
    cv::Mat image(HEIGHT, WIDTH, CV_32FC4);
    cv::Mat vectors(HEIGHT, WIDTH, CV_32FC4);
    cv::Mat mapX(HEIGHT, WIDTH, CV_32FC1);
    cv::Mat mapY(HEIGHT, WIDTH, CV_32FC1);
    cv::randu(image, cv::Scalar::all(0.0), cv::Scalar::all(1.0));
    // A few pixels of smooth motion each way, some of it leaving the frame.
    for (int y = 0; y < HEIGHT; ++y)
        for (int x = 0; x < WIDTH; ++x) {
            float const vx = 6.0f * std::sin(float(x) / 97.0f + float(y) / 131.0f);
            float const vy = 4.0f * std::cos(float(x) / 113.0f - float(y) / 89.0f);
            vectors.at<cv::Vec4f>(y, x) = {vx, vy, 0.0f, 1.0f};
            mapX.at<float>(y, x) = float(x) + vx;
            mapY.at<float>(y, x) = float(y) + vy;
        }
    auto const warp = BtBwdWarpTool::createPxNode(frame(image), frame(vectors));
    cv::Mat out;
    std::vector<double> const t = mediansInTurns({[&] { QvBench::evaluateAllTiles(warp); },
                                                  [&] {
                                                      cv::remap(image, out, mapX, mapY, cv::INTER_LINEAR,
                                                                cv::BORDER_CONSTANT, cv::Scalar::all(0));
                                                  }},
                                                 REPETITIONS);
    std::printf("motio.bwdwarp: ours %.2f ms, cv::remap %.2f ms on %d threads\n", t[0] * 1e3, t[1] * 1e3,
                workers);
    std::printf("ratio motio.bwdwarp.remap %.3f\n", t[0] / t[1]);
}

} // namespace QvBench
