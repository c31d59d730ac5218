#include "lgLog.h"

#include <cstdlib>
#include <map>
#include <spdlog/cfg/helpers.h>
#include <spdlog/sinks/stdout_color_sinks.h>
#include <spdlog/spdlog.h>

namespace Qv {

namespace {

std::mutex gMutex;

spdlog::level::level_enum toLevel(int severity) {
    switch (severity) {
    case LgLog::FATAL:
        return spdlog::level::critical;
    case LgLog::ERROR:
        return spdlog::level::err;
    case LgLog::WARNING:
        return spdlog::level::warn;
    case LgLog::INFO:
        return spdlog::level::info;
    case LgLog::DEBUG:
        return spdlog::level::debug;
    default:
        return spdlog::level::trace;
    }
}

// Loggers write to standard error so that standard output stays the
// command's own result.
std::shared_ptr<spdlog::logger> makeLogger(std::string const& name, spdlog::level::level_enum level) {
    std::shared_ptr<spdlog::logger> logger = spdlog::get(name);
    if (logger)
        return logger;
    logger = spdlog::stderr_color_mt(name);
    logger->set_level(level);
    // QV_LOG names loggers; applying it again picks up the new one.
    LgLog::configureFromEnvironment();
    return logger;
}

std::map<std::string, std::string>& traceFiles() {
    static auto* files = new std::map<std::string, std::string>;
    return *files;
}

} // namespace

LgMajorGroup& LgMajorGroup::getInstanceForName(std::string const& name) {
    static auto* groups = new std::map<std::string, std::unique_ptr<LgMajorGroup>>;
    std::lock_guard<std::mutex> lock(gMutex);
    auto& group = (*groups)[name];
    if (!group)
        group.reset(new LgMajorGroup(name));
    return *group;
}

LgMinorGroup::LgMinorGroup(LgMajorGroup& major, std::string const& name)
    : _name(name), _fullName(major.getName() + "." + name) {
    std::lock_guard<std::mutex> lock(gMutex);
    _logger = makeLogger(_fullName, spdlog::level::warn);
}

LgMinorGroup::~LgMinorGroup() = default;

void LgLog::outputEntry(int severity, LgMinorGroup const& group, std::string const& text) {
    group.getLogger().log(toLevel(severity), text);
}

void LgLog::outputEntry(int severity, std::string const& text) {
    std::shared_ptr<spdlog::logger> logger;
    {
        std::lock_guard<std::mutex> lock(gMutex);
        logger = makeLogger("Qv", spdlog::level::warn);
    }
    logger->log(toLevel(severity), text);
}

bool LgLog::isEnabled(int severity, LgMinorGroup const& group) {
    return group.getLogger().should_log(toLevel(severity));
}

void LgLog::configureFromEnvironment() {
    if (char const* text = std::getenv("QV_LOG"))
        spdlog::cfg::helpers::load_levels(text);
}

void Trace::registerLevel(char const* name, char const* file) {
    std::lock_guard<std::mutex> lock(gMutex);
    traceFiles()[name] = file ? file : "";
}

bool Trace::isEnabled(std::string const& name) {
    std::lock_guard<std::mutex> lock(gMutex);
    if (traceFiles().count(name) == 0)
        return false;
    return makeLogger(name, spdlog::level::off)->should_log(spdlog::level::trace);
}

void Trace::output(std::string const& name, std::string const& text) {
    std::shared_ptr<spdlog::logger> logger;
    {
        std::lock_guard<std::mutex> lock(gMutex);
        logger = makeLogger(name, spdlog::level::off);
    }
    logger->trace(text);
}

} // namespace Qv
