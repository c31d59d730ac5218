// The disk tier: entries that outlive a node and the process, damaged files,
// the folder's bound, and a tier that is off or failing.
#include "lgLog.h"
#include "stInterface.h"
#include "stTestUtil.h"

#include <chrono>
#include <fstream>
#include <spdlog/sinks/ringbuffer_sink.h>
#include <spdlog/spdlog.h>
#include <thread>
#include <vector>

using namespace Qv;
using namespace Qv::StTest;
namespace fs = std::filesystem;

namespace {

using DiskTierTest = StorageTest;

PxStrongHndl<CacheNode> makeDiskNode(Uuid const& id) {
    return makeCacheNode(id, PxResultProtocol::MEMORY_AND_DISK);
}

void setOnDisk(CacheNode const& node, float seed, PxImageContext const& ctx,
               GeRectangle<int> const& region = tileRegion()) {
    StImageCacheBaseNode::LookupData lookup;
    EXPECT_FALSE(node.getDiskCachedImageResult(ctx, lookup).getTile().isValid());
    node.setDiskCachedImageResult(PxImageResult(makeTile(seed, region), frame(ctx.getTime())), ctx, lookup);
}

PxImageResult getFromDisk(CacheNode const& node, PxImageContext const& ctx) {
    StImageCacheBaseNode::LookupData lookup;
    return node.getDiskCachedImageResult(ctx, lookup);
}

std::vector<fs::path> listEntries(fs::path const& folder) {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::recursive_directory_iterator it(folder, error), end; !error && it != end; it.increment(error))
        if (it->is_regular_file())
            files.push_back(it->path());
    return files;
}

std::uintmax_t folderBytes(fs::path const& folder) {
    std::uintmax_t total = 0;
    for (fs::path const& file : listEntries(folder))
        total += fs::file_size(file);
    return total;
}

fs::path entryOf(CacheNode const& node, PxImageContext const& ctx, fs::path const& folder) {
    return folder / StDiskStore::getRelativePath(StTileKey(node.getStorageId(), node.getCacheVariant(), ctx));
}

// The platform's log lines from now on.
class LogCapture {
public:
    LogCapture() : _sink(std::make_shared<spdlog::sinks::ringbuffer_sink_mt>(64)) {
        LgLog::outputEntry(LgLog::TRACE, ""); // makes the logger, below its level
        spdlog::get("Qv")->sinks().push_back(_sink);
    }
    ~LogCapture() {
        auto& sinks = spdlog::get("Qv")->sinks();
        sinks.erase(std::remove(sinks.begin(), sinks.end(), _sink), sinks.end());
    }
    std::vector<std::string> getLines() const { return _sink->last_formatted(); }

private:
    std::shared_ptr<spdlog::sinks::ringbuffer_sink_mt> _sink;
};

TEST_F(DiskTierTest, AnEntryOutlivesItsNodeAndTheProcessMemory) {
    Uuid const id = StInterface::getInstance().getStorageId("/shots/a.####.exr 2024-05-01");
    GeRectangle<int> const region{.x1 = -5, .x2 = 12, .y1 = 3, .y2 = 9}; // rows of a width that needs padding
    {
        auto writer = makeDiskNode(id);
        writer->setCacheVariant("depth=32");
        setOnDisk(*writer, 42.0f, context(2.0, -1, 0, 1, 0), region);
    }
    ASSERT_EQ(listEntries(_folder).size(), 1u);

    // Another node of the same id and variant, in a "new process": the memory tier is empty.
    StTileStore::getInstance().clear();
    auto reader = makeDiskNode(id);
    reader->setCacheVariant("depth=32");
    EXPECT_FALSE(reader->getMemCachedImageResult(context(2.0, -1, 0, 1, 0)).getTile().isValid());
    PxImageResult const found = getFromDisk(*reader, context(2.0, -1, 0, 1, 0));
    ASSERT_TRUE(found.getTile().isValid());
    EXPECT_EQ(found.getPixelRegion(), region);
    EXPECT_EQ(found.getPixelFormat(), RGBA32);
    EXPECT_EQ(found.getFillColor(), (CoRgbaColorTyped<float>{0.1f, 0.2f, 0.3f, 0.4f}));
    EXPECT_EQ(found.getVI(), frame(2.0));
    EXPECT_EQ(seedOf(found.getTile()), 42.0f);
    EXPECT_TRUE(StBsBufferFactory::isFactoryMemory(found.getTile()));
    // The disk hit entered the memory tier.
    EXPECT_TRUE(reader->getMemCachedImageResult(context(2.0, -1, 0, 1, 0)).getTile().isValid());

    // The key's other components still separate entries on disk.
    StTileStore::getInstance().clear();
    EXPECT_FALSE(getFromDisk(*reader, context(2.0, -1, 0, 0, 0)).getTile().isValid());
    EXPECT_FALSE(getFromDisk(*reader, context(3.0, -1, 0, 1, 0)).getTile().isValid());
    reader->setCacheVariant("depth=16");
    EXPECT_FALSE(getFromDisk(*reader, context(2.0, -1, 0, 1, 0)).getTile().isValid());
    auto memoryOnly = makeCacheNode(id, PxResultProtocol::MEMORY);
    memoryOnly->setCacheVariant("depth=32");
    EXPECT_FALSE(getFromDisk(*memoryOnly, context(2.0, -1, 0, 1, 0)).getTile().isValid());
}

TEST_F(DiskTierTest, OtherPixelFormatsAndAnEmptyTileComeBackAsStored) {
    auto node = makeDiskNode(Uuid::createRandom());
    struct Case {
        IxPixelFormat format;
        GeRectangle<int> region;
    };
    Case const cases[] = {
        {IxPixelFormat(IxPixelFormat::ALPHA, IxPixelFormat::UINT8), {.x1 = 0, .x2 = 3, .y1 = 0, .y2 = 7}},
        {IxPixelFormat(IxPixelFormat::RGB, IxPixelFormat::FLOAT16, Rational(10, 11)), tileRegion(33)},
        {RGBA32, GeRectangle<int>{}},
    };
    int time = 0;
    for (Case const& c : cases) {
        IxTile const tile(c.format, c.region, CoRgbaColorTyped<float>{1, 2, 3, 4});
        if (!c.region.isEmpty()) {
            IxWriteGuard const out(tile);
            std::size_t const bytes = std::size_t(c.region.getWidth()) * c.format.getBytesPerPixel();
            for (int y = c.region.y1; y < c.region.y2; ++y)
                for (std::size_t i = 0; i < bytes; ++i)
                    out.getLine(y)[i] = std::byte((y * 31 + int(i)) & 0xff);
        }
        ++time;
        StImageCacheBaseNode::LookupData lookup;
        node->setDiskCachedImageResult(PxImageResult(tile, frame(time)), context(time), lookup);
        StTileStore::getInstance().clear();
        PxImageResult const found = getFromDisk(*node, context(time));
        ASSERT_TRUE(found.getTile().isValid()) << c.format;
        EXPECT_EQ(found.getPixelFormat(), c.format);
        EXPECT_EQ(found.getPixelFormat().getAspectRatio().getNumerator(),
                  c.format.getAspectRatio().getNumerator());
        EXPECT_EQ(found.getPixelRegion(), c.region);
        if (!c.region.isEmpty()) {
            IxReadGuard const a(tile);
            IxReadGuard const b(found.getTile());
            std::size_t const bytes = std::size_t(c.region.getWidth()) * c.format.getBytesPerPixel();
            for (int y = c.region.y1; y < c.region.y2; ++y)
                EXPECT_EQ(std::memcmp(a.getLine(y), b.getLine(y), bytes), 0) << c.format << " row " << y;
        }
    }
}

TEST_F(DiskTierTest, ADamagedEntryIsAMissAndIsRemoved) {
    auto node = makeDiskNode(Uuid::createRandom());
    setOnDisk(*node, 5.0f, context(1.0));
    fs::path const entry = entryOf(*node, context(1.0), _folder);
    ASSERT_TRUE(fs::exists(entry));
    std::string good;
    {
        std::ifstream in(entry, std::ios::binary);
        good.assign(std::istreambuf_iterator<char>(in), {});
    }
    std::size_t const size = good.size();
    ASSERT_GT(size, tileBytes() / 2);

    // Another key's entry under this name: what a collision of the hash would give.
    auto other = makeDiskNode(Uuid::createRandom());
    setOnDisk(*other, 6.0f, context(1.0));
    std::string stranger;
    {
        std::ifstream in(entryOf(*other, context(1.0), _folder), std::ios::binary);
        stranger.assign(std::istreambuf_iterator<char>(in), {});
    }

    auto flip = [&](std::size_t at) {
        std::string bytes = good;
        bytes[at] = char(bytes[at] ^ 0x10);
        return bytes;
    };
    struct Case {
        char const* what;
        std::string bytes;
    };
    Case const cases[] = {
        {"empty", ""},
        {"cut in the magic", good.substr(0, 5)},
        {"cut in the header", good.substr(0, 40)},
        {"cut in the pixels", good.substr(0, size - 100)},
        {"one byte short", good.substr(0, size - 1)},
        {"one byte more", good + "x"},
        {"bad magic", flip(0)},
        {"another version", flip(8)},
        {"a flipped byte in the key", flip(20)},
        {"a flipped byte in the header's end", flip(size - tileBytes() - 3)},
        {"a flipped byte in the pixels", flip(size - 7)},
        {"another key", stranger},
    };
    for (Case const& c : cases) {
        {
            std::ofstream out(entry, std::ios::binary | std::ios::trunc);
            out << c.bytes;
        }
        StTileStore::getInstance().clear();
        PxImageResult found;
        EXPECT_NO_THROW(found = getFromDisk(*node, context(1.0))) << c.what;
        EXPECT_FALSE(found.getTile().isValid()) << c.what;
        EXPECT_FALSE(fs::exists(entry)) << c.what;
    }
    // The good bytes read back: the cases above failed for what was done to them.
    {
        std::ofstream out(entry, std::ios::binary | std::ios::trunc);
        out << good;
    }
    StTileStore::getInstance().clear();
    EXPECT_EQ(seedOf(getFromDisk(*node, context(1.0)).getTile()), 5.0f);
}

TEST_F(DiskTierTest, InvalidationRemovesTheNodesEntriesOnDisk) {
    Uuid const id = Uuid::createRandom();
    auto node = makeDiskNode(id);
    auto stranger = makeDiskNode(Uuid::createRandom());
    for (int i = 0; i < 4; ++i) {
        setOnDisk(*node, float(i), context(i));
        setOnDisk(*stranger, float(i), context(i));
    }
    ASSERT_EQ(listEntries(_folder).size(), 8u);
    node->dropCachedEntries(PxValidityInterval(1.0, 2.1));
    StTileStore::getInstance().clear();
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(getFromDisk(*node, context(i)).getTile().isValid(), i == 0 || i == 3) << i;
        EXPECT_TRUE(getFromDisk(*stranger, context(i)).getTile().isValid()) << i;
    }
}

TEST_F(DiskTierTest, TheFolderIsBoundedLeastRecentlyUsedFirst) {
    EnvGuard const bound("QV_DISK_CACHE_MB", "1");
    GeRectangle<int> const region = tileRegion(128); // 256 KiB of pixels: four entries fill the budget
    auto node = makeDiskNode(Uuid::createRandom());
    // Entries 0 to 2, dated an hour apart in the past, oldest first.
    for (int i = 0; i < 3; ++i) {
        setOnDisk(*node, float(i), context(i), region);
        fs::last_write_time(entryOf(*node, context(i), _folder),
                            fs::file_time_type::clock::now() - std::chrono::hours(3 - i));
    }
    // Reading entry 0 renews it.
    StTileStore::getInstance().clear();
    ASSERT_EQ(seedOf(getFromDisk(*node, context(0)).getTile()), 0.0f);
    // Two more go over the bound: the least recently used, 1 and then 2, make room.
    setOnDisk(*node, 3.0f, context(3), region);
    setOnDisk(*node, 4.0f, context(4), region);
    EXPECT_LE(folderBytes(_folder), std::uintmax_t(1) << 20);
    EXPECT_TRUE(fs::exists(entryOf(*node, context(0), _folder)));
    EXPECT_FALSE(fs::exists(entryOf(*node, context(1), _folder)));
    EXPECT_TRUE(fs::exists(entryOf(*node, context(4), _folder)));

    // Many more, written faster than the file system's clock ticks: never
    // above the bound, the newest always kept, and what is left reads back.
    for (int i = 5; i < 20; ++i) {
        setOnDisk(*node, float(i), context(i), region);
        EXPECT_LE(folderBytes(_folder), std::uintmax_t(1) << 20);
        EXPECT_TRUE(fs::exists(entryOf(*node, context(i), _folder))) << i;
        EXPECT_TRUE(fs::exists(entryOf(*node, context(i - 1), _folder))) << i;
    }
    EXPECT_LE(StDiskStore::getInstance().enforceBudget(_folder), std::uintmax_t(1) << 20);
    StTileStore::getInstance().clear();
    EXPECT_EQ(seedOf(getFromDisk(*node, context(19)).getTile()), 19.0f);
    // Files that are not entries are left alone.
    std::ofstream(_folder / "notes.txt") << "mine";
    StDiskStore::getInstance().enforceBudget(_folder);
    EXPECT_TRUE(fs::exists(_folder / "notes.txt"));
}

TEST_F(DiskTierTest, OffMeansMemoryOnly) {
    EnvGuard const off("QV_DISK_CACHE", "off");
    EXPECT_FALSE(StInterface::getInstance().getDiskCacheFolder());
    auto node = makeDiskNode(Uuid::createRandom());
    setOnDisk(*node, 3.0f, context(1.0));
    EXPECT_FALSE(fs::exists(_folder));
    EXPECT_EQ(seedOf(getFromDisk(*node, context(1.0)).getTile()), 3.0f); // from memory
    StTileStore::getInstance().clear();
    EXPECT_FALSE(getFromDisk(*node, context(1.0)).getTile().isValid());
}

TEST_F(DiskTierTest, AnIOErrorIsReportedOnceAndTurnsTheTierOff) {
    // A folder under a plain file can never be made, whoever runs the test.
    fs::create_directories(_folder);
    std::ofstream(_folder / "plain") << "not a folder";
    fs::path const broken = _folder / "plain" / "tiles";
    EnvGuard const folder("QV_DISK_CACHE", broken.c_str());
    LogCapture const log;
    auto node = makeDiskNode(Uuid::createRandom());
    for (int i = 0; i < 3; ++i)
        EXPECT_NO_THROW(setOnDisk(*node, float(i), context(i)));
    EXPECT_TRUE(StDiskStore::getInstance().hasFailed(broken));
    std::vector<std::string> const lines = log.getLines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NE(lines[0].find(broken.string()), std::string::npos) << lines[0];
    // The tiles went to memory all the same.
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(seedOf(getFromDisk(*node, context(i)).getTile()), float(i));
}

TEST_F(DiskTierTest, ManyThreadsWritingAndReadingTheSameAndOtherEntries) {
    auto node = makeDiskNode(Uuid::createRandom());
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 6; ++t)
        threads.emplace_back([&, t] {
            for (int round = 0; round < 30; ++round) {
                int const key = round % 2 ? round % 5 : 100 * (t + 1) + round;
                StImageCacheBaseNode::LookupData lookup;
                PxImageResult const found = node->getDiskCachedImageResult(context(key), lookup);
                if (found.getTile().isValid()) {
                    if (seedOf(found.getTile()) != float(key))
                        ++wrong;
                } else {
                    node->setDiskCachedImageResult(PxImageResult(makeTile(float(key)), frame(key)),
                                                   context(key), lookup);
                }
                if (round % 7 == 0)
                    StTileStore::getInstance().clear(); // the next reads go to disk
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong.load(), 0);
    for (fs::path const& file : listEntries(_folder))
        EXPECT_EQ(file.extension(), ".qvt") << "a temporary file was left: " << file;
    StTileStore::getInstance().clear();
    for (int key = 0; key < 5; ++key)
        EXPECT_EQ(seedOf(getFromDisk(*node, context(key)).getTile()), float(key));
}

} // namespace
