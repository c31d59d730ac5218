// Recycling of tile-sized memory blocks: a freed block serves the next request
// of exactly its size, small blocks and blocks beyond the limit go back to
// the system, and a lower limit lets go of the excess.
#include "mbBuffer.h"

#include "ixTile.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <set>
#include <vector>

using namespace Qv;

namespace {

constexpr std::size_t BLOCK = MbBuffer::MIN_RECYCLED_SIZE;

// Sets a limit for one test and puts the previous one back, emptying the pool.
class MbBufferRecycling : public testing::Test {
protected:
    void SetUp() override {
        _previous = MbBuffer::getRecycleLimit();
        MbBuffer::setRecycleLimit(0);
        MbBuffer::setRecycleLimit(4 * BLOCK);
        if (MbBuffer::getRecycleLimit() == 0)
            GTEST_SKIP() << "this build does not recycle (address sanitizer)";
    }
    void TearDown() override {
        MbBuffer::setRecycleLimit(0);
        MbBuffer::setRecycleLimit(_previous);
    }

private:
    std::size_t _previous = 0;
};

} // namespace

TEST_F(MbBufferRecycling, AFreedBlockServesTheNextRequestOfItsSizeOnly) {
    std::byte* freed = nullptr;
    {
        RCShdPtr<MbBuffer> const block = MbBuffer::create(BLOCK);
        freed = block->getData();
    }
    EXPECT_EQ(MbBuffer::getRecycledBytes(), BLOCK);
    RCShdPtr<MbBuffer> const other = MbBuffer::create(BLOCK + 64);
    EXPECT_NE(other->getData(), freed);
    EXPECT_EQ(MbBuffer::getRecycledBytes(), BLOCK);
    RCShdPtr<MbBuffer> const same = MbBuffer::create(BLOCK);
    EXPECT_EQ(same->getData(), freed);
    EXPECT_EQ(same->getSize(), BLOCK);
    EXPECT_EQ(MbBuffer::getRecycledBytes(), 0u);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(same->getData()) % MbBuffer::ALIGNMENT, 0u);
}

TEST_F(MbBufferRecycling, BlocksBelowTileSizeAreNotKept) {
    { RCShdPtr<MbBuffer> const block = MbBuffer::create(BLOCK - 64); }
    { RCShdPtr<MbBuffer> const empty = MbBuffer::create(0); }
    EXPECT_EQ(MbBuffer::getRecycledBytes(), 0u);
}

TEST_F(MbBufferRecycling, TheLimitBoundsTheKeptBytes) {
    {
        std::vector<RCShdPtr<MbBuffer>> blocks;
        for (int i = 0; i < 6; ++i)
            blocks.push_back(MbBuffer::create(BLOCK));
    }
    EXPECT_EQ(MbBuffer::getRecycledBytes(), 4 * BLOCK);
    // Two of the four come back, then fresh memory.
    std::vector<RCShdPtr<MbBuffer>> again;
    for (int i = 0; i < 6; ++i)
        again.push_back(MbBuffer::create(BLOCK));
    EXPECT_EQ(MbBuffer::getRecycledBytes(), 0u);
    std::set<std::byte*> distinct;
    for (auto const& block : again)
        distinct.insert(block->getData());
    EXPECT_EQ(distinct.size(), 6u);
}

TEST_F(MbBufferRecycling, ASizeNotAskedForLatelyGivesWayToASizeInUse) {
    // The pool full of two double blocks, then one block of the size in use.
    {
        RCShdPtr<MbBuffer> const first = MbBuffer::create(2 * BLOCK);
        RCShdPtr<MbBuffer> const second = MbBuffer::create(2 * BLOCK);
    }
    EXPECT_EQ(MbBuffer::getRecycledBytes(), 4 * BLOCK);
    std::byte* freed = nullptr;
    {
        RCShdPtr<MbBuffer> const block = MbBuffer::create(BLOCK);
        freed = block->getData();
    }
    EXPECT_EQ(MbBuffer::getRecycledBytes(), 3 * BLOCK);
    EXPECT_EQ(MbBuffer::create(BLOCK)->getData(), freed);
    // Blocks of one size never push out their own: the fifth goes back to the system.
    {
        std::vector<RCShdPtr<MbBuffer>> blocks;
        for (int i = 0; i < 5; ++i)
            blocks.push_back(MbBuffer::create(BLOCK));
    }
    EXPECT_EQ(MbBuffer::getRecycledBytes(), 4 * BLOCK);
}

TEST_F(MbBufferRecycling, ALowerLimitFreesTheExcessAndZeroStopsRecycling) {
    {
        std::vector<RCShdPtr<MbBuffer>> blocks;
        for (int i = 0; i < 3; ++i)
            blocks.push_back(MbBuffer::create(BLOCK));
    }
    EXPECT_EQ(MbBuffer::getRecycledBytes(), 3 * BLOCK);
    MbBuffer::setRecycleLimit(BLOCK);
    EXPECT_EQ(MbBuffer::getRecycledBytes(), BLOCK);
    MbBuffer::setRecycleLimit(0);
    EXPECT_EQ(MbBuffer::getRecycledBytes(), 0u);
    { RCShdPtr<MbBuffer> const block = MbBuffer::create(BLOCK); }
    EXPECT_EQ(MbBuffer::getRecycledBytes(), 0u);
}

TEST_F(MbBufferRecycling, ATileOfARecycledBlockTakesItsPixels) {
    IxPixelFormat const format(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32);
    GeRectangle<int> const region{0, 64, 0, 64}; // 64 KiB
    ASSERT_EQ(IxTile::computeBufferSize(format, region), BLOCK);
    { IxTile const tile(format, region); }
    EXPECT_EQ(MbBuffer::getRecycledBytes(), BLOCK);
    IxTile const tile(format, region);
    EXPECT_EQ(MbBuffer::getRecycledBytes(), 0u);
}
