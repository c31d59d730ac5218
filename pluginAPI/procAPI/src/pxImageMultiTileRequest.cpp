#include "pxImageMultiTileRequest.h"

#include "assertions.h"
#include "ipCopy.h"
#include "ipSet.h"
#include "ixWriteGuard.h"
#include "pxParallelProc.h"
#include "pxRequestMgr.h"
#include "pxStreams.h"

#include <cstddef>

namespace Qv {

namespace {
struct TileTask {
    GePoint2<int> tile;
    std::size_t index;
};

// Computes one tile into its slot of the results.
class TileProc : public CbHandler<TileTask const> {
public:
    TileProc(PxUPtr<PxImageProtocol const> const& node, PxImageContext const& context,
             PxImageMultiTileRequest::Results& results)
        : _node(node), _context(context), _results(results) {}

    void call(TileTask const& task) override {
        PxImageResult result = _node->getImageResult(_context.atTile(task.tile));
        QV_ASSERT(result.getVI().isNonEmpty());
        _results[task.index] = std::move(result);
    }

private:
    PxUPtr<PxImageProtocol const> const& _node;
    PxImageContext const _context;
    PxImageMultiTileRequest::Results& _results;
};
} // namespace

PxImageMultiTileRequest::PxImageMultiTileRequest(PxNodePtr<PxImageProtocol const> node, int stream,
                                                 PxTimeInfo const& time, int proxyScale,
                                                 RCWeakPtr<Callback> callback)
    : _node(std::move(node)), _stream(stream), _time(time.getTime()), _proxyScale(proxyScale),
      _wholeFrame(true), _callback(std::move(callback)), _results(new Results) {
    QV_ASSERT(!_node.isNull());
    PxStreams::validateStream(stream);
}

PxImageMultiTileRequest::PxImageMultiTileRequest(PxUPtr<PxImageProtocol const> const& node, int stream,
                                                 PxTimeInfo const& time, GeRectangle<int> const& region,
                                                 int proxyScale, RCWeakPtr<Callback> callback)
    : _node(node), _stream(stream), _time(time.getTime()), _proxyScale(proxyScale), _wholeFrame(false),
      _region(region), _callback(std::move(callback)), _results(new Results) {
    QV_ASSERT(!_node.isNull());
    PxStreams::validateStream(stream);
}

void PxImageMultiTileRequest::performExecute() {
    PxUPtr<PxImageProtocol const> const node(_node);
    GeRectangle<int> region = _region;
    if (_wholeFrame) {
        PxValidityInterval interval = PxValidityInterval::FULL;
        region = PxImageProtocol::computeImagePixelRegion(node, PxTimeStreamContext(_time, _stream),
                                                          _proxyScale, interval);
    }
    GeRectangle<int> const tiles = PxImageProtocol::convertPixelsToTiles(region);
    Results& results = *_results;
    results.assign(static_cast<std::size_t>(tiles.getWidth()) * static_cast<std::size_t>(tiles.getHeight()),
                   PxImageResult());
    TileProc proc(node, PxImageContext(_time, {tiles.x1, tiles.y1}, _proxyScale, _stream), results);
    // Every tile of a full-frame producer holds the whole frame: asked once,
    // its one result serves them all, where asking each tile would compute
    // the frame once per tile.
    if (results.size() > 1 && node->producesFullFrames())
        results.resize(1);
    if (results.size() == 1) {
        proc.call(TileTask{{tiles.x1, tiles.y1}, 0});
        return;
    }
    PxParallelProc<TileTask> parallel(&proc);
    std::size_t index = 0;
    for (int ty = tiles.y1; ty < tiles.y2; ++ty)
        for (int tx = tiles.x1; tx < tiles.x2; ++tx)
            parallel.addTask(TileTask{{tx, ty}, index++});
    parallel.run();
}

void PxImageMultiTileRequest::completeExecution() {
    if (RCStrongPtr<Callback> const callback = _callback.getStrong())
        callback->call(*this);
}

RCStrongPtr<PxImageMultiTileRequest::Results> PxImageMultiTileRequest::getResults() {
    PxRequestMgr::getInstance().waitForRequest(PxRequestPtr<PxImageMultiTileRequest>(this));
    return _results;
}

IxTile PxImageMultiTileRequest::assembleTiles(Results const& results) {
    return assembleTiles(results, PxImageProtocol::computePixelRegion(results));
}

IxTile PxImageMultiTileRequest::assembleTiles(Results const& results, GeRectangle<int> const& region) {
    if (results.empty())
        return IxTile::INVALID_TILE;
    IxPixelFormat const& format = results.front().getPixelFormat();
    CoRgbaColorTyped<float> const& fill = results.front().getFillColor();
    GeRectangle<int> const covered = region.getIntersection(PxImageProtocol::computePixelRegion(results));
    IxTile assembled(format, covered, fill);
    if (covered.isEmpty())
        return assembled;
    IxWriteGuard const out(assembled);
    long long coveredArea = 0;
    for (PxImageResult const& result : results) {
        QV_ASSERT(result.getPixelFormat() == format);
        GeRectangle<int> const part = covered.getIntersection(result.getPixelRegion());
        coveredArea += static_cast<long long>(part.getWidth()) * part.getHeight();
    }
    // Results of one tile grid never overlap: only gaps between them need the fill.
    if (coveredArea < static_cast<long long>(covered.getWidth()) * covered.getHeight())
        ipSet(out, fill, &covered);
    for (PxImageResult const& result : results) {
        GeRectangle<int> const part = covered.getIntersection(result.getPixelRegion());
        if (!part.isEmpty())
            ipCopy(out, result.getTileGuard(), &part, &part);
    }
    return assembled;
}

} // namespace Qv
