// The project store on disk: projects, folders, entries, versions and their
// graphs, paths, and writes that fail without losing what was there.
#include "compTestTools.h"
#include "omComposition.h"
#include "omEx.h"
#include "omFolder.h"
#include "omFootageFactory.h"
#include "omGraph.h"
#include "omUtil.h"
#include "osFile.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <sys/resource.h>
#include <unistd.h>

using namespace Qv;
using namespace Qv::CompTest;
namespace fs = std::filesystem;

namespace {

// Sets an environment variable for a scope, or unsets it with nullopt.
class ScopedEnv {
public:
    ScopedEnv(char const* name, std::optional<std::string> const& value) : _name(name) {
        if (char const* old = std::getenv(name))
            _old = old;
        set(value);
    }
    ~ScopedEnv() { set(_old); }

private:
    void set(std::optional<std::string> const& value) {
        if (value)
            ::setenv(_name, value->c_str(), 1);
        else
            ::unsetenv(_name);
    }
    char const* _name;
    std::optional<std::string> _old;
};

class ProjectStore : public GraphTest {
protected:
    void SetUp() override { fs::create_directories(_dir); }
    void TearDown() override {
        OmProject::setCurrent({});
        fs::permissions(_dir, fs::perms::owner_all, fs::perm_options::add);
        fs::remove_all(_dir);
    }

    // A project "show" with the footage entry "Footage/plate" whose working
    // version holds a Scale node "A".
    OmProject makeShow() {
        OmProject project = OmProject::create((_dir / "show").string());
        OmFolder footage = OmUtil::locateOrCreateFolder(project, "Footage");
        RCShdPtr<OmComposition> plate = OmFootageFactory::createComponent("plate");
        footage.addEntry("plate", plate);
        plate->setDescription("24 frames");
        OmGraph graph = OmGraph::open(plate->getWorkingVersion());
        graph.getInterface()->createNode("Scale", "A")->getInput("Value")->setConstantValue(2.5);
        graph.sync();
        return project;
    }
    std::string show(std::string const& relative = {}) const {
        return relative.empty() ? (_dir / "show").string() : (_dir / "show" / relative).string();
    }
    static std::string read(std::string const& path) { return OsFile(path).readText(); }
    // Names in a directory, hidden ones included.
    static std::vector<std::string> listing(std::string const& path) {
        std::vector<std::string> names;
        for (fs::directory_entry const& entry : fs::directory_iterator(path))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    ScopedTool _scale{scaleTool()};
    fs::path _dir =
        fs::temp_directory_path() / ("qv-project-" + std::to_string(::getpid()) + "-" +
                                     ::testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST_F(ProjectStore, AProjectIsADirectoryWithAMarker) {
    OmProject made = OmProject::create(show());
    EXPECT_EQ(made.getPath().toString(), show());
    EXPECT_EQ(made.getName(), "show");
    EXPECT_EQ(read(show("qvproject.xml")),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<project version=\"1\" />\n");
    EXPECT_EQ(OmProject::open(show() + "/sub/..").getPath(), made.getPath());
    EXPECT_EQ(made.getRootFolder().getPath(), made.getPath());
    EXPECT_EQ(made.getRootFolder().getDisplayPath(), "");
    EXPECT_THROW(OmProject::create(show()), OmEx::ExNameInUse);
    EXPECT_THROW(OmProject::open(_dir.string()), OmEx::ExNotAProject);
    OsFile((_dir / "file").string()).writeAtomically("x");
    EXPECT_THROW(OmProject::create((_dir / "file").string()), OmEx::ExNameInUse);
    EXPECT_EQ(OmProject::locate(show("Footage/plate")), made);
    EXPECT_TRUE(OmProject::locate(_dir.string()).isNull());

    struct Case {
        std::string marker;
        std::string reason;
    } const cases[] = {
        {"not xml", "qvproject.xml"},
        {"<project/>", "version"},
        {"<project version=\"2\"/>", "project format 2"},
        {"<entry version=\"1\"/>", "<entry> where <project> was expected"},
    };
    for (Case const& c : cases) {
        OsFile(show("qvproject.xml")).writeAtomically(c.marker);
        try {
            OmProject::open(show());
            ADD_FAILURE() << c.marker << ": opened";
        } catch (OmEx::ExBadEntry const& error) {
            EXPECT_NE(error.getReason().find(show("qvproject.xml")), std::string::npos) << error.getReason();
            EXPECT_NE(error.getReason().find(c.reason), std::string::npos) << error.getReason();
        }
    }
}

TEST_F(ProjectStore, FoldersAreFoundOrMadeInsideTheProjectOnly) {
    OmProject project = makeShow();
    OsFile(show("notes.txt")).writeAtomically("x");
    struct Case {
        std::string path;
        char const* displayPath; // null: no folder
    } const cases[] = {
        {"", ""},
        {"Footage", "Footage"},
        {"Shots/A/B", "Shots/A/B"},
        {"./Shots//A/", "Shots/A"},
        {show("Renders"), "Renders"},
        {show(), ""},
        {"Footage/plate", nullptr},   // a composition
        {"Footage/plate/x", nullptr}, // inside a composition
        {"notes.txt/x", nullptr},     // a file
        {"../elsewhere", nullptr},    // outside
        {(_dir / "elsewhere").string(), nullptr},
        {"bad:name", nullptr},
        {".hidden", nullptr},
    };
    for (Case const& c : cases) {
        OmFolder folder = OmUtil::locateOrCreateFolder(project, c.path);
        if (!c.displayPath) {
            EXPECT_TRUE(folder.isNull()) << c.path;
            continue;
        }
        ASSERT_FALSE(folder.isNull()) << c.path;
        EXPECT_EQ(folder.getDisplayPath(), c.displayPath) << c.path;
        EXPECT_TRUE(fs::is_directory(folder.getPath().toStdPath())) << c.path;
    }
    EXPECT_FALSE(fs::exists(_dir / "elsewhere"));
    EXPECT_FALSE(fs::exists(show("bad:name")));
    EXPECT_TRUE(OmUtil::locateOrCreateFolder(OmProject(), "Footage").isNull());
}

TEST_F(ProjectStore, ASecondEntryOfANameIsRefusedAndTheFirstStaysAsItWas) {
    OmProject project = makeShow();
    OmFolder footage = OmUtil::locateOrCreateFolder(project, "Footage");
    std::string const sideFile = read(show("Footage/plate/entry.xml"));
    std::string const version = read(show("Footage/plate/Original Footage.qvc"));

    RCShdPtr<OmComposition> second = OmFootageFactory::createComponent("plate");
    second->setDescription("another");
    try {
        footage.addEntry("plate", second);
        ADD_FAILURE() << "added twice";
    } catch (OmEx::ExNameInUse const& error) {
        EXPECT_NE(error.getReason().find("'plate'"), std::string::npos) << error.getReason();
        EXPECT_NE(error.getReason().find(show("Footage")), std::string::npos) << error.getReason();
    }
    EXPECT_THROW(footage.addEntry("bad/name", second), OmEx::ExInvalidName);
    EXPECT_THROW(OmFootageFactory::createComponent(" plate"), OmEx::ExInvalidName);
    EXPECT_FALSE(second->isInFolder());
    EXPECT_EQ(read(show("Footage/plate/entry.xml")), sideFile);
    EXPECT_EQ(read(show("Footage/plate/Original Footage.qvc")), version);
    EXPECT_EQ(listing(show("Footage")), std::vector<std::string>{"plate"});
    EXPECT_EQ(footage.getEntry("plate").getComponent()->getDescription(), "24 frames");

    // The same component under a free name.
    OmLink link = footage.addEntry("plate2", second);
    EXPECT_EQ(link.getDisplayPath(), "Footage/plate2");
    EXPECT_EQ(link.getComponent(), second);
    EXPECT_EQ(second->getName(), "plate2");
    EXPECT_EQ(OmUtil::resolvePath(project, "Footage/plate2").getComponent()->getDescription(), "another");
}

TEST_F(ProjectStore, NamesAreThoseTheSanitizerLeavesAlone) {
    struct Case {
        char const* name;
        bool valid;
    } const cases[] = {
        {"plate", true},      {"Original Footage", true},
        {"v2.final", true},   {"a_b-c", true},
        {"", false},          {"a/b", false},
        {"a\\b", false},      {"a:b", false},
        {"tab\there", false}, {" lead", false},
        {"trail ", false},    {"dots..", false},
        {".hidden", false},   {"..", false},
        {"what?", false},
    };
    for (Case const& c : cases)
        EXPECT_EQ(OmUtil::isValidName(c.name), c.valid) << '"' << c.name << '"';
}

TEST_F(ProjectStore, EntriesAreListedByNameWithTheirKind) {
    OmProject project = makeShow();
    OmFolder footage = OmUtil::locateOrCreateFolder(project, "Footage");
    footage.addEntry("bg", OmComposition::create("bg"));
    footage.createFolder("Archive");
    fs::create_directory(show("Footage/.unfinished~1.tmp"));
    OsFile(show("Footage/stray.txt")).writeAtomically("x");

    std::vector<std::string> seen;
    for (OmLink const& entry : footage.getEntries())
        seen.push_back(entry.getDisplayPath() + (entry.isFolder() ? " folder" : " component"));
    EXPECT_EQ(seen, (std::vector<std::string>{"Footage/Archive folder", "Footage/bg component",
                                              "Footage/plate component"}));
    std::vector<OmFolder> folders = project.getRootFolder().getFolders();
    ASSERT_EQ(folders.size(), 1u);
    EXPECT_EQ(folders[0].getName(), "Footage");
    EXPECT_THROW(footage.createFolder("bg"), OmEx::ExNameInUse);
    EXPECT_THROW(footage.createFolder("stray.txt"), OmEx::ExNameInUse);
}

TEST_F(ProjectStore, PathsResolveToWhatIsThere) {
    OmProject project = makeShow();
    struct Case {
        std::string path;
        char const* displayPath; // null: a null link
        bool isFolder;
    } const cases[] = {
        {"Footage/plate", "Footage/plate", false},
        {show("Footage/plate"), "Footage/plate", false},
        {"Footage", "Footage", true},
        {show(), "", true},
        {show("Footage/plate/Original Footage.qvc"), nullptr, false},
        {"Footage/missing", nullptr, false},
        {"Missing/plate", nullptr, false},
        {"../show/Footage/plate", "Footage/plate", false},
        {(_dir / "elsewhere").string(), nullptr, false},
    };
    OmProject::setCurrent(project);
    for (Case const& c : cases) {
        OmLink link = OmUtil::resolvePath(c.path);
        if (!c.displayPath) {
            EXPECT_TRUE(link.isNull()) << c.path;
            continue;
        }
        ASSERT_FALSE(link.isNull()) << c.path;
        EXPECT_EQ(link.getDisplayPath(), c.displayPath) << c.path;
        EXPECT_EQ(link.isFolder(), c.isFolder) << c.path;
        EXPECT_EQ(link.getComponent().isNull(), c.isFolder) << c.path;
        EXPECT_EQ(link.getPath().toString(), c.displayPath[0] ? show(c.displayPath) : show()) << c.path;
    }
    OmProject::setCurrent({});
    EXPECT_TRUE(OmUtil::resolvePath("Footage/plate").isNull()) << "no current project";
    EXPECT_FALSE(OmUtil::resolvePath(show("Footage/plate")).isNull());
}

TEST_F(ProjectStore, VersionsKeepTheirOrderAndTheApprovedOne) {
    OmProject project = OmProject::create(show());
    RCShdPtr<OmComposition> comp = OmComposition::create("comp");
    OmLink link = project.getRootFolder().addEntry("comp", comp);
    EXPECT_TRUE(comp->getVersions().empty());
    EXPECT_TRUE(comp->getApprovedVersion().isNull());

    OmVersion working = comp->getWorkingVersion();
    EXPECT_EQ(working.getName(), "Working");
    for (char const* name : {"zeta", "alpha", "mid"})
        comp->addVersion(name);
    EXPECT_EQ(comp->getWorkingVersion(), working);
    EXPECT_THROW(comp->addVersion("alpha"), OmEx::ExNameInUse);
    EXPECT_THROW(comp->addVersion("a/b"), OmEx::ExInvalidName);
    comp->approveVersion(comp->getVersion("alpha"));
    RCShdPtr<OmComposition> other = OmComposition::create("other");
    other->addVersion("alpha");
    EXPECT_THROW(comp->approveVersion(other->getVersion("alpha")), OmEx::ExUnknownVersion);
    link.sync();
    EXPECT_EQ(read(show("comp/entry.xml")), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                            "<entry version=\"1\" kind=\"composition\">\n"
                                            "  <description />\n"
                                            "  <version name=\"Working\" />\n"
                                            "  <version name=\"zeta\" />\n"
                                            "  <version name=\"alpha\" approved=\"true\" />\n"
                                            "  <version name=\"mid\" />\n"
                                            "</entry>\n");

    // Read back from disk: the order of creation, not of names or of the directory.
    auto reread = rcCast<OmComposition>(OmUtil::resolvePath(project, "comp").getComponent());
    ASSERT_NE(reread, comp);
    std::vector<std::string> names;
    for (OmVersion const& version : reread->getVersions())
        names.push_back(std::to_string(version.getNumber()) + " " + version.getName() + " " +
                        version.getPath().getBaseName(true));
    EXPECT_EQ(names, (std::vector<std::string>{"1 Working Working.qvc", "2 zeta zeta.qvc",
                                               "3 alpha alpha.qvc", "4 mid mid.qvc"}));
    EXPECT_EQ(reread->getApprovedVersion().getName(), "alpha");
    EXPECT_EQ(reread->getApprovedVersion().getComposition(), reread);
    EXPECT_EQ(reread->getWorkingVersion().getPath().toString(), show("comp/Working.qvc"));
    EXPECT_TRUE(reread->getVersion("none").isNull());
    EXPECT_EQ(OmComposition::getFileExtension(), "qvc");
}

TEST_F(ProjectStore, ABadSideFileIsOneErrorNamingIt) {
    OmProject project = makeShow();
    std::string const sideFile = show("Footage/plate/entry.xml");
    struct Case {
        std::string text;
        std::string reason;
    } const cases[] = {
        {"<entry", "line 1"},
        {"<entry version=\"1\" />", "kind"},
        {"<entry version=\"2\" kind=\"composition\" />", "entry format 2"},
        {"<entry version=\"1\" kind=\"movie\" />", "unknown kind of entry 'movie'"},
        {"<entry version=\"1\" kind=\"composition\">\n<version name=\"a\" />\n<version name=\"a\" "
         "/>\n</entry>",
         "line 3: 'a' cannot name a version"},
        {"<entry version=\"1\" kind=\"composition\"><version name=\"a/b\" /></entry>", "'a/b'"},
        {"<composition version=\"1\" />", "<composition> where <entry> was expected"},
    };
    for (Case const& c : cases) {
        OsFile(sideFile).writeAtomically(c.text);
        OmLink link = OmUtil::resolvePath(project, "Footage/plate");
        ASSERT_FALSE(link.isNull()) << c.text;
        try {
            link.getComponent();
            ADD_FAILURE() << c.text << ": read";
        } catch (OmEx::ExBadEntry const& error) {
            EXPECT_NE(error.getReason().find(sideFile), std::string::npos) << error.getReason();
            EXPECT_NE(error.getReason().find(c.reason), std::string::npos) << error.getReason();
        }
    }
}

TEST_F(ProjectStore, AGraphSavedThenReopenedHasItsNodes) {
    OmProject project = OmProject::create(show());
    RCShdPtr<OmComposition> plate = OmFootageFactory::createComponent("plate");
    OmFolder footage = OmUtil::locateOrCreateFolder(project, "Footage");
    EXPECT_EQ(listing(show("Footage")), std::vector<std::string>{})
        << "nothing made before the entry is added";
    footage.addEntry("plate", plate);
    OmVersion original = plate->getWorkingVersion();
    EXPECT_EQ(original.getPath().toString(), show("Footage/plate/Original Footage.qvc"));
    EXPECT_FALSE(fs::exists(original.getPath().toStdPath()));

    OmGraph graph = OmGraph::open(original);
    EXPECT_TRUE(graph.getInterface()->getNodes().empty());
    EXPECT_EQ(graph.getGenerationNumber(), 0);
    RCShdPtr<PiNode> a = graph.getInterface()->createNode("Scale", "A");
    EXPECT_EQ(graph.getGenerationNumber(), 1);
    a->getInput("Value")->setConstantValue(2.5);
    EXPECT_EQ(graph.getGenerationNumber(), 2);
    graph.getInterface()->getCommandStack().undo();
    EXPECT_EQ(graph.getGenerationNumber(), 3) << "an undo is a change too";
    graph.getInterface()->getCommandStack().redo();
    graph.sync();
    EXPECT_EQ(graph.getGenerationNumber(), 5);
    EXPECT_EQ(graph.getName(), "Original Footage");

    OmGraph reopened =
        OmGraph::open(rcCast<OmComposition>(OmUtil::resolvePath(project, "Footage/plate").getComponent())
                          ->getWorkingVersion());
    RCShdPtr<PiNode> node = reopened.getInterface()->findNode("A");
    ASSERT_FALSE(node.isNull());
    EXPECT_EQ(node->getToolName(), "Ostrand/Scale");
    EXPECT_EQ(std::get<double>(node->getInput("Value")->getValueInterface().getConstantVariant()), 2.5);
    EXPECT_EQ(reopened.getGenerationNumber(), 0);
}

TEST_F(ProjectStore, ASyncGuardWritesUnlessAnExceptionLeavesTheScope) {
    OmProject project = OmProject::create(show());
    for (bool failing : {false, true}) {
        std::string const name = failing ? "failing" : "normal";
        RCShdPtr<OmComposition> comp = OmComposition::create(name);
        project.getRootFolder().addEntry(name, comp);
        try {
            OmComponent::SyncGuard guard(*comp);
            comp->setDescription("described");
            if (failing)
                throw std::runtime_error("import failed");
        } catch (std::runtime_error const&) {
        }
        std::string const text = read(show(name + "/entry.xml"));
        EXPECT_EQ(text.find("described") != std::string::npos, !failing) << name;
        EXPECT_EQ(comp->hasPendingChanges(), failing) << name;
    }
}

// Makes every write past the first bytes of a file fail, for the scope: the
// way to make the disk refuse that binds a superuser too.
class ScopedFileSizeLimit {
public:
    ScopedFileSizeLimit() {
        ::getrlimit(RLIMIT_FSIZE, &_old);
        _signal = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit = _old;
        limit.rlim_cur = 8;
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~ScopedFileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &_old);
        std::signal(SIGXFSZ, _signal);
    }

private:
    rlimit _old{};
    void (*_signal)(int);
};

TEST_F(ProjectStore, AWriteTheDiskRefusesLeavesTheOldFileWhole) {
    OmProject project = makeShow();
    auto plate = rcCast<OmComposition>(OmUtil::resolvePath(project, "Footage/plate").getComponent());
    OmGraph graph = OmGraph::open(plate->getWorkingVersion());
    graph.getInterface()->createNode("Scale", "B");

    struct Case {
        char const* what;
        std::string file;
        std::function<void()> write;
    } const cases[] = {
        {"version file", show("Footage/plate/Original Footage.qvc"), [&] { graph.sync(); }},
        {"side file", show("Footage/plate/entry.xml"),
         [&] {
             plate->setDescription("changed");
             plate->sync();
         }},
        {"new entry", show("Footage/bg"),
         [&] {
             OmUtil::locateOrCreateFolder(project, "Footage").addEntry("bg", OmComposition::create("bg"));
         }},
    };
    bool const permissionsBind = ::geteuid() != 0;
    for (Case const& c : cases) {
        for (bool readOnly : {false, true}) {
            if (readOnly && !permissionsBind)
                continue;
            std::optional<std::string> const before =
                fs::exists(c.file) ? std::optional(read(c.file)) : std::nullopt;
            fs::path const directory = fs::path(c.file).parent_path();
            try {
                if (readOnly) {
                    fs::permissions(directory, fs::perms::owner_read | fs::perms::owner_exec);
                    c.write();
                } else {
                    ScopedFileSizeLimit limit;
                    c.write();
                }
                ADD_FAILURE() << c.what << ": written";
            } catch (OmEx::ExWriteFailed const& error) {
                EXPECT_NE(error.getReason().find(directory.string()), std::string::npos)
                    << c.what << ": " << error.getReason();
            }
            fs::permissions(directory, fs::perms::owner_all, fs::perm_options::add);
            if (before)
                EXPECT_EQ(read(c.file), *before) << c.what;
            else
                EXPECT_FALSE(fs::exists(c.file)) << c.what;
            for (std::string const& name : listing(directory.string()))
                EXPECT_NE(name.front(), '.') << c.what << ": left " << name;
        }
    }
    EXPECT_TRUE(plate->hasPendingChanges());
    graph.sync();
    EXPECT_FALSE(plate->hasPendingChanges());
    EXPECT_FALSE(OmGraph::open(plate->getWorkingVersion()).getInterface()->findNode("B").isNull());
}

TEST_F(ProjectStore, PathsUnderTheProjectHomeSurviveItsMove) {
    {
        ScopedEnv home("QV_PROJECT_HOME", "/data/projects/");
        EXPECT_EQ(OmProject::getCurrentProjectHomeFolderPath().toString(), "/data/projects");
        struct Case {
            char const* path;
            char const* symbolic;
        } const cases[] = {
            {"/data/projects/show/plate.0001.exr", "$(PROJECT_HOME)/show/plate.0001.exr"},
            {"/data/projects", "$(PROJECT_HOME)"},
            {"/data/projects2/x.exr", "/data/projects2/x.exr"},
            {"/data/x.exr", "/data/x.exr"},
            {"relative/x.exr", "relative/x.exr"},
        };
        for (Case const& c : cases) {
            EXPECT_EQ(OmUtil::toSymbolicPath(c.path), c.symbolic) << c.path;
            EXPECT_EQ(OmUtil::fromSymbolicPath(c.symbolic).toString(), c.path) << c.path;
        }
        EXPECT_EQ(OmUtil::fromSymbolicPath("$(PROJECT_HOME)x").toString(), "$(PROJECT_HOME)x");
    }
    {
        ScopedEnv home("QV_PROJECT_HOME", "/mnt/moved");
        EXPECT_EQ(OmUtil::fromSymbolicPath("$(PROJECT_HOME)/show/plate.0001.exr").toString(),
                  "/mnt/moved/show/plate.0001.exr");
    }
    for (std::optional<std::string> unset : {std::optional<std::string>(), std::optional<std::string>("")}) {
        ScopedEnv home("QV_PROJECT_HOME", unset);
        ScopedEnv user("HOME", "/home/someone");
        EXPECT_EQ(OmProject::getCurrentProjectHomeFolderPath().toString(), "/home/someone/qvProjects");
    }
}

} // namespace
