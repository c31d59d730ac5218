// The Lucas-Kanade flow node on one 1920 x 1080 frame, every tile in parallel
// on the request manager's workers, against the same solve in OpenCV: the
// five products, five unnormalised 5x5 cv::boxFilter sums and the per-pixel
// 2x2 solve (cv::parallel_for_ over rows), OpenCV on as many threads.
// Both read the same values: ours a FLOAT16 gradient (what the motion graph
// caches) and a FLOAT32 derivative, OpenCV the same values as float planes.
// Prints `ratio motio.lk.boxfilter <ours/anchor>`.
#include "benchTiming.h"
#include "btFlowLKTool.h"
#include "ixPixelUtil.h"
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
#include <random>
#include <utility>

namespace {

using namespace Qv;

constexpr int WIDTH = 1920;
constexpr int HEIGHT = 1080;
constexpr int REPETITIONS = 9;
GeRectangle<int> const FRAME{0, WIDTH, 0, HEIGHT};

// A smooth random field, as a gradient or a frame difference is.
cv::Mat smoothNoise(unsigned seed, float amplitude) {
    cv::Mat noise(HEIGHT, WIDTH, CV_32F);
    cv::RNG random(seed);
    random.fill(noise, cv::RNG::UNIFORM, -amplitude, amplitude);
    cv::GaussianBlur(noise, noise, cv::Size(0, 0), 2.0);
    return noise;
}

// Rounds to half floats, so that OpenCV reads the values the node reads.
cv::Mat asHalf(cv::Mat const& m) {
    cv::Mat half, back;
    m.convertTo(half, CV_16F);
    half.convertTo(back, CV_32F);
    return back;
}

// The same solve in OpenCV.
class OpenCvFlow {
public:
    OpenCvFlow(cv::Mat gx, cv::Mat gy, cv::Mat t)
        : _gx(std::move(gx)), _gy(std::move(gy)), _t(std::move(t)) {}

    void run() {
        cv::Mat e = -_t;
        cv::Mat products[5] = {_gx.mul(_gx), _gx.mul(_gy), _gy.mul(_gy), _gx.mul(e), _gy.mul(e)};
        for (int i = 0; i < 5; ++i)
            cv::boxFilter(products[i], _sums[i], CV_32F, cv::Size(5, 5), cv::Point(-1, -1), false,
                          cv::BORDER_CONSTANT);
        _flow.create(HEIGHT, WIDTH, CV_32FC2);
        cv::parallel_for_(cv::Range(0, HEIGHT), [this](cv::Range const& rows) {
            for (int y = rows.start; y < rows.end; ++y) {
                float const* a = _sums[0].ptr<float>(y);
                float const* b = _sums[1].ptr<float>(y);
                float const* c = _sums[2].ptr<float>(y);
                float const* d = _sums[3].ptr<float>(y);
                float const* e = _sums[4].ptr<float>(y);
                cv::Vec2f* out = _flow.ptr<cv::Vec2f>(y);
                for (int x = 0; x < WIDTH; ++x) {
                    float const det = a[x] * c[x] - b[x] * b[x];
                    float u = 0.0f, v = 0.0f;
                    if (std::fabs(det) > 1e-5f) {
                        float const s = 1.0f / det;
                        u = (c[x] * d[x] - b[x] * e[x]) * s;
                        v = (a[x] * e[x] - b[x] * d[x]) * s;
                    } else {
                        float const p = a[x] + b[x];
                        float const q = b[x] + c[x];
                        float const n = p * p + q * q;
                        if (std::fabs(n) > 1e-5f) {
                            float const s = (d[x] + e[x]) / n;
                            u = p * s;
                            v = q * s;
                        }
                    }
                    out[x] = {std::min(1.0f, std::max(-1.0f, u)), std::min(1.0f, std::max(-1.0f, v))};
                }
            }
        });
    }
    cv::Mat const& getFlow() const { return _flow; }

private:
    cv::Mat _gx, _gy, _t;
    cv::Mat _sums[5];
    cv::Mat _flow;
};

IxTile runOurs(PxStrongHndl<PxImageProtocol> const& node) {
    PxImageMultiTileRequest::Results const results = QvBench::evaluateAllTiles(node);
    return results.empty() ? IxTile() : results.front().getTile();
}

} // namespace

namespace QvBench {

void runLucasKanadeBench(int workers) {
    cv::Mat const gx = asHalf(smoothNoise(1, 1.0f));
    cv::Mat const gy = asHalf(smoothNoise(2, 1.0f));
    cv::Mat const t = smoothNoise(3, 0.2f);
    PxStrongHndl<PxImageProtocol> const flow = BtFlowLKTool::createPxNode(
        QvBench::tiledFrame(
            IxPixelFormat(IxPixelFormat::RGB, IxPixelFormat::FLOAT16), FRAME, 0,
            [&](int x, int y) {
                return CoRgbaColorTyped<float>{gx.at<float>(y, x), gy.at<float>(y, x), 0.0f, 1.0f};
            }),
        QvBench::tiledFrame(IxPixelFormat(IxPixelFormat::ALPHA, IxPixelFormat::FLOAT32), FRAME, 0,
                            [&](int x, int y) {
                                // A one-component tile keeps the first component, whichever channel it
                                // stores.
                                float const v = t.at<float>(y, x);
                                return CoRgbaColorTyped<float>{v, v, v, v};
                            }));
    OpenCvFlow anchor(gx, gy, t);

    std::vector<double> const medians =
        mediansInTurns({[&] { runOurs(flow); }, [&] { anchor.run(); }}, REPETITIONS);

    // The two agree on a pixel away from any tile edge.
    IxTile const first = runOurs(flow);
    IxReadGuard const guard(first);
    CoRgbaColorTyped<float> const ours = IxPixelUtil::getPixelColor(guard, 100, 100);
    cv::Vec2f const theirs = anchor.getFlow().at<cv::Vec2f>(100, 100);
    std::printf("motio.lk: %d workers, ours %.2f ms, boxFilter %.2f ms; pixel (100, 100) ours (%.4f, %.4f), "
                "OpenCV (%.4f, %.4f)\n",
                workers, medians[0] * 1e3, medians[1] * 1e3, ours.r, ours.g, theirs[0], theirs[1]);
    std::printf("ratio motio.lk.boxfilter %.3f\n", medians[0] / medians[1]);
}

} // namespace QvBench
