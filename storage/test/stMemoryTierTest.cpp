// The memory tier: what a tile is found by, in what order entries go, what
// invalidation drops, and many threads at once.
#include "assertions.h"
#include "stTestUtil.h"

#include <thread>
#include <vector>

using namespace Qv;
using namespace Qv::StTest;

namespace {

using MemoryTierTest = StorageTest;

TEST_F(MemoryTierTest, EachKeyComponentSeparatesEntries) {
    Uuid const id = Uuid::createRandom();
    auto node = makeCacheNode(id);
    node->setCacheVariant("depth=16");
    node->setMemCachedImageResult(PxImageResult(makeTile(7.0f), PxValidityInterval::FULL),
                                  context(1.0, 2, 3, 1, 0));

    struct Case {
        char const* what;
        Uuid id;
        std::string variant;
        PxImageContext context;
        bool hit;
    };
    Case const cases[] = {
        {"the same key", id, "depth=16", context(1.0, 2, 3, 1, 0), true},
        {"another time", id, "depth=16", context(2.0, 2, 3, 1, 0), false},
        {"another tile column", id, "depth=16", context(1.0, 3, 3, 1, 0), false},
        {"another tile row", id, "depth=16", context(1.0, 2, 2, 1, 0), false},
        {"another proxy scale", id, "depth=16", context(1.0, 2, 3, 0, 0), false},
        {"another stream", id, "depth=16", context(1.0, 2, 3, 1, 1), false},
        {"another variant", id, "depth=8", context(1.0, 2, 3, 1, 0), false},
        {"no variant", id, "", context(1.0, 2, 3, 1, 0), false},
        {"another storage id", Uuid::createRandom(), "depth=16", context(1.0, 2, 3, 1, 0), false},
    };
    for (Case const& c : cases) {
        // A second node with the same id and variant shares the entries.
        auto other = makeCacheNode(c.id);
        other->setCacheVariant(c.variant);
        PxImageResult const result = other->getMemCachedImageResult(c.context);
        EXPECT_EQ(result.getTile().isValid(), c.hit) << c.what;
        if (c.hit) {
            EXPECT_EQ(seedOf(result.getTile()), 7.0f);
            EXPECT_EQ(result.getVI(), PxValidityInterval::FULL);
        } else {
            EXPECT_TRUE(result.getVI().isEmpty()) << c.what;
        }
    }
}

TEST_F(MemoryTierTest, ChangingTheIdOrVariantLeavesEarlierEntriesBehind) {
    Uuid const id = Uuid::createRandom();
    auto node = makeCacheNode(id);
    node->setMemCachedImageResult(PxImageResult(makeTile(1.0f), frame(1.0)), context(1.0));
    node->setCacheVariant("unpremultiply");
    EXPECT_FALSE(node->getMemCachedImageResult(context(1.0)).getTile().isValid());
    node->setCacheVariant("");
    EXPECT_TRUE(node->getMemCachedImageResult(context(1.0)).getTile().isValid());
    node->setStorageId(Uuid::createRandom());
    EXPECT_FALSE(node->getMemCachedImageResult(context(1.0)).getTile().isValid());
    node->setStorageId(id);
    EXPECT_TRUE(node->getMemCachedImageResult(context(1.0)).getTile().isValid());
}

TEST_F(MemoryTierTest, AStoredIntervalMustHoldTheAskedTime) {
    auto node = makeCacheNode(Uuid::createRandom());
    try {
        node->setMemCachedImageResult(PxImageResult(makeTile(1.0f), frame(5.0)), context(1.0));
        FAIL() << "a result stored for a time outside its interval";
    } catch (AssertionsEx::ExAssertionFailed const& ex) {
        EXPECT_STREQ(ex.what(), "result.getVI().contains( ctx.getTime() )");
    }
    EXPECT_THROW(node->setMemCachedImageResult(PxImageResult(), context(1.0)),
                 AssertionsEx::ExAssertionFailed);
    EXPECT_EQ(StTileStore::getInstance().getNbEntries(), 0u);
}

TEST_F(MemoryTierTest, LeastRecentlyUsedGoesFirst) {
    StBufferManager::getInstance().setBudget(StBufferManager::getInstance().getUsed() + 3 * tileBytes());
    auto node = makeCacheNode(Uuid::createRandom());
    auto put = [&](double time) {
        node->setMemCachedImageResult(PxImageResult(makeTile(float(time)), frame(time)), context(time));
    };
    auto has = [&](double time) {
        // Looks without renewing: the order is what the test is about.
        return StTileStore::getInstance()
            .get(StTileKey(node->getStorageId(), "", context(time)))
            .getTile()
            .isValid();
    };
    put(1);
    put(2);
    put(3);
    EXPECT_TRUE(node->getMemCachedImageResult(context(1)).getTile().isValid()); // 1 is now the most recent
    put(4);                                                                     // 2 goes
    EXPECT_FALSE(has(2));
    put(1); // replacing an entry renews it and takes no more room
    put(5); // 3 goes
    EXPECT_FALSE(has(3));
    EXPECT_TRUE(node->getMemCachedImageResult(context(4)).getTile().isValid());
    put(6); // 1 goes: 4 was used after it
    EXPECT_FALSE(has(1));
    EXPECT_TRUE(has(4));
    EXPECT_TRUE(has(5));
    EXPECT_TRUE(has(6));
}

TEST_F(MemoryTierTest, InvalidationDropsTheEntriesWhoseIntervalMeetsIt) {
    Uuid const id = Uuid::createRandom();
    auto node = makeCacheNode(id);
    auto stranger = makeCacheNode(Uuid::createRandom());
    for (int i = 0; i < 6; ++i) {
        node->setMemCachedImageResult(PxImageResult(makeTile(float(i)), frame(i)),
                                      context(i, 0, 0, 0, i % 2));
        stranger->setMemCachedImageResult(PxImageResult(makeTile(float(i)), frame(i)), context(i));
    }
    node->setCacheVariant("old settings");
    node->setMemCachedImageResult(PxImageResult(makeTile(9.0f), frame(2)), context(2));
    node->setCacheVariant("");

    // Frames 2 and 3 meet [2.2, 3.1] (frame 2 is [2, 2.5]); both streams go.
    node->dropCachedEntries(PxValidityInterval(2.2, 3.1));
    for (int i = 0; i < 6; ++i) {
        bool const dropped = i == 2 || i == 3;
        EXPECT_EQ(node->getMemCachedImageResult(context(i, 0, 0, 0, i % 2)).getTile().isValid(), !dropped)
            << i;
        EXPECT_TRUE(stranger->getMemCachedImageResult(context(i)).getTile().isValid()) << i;
    }
    node->setCacheVariant("old settings");
    EXPECT_TRUE(node->getMemCachedImageResult(context(2)).getTile().isValid());
    node->setCacheVariant("");

    // An invalidation reaching the node from a child drops the same way.
    auto child = makeCacheNode(Uuid::createRandom());
    node->registerChild(PxNodePtr<PxNode const>(child));
    child->invalidate(PxValidityInterval::FULL, 0);
    for (int i = 0; i < 6; ++i)
        EXPECT_FALSE(node->getMemCachedImageResult(context(i, 0, 0, 0, i % 2)).getTile().isValid()) << i;
    node->unregisterChild(PxNodePtr<PxNode const>(child));
}

TEST_F(MemoryTierTest, ManyThreadsSettingAndGettingSameAndDifferentKeys) {
    StBufferManager& manager = StBufferManager::getInstance();
    std::size_t const budget = manager.getUsed() + 40 * tileBytes();
    manager.setBudget(budget);
    manager.resetPeak();
    auto node = makeCacheNode(Uuid::createRandom());
    constexpr int NB_THREADS = 8;
    constexpr int NB_ROUNDS = 400;
    std::atomic<int> wrong{0};
    std::atomic<int> hits{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < NB_THREADS; ++t)
        threads.emplace_back([&, t] {
            for (int round = 0; round < NB_ROUNDS; ++round) {
                // Keys 0..19 are shared by every thread, 100 + t.. its own; the seed says which key.
                int const key = round % 3 == 0 ? 100 + t * 1000 + round : round % 20;
                PxImageContext const ctx = context(key);
                PxImageResult const found = node->getMemCachedImageResult(ctx);
                if (found.getTile().isValid()) {
                    ++hits;
                    if (seedOf(found.getTile()) != float(key) || !found.getVI().contains(key))
                        ++wrong;
                } else {
                    IxTile const tile = round % 2 ? makeTile(float(key)) : makeFactoryTile(float(key));
                    node->setMemCachedImageResult(PxImageResult(tile, frame(key)), ctx);
                }
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong.load(), 0);
    EXPECT_GT(hits.load(), 0);
    EXPECT_LE(manager.getPeak(), budget);
    EXPECT_LE(StTileStore::getInstance().getNbEntries(), 40u);
    StTileStore::getInstance().clear();
    EXPECT_EQ(manager.getUsedEvictable(), 0u);
}

} // namespace
