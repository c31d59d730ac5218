// The image reader node on real files written at test time: every pixel as
// the file has it at any tile size, one read per frame whatever the number of
// askers, proxies against the filter computed here, marked error tiles for
// broken frames, the background guess, unpremultiplying and vectors.
#include "../../../base/test/baseTestHelpers.h"
#include "btImageImportServices.h"
#include "btImageReaderNode.h"
#include "btImageSequence.h"
#include "btReaderCacheIdentity.h"
#include "evEventManager.h"
#include "ffFileFormatMgr.h"
#include "ffImageWriteUtil.h"
#include "imMemoryBuffer.h"
#include "imReadGuard.h"
#include "inInitMgr.h"
#include "ipScanlineUtil.h"
#include "ixPixelUtil.h"
#include "ixReadGuard.h"
#include "ixWriteGuard.h"
#include "piImageFile.h"
#include "piImageSequence.h"
#include "piImageSocket.h"
#include "piUserSettings.h"
#include "pxConfig.h"
#include "pxHandles.h"
#include "pxImageMultiTileRequest.h"
#include "pxRequestMgr.h"
#include "stTileStore.h"
#include "statScalar.h"
#include "statTypes.h"

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <thread>

using namespace Qv;
using Qv::TestHelpers::TempDirTest;

namespace {

using Rgba = CoRgbaColorTyped<float>;
using PixelFn = std::function<Rgba(int x, int y)>;

Rgba ramp(int x, int y) {
    // Multiples of 1/255, so that every depth holds the 8-bit ones exactly.
    return {static_cast<float>((x * 7 + y * 13) % 256) / 255.0f,
            static_cast<float>((x * 3 + y * 5) % 256) / 255.0f,
            static_cast<float>((x + 2 * y) % 256) / 255.0f, static_cast<float>((200 + x + y) % 256) / 255.0f};
}

class ImageReaderNode : public TempDirTest {
protected:
    static void SetUpTestSuite() { InInitMgr::getInstance().initializeAll(); }
    void SetUp() override {
        TempDirTest::SetUp();
        StatScalar::resetAll();
        PxConfig::setTileSize(256, 256);
    }
    void TearDown() override {
        PxConfig::setTileSize(256, 256);
        TempDirTest::TearDown();
    }

    // Frames 1..n of name.#.ext, pixels from `pixel`, in the tile format given.
    void writeFrames(std::string const& name, std::string const& ext, int frames, int width, int height,
                     IxPixelFormat const& format, PixelFn const& pixel, std::string const& options = {}) {
        for (int f = 1; f <= frames; ++f) {
            IxTile const tile(format, {0, width, 0, height});
            {
                IxWriteGuard const guard(tile);
                for (int y = 0; y < height; ++y)
                    for (int x = 0; x < width; ++x)
                        IxPixelUtil::setPixelColor(guard, x, y, pixel(x + f, y));
            }
            FfImageWriteUtil::writeTile(fileOf(name, ext, f), tile, options);
        }
    }
    OsFilePath fileOf(std::string const& name, std::string const& ext, int frame) const {
        char number[8];
        std::snprintf(number, sizeof number, "%04d", frame);
        return path(name + "." + number + "." + ext);
    }
    std::string patternOf(std::string const& name, std::string const& ext, int frames) const {
        return path(name + ".[0001:" + std::to_string(10000 + frames).substr(1) + "]." + ext).toString();
    }

    // A reader over the sequence, as the reader tool sets one up: memory only, a fresh identity.
    PxStrongHndl<BtImageReaderNode> makeNode(std::string const& pattern, IxPixelFormat::Depth depth,
                                             BtReaderCacheIdentity const* identity = nullptr) {
        RCStrongPtr<PiImageSequence> const sequence(BtImageSequence::create(pattern).release());
        EXPECT_FALSE(sequence.isNull());
        PiImageFilePtr const first = sequence->getImageForReading(0, ImMemoryBuffer::Factory::getInstance());
        GeRectangle<int> const rect = first->getFileLayout().getRect();
        PxNode::Init init;
        PxStrongHndl<BtImageReaderNode> node(
            new BtImageReaderNode(init, identity ? identity->storageId : Uuid::createRandom(),
                                  identity ? identity->kind : PxResultProtocol::MEMORY));
        PxNode::init(node);
        node->setImageSequence(sequence);
        node->setImageSize({rect.getWidth(), rect.getHeight()});
        node->setComps(4);
        node->setPixelDepth(depth);
        node->setStartTime(sequence->getStartFileNo());
        node->setRate(Rational(24, 1));
        return node;
    }
    static IxTile frame(PxStrongHndl<BtImageReaderNode> const& node, int frameNo, int proxy = 0) {
        return piComputeImageFrame(PxStrongHndl<PxNode const>(node), frameNo / 24.0, proxy);
    }
    // The file's pixels as floats, read straight through the file layer.
    std::vector<Rgba> fileFloats(OsFilePath const& file, int& width, int& height) const {
        PiImageFilePtr const image = FfFileFormatMgr::getInstance().openImageFile(file);
        image->setFormat(ImFormat(4, ImPixelFormat::HDR));
        GeRectangle<int> const rect = image->getFileLayout().getRect();
        width = rect.getWidth();
        height = rect.getHeight();
        std::vector<Rgba> pixels;
        for (ImImageConst strip = image->readStrip(); !strip.isNull(); strip = image->readStrip()) {
            ImReadGuard const guard(strip);
            for (int y = strip.getRect().y1; y < strip.getRect().y2; ++y) {
                float const* line = guard.getLineAs<float>(y);
                for (int x = 0; x < width; ++x)
                    pixels.push_back({line[4 * x], line[4 * x + 1], line[4 * x + 2], line[4 * x + 3]});
            }
        }
        return pixels;
    }
    // Every pixel of the frame against the file, the frame centred on the origin.
    void expectFrameEqualsFile(IxTile const& tile, OsFilePath const& file, float tolerance,
                               std::string const& what) {
        int width = 0;
        int height = 0;
        std::vector<Rgba> const expected = fileFloats(file, width, height);
        ASSERT_TRUE(tile.isValid()) << what;
        ASSERT_EQ(tile.getPixelRegion(),
                  (GeRectangle<int>{-(width / 2), width - width / 2, -(height / 2), height - height / 2}))
            << what;
        IxReadGuard const guard(tile);
        int wrong = 0;
        for (int y = 0; y < height && wrong < 3; ++y)
            for (int x = 0; x < width && wrong < 3; ++x) {
                Rgba const got = IxPixelUtil::getPixelColor(guard, x - width / 2, y - height / 2);
                Rgba const& want = expected[static_cast<std::size_t>(y * width + x)];
                bool const same =
                    std::fabs(got.r - want.r) <= tolerance && std::fabs(got.g - want.g) <= tolerance &&
                    std::fabs(got.b - want.b) <= tolerance && std::fabs(got.a - want.a) <= tolerance;
                if (!same) {
                    ++wrong;
                    ADD_FAILURE() << what << ": pixel " << x << "," << y << " is " << got << ", the file has "
                                  << want;
                }
            }
    }
};

TEST_F(ImageReaderNode, everyPixelOfEveryDepthEqualsTheFileAtAnyTileSize) {
    struct Case {
        char const* what;
        char const* ext;
        IxPixelFormat fileFormat;
        std::string options;
        IxPixelFormat::Depth nodeDepth;
        float tolerance;
    };
    std::vector<Case> const cases{
        // The same 8-bit codes; their float values may differ in the last place.
        {"8-bit PNG", "png", {IxPixelFormat::RGBA, IxPixelFormat::UINT8}, "", IxPixelFormat::UINT8, 1e-6f},
        {"16-bit TIFF",
         "tif",
         {IxPixelFormat::RGBA, IxPixelFormat::FLOAT32},
         "bitdepth=16",
         IxPixelFormat::FLOAT32,
         0.0f},
        {"half EXR", "exr", {IxPixelFormat::RGBA, IxPixelFormat::FLOAT16}, "", IxPixelFormat::FLOAT16, 0.0f},
        {"float EXR", "exr", {IxPixelFormat::RGBA, IxPixelFormat::FLOAT32}, "", IxPixelFormat::FLOAT32, 0.0f},
    };
    int index = 0;
    for (Case const& c : cases) {
        std::string const name = "depth" + std::to_string(index++);
        writeFrames(name, c.ext, 1, 301, 203, c.fileFormat, ramp, c.options);
        for (int tileSize : {16, 256}) {
            PxConfig::setTileSize(tileSize, tileSize);
            PxStrongHndl<BtImageReaderNode> const node = makeNode(patternOf(name, c.ext, 1), c.nodeDepth);
            expectFrameEqualsFile(frame(node, 1), fileOf(name, c.ext, 1), c.tolerance,
                                  std::string(c.what) + " in tiles of " + std::to_string(tileSize));
        }
    }
    EXPECT_EQ(StatScalar::get(StatTypes::ERROR_TILE_SCALAR_ID), 0);
}

TEST_F(ImageReaderNode, oneFrameAskedByManyThreadsIsReadOnce) {
    writeFrames("many", "exr", 2, 700, 500, {IxPixelFormat::RGBA, IxPixelFormat::FLOAT16}, ramp);
    PxConfig::setTileSize(64, 64);
    PxStrongHndl<BtImageReaderNode> const node =
        makeNode(patternOf("many", "exr", 2), IxPixelFormat::FLOAT16);
    std::vector<IxTile> tiles(6);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < tiles.size(); ++i)
        threads.emplace_back([&, i] { tiles[i] = frame(node, 2); });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(StatScalar::get(StatTypes::FILE_IMPORT_SCALAR_ID), 1);
    for (IxTile const& tile : tiles)
        expectFrameEqualsFile(tile, fileOf("many", "exr", 2), 0.0f, "a frame of six askers");
}

TEST_F(ImageReaderNode, proxiesAreTheLanczosFilterOfTheLevelBelowInPremultipliedSpace) {
    writeFrames("proxy", "exr", 1, 90, 70, {IxPixelFormat::RGBA, IxPixelFormat::FLOAT32}, ramp);
    PxConfig::setTileSize(16, 16);
    PxStrongHndl<BtImageReaderNode> const node =
        makeNode(patternOf("proxy", "exr", 1), IxPixelFormat::FLOAT32);
    IxTile const full = frame(node, 1);
    IxTile const half = frame(node, 1, 1);
    IxTile const quarter = frame(node, 1, 2);
    EXPECT_EQ(StatScalar::get(StatTypes::FILE_IMPORT_SCALAR_ID), 1) << "level 2 filters, it does not read";

    // The reference: separable half-scale Lanczos2 on premultiplied pixels, zero beyond the image.
    float const* const w = IpScanlineUtil::getLanczos2Weights();
    auto reduce = [&](IxTile const& source, GeRectangle<int> const& out) {
        IxReadGuard const guard(source);
        GeRectangle<int> const& in = source.getPixelRegion();
        auto premult = [&](int x, int y) {
            if (!in.contains(x, y))
                return Rgba{};
            Rgba p = IxPixelUtil::getPixelColor(guard, x, y);
            return Rgba{p.r * p.a, p.g * p.a, p.b * p.a, p.a};
        };
        std::vector<Rgba> result;
        for (int y = out.y1; y < out.y2; ++y)
            for (int x = out.x1; x < out.x2; ++x) {
                Rgba sum{};
                for (int j = 0; j < 8; ++j)
                    for (int i = 0; i < 8; ++i) {
                        Rgba const p = premult(2 * x - 3 + i, 2 * y - 3 + j);
                        float const k = w[i] * w[j];
                        sum = {sum.r + k * p.r, sum.g + k * p.g, sum.b + k * p.b, sum.a + k * p.a};
                    }
                if (sum.a != 0.0f)
                    sum = {sum.r / sum.a, sum.g / sum.a, sum.b / sum.a, sum.a};
                result.push_back(sum);
            }
        return result;
    };
    for (auto [level, source, proxy] : {std::tuple{1, full, half}, std::tuple{2, half, quarter}}) {
        ASSERT_TRUE(proxy.isValid());
        GeRectangle<int> const& out = proxy.getPixelRegion();
        EXPECT_LE(std::abs(2 * out.getWidth() - source.getPixelRegion().getWidth()), 2) << "level " << level;
        std::vector<Rgba> const expected = reduce(source, out);
        IxReadGuard const guard(proxy);
        int wrong = 0;
        std::size_t i = 0;
        for (int y = out.y1; y < out.y2; ++y)
            for (int x = out.x1; x < out.x2; ++x, ++i) {
                Rgba const got = IxPixelUtil::getPixelColor(guard, x, y);
                Rgba const& want = expected[i];
                if ((std::fabs(got.r - want.r) > 1e-4f || std::fabs(got.a - want.a) > 1e-4f) && ++wrong <= 3)
                    ADD_FAILURE() << "level " << level << " pixel " << x << "," << y << ": " << got << " not "
                                  << want;
            }
    }
}

TEST_F(ImageReaderNode, brokenFramesGiveMarkedTilesOnceAndTheOthersStayExact) {
    IxPixelFormat const half(IxPixelFormat::RGBA, IxPixelFormat::FLOAT16);
    struct Case {
        char const* what;
        std::function<void(OsFilePath const&)> damage;
    };
    std::vector<Case> const cases{
        {"missing", [](OsFilePath const& file) { std::filesystem::remove(file.toStdPath()); }},
        {"truncated",
         [](OsFilePath const& file) {
             std::filesystem::resize_file(file.toStdPath(), std::filesystem::file_size(file.toStdPath()) / 2);
         }},
        {"mis-sized",
         [&](OsFilePath const& file) {
             IxTile const small(half, {0, 40, 0, 30});
             {
                 IxWriteGuard const guard(small);
                 for (int y = 0; y < 30; ++y)
                     for (int x = 0; x < 40; ++x)
                         IxPixelUtil::setPixelColor(guard, x, y, ramp(x, y));
             }
             FfImageWriteUtil::writeTile(file, small);
         }},
        {"mis-typed",
         [](OsFilePath const& file) { std::ofstream(file.toString()) << "not an image at all"; }},
    };
    int index = 0;
    for (Case const& c : cases) {
        StatScalar::resetAll();
        std::string const name = "broken" + std::to_string(index++);
        writeFrames(name, "exr", 3, 120, 80, half, ramp);
        c.damage(fileOf(name, "exr", 2));
        PxStrongHndl<BtImageReaderNode> const node =
            makeNode(patternOf(name, "exr", 3), IxPixelFormat::FLOAT16);
        expectFrameEqualsFile(frame(node, 1), fileOf(name, "exr", 1), 0.0f, c.what);
        IxTile const marked = frame(node, 2);
        ASSERT_TRUE(marked.isValid()) << c.what;
        EXPECT_EQ(marked.getPixelRegion(), (GeRectangle<int>{-60, 60, -40, 40})) << c.what;
        {
            IxReadGuard const guard(marked);
            // Away from both diagonals the fill shows.
            EXPECT_EQ(IxPixelUtil::getPixelColor(guard, 0, -35), BtImageReaderNode::IO_ERROR_FILL) << c.what;
            // The first band runs down from the top left corner, 8 pixels wide.
            EXPECT_EQ(IxPixelUtil::getPixelColor(guard, -55, -40), BtImageReaderNode::IO_ERROR_BANDS)
                << c.what;
            EXPECT_EQ(IxPixelUtil::getPixelColor(guard, 55, -40), BtImageReaderNode::IO_ERROR_BANDS)
                << c.what;
        }
        long long const imports = StatScalar::get(StatTypes::FILE_IMPORT_SCALAR_ID);
        EXPECT_GT(StatScalar::get(StatTypes::ERROR_TILE_SCALAR_ID), 0) << c.what;
        frame(node, 2);
        EXPECT_EQ(StatScalar::get(StatTypes::FILE_IMPORT_SCALAR_ID), imports) << c.what << ": read again";
        expectFrameEqualsFile(frame(node, 3), fileOf(name, "exr", 3), 0.0f, c.what);
    }
}

TEST_F(ImageReaderNode, theBackgroundGuessFollowsTheFirstTransparentOrTheLowestPartialPixel) {
    struct Case {
        char const* what;
        PixelFn pixel;
        CoRgbColorTyped<float> expected;
    };
    // Pixel (x, y) of frame f is asked as pixel(x + f, y): frame 1 shifts by one.
    std::vector<Case> const cases{
        {"opaque: black",
         [](int, int) {
             return Rgba{0.5f, 0.5f, 0.5f, 1.0f};
         },
         {0.0f, 0.0f, 0.0f}},
        {"a transparent pixel as it stands, whatever follows",
         [](int x, int y) {
             if (y == 0 && x == 6)
                 return Rgba{0.25f, 0.5f, 0.75f, 0.0f};
             if (y == 0 && x == 9)
                 return Rgba{0.0f, 0.0f, 0.0f, 0.0f};
             return Rgba{0.5f, 0.5f, 0.5f, 1.0f};
         },
         {0.25f, 0.5f, 0.75f}},
        {"partial pixels: the lowest estimate per component",
         [](int x, int y) {
             if (y == 1 && x == 3)
                 return Rgba{0.25f, 0.375f, 0.25f, 0.5f}; // proposes (0.5, 0.75, 0.5)
             if (y == 2 && x == 5)
                 return Rgba{0.375f, 0.25f, 0.375f, 0.5f}; // proposes (0.75, 0.5, 0.75)
             return Rgba{0.5f, 0.5f, 0.5f, 1.0f};
         },
         {0.5f, 0.5f, 0.5f}},
    };
    int index = 0;
    for (Case const& c : cases) {
        std::string const name = "guess" + std::to_string(index++);
        writeFrames(name, "exr", 1, 40, 20, {IxPixelFormat::RGBA, IxPixelFormat::FLOAT32}, c.pixel);
        PxStrongHndl<BtImageReaderNode> const node =
            makeNode(patternOf(name, "exr", 1), IxPixelFormat::FLOAT32);
        node->setUnpremultiply(true);
        node->setUnpremultiplyColor(BtImageImportServices::getUnspecifiedBgColor());
        struct Catch : CbHandler<BtImageReaderNode::ColorGuess> {
            std::vector<CoRgbColorTyped<float>> seen;
            void call(BtImageReaderNode::ColorGuess& guess) override { seen.push_back(guess.second); }
        } handler;
        node->getColorDispatcher().addCallback(&handler);
        frame(node, 1);
        EXPECT_TRUE(handler.seen.empty()) << c.what << ": published on the application thread only";
        EvEventManager::getInstance().processEvents();
        node->getColorDispatcher().removeCallback(&handler);
        ASSERT_EQ(handler.seen.size(), 1u) << c.what;
        EXPECT_EQ(handler.seen[0], c.expected) << c.what;
    }
}

TEST_F(ImageReaderNode, unpremultiplyingAndVectorsFinishEachTile) {
    CoRgbColorTyped<float> const bg{0.25f, 0.5f, 0.75f};
    // c = a * f + (1 - a) * bg with f = (0.5, 0.25, 1) and a = 0.5.
    writeFrames("unpre", "exr", 1, 33, 17, {IxPixelFormat::RGBA, IxPixelFormat::FLOAT32}, [&](int, int) {
        return Rgba{0.5f * 0.5f + 0.5f * bg.r, 0.5f * 0.25f + 0.5f * bg.g, 0.5f * 1.0f + 0.5f * bg.b, 0.5f};
    });
    PxStrongHndl<BtImageReaderNode> const node =
        makeNode(patternOf("unpre", "exr", 1), IxPixelFormat::FLOAT32);
    node->setUnpremultiply(true);
    node->setUnpremultiplyColor(bg);
    {
        IxTile const tile = frame(node, 1);
        IxReadGuard const guard(tile);
        EXPECT_EQ(IxPixelUtil::getPixelColor(guard, 3, -2), (Rgba{0.5f, 0.25f, 1.0f, 0.5f}));
    }
    // Normalised vectors of 10 pixels at most: 0.75 is 5 pixels, 0.25 is -5.
    writeFrames("vectors", "exr", 1, 20, 10, {IxPixelFormat::RGBA, IxPixelFormat::FLOAT32}, [](int, int) {
        return Rgba{0.75f, 0.25f, 0.5f, 1.0f};
    });
    PxStrongHndl<BtImageReaderNode> const vectors =
        makeNode(patternOf("vectors", "exr", 1), IxPixelFormat::FLOAT32);
    vectors->setMotionVectorInfo({CoMotionVectorInfo::HAS_VECTORS, CoMotionVectorInfo::NORMALIZED, 10.0f});
    IxTile const tile = frame(vectors, 1);
    IxReadGuard const guard(tile);
    Rgba const v = IxPixelUtil::getPixelColor(guard, 0, 0);
    EXPECT_FLOAT_EQ(v.r, 5.0f);
    EXPECT_FLOAT_EQ(std::fabs(v.g), 5.0f);
}

TEST_F(ImageReaderNode, aCancelledReadLeavesNoPartialTileCached) {
    writeFrames("cancel", "exr", 1, 900, 700, {IxPixelFormat::RGBA, IxPixelFormat::FLOAT16}, ramp);
    PxConfig::setTileSize(64, 64);
    PxStrongHndl<BtImageReaderNode> const node =
        makeNode(patternOf("cancel", "exr", 1), IxPixelFormat::FLOAT16);
    PxRequestMgr& mgr = PxRequestMgr::getInstance();
    for (int attempt = 0; attempt < 5; ++attempt) {
        PxRequestPtr<PxImageMultiTileRequest> request(new PxImageMultiTileRequest(
            PxNodePtr<PxImageProtocol const>(node), 0, PxTimeInfo(1.0 / 24.0), 0));
        mgr.postRequest(request, 0);
        std::this_thread::sleep_for(std::chrono::milliseconds(attempt));
        mgr.releaseRequest(request); // cancels what has not finished
    }
    expectFrameEqualsFile(frame(node, 1), fileOf("cancel", "exr", 1), 0.0f, "after cancelled reads");
}

TEST_F(ImageReaderNode, proxiesOnReadFillEveryLevelTheDiskKeepsFromOneRead) {
    writeFrames("onread", "exr", 1, 200, 120, {IxPixelFormat::RGBA, IxPixelFormat::FLOAT16}, ramp);
    PxConfig::setTileSize(32, 32);
    PxStrongHndl<BtImageReaderNode> const node =
        makeNode(patternOf("onread", "exr", 1), IxPixelFormat::FLOAT16);
    BtImageReaderNode::setProxiesOnRead(true);
    frame(node, 1);
    BtImageReaderNode::setProxiesOnRead(false);
    long long const made = StatScalar::get(StatTypes::PROXY_TILE_SCALAR_ID);
    EXPECT_GT(made, 0);
    frame(node, 1, 3);
    EXPECT_EQ(StatScalar::get(StatTypes::PROXY_TILE_SCALAR_ID), made) << "level 3 was made at read time";
    EXPECT_EQ(StatScalar::get(StatTypes::FILE_IMPORT_SCALAR_ID), 1);
}

TEST_F(ImageReaderNode, readersOfOnePathAndDateShareTilesOnDiskAndATouchedFileMakesNewOnes) {
    std::filesystem::path const cache = _root / "cache";
    setenv("QV_DISK_CACHE", cache.c_str(), 1);
    writeFrames("shared", "exr", 2, 64, 48, {IxPixelFormat::RGBA, IxPixelFormat::FLOAT16}, ramp);
    std::string const pattern = patternOf("shared", "exr", 2);
    auto identityOf = [&] {
        RCStrongPtr<PiImageSequence> const sequence(BtImageSequence::create(pattern).release());
        return BtReaderCacheIdentity::decide(*sequence);
    };
    BtReaderCacheIdentity const first = identityOf();
    EXPECT_EQ(first.kind, PxResultProtocol::MEMORY_AND_DISK);
    EXPECT_EQ(first.text.rfind("ImageReaderCache:" + pattern + "@", 0), 0u) << first.text;
    EXPECT_EQ(identityOf().storageId, first.storageId);

    auto readWith = [&](BtReaderCacheIdentity const& identity) {
        frame(makeNode(pattern, IxPixelFormat::FLOAT16, &identity), 2);
    };
    readWith(first);
    EXPECT_EQ(StatScalar::get(StatTypes::FILE_IMPORT_SCALAR_ID), 1);
    StTileStore::getInstance().clear(); // as a new process would find it
    BtReaderCacheIdentity const again = identityOf();
    readWith(again);
    EXPECT_EQ(StatScalar::get(StatTypes::FILE_IMPORT_SCALAR_ID), 1)
        << "the second reader found the disk tier";

    std::filesystem::path const firstFile = fileOf("shared", "exr", 1).toStdPath();
    std::filesystem::last_write_time(firstFile,
                                     std::filesystem::last_write_time(firstFile) + std::chrono::hours(1));
    BtReaderCacheIdentity const touched = identityOf();
    EXPECT_NE(touched.storageId, first.storageId);
    StTileStore::getInstance().clear();
    readWith(touched);
    EXPECT_EQ(StatScalar::get(StatTypes::FILE_IMPORT_SCALAR_ID), 2) << "a touched file is read again";

    // A first file gone: an identity of this reader alone, the failure left to the read.
    std::filesystem::remove(firstFile);
    BtReaderCacheIdentity const gone = identityOf();
    EXPECT_EQ(gone.kind, PxResultProtocol::MEMORY);
    EXPECT_TRUE(gone.text.empty());
    unsetenv("QV_DISK_CACHE");
}

TEST_F(ImageReaderNode, outsideTheSequenceTilesAreEmptyForAYearEitherWay) {
    writeFrames("range", "exr", 3, 16, 8, {IxPixelFormat::RGBA, IxPixelFormat::FLOAT16}, ramp);
    PxStrongHndl<BtImageReaderNode> const node =
        makeNode(patternOf("range", "exr", 3), IxPixelFormat::FLOAT16);
    PxRODResult const before = node->getImageROD(PxTimeStreamContext(0.0));
    EXPECT_TRUE(before.getROD().isEmpty());
    EXPECT_EQ(before.getVI().getStart(), PxValidityInterval::TIME_MIN);
    EXPECT_LT(before.getVI().getEnd(), 1.0 / 24.0);
    EXPECT_GE(before.getVI().getEnd(), 0.0);
    PxRODResult const after = node->getImageROD(PxTimeStreamContext(10.0));
    EXPECT_TRUE(after.getROD().isEmpty());
    EXPECT_DOUBLE_EQ(after.getVI().getStart(), 4.0 / 24.0);
    EXPECT_EQ(after.getVI().getEnd(), PxValidityInterval::TIME_MAX);
    PxRODResult const inside = node->getImageROD(PxTimeStreamContext(2.0 / 24.0));
    EXPECT_EQ(inside.getROD().getWidth(), 16.0f);
    EXPECT_TRUE(inside.getVI().contains(2.0 / 24.0));
    EXPECT_FALSE(inside.getVI().contains(3.0 / 24.0));
    EXPECT_EQ(StatScalar::get(StatTypes::FILE_IMPORT_SCALAR_ID), 0);
}

} // namespace

namespace {

TEST(ImageReaderSettings, proxiesOnReadFollowsTheUserSetting) {
    InInitMgr::getInstance().initializeAll();
    PiUserSettings& settings = PiUserSettings::getInstance();
    for (bool on : {true, false}) {
        settings.setValue("ProxiesOnRead", on);
        EXPECT_EQ(BtImageReaderNode::getProxiesOnRead(), on);
    }
}

} // namespace
