#include "ixMemResourceImp.h"
#include "ixPixelUtil.h"
#include "ixTestUtil.h"
#include "ixTileManip.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

using namespace Qv;
using namespace Qv::IxTest;

namespace {

F const RGBA32{F::RGBA, F::FLOAT32};

// Reaches the protected statics as the code that manages memory does.
struct Manip : IxTileManip {
    using IxTileManip::createTile;
    using IxTileManip::getMemory;
    using IxTileManip::ReadGuardNoCheck;
    using IxTileManip::WriteGuardNoCheck;
};

TEST(IxTileTest, BufferSizeAlignsEveryLine) {
    struct Case {
        F format;
        Rect region;
        std::size_t rowBytes;
        std::size_t size;
    } const cases[] = {
        {RGBA32, {0, 4, 0, 2}, 64, 128},     // one line is exactly the alignment
        {RGBA32, {0, 5, 0, 2}, 128, 256},    // one pixel more takes a second block
        {RGBA32, {-7, -4, 10, 13}, 64, 192}, // only the size counts, not the place
        {{F::ALPHA, F::UINT8}, {0, 1, 0, 1}, 64, 64},
        {{F::RGB, F::FLOAT16}, {0, 100, 0, 3}, 640, 1920},
        {{F::RGBA, F::COMPLEX}, {0, 2, 0, 1}, 64, 64},
        {RGBA32, {0, 0, 0, 10}, 0, 0}, // empty
        {RGBA32, {5, 2, 0, 10}, 0, 0}, // reversed
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.region.dump());
        EXPECT_EQ(IxTile::computeBufferSize(c.format, c.region), c.size);
        IxTile const tile(c.format, c.region);
        EXPECT_EQ(tile.getRowBytes(), c.rowBytes);
        EXPECT_EQ(tile.getBufferSize(), c.size);
        if (c.size == 0)
            continue;
        IxReadGuard const guard(tile);
        for (int y = c.region.y1; y < c.region.y2; ++y)
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(guard.getLine(y)) % IxTile::MIN_LINE_ALIGN, 0u) << y;
    }
}

TEST(IxTileTest, CopiesShareThePixelsAndOutsideIsTheFillColour) {
    Rgba const fill{0.25f, 0.5f, 0.75f, 1.0f};
    IxTile const tile(RGBA32, {10, 12, 20, 22}, fill);
    IxTile const copy = tile;
    EXPECT_EQ(copy, tile);
    EXPECT_FALSE(copy == IxTile(RGBA32, {10, 12, 20, 22}, fill));
    IxPixelUtil::setPixelColor(IxWriteGuard(tile), 11, 21, {1, 2, 3, 4});
    EXPECT_EQ(assertionText([&] { IxPixelUtil::setPixelColor(IxWriteGuard(tile), 12, 21, fill); }),
              "getPixelRegion().contains(x, y)");
    IxReadGuard const guard(copy);
    EXPECT_EQ(IxPixelUtil::getPixelColor(guard, 11, 21), (Rgba{1, 2, 3, 4}));
    for (auto [x, y] : {std::pair{9, 20}, {12, 20}, {10, 19}, {10, 22}, {-1000, 1000}})
        EXPECT_EQ(IxPixelUtil::getPixelColor(guard, x, y), fill) << x << ',' << y;
}

TEST(IxTileTest, ComponentsMapToAndFromRgba) {
    struct Case {
        F format;
        Rgba written;
        Rgba read;
    } const cases[] = {
        {{F::ALPHA, F::FLOAT32}, {0.1f, 0.2f, 0.3f, 0.5f}, {0, 0, 0, 0.5f}},
        {{F::RGB, F::FLOAT32}, {0.1f, 0.2f, 0.3f, 0.5f}, {0.1f, 0.2f, 0.3f, 1.0f}},
        {{F::RGBA, F::FLOAT16}, {0.5f, -2.0f, 1024.0f, 0.25f}, {0.5f, -2.0f, 1024.0f, 0.25f}},
        // UINT8 clamps to [0, 1], rounds to the nearest of 255 steps, and reads NaN as 0.
        {{F::RGBA, F::UINT8}, {-1.0f, 2.0f, 128.0f / 255.0f, NAN}, {0, 1, 128.0f / 255.0f, 0}},
        {{F::RGB, F::UINT8}, {0.5f / 255.0f + 1e-4f, 0.49f / 255.0f, 1.0f, 0}, {1.0f / 255.0f, 0, 1, 1}},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.format.dump());
        IxTile const tile = makeTile(c.format, {0, 1, 0, 1}, [&](int, int) { return c.written; });
        EXPECT_EQ(IxPixelUtil::getPixelColor(IxReadGuard(tile), 0, 0), c.read);
    }
}

TEST(IxTileTest, InvalidTileFailsEveryOperation) {
    IxTile const invalid = IxTile::INVALID_TILE;
    EXPECT_FALSE(invalid.isValid());
    EXPECT_EQ(invalid, IxTile());
    for (auto const& operation : std::vector<std::function<void()>>{
             [&] { invalid.getPixelFormat(); },
             [&] { invalid.getPixelRegion(); },
             [&] { invalid.getFillColor(); },
             [&] { IxReadGuard{invalid}; },
             [&] { IxWriteGuard{invalid}; },
             [&] { Manip::getMemory(invalid); },
         })
        EXPECT_EQ(assertionText(operation), "isValid()");
    // The unchecked guards map nothing, and refuse any line.
    Manip::ReadGuardNoCheck const guard(invalid);
    EXPECT_TRUE(guard.isNull());
    EXPECT_NE(assertionText([&] { guard.getLine(0); }), "");
    EXPECT_EQ(assertionText([] { IxTile(F::INVALID_FORMAT, {0, 1, 0, 1}); }), "format.isValid()");
}

TEST(IxTileTest, ReadersAndWritersNeverMeet) {
    IxTile const tile(RGBA32, {0, 8, 0, 8});
    char const* const busyWriting = "!isBeingWritten";
    char const* const busyReading = "!isBeingRead";
    {
        IxWriteGuard const writer(tile);
        EXPECT_EQ(assertionText([&] { IxReadGuard{tile}; }), busyWriting);
        IxWriteGuard const secondWriter(tile); // strips of one tile are written side by side
        IxReadGuard const readBack(writer);    // the writer reading its own pixels
        EXPECT_EQ(readBack.getLine(3), writer.getLine(3));
        Manip::ReadGuardNoCheck const unchecked(tile);
        EXPECT_FALSE(unchecked.isNull());
    }
    IxReadGuard reader(tile);
    {
        IxReadGuard const copy = reader;
        reader = IxReadGuard();
        EXPECT_EQ(assertionText([&] { IxWriteGuard{tile}; }), busyReading); // the copy still reads
    }
    EXPECT_EQ(assertionText([&] { IxWriteGuard{tile}; }), "");
    Manip::WriteGuardNoCheck const unchecked(tile);
    EXPECT_EQ(assertionText([&] { IxReadGuard{tile}; }), "");
}

TEST(IxTileTest, ReadersOnManyThreadsLeaveTheTileWritable) {
    IxTile const tile(RGBA32, {0, 64, 0, 64});
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 20000; ++i) {
                IxReadGuard const guard(tile);
                IxReadGuard const copy(guard);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(assertionText([&] { IxWriteGuard{tile}; }), "");
}

TEST(IxTileManipTest, TilesOverCallerMemory) {
    Rect const region{0, 3, 0, 2};
    std::size_t const size = IxTile::computeBufferSize(RGBA32, region);
    IxTileMemoryPtr const memory = IxMemResourceImp::allocate(size);
    IxTile const tile = Manip::createTile(RGBA32, region, memory, {0, 0, 0, 1});
    EXPECT_EQ(Manip::getMemory(tile), memory);
    EXPECT_EQ(reinterpret_cast<std::byte const*>(IxReadGuard(tile).getLine(1)), memory->getData() + 64);
    EXPECT_EQ(tile.getFillColor(), (Rgba{0, 0, 0, 1}));

    EXPECT_EQ(assertionText([&] {
                  Manip::createTile(RGBA32, {0, 3, 0, 3}, memory);
              }),
              "!memory.isNull() && memory->getSize() >= size");
    EXPECT_EQ(assertionText([&] { Manip::createTile(RGBA32, region, nullptr); }),
              "!memory.isNull() && memory->getSize() >= size");
    // An empty tile needs no memory.
    EXPECT_TRUE(Manip::createTile(RGBA32, {0, 0, 0, 0}, nullptr).isEmpty());

    struct Offset : IxTileMemory {
        explicit Offset(IxTileMemoryPtr inner) : _inner(std::move(inner)) {}
        std::byte* getData() const override { return _inner->getData() + 4; }
        std::size_t getSize() const override { return _inner->getSize() - 4; }
        IxTileMemoryPtr _inner;
    };
    IxTileMemoryPtr const shifted(new Offset(IxMemResourceImp::allocate(size + 64)));
    EXPECT_EQ(assertionText([&] { Manip::createTile(RGBA32, region, shifted); }),
              "reinterpret_cast<std::uintptr_t>(memory->getData()) % IxTile::MIN_LINE_ALIGN == 0");
}

} // namespace
