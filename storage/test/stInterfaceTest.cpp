// Storage ids and where the disk tier lives.
#include "stInterface.h"

#include "stTestUtil.h"

using namespace Qv;
using namespace Qv::StTest;

namespace {

TEST(StorageId, NameBasedIdsOfRfc4122) {
    // Known version 5 identifiers of the DNS namespace (the examples of Python's uuid module and RFC 9562).
    Uuid const dns = Uuid::fromString("6ba7b810-9dad-11d1-80b4-00c04fd430c8");
    EXPECT_EQ(StInterface::createNameBasedId(dns, "python.org").toString(),
              "886313e1-3b8a-5372-9b90-0c9aee199e5d");
    EXPECT_EQ(StInterface::createNameBasedId(dns, "www.example.com").toString(),
              "2ed6657d-e927-568b-95e1-2665a8aea6a2");
    // Texts longer than one block of the hash.
    std::string const longText(200, 'x');
    EXPECT_EQ(StInterface::createNameBasedId(dns, longText), StInterface::createNameBasedId(dns, longText));
    EXPECT_NE(StInterface::createNameBasedId(dns, longText),
              StInterface::createNameBasedId(dns, longText + "y"));

    StInterface const& st = StInterface::getInstance();
    Uuid const id = st.getStorageId("/shots/a.####.exr");
    EXPECT_EQ(id, st.getStorageId("/shots/a.####.exr"));
    EXPECT_NE(id, st.getStorageId("/shots/b.####.exr"));
    EXPECT_EQ(id.toString()[14], '5');
}

TEST(DiskCacheSetting, FolderAndBudgetFromTheEnvironment) {
    struct Case {
        char const* cache;
        char const* xdg;
        char const* home;
        std::optional<std::string> expected;
    };
    Case const cases[] = {
        {"/data/tiles", "/xdg", "/home/u", "/data/tiles"},
        {"off", "/xdg", "/home/u", std::nullopt},
        {nullptr, "/xdg", "/home/u", "/xdg/qv/tiles"},
        {"", "/xdg", "/home/u", "/xdg/qv/tiles"},
        {nullptr, "relative", "/home/u", "/home/u/.cache/qv/tiles"},
        {nullptr, nullptr, "/home/u", "/home/u/.cache/qv/tiles"},
        {nullptr, nullptr, nullptr, std::nullopt},
    };
    for (Case const& c : cases) {
        EnvGuard const cache("QV_DISK_CACHE", c.cache);
        EnvGuard const xdg("XDG_CACHE_HOME", c.xdg);
        EnvGuard const home("HOME", c.home);
        std::optional<std::filesystem::path> const folder = StInterface::getInstance().getDiskCacheFolder();
        EXPECT_EQ(folder.has_value(), c.expected.has_value()) << (c.cache ? c.cache : "(unset)");
        if (folder && c.expected) {
            EXPECT_EQ(folder->string(), *c.expected);
        }
    }
    struct Budget {
        char const* text;
        std::uintmax_t mib;
    };
    Budget const budgets[] = {{nullptr, 4096}, {"16", 16}, {"0", 4096}, {"lots", 4096}, {"-3", 4096}};
    for (Budget const& b : budgets) {
        EnvGuard const bound("QV_DISK_CACHE_MB", b.text);
        EXPECT_EQ(StInterface::getInstance().getDiskCacheBudget(), b.mib << 20)
            << (b.text ? b.text : "(unset)");
    }
}

} // namespace
