#include "assertions.h"

#include "lgLog.h"

#include <fmt/format.h>
#include <mutex>

namespace Qv::Assertions {

namespace {
std::mutex gHandlerMutex;
ReportHandler gHandler;
} // namespace

void throwAssertionFailed(char const* file, int line, char const* expression) {
    throw AssertionsEx::ExAssertionFailed(file, line, expression ? expression : "");
}

void throwProgramAborted(char const* file, int line, char const* text) {
    throw AssertionsEx::ExProgramAborted(file, line, text ? text : "");
}

void reportAssertionFailed(char const* file, int line, char const* expression) {
    ReportHandler handler;
    {
        std::lock_guard<std::mutex> lock(gHandlerMutex);
        handler = gHandler;
    }
    if (handler) {
        handler(file, line, expression);
        return;
    }
    LgLog::outputEntry(LgLog::ERROR, fmt::format("Assertion failed: {} ({}:{})", expression, file, line));
}

ReportHandler setReportHandler(ReportHandler handler) {
    std::lock_guard<std::mutex> lock(gHandlerMutex);
    std::swap(gHandler, handler);
    return handler;
}

} // namespace Qv::Assertions
