// StImageCacheNode: a tile is computed once, however many ask for it at once.
#include "stImageCacheNode.h"

#include "pxConfig.h"
#include "pxRequestMgr.h"
#include "stTestUtil.h"
#include "stTileStore.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

using namespace Qv;
using namespace Qv::StTest;

namespace {

using ImageCacheNodeTest = StorageTest;

// An input that counts its computations and, while its gate is closed, holds them.
class CountingNode : public PxImageProtocol {
public:
    explicit CountingNode(PxNode::Init const& init) : PxNode(init), PxImageProtocol(init) {}

    PxResult<PxImageFormat> getImageFormat() const override {
        return PxResult<PxImageFormat>(PxImageFormat(RGBA32, Rational(25, 1)), PxValidityInterval(-5.0, 5.0));
    }
    PxRODResult getImageROD(PxTimeStreamContext const&) const override {
        return PxRODResult(GeRectangle<float>{.x1 = -8, .x2 = 8, .y1 = -8, .y2 = 8},
                           PxValidityInterval::FULL);
    }
    int getNbStreams() const override { return 2; }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        ++_nbCalls;
        {
            std::unique_lock lock(_mutex);
            _opened.wait(lock, [&] { return _open; });
        }
        if (_fail)
            throw ExBase(__FILE__, __LINE__, "the input failed");
        GePoint2<int> const& t = context.getTilePosition();
        return PxImageResult(makeTile(float(t.x * 100 + t.y), tileRegion(4)), frame(context.getTime()));
    }

    void setOpen(bool open) {
        std::lock_guard lock(_mutex);
        _open = open;
        _opened.notify_all();
    }
    void setFailing(bool fail) { _fail = fail; }
    int getNbCalls() const { return _nbCalls; }

private:
    mutable std::atomic<int> _nbCalls{0};
    mutable std::mutex _mutex;
    mutable std::condition_variable _opened;
    bool _open = true;
    std::atomic<bool> _fail{false};
};

TEST_F(ImageCacheNodeTest, ForwardsEverythingButTheTiles) {
    auto input = makeNode<CountingNode>();
    auto cache =
        makeNode<StImageCacheNode>(PxNodePtr<PxImageProtocol const>(input), "Motion Warped Frame Cache");
    EXPECT_EQ(cache->getName(), "Motion Warped Frame Cache");
    EXPECT_EQ(cache->getImageFormat().getValue().getRate(), Rational(25, 1));
    EXPECT_EQ(cache->getImageFormat().getVI(), PxValidityInterval(-5.0, 5.0));
    EXPECT_EQ(cache->getImageROD(PxTimeStreamContext(1.0)).getROD().x1, -8.0f);
    EXPECT_EQ(cache->getNbStreams(), 2);
    EXPECT_TRUE(cache->isChainConnected());
    EXPECT_EQ(cache->getStorageKind(), PxResultProtocol::MEMORY);
}

TEST_F(ImageCacheNodeTest, ATileIsComputedOnceForManyConcurrentAskers) {
    auto input = makeNode<CountingNode>();
    auto cache = makeNode<StImageCacheNode>(PxNodePtr<PxImageProtocol const>(input), "cache");
    StImageCacheNode const& node = *cache;
    constexpr int NB_ASKERS = 8;
    input->setOpen(false);
    std::vector<float> seeds(NB_ASKERS, -1.0f);
    std::vector<std::thread> askers;
    for (int i = 0; i < NB_ASKERS; ++i)
        askers.emplace_back(
            [&, i] { seeds[std::size_t(i)] = seedOf(node.getImageResult(context(1.0, 2, 3)).getTile()); });
    // Every asker but the one computing waits for that computation before the input may go on.
    // A second call of the input would be the fault itself: it ends the wait too.
    while (cache->getNbJoinedComputations() < NB_ASKERS - 1 && input->getNbCalls() <= 1)
        std::this_thread::yield();
    input->setOpen(true);
    for (std::thread& asker : askers)
        asker.join();
    EXPECT_EQ(input->getNbCalls(), 1);
    EXPECT_EQ(cache->getNbComputations(), 1u);
    for (float seed : seeds)
        EXPECT_EQ(seed, 203.0f);
    // Later askers find it in memory; another tile is another computation.
    EXPECT_EQ(seedOf(node.getImageResult(context(1.0, 2, 3)).getTile()), 203.0f);
    EXPECT_EQ(seedOf(node.getImageResult(context(1.0, 0, 1)).getTile()), 1.0f);
    EXPECT_EQ(input->getNbCalls(), 2);
}

TEST_F(ImageCacheNodeTest, AskersOnWorkersShareComputationsToo) {
    auto input = makeNode<CountingNode>();
    auto cache = makeNode<StImageCacheNode>(PxNodePtr<PxImageProtocol const>(input), "cache");
    // Each request asks for a tile of a 4 by 4 grid, every tile by 6 requests.
    struct AskRequest : PxRequest {
        StImageCacheNode const* node = nullptr;
        GePoint2<int> tile;
        float seed = -1.0f;
        void performExecute() override {
            seed = seedOf(node->getImageResult(context(0.0, tile.x, tile.y)).getTile());
        }
    };
    PxRequestMgr& manager = PxRequestMgr::getInstance();
    std::vector<PxRequestPtr<AskRequest>> requests;
    for (int i = 0; i < 96; ++i) {
        PxRequestPtr<AskRequest> request(new AskRequest);
        request->node = cache.get();
        request->tile = GePoint2<int>{i % 4, (i / 4) % 4};
        manager.postRequest(request, 0);
        requests.push_back(request);
    }
    for (PxRequestPtr<AskRequest> const& request : requests) {
        manager.waitForRequest(request);
        EXPECT_EQ(request->seed, float(request->tile.x * 100 + request->tile.y));
        manager.releaseRequest(request);
    }
    EXPECT_EQ(input->getNbCalls(), 16);
}

// Gives its whole 16 by 16 frame for any tile, counting its calls.
class FullFrameNode : public CountingNode {
public:
    explicit FullFrameNode(PxNode::Init const& init) : PxNode(init), CountingNode(init) {}
    bool producesFullFrames() const override { return true; }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        CountingNode::getImageResult(context);
        return PxImageResult(makeTile(7.0f, GeRectangle<int>{-8, 8, -8, 8}), frame(context.getTime()));
    }
};

TEST_F(ImageCacheNodeTest, AFullFrameInputIsComputedOnceForAllItsTiles) {
    auto input = makeNode<FullFrameNode>();
    auto cache =
        makeNode<StImageCacheNode>(PxNodePtr<PxImageProtocol const>(input), "Motion Warped Frame Cache");
    EXPECT_TRUE(cache->producesFullFrames());
    PxConfig::setTileSize(4, 4);
    struct AskRequest : PxRequest {
        StImageCacheNode const* node = nullptr;
        GePoint2<int> tile;
        IxTile result;
        void performExecute() override {
            result = node->getImageResult(context(0.0, tile.x, tile.y)).getTile();
        }
    };
    PxRequestMgr& manager = PxRequestMgr::getInstance();
    std::vector<PxRequestPtr<AskRequest>> requests;
    // Every tile of the 4 by 4 grid over the frame, twice.
    for (int i = 0; i < 32; ++i) {
        PxRequestPtr<AskRequest> request(new AskRequest);
        request->node = cache.get();
        request->tile = GePoint2<int>{i % 4 - 2, (i / 4) % 4 - 2};
        manager.postRequest(request, 0);
        requests.push_back(request);
    }
    for (PxRequestPtr<AskRequest> const& request : requests) {
        manager.waitForRequest(request);
        EXPECT_EQ(request->result.getPixelRegion(), (GeRectangle<int>{-8, 8, -8, 8}));
        EXPECT_EQ(seedOf(request->result), 7.0f);
        manager.releaseRequest(request);
    }
    PxConfig::setTileSize(PxConfig::DEFAULT_TILE_SIZE, PxConfig::DEFAULT_TILE_SIZE);
    EXPECT_EQ(input->getNbCalls(), 1);
    EXPECT_EQ(StTileStore::getInstance().getNbEntries(), 1u);
}

TEST_F(ImageCacheNodeTest, AFailureReachesEveryAskerAndIsNotCached) {
    auto input = makeNode<CountingNode>();
    auto cache = makeNode<StImageCacheNode>(PxNodePtr<PxImageProtocol const>(input), "cache");
    input->setFailing(true);
    EXPECT_THROW(cache->getImageResult(context(1.0)), ExBase);
    input->setFailing(false);
    EXPECT_EQ(seedOf(cache->getImageResult(context(1.0)).getTile()), 0.0f);
    EXPECT_EQ(input->getNbCalls(), 2);
}

TEST_F(ImageCacheNodeTest, AnInputChangeOrTheNodesEndDropsItsTiles) {
    auto input = makeNode<CountingNode>();
    auto cache = makeNode<StImageCacheNode>(PxNodePtr<PxImageProtocol const>(input), "cache");
    cache->getImageResult(context(1.0));
    cache->getImageResult(context(2.0));
    EXPECT_EQ(StTileStore::getInstance().getNbEntries(), 2u);
    input->invalidate(PxValidityInterval(1.8, 2.2), 0);
    EXPECT_EQ(StTileStore::getInstance().getNbEntries(), 1u);
    cache->getImageResult(context(1.0));
    cache->getImageResult(context(2.0));
    EXPECT_EQ(input->getNbCalls(), 3);
    // Another node of the same name does not see them.
    auto twin = makeNode<StImageCacheNode>(PxNodePtr<PxImageProtocol const>(input), "cache");
    twin->getImageResult(context(1.0));
    EXPECT_EQ(input->getNbCalls(), 4);
    twin.reset();
    cache.reset();
    EXPECT_EQ(StTileStore::getInstance().getNbEntries(), 0u);
}

} // namespace
