#include "baseTestHelpers.h"
#include "osFile.h"
#include "osFileEx.h"

#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>

using namespace Qv;
using namespace Qv::TestHelpers;

namespace {

class OsFileDateTest : public TempDirTest {
protected:
    // Writes the content, then dates the file `offset` after `base`.
    void rewrite(OsFilePath const& file, std::string const& content, std::chrono::milliseconds offset) {
        OsFile(file).writeAtomically(content);
        std::filesystem::last_write_time(file.toStdPath(), std::chrono::file_clock::from_sys(base + offset));
    }

    // 2012-06-12 16:59:10 UTC.
    std::chrono::sys_seconds const base{std::chrono::seconds(1339520350)};
};

TEST_F(OsFileDateTest, ARewriteDatedLaterGivesALaterDateAndText) {
    using std::chrono::milliseconds;
    struct Case {
        milliseconds first;
        milliseconds second;
        std::int64_t secondsApart; // of the dates read back
    } const cases[] = {
        {milliseconds(0), milliseconds(1000), 1},         // a second apart
        {milliseconds(999), milliseconds(1000), 1},       // across a second's edge
        {milliseconds(250), milliseconds(1750), 1},       // fractions are dropped
        {milliseconds(0), milliseconds(86400000), 86400}, // a day apart
        {milliseconds(100), milliseconds(900), 0},        // within one second: the same date
        {milliseconds(-1000), milliseconds(0), 1},        // an older file replaced
    };
    OsFilePath const file = path("frame.0001.exr");
    for (auto const& c : cases) {
        rewrite(file, "first", c.first);
        LiDate const before = OsFile(file).getModificationDate();
        EXPECT_EQ(before.getSecondsSinceEpoch(),
                  std::chrono::floor<std::chrono::seconds>(base + c.first).time_since_epoch().count());
        rewrite(file, "second, longer", c.second);
        LiDate const after = OsFile(file).getModificationDate();
        EXPECT_EQ(after.getSecondsSinceEpoch() - before.getSecondsSinceEpoch(), c.secondsApart)
            << c.first.count() << " then " << c.second.count() << " ms";
        EXPECT_EQ(after.toString() != before.toString(), c.secondsApart != 0)
            << before.toString() << " then " << after.toString();
    }
}

TEST_F(OsFileDateTest, AMissingFileOrADirectoryIsRefusedNamingThePath) {
    EXPECT_TRUE(throwsWith<OsFileEx::ExFileNotFound>(
        [&] { OsFile(path("missing.exr")).getModificationDate(); }, "missing.exr"));
    std::filesystem::create_directories(_root / "frames.exr");
    EXPECT_TRUE(throwsWith<OsFileEx::ExInvalidPath>([&] { OsFile(path("frames.exr")).getModificationDate(); },
                                                    "frames.exr", "directory"));
    EXPECT_THROW(OsFile(OsFilePath("")).getModificationDate(), OsFileEx::ExFileNotFound);
}

} // namespace
