#pragma once
// What the file layer's tests share: a fresh folder per test, and images of
// known pixels.
#include "coColor.h"
#include "inInitMgr.h"
#include "ixPixelUtil.h"
#include "ixTile.h"
#include "ixWriteGuard.h"
#include "osFilePath.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace Qv::MediaTest {

class FileTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { InInitMgr::getInstance().initializeAll(); }

    void SetUp() override {
        std::random_device seed;
        _dir = std::filesystem::temp_directory_path() /
               ("qvMediaTest-" + std::to_string(seed()) + "-" +
                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(_dir);
    }
    void TearDown() override { std::filesystem::remove_all(_dir); }

    OsFilePath path(std::string const& name) const { return OsFilePath((_dir / name).string()); }
    std::filesystem::path const& dir() const { return _dir; }
    // The names in the folder, to see that nothing else was left there.
    std::vector<std::string> listDir() const {
        std::vector<std::string> names;
        for (auto const& entry : std::filesystem::directory_iterator(_dir))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::filesystem::path _dir;
};

// Pixel (x, y) of the test pattern: steps of 1/255, so that 8 and 16-bit
// files hold them exactly, and every channel different.
inline CoRgbaColorTyped<float> patternAt(int x, int y) {
    return {static_cast<float>((x * 7 + y * 3) % 256) / 255.0f,
            static_cast<float>((x * 2 + y * 11) % 256) / 255.0f,
            static_cast<float>((x * 13 + y) % 256) / 255.0f,
            static_cast<float>((x + y * 5 + 40) % 256) / 255.0f};
}

inline IxTile patternTile(int width, int height,
                          IxPixelFormat const& format = IxPixelFormat(IxPixelFormat::RGBA,
                                                                      IxPixelFormat::FLOAT32)) {
    IxTile const tile(format, {0, width, 0, height});
    IxWriteGuard const guard(tile);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            IxPixelUtil::setPixelColor(guard, x, y, patternAt(x, y));
    return tile;
}

} // namespace Qv::MediaTest
