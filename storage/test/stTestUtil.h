#pragma once
// What the storage tests share: tiles whose pixels follow from a seed, a
// caching node that exposes its cache operations, and a fixture that gives
// each test an empty memory tier, a large budget and a disk folder of its own.
#include "ixReadGuard.h"
#include "ixWriteGuard.h"
#include "pxHandles.h"
#include "stBsBufferFactory.h"
#include "stBufferManager.h"
#include "stDiskStore.h"
#include "stImageCacheBaseNode.h"
#include "stTileStore.h"

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

namespace Qv::StTest {

inline IxPixelFormat const RGBA32(IxPixelFormat::RGBA, IxPixelFormat::FLOAT32);

inline GeRectangle<int> tileRegion(int size = 16) {
    return GeRectangle<int>{.x1 = 0, .x2 = size, .y1 = 0, .y2 = size};
}

// RGBA FLOAT32; pixel (x, y) is (seed, x, y, 1).
inline void draw(IxTile const& tile, float seed) {
    IxWriteGuard const out(tile);
    GeRectangle<int> const& r = tile.getPixelRegion();
    for (int y = r.y1; y < r.y2; ++y) {
        float* line = out.getLineAs<float>(y);
        for (int x = r.x1; x < r.x2; ++x, line += 4) {
            line[0] = seed;
            line[1] = float(x);
            line[2] = float(y);
            line[3] = 1.0f;
        }
    }
}

// Plain heap pixels, not the factory's.
inline IxTile makeTile(float seed, GeRectangle<int> const& region = tileRegion()) {
    IxTile tile(RGBA32, region, CoRgbaColorTyped<float>{0.1f, 0.2f, 0.3f, 0.4f});
    draw(tile, seed);
    return tile;
}

inline IxTile makeFactoryTile(float seed, GeRectangle<int> const& region = tileRegion()) {
    IxTile tile = StBsBufferFactory::getInstance().createTile(RGBA32, region, "Test");
    draw(tile, seed);
    return tile;
}

// The seed a tile was drawn with, or NaN when its pixels do not follow draw().
inline float seedOf(IxTile const& tile) {
    IxReadGuard const in(tile);
    GeRectangle<int> const& r = tile.getPixelRegion();
    float const seed = in.getLineAs<float>(r.y1)[0];
    for (int y = r.y1; y < r.y2; ++y) {
        float const* line = in.getLineAs<float>(y);
        for (int x = r.x1; x < r.x2; ++x, line += 4)
            if (line[0] != seed || line[1] != float(x) || line[2] != float(y) || line[3] != 1.0f)
                return std::nanf("");
    }
    return seed;
}

inline std::size_t tileBytes(GeRectangle<int> const& region = tileRegion()) {
    return IxTile::computeBufferSize(RGBA32, region);
}

// A caching node whose cache operations the tests call directly.
class CacheNode : public StImageCacheBaseNode {
public:
    CacheNode(PxNode::Init const& init, Uuid const& id, PxResultProtocol::OperatingMode kind)
        : PxNode(init), StImageCacheBaseNode(init, id, kind) {}

    PxResult<PxImageFormat> getImageFormat() const override {
        return PxResult<PxImageFormat>(PxImageFormat(RGBA32, Rational(24, 1)), PxValidityInterval::FULL);
    }
    PxRODResult getImageROD(PxTimeStreamContext const&) const override {
        return PxRODResult(GeRectangle<float>{.x1 = 0, .x2 = 64, .y1 = 0, .y2 = 64},
                           PxValidityInterval::FULL);
    }
    PxImageResult getImageResult(PxImageContext const& context) const override {
        return getMemCachedImageResult(context);
    }

    using StImageCacheBaseNode::getDiskCachedImageResult;
    using StImageCacheBaseNode::getMemCachedImageResult;
    using StImageCacheBaseNode::setCacheVariant;
    using StImageCacheBaseNode::setDiskCachedImageResult;
    using StImageCacheBaseNode::setMemCachedImageResult;
    using StImageCacheBaseNode::setStorageId;
};

template <class Node, class... Args>
PxStrongHndl<Node> makeNode(Args&&... args) {
    PxNode::Init init;
    PxStrongHndl<Node> node(new Node(init, std::forward<Args>(args)...));
    PxNode::init(node);
    return node;
}

inline PxStrongHndl<CacheNode>
makeCacheNode(Uuid const& id, PxResultProtocol::OperatingMode kind = PxResultProtocol::MEMORY) {
    return makeNode<CacheNode>(id, kind);
}

inline PxImageContext context(double time = 1.0, int tileX = 0, int tileY = 0, int proxy = 0,
                              int stream = 0) {
    return PxImageContext(time, GePoint2<int>{tileX, tileY}, proxy, stream);
}

inline PxValidityInterval frame(double time) {
    return PxValidityInterval(time, time + 0.5);
}

// Sets an environment variable for a scope, and restores what was there.
class EnvGuard {
public:
    EnvGuard(char const* name, char const* value) : _name(name) {
        if (char const* old = std::getenv(name))
            _old = old;
        if (value)
            ::setenv(name, value, 1);
        else
            ::unsetenv(name);
    }
    ~EnvGuard() {
        if (_old)
            ::setenv(_name.c_str(), _old->c_str(), 1);
        else
            ::unsetenv(_name.c_str());
    }

private:
    std::string _name;
    std::optional<std::string> _old;
};

class StorageTest : public ::testing::Test {
protected:
    void SetUp() override {
        static std::atomic<int> counter{0};
        _folder = std::filesystem::temp_directory_path() /
                  ("qv-storage-test-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
        std::filesystem::remove_all(_folder);
        _disk.emplace("QV_DISK_CACHE", _folder.c_str());
        _diskBudget.emplace("QV_DISK_CACHE_MB", nullptr);
        StDiskStore::getInstance().reset();
        StTileStore::getInstance().clear();
        _budget = StBufferManager::getInstance().getBudget();
        StBufferManager::getInstance().setBudget(std::size_t(1) << 30);
        StBufferManager::getInstance().resetPeak();
    }
    void TearDown() override {
        StTileStore::getInstance().clear();
        StBufferManager::getInstance().setBudget(_budget);
        _disk.reset();
        _diskBudget.reset();
        StDiskStore::getInstance().reset();
        std::error_code ignored;
        std::filesystem::remove_all(_folder, ignored);
    }

    std::filesystem::path _folder;
    std::optional<EnvGuard> _disk;
    std::optional<EnvGuard> _diskBudget;
    std::size_t _budget = 0;
};

} // namespace Qv::StTest
