// The image memory budget: what it is read from, and that neither factory
// buffers nor cached tiles ever take the used bytes above it.
#include "mbBuffer.h"
#include "stBufferEx.h"
#include "stTestUtil.h"

#include <vector>

using namespace Qv;
using namespace Qv::StTest;

namespace {

constexpr std::size_t MIB = std::size_t(1) << 20;

using BufferBudgetTest = StorageTest;

TEST(BufferBudget, ReadFromTheEnvironmentWithTheDefaultForBadValues) {
    std::size_t const fallback = StBufferManager::computeDefaultBudget();
    EXPECT_GE(fallback, 256 * MIB);
    struct Case {
        char const* text;
        std::size_t expected;
    };
    Case const cases[] = {
        {nullptr, fallback},
        {"", fallback},
        {"64", 64 * MIB},
        {"1", MIB},
        {"0", fallback},
        {"-1", fallback},
        {"abc", fallback},
        {"12x", fallback},
        {" 5", fallback},
        {"+5", fallback},
        {"99999999999999999999", fallback},
    };
    for (Case const& c : cases) {
        EnvGuard const env("QV_IMAGE_MEMORY_MB", c.text);
        EXPECT_EQ(StBufferManager::readBudgetFromEnvironment(), c.expected) << (c.text ? c.text : "(unset)");
    }
}

TEST_F(BufferBudgetTest, FactoryBuffersAreCountedUntilTheirLastHolderLetsGo) {
    StBsBufferFactory& factory = StBsBufferFactory::getInstance();
    StBufferManager& manager = StBufferManager::getInstance();
    std::size_t const before = manager.getUsed();
    std::size_t const labelBefore = factory.getLiveBytes("Counted");
    {
        IxTile const tile = factory.createTile(RGBA32, tileRegion(), "Counted");
        EXPECT_TRUE(StBsBufferFactory::isFactoryMemory(tile));
        EXPECT_EQ(factory.getLiveBytes("Counted"), labelBefore + tileBytes());
        EXPECT_EQ(manager.getUsed(), before + tileBytes());
        IxTile const copy = tile;
        { IxTile const dropped = tile; }
        EXPECT_EQ(manager.getUsed(), before + tileBytes());
    }
    EXPECT_EQ(factory.getLiveBytes("Counted"), labelBefore);
    EXPECT_EQ(manager.getUsed(), before);
    // Memory for IxTileManip::createTile, aligned as asked.
    IxTileMemoryPtr const memory = factory.allocate(1000, 4096, "Counted");
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(memory->getData()) % 4096, 0u);
    EXPECT_EQ(memory->getSize(), 1000u);
    EXPECT_EQ(factory.allocate(0, 64, "Counted")->getSize(), 0u);
    EXPECT_FALSE(StBsBufferFactory::isFactoryMemory(makeTile(1.0f)));
}

TEST_F(BufferBudgetTest, FreedTileMemoryKeptForReuseStaysWellInsideTheBudget) {
    StBufferManager& manager = StBufferManager::getInstance();
    if (MbBuffer::getRecycleLimit() == 0)
        GTEST_SKIP() << "this build does not recycle (address sanitizer)";
    manager.setBudget(8 * MIB);
    EXPECT_EQ(MbBuffer::getRecycleLimit(), 2 * MIB);
    EXPECT_LE(MbBuffer::getRecycledBytes(), 2 * MIB);
    manager.setBudget(std::size_t(1) << 30);
    EXPECT_EQ(MbBuffer::getRecycleLimit(), MbBuffer::DEFAULT_RECYCLE_LIMIT);
}

TEST_F(BufferBudgetTest, OutOfBuffersWhenNothingCanBeEvicted) {
    StBufferManager& manager = StBufferManager::getInstance();
    StBsBufferFactory& factory = StBsBufferFactory::getInstance();
    manager.setBudget(manager.getUsed() + 3 * tileBytes());
    std::vector<IxTile> held;
    for (int i = 0; i < 3; ++i)
        held.push_back(factory.createTile(RGBA32, tileRegion(), "Held"));
    try {
        factory.createTile(RGBA32, tileRegion(), "Held");
        FAIL() << "a fourth buffer fitted in a budget of three";
    } catch (StBufferEx::ExOutOfBuffers const& ex) {
        EXPECT_NE(std::string(ex.what()).find("\"Held\""), std::string::npos) << ex.what();
    }
    // Larger than the whole budget: refused at once.
    EXPECT_THROW(factory.allocate(manager.getBudget() + 1, 64, "Huge"), StBufferEx::ExOutOfBuffers);
    // A buffer given back makes room again.
    held.pop_back();
    EXPECT_NO_THROW(held.push_back(factory.createTile(RGBA32, tileRegion(), "Held")));
    EXPECT_LE(manager.getPeak(), manager.getBudget());
}

TEST_F(BufferBudgetTest, CachedTilesGiveWayToNewBuffers) {
    StBufferManager& manager = StBufferManager::getInstance();
    StTileStore& store = StTileStore::getInstance();
    manager.setBudget(manager.getUsed() + 4 * tileBytes());
    auto node = makeCacheNode(Uuid::createRandom());
    // Four cached tiles fill the budget, counted by the store (heap tiles) ...
    for (int i = 0; i < 4; ++i)
        node->setMemCachedImageResult(PxImageResult(makeTile(float(i)), frame(i)), context(i));
    EXPECT_EQ(store.getNbEntries(), 4u);
    EXPECT_EQ(manager.getUsedEvictable(), 4 * tileBytes());
    // ... and new buffers take their place, oldest entries first.
    std::vector<IxTile> held;
    for (int i = 0; i < 3; ++i)
        held.push_back(StBsBufferFactory::getInstance().createTile(RGBA32, tileRegion(), "Reader"));
    EXPECT_EQ(store.getNbEntries(), 1u);
    EXPECT_TRUE(node->getMemCachedImageResult(context(3)).getTile().isValid());
    EXPECT_LE(manager.getPeak(), manager.getBudget());
}

TEST_F(BufferBudgetTest, ManyTilesThroughASmallBudgetNeverExceedIt) {
    StBufferManager& manager = StBufferManager::getInstance();
    std::size_t const budget = manager.getUsed() + 10 * tileBytes() + tileBytes() / 2;
    manager.setBudget(budget);
    manager.resetPeak();
    auto node = makeCacheNode(Uuid::createRandom());
    for (int i = 0; i < 200; ++i) {
        // Heap tiles are counted by the store, factory tiles by the factory: both kinds pass through.
        IxTile const tile = i % 2 ? makeTile(float(i)) : makeFactoryTile(float(i));
        node->setMemCachedImageResult(PxImageResult(tile, frame(i)), context(i));
        ASSERT_LE(manager.getUsed(), budget) << "after tile " << i;
    }
    EXPECT_LE(manager.getPeak(), budget);
    // The most recent tiles stay, as many as fit.
    EXPECT_EQ(StTileStore::getInstance().getNbEntries(), 10u);
    EXPECT_EQ(seedOf(node->getMemCachedImageResult(context(199)).getTile()), 199.0f);
    EXPECT_FALSE(node->getMemCachedImageResult(context(0)).getTile().isValid());
    // A tile larger than the whole budget is not kept, and nothing else is lost for it.
    GeRectangle<int> const large{.x1 = 0, .x2 = 256, .y1 = 0, .y2 = 256};
    node->setMemCachedImageResult(PxImageResult(makeTile(1000.0f, large), frame(1000)), context(1000));
    EXPECT_FALSE(node->getMemCachedImageResult(context(1000)).getTile().isValid());
    EXPECT_LE(manager.getPeak(), budget);
}

} // namespace
