#include "inVariable.h"

#include "lgLog.h"

#include <cstdlib>
#include <fmt/format.h>
#include <mutex>
#include <set>

namespace Qv {

std::optional<std::string> InContextAlias<InInitEnv, 0>::lookup() const {
    char const* value = std::getenv(_name.c_str());
    if (!value)
        return std::nullopt;
    return std::string(value);
}

InVariableBase::InVariableBase(char const* key, char const* description, InContextAlias<InInitEnv, 0> alias)
    : _key(key), _description(description), _alias(std::move(alias)) {}

bool InVariableBase::isValid() const {
    std::optional<std::string> text = getText();
    if (!text)
        return false;
    if (parse(*text))
        return true;
    static std::mutex reportedMutex;
    static std::set<std::string> reported;
    std::lock_guard<std::mutex> lock(reportedMutex);
    if (reported.insert(_key + '=' + *text).second)
        LgLog::outputEntry(LgLog::WARNING,
                           fmt::format("{}: the value '{}' of {} is not valid; the default is kept", _key,
                                       *text, getAliasName()));
    return false;
}

void InVariableBase::checkValid() const {
    if (isValid())
        return;
    std::optional<std::string> text = getText();
    throw InVariableEx::ExNotValid(__FILE__, __LINE__,
                                   text ? _key + ": the value '" + *text + "' of " + getAliasName() +
                                              " is not valid"
                                        : _key + ": no value given (set " + getAliasName() + ")");
}

} // namespace Qv
