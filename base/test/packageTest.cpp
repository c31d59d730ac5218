#include "assertions.h"
#include "inInitMgr.h"

#include <gtest/gtest.h>
#include <map>
#include <memory>

using namespace Qv;

namespace {

template <int N>
struct Tag {};

// A package whose identity, name and dependencies a test chooses, recording
// every step in a shared journal.
class TestPackage : public InPackageInit {
public:
    TestPackage(char const* name, std::type_info const& type, std::vector<std::string>& journal,
                std::vector<std::type_info const*> dependencies = {})
        : InPackageInit(name), _type(type), _journal(journal) {
        registerPackage();
        for (auto const* dependency : dependencies)
            addDependency(*dependency);
    }
    void initialize() override {
        _journal.push_back("init " + getName() +
                           (InInitMgr::getInstance().isInitializing() ? "" : " (outside)"));
        if (_failOnInitialize)
            throw ExBase(__FILE__, __LINE__, getName() + " cannot start");
    }
    void finalize() override {
        _journal.push_back("fini " + getName() +
                           (InInitMgr::getInstance().isFinalizing() ? "" : " (outside)"));
    }
    void setInitialized(bool initialized) override { _initialized = initialized; }
    bool isInitialized() const override { return _initialized; }
    std::type_info const& getPackageType() const override { return _type; }
    void failOnInitialize() { _failOnInitialize = true; }

private:
    std::type_info const& _type;
    std::vector<std::string>& _journal;
    bool _initialized = false;
    bool _failOnInitialize = false;
};

std::vector<std::string> initOnly(std::vector<std::string> const& journal, std::string const& prefix) {
    std::vector<std::string> result;
    for (auto const& entry : journal)
        if (entry.rfind(prefix, 0) == 0)
            result.push_back(entry);
    return result;
}

class PackageOrder : public ::testing::Test {
protected:
    void TearDown() override { InInitMgr::getInstance().finalizeAll(); }
    std::vector<std::string> journal;
};

} // namespace

TEST_F(PackageOrder, EveryPackageFollowsItsDependenciesAndFinalisesInReverse) {
    // Registered in an order that contradicts the dependencies on purpose.
    TestPackage root("root", typeid(Tag<1>), journal, {&typeid(Tag<2>), &typeid(Tag<3>)});
    TestPackage tools("tools", typeid(Tag<2>), journal, {&typeid(Tag<4>)});
    TestPackage render("render", typeid(Tag<3>), journal, {&typeid(Tag<2>), &typeid(Tag<4>)});
    TestPackage core("core", typeid(Tag<4>), journal);

    InInitMgr::getInstance().initializeAll();
    InInitMgr::getInstance().finalizeAll();

    std::vector<std::string> expected = {"init core", "init tools",  "init render", "init root",
                                         "fini root", "fini render", "fini tools",  "fini core"};
    auto ours = journal;
    EXPECT_EQ(ours, expected);
}

TEST_F(PackageOrder, SecondSweepInitialisesOnlyNewPackages) {
    TestPackage first("first", typeid(Tag<10>), journal);
    InInitMgr::getInstance().initializeAll();
    TestPackage second("second", typeid(Tag<11>), journal, {&typeid(Tag<10>)});
    InInitMgr::getInstance().initializeAll();
    EXPECT_EQ(initOnly(journal, "init"), (std::vector<std::string>{"init first", "init second"}));
}

TEST_F(PackageOrder, InconsistentDeclarationsAreRefusedBeforeAnythingStarts) {
    struct Case {
        char const* what;
        std::vector<std::pair<int, std::vector<int>>> packages;
        char const* message;
    };
    std::vector<Case> cases = {
        {"undeclared", {{20, {21}}}, "Package 'p20' depends on"},
        {"cycle of two", {{22, {23}}, {23, {22}}}, "Package dependency cycle: p22 -> p23 -> p22"},
        {"cycle through three", {{24, {25}}, {25, {26}}, {26, {25}}}, "cycle: p25 -> p26 -> p25"},
    };
    std::map<int, std::type_info const*> types = {
        {20, &typeid(Tag<20>)}, {21, &typeid(Tag<21>)}, {22, &typeid(Tag<22>)}, {23, &typeid(Tag<23>)},
        {24, &typeid(Tag<24>)}, {25, &typeid(Tag<25>)}, {26, &typeid(Tag<26>)},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.what);
        std::vector<std::unique_ptr<TestPackage>> packages;
        std::vector<std::string> names;
        for (auto const& [id, dependencies] : c.packages)
            names.push_back("p" + std::to_string(id));
        for (size_t i = 0; i < c.packages.size(); ++i) {
            std::vector<std::type_info const*> dependencies;
            for (int d : c.packages[i].second)
                dependencies.push_back(types.at(d));
            packages.push_back(std::make_unique<TestPackage>(names[i].c_str(), *types.at(c.packages[i].first),
                                                             journal, dependencies));
        }
        try {
            InInitMgr::getInstance().initializeAll();
            FAIL() << "accepted";
        } catch (ExBase const& error) {
            EXPECT_NE(error.getReason().find(c.message), std::string::npos) << error.getReason();
        }
        EXPECT_TRUE(initOnly(journal, "init p").empty());
    }
}

TEST_F(PackageOrder, FailedInitialiseKeepsEarlierPackagesForFinalise) {
    TestPackage good("good", typeid(Tag<30>), journal);
    TestPackage bad("bad", typeid(Tag<31>), journal, {&typeid(Tag<30>)});
    TestPackage later("later", typeid(Tag<32>), journal, {&typeid(Tag<31>)});
    bad.failOnInitialize();
    EXPECT_THROW(InInitMgr::getInstance().initializeAll(), ExBase);
    EXPECT_FALSE(InInitMgr::getInstance().isInitializing());
    InInitMgr::getInstance().finalizeAll();
    EXPECT_EQ(journal, (std::vector<std::string>{"init good", "init bad", "fini good"}));
}

TEST_F(PackageOrder, DestroyedPackageLeavesTheManager) {
    {
        TestPackage gone("gone", typeid(Tag<40>), journal);
        EXPECT_EQ(InInitMgr::getInstance().findPackage(typeid(Tag<40>)), &gone);
    }
    EXPECT_EQ(InInitMgr::getInstance().findPackage(typeid(Tag<40>)), nullptr);
}
