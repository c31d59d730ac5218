#pragma once
// Tools of the tests of nodes that move an image in time: an image whose
// pixels tell the time it was asked for, a node that hears invalidations,
// and the evaluation of one frame through the request manager.
#include "compTestTools.h"
#include "ixPixelUtil.h"
#include "ixWriteGuard.h"
#include "pxImageMultiTileRequest.h"
#include "pxRequestMgr.h"
#include "pxValueNodes.h"

#include <cmath>
#include <utility>
#include <vector>

namespace Qv::CompTest {

// The frame numbers the tests speak in.
constexpr double RATE = 24.0;

inline double frameTime(double frame) {
    return frame / RATE;
}

// A 4x4 image of the given rate. Its red tells the time asked, as a frame
// at RATE, and its results hold:
//   FRAME    over that frame; red is the frame's number
//   INSTANT  at the instant asked only (an interpolated key); red keeps the
//            fraction of a frame
//   ALWAYS   at every time, a still; red is 0
class FrameNumberNode : public PxImageProtocol {
public:
    enum Validity { FRAME, INSTANT, ALWAYS };

    FrameNumberNode(PxNode::Init const& init, Rational const& rate, Validity validity = FRAME)
        : PxNode(init), PxImageProtocol(init),
          _format(PxImageFormat(IxPixelFormat(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32), rate),
                  PxValidityInterval::FULL),
          _validity(validity) {}

    PxResult<PxImageFormat> getImageFormat() const override { return _format; }
    PxRODResult getImageROD(PxTimeStreamContext const&) const override {
        return PxRODResult(GeRectangle<float>{0, 4, 0, 4}, PxValidityInterval::FULL);
    }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        GeRectangle<int> const region =
            GeRectangle<int>{0, 4, 0, 4}.getIntersection(getTilePixels(context.getTilePosition()));
        double const frames = context.getTime() * RATE;
        float const red = _validity == ALWAYS    ? 0.0f
                          : _validity == INSTANT ? static_cast<float>(frames)
                                                 : static_cast<float>(std::floor(frames + 1e-6));
        IxTile tile = allocateImageBuffer(context, region);
        IxWriteGuard const out(tile);
        for (int y = region.y1; y < region.y2; ++y)
            for (int x = region.x1; x < region.x2; ++x)
                IxPixelUtil::setPixelColor(out, x, y, {red, 0.0f, 0.0f, 1.0f});
        return PxImageResult(tile, getVI(context.getTime()));
    }

private:
    PxValidityInterval getVI(double time) const {
        switch (_validity) {
        case INSTANT:
            return PxValidityInterval(time, time);
        case ALWAYS:
            return PxValidityInterval::FULL;
        case FRAME:
            break;
        }
        return PxValidityInterval::createFrameInterval(RATE, time);
    }

    PxResult<PxImageFormat> _format;
    Validity _validity;
};

// Records the invalidations that reach it from its child.
class Listener : public PxNode {
public:
    Listener(PxNode::Init const& init, PxStrongHndl<PxNode const> const& child)
        : PxNode(init), _child(child) {}
    ~Listener() override { unregisterChild(_child); }
    void init() override { registerChild(_child); }
    void invalidateAndReinitialize(PxValidityInterval const& interval, PxUPtr<PxNode const> const&,
                                   int) override {
        heard.push_back(interval);
    }
    std::vector<PxValidityInterval> heard;

private:
    PxNodePtr<PxNode const> _child;
};

template <class Node, class... Args>
PxStrongHndl<Node> make(Args&&... args) {
    PxNode::Init init;
    PxStrongHndl<Node> node(new Node(init, std::forward<Args>(args)...));
    PxNode::init(node);
    return node;
}

template <class T>
PxStrongHndl<PxAnimValueNode<T>> value(T v, PxValidityInterval const& vi = PxValidityInterval::FULL) {
    return make<PxAnimValueNode<T>>(PxResult<T>(v, vi));
}

inline PxStrongHndl<PxAnimValueNode<int>> frames(int k,
                                                 PxValidityInterval const& vi = PxValidityInterval::FULL) {
    return value<int>(k, vi);
}

// Every tile of the frame at time t.
inline PxImageMultiTileRequest::Results evaluateTiles(PxStrongHndl<PxImageProtocol> const& node, double t) {
    PxRequestPtr<PxImageMultiTileRequest> request(
        new PxImageMultiTileRequest(PxNodePtr<PxImageProtocol const>(node), 0, PxTimeInfo(t), 0));
    PxRequestMgr::getInstance().postRequest(request, 0);
    PxImageMultiTileRequest::Results results = *request->getResults();
    PxRequestMgr::getInstance().releaseRequest(request);
    return results;
}

// The red of pixel (1, 1) at time t, and the interval the tile holds for.
inline std::pair<float, PxValidityInterval> evaluate(PxStrongHndl<PxImageProtocol> const& node, double t) {
    PxImageMultiTileRequest::Results const results = evaluateTiles(node, t);
    EXPECT_EQ(results.size(), 1u);
    if (results.empty())
        return {NAN, PxValidityInterval::EMPTY};
    IxReadGuard const guard(results.at(0).getTile());
    return {IxPixelUtil::getPixelColor(guard, 1, 1).r, results.at(0).getVI()};
}

} // namespace Qv::CompTest
