#pragma once
// Logging by groups: a major group per library ("BuiltinTools"), a minor group
// per package that logs. Each minor group is an spdlog logger named
// "<Major>.<Minor>", so QV_LOG can set levels per group, e.g.
// QV_LOG=warn,BuiltinTools.OutputTool=debug.
#include <memory>
#include <mutex>
#include <string>

namespace spdlog {
class logger;
}

namespace Qv {

class LgMajorGroup {
public:
    // One major group per name for the life of the process.
    static LgMajorGroup& getInstanceForName(std::string const& name);
    std::string const& getName() const { return _name; }

private:
    explicit LgMajorGroup(std::string name) : _name(std::move(name)) {}
    std::string _name;
};

class LgMinorGroup {
public:
    LgMinorGroup(LgMajorGroup& major, std::string const& name);
    ~LgMinorGroup();

    LgMinorGroup(LgMinorGroup const&) = delete;
    LgMinorGroup& operator=(LgMinorGroup const&) = delete;

    std::string const& getName() const { return _name; }
    // "<Major>.<Minor>", the logger's name.
    std::string const& getFullName() const { return _fullName; }
    spdlog::logger& getLogger() const { return *_logger; }

private:
    std::string _name;
    std::string _fullName;
    std::shared_ptr<spdlog::logger> _logger;
};

class LgLog {
public:
    // Severities, most severe first.
    enum Severity { FATAL = 0, ERROR = 1, WARNING = 2, INFO = 3, DEBUG = 4, TRACE = 5 };

    // The one-call form: one entry of the given severity in the group.
    static void outputEntry(int severity, LgMinorGroup const& group, std::string const& text);
    // An entry of the platform itself, in the logger "Qv".
    static void outputEntry(int severity, std::string const& text);
    static bool isEnabled(int severity, LgMinorGroup const& group);
    // Applies QV_LOG to every logger made so far and to those made later.
    static void configureFromEnvironment();
};

class Trace {
public:
    // A named trace level, off unless QV_LOG names it (QV_LOG=BtPxMotioNode=trace).
    // Registration is allowed at static construction.
    static void registerLevel(char const* name, char const* file);
    static bool isEnabled(std::string const& name);
    static void output(std::string const& name, std::string const& text);
};

} // namespace Qv

// Names a package's group pointer: LgGroups::QV_XGLUE( MinorLevel, OutputTool )
// is LgGroups::MinorLevelOutputTool.
#define QV_XGLUE_IMPL(a, b) a##b
#define QV_XGLUE(a, b) QV_XGLUE_IMPL(a, b)
