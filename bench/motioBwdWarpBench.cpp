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

// An image served from tiles cut once at the start, so that reading a tile
// costs nothing but the handle.
class MemoryImageNode : public PxImageProtocol {
public:
    MemoryImageNode(PxNode::Init const& init, cv::Mat const& frame)
        : PxNode(init), PxImageProtocol(init),
          _format(PxImageFormat(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32), Rational(24, 1)),
                  PxValidityInterval::FULL) {
        GeRectangle<int> const pixels{0, WIDTH, 0, HEIGHT};
        GeRectangle<int> const tiles = convertPixelsToTiles(pixels);
        for (int ty = tiles.y1; ty < tiles.y2; ++ty)
            for (int tx = tiles.x1; tx < tiles.x2; ++tx) {
                GeRectangle<int> const region = getTilePixels({tx, ty}).getIntersection(pixels);
                IxTile tile(_format.getValue().getPixelFormat(), region);
                IxWriteGuard const out(tile);
                for (int y = region.y1; y < region.y2; ++y) {
                    cv::Vec4f const* src = frame.ptr<cv::Vec4f>(y) + region.x1;
                    float* dst = out.getLineAs<float>(y);
                    for (int x = 0; x < region.getWidth(); ++x)
                        for (int c = 0; c < 4; ++c)
                            dst[4 * x + c] = src[x][c];
                }
                _tiles.emplace(std::pair{tx, ty}, tile);
            }
    }

    PxResult<PxImageFormat> getImageFormat() const override { return _format; }
    PxRODResult getImageROD(PxTimeStreamContext const&) const override {
        return PxRODResult(pixelizedToNominal({0, WIDTH, 0, HEIGHT}, 1.0, 1.0), PxValidityInterval::FULL);
    }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        GePoint2<int> const& tile = context.getTilePosition();
        auto const found = _tiles.find({tile.x, tile.y});
        if (found == _tiles.end())
            return PxImageResult(allocateEmptyImageBuffer(), PxValidityInterval::FULL);
        return PxImageResult(found->second, PxValidityInterval::FULL);
    }

private:
    PxResult<PxImageFormat> _format;
    std::map<std::pair<int, int>, IxTile> _tiles;
};

PxStrongHndl<PxImageProtocol> makeImage(cv::Mat const& frame) {
    PxNode::Init init;
    PxStrongHndl<MemoryImageNode> node(new MemoryImageNode(init, frame));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

// Every tile of the node's frame, computed in parallel.
void evaluateFrame(PxStrongHndl<PxImageProtocol const> const& node) {
    PxRequestPtr<PxImageMultiTileRequest> const request(
        new PxImageMultiTileRequest(PxNodePtr<PxImageProtocol const>(node), 0, PxTimeInfo(0.0), 0));
    PxRequestMgr::getInstance().postRequest(request, 0);
    QvBench::keep(request->getResults()->size());
    PxRequestMgr::getInstance().releaseRequest(request);
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
    auto const warp = BtBwdWarpTool::createPxNode(makeImage(image), makeImage(vectors));
    cv::Mat out;
    std::vector<double> const t = mediansInTurns({[&] { evaluateFrame(warp); },
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
