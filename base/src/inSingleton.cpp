#include "inSingleton.h"

#include "assertions.h"
#include "rcExUtil.h"

#include <fmt/format.h>

namespace Qv {

void InSingletonCore::install(void* instance, std::type_info const& type) {
    QV_ASSERT(instance != nullptr);
    std::lock_guard<std::mutex> lock(_mutex);
    State state = _state.load();
    if (state != NOT_CREATED)
        throwForState(state, type);
    // The instance is visible before the state says so: a reader that sees
    // LIVE always finds it.
    _instance.store(instance);
    _state.store(LIVE);
}

void* InSingletonCore::uninstall(std::type_info const& type) {
    std::lock_guard<std::mutex> lock(_mutex);
    State state = _state.load();
    if (state != LIVE)
        throwForState(state, type);
    _state.store(DESTROYED);
    return _instance.exchange(nullptr);
}

void* InSingletonCore::getInstance(std::type_info const& type) const {
    // No lock: a reader sees either the instance or the state that explains
    // its absence (see the order of the stores above).
    if (void* instance = _instance.load())
        return instance;
    throwForState(_state.load(), type);
}

void InSingletonCore::throwForState(State state, std::type_info const& type) {
    std::string const name = RCExUtil::getTypeName(type);
    switch (state) {
    case LIVE:
        throw InSingletonEx::ExAlreadyInitialized(__FILE__, __LINE__,
                                                  fmt::format("Singleton {} is already initialized", name));
    case DESTROYED:
        throw InSingletonEx::ExAlreadyDestroyed(__FILE__, __LINE__,
                                                fmt::format("Singleton {} is already destroyed", name));
    case NOT_CREATED:
        break;
    }
    throw InSingletonEx::ExNotInitialized(__FILE__, __LINE__,
                                          fmt::format("Singleton {} is not initialized", name));
}

} // namespace Qv
