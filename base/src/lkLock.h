#pragma once
// Mutexes that carry a name given at construction, so that a report about a
// lock (a wait, a misuse) can say which one. They meet the standard Lockable
// requirements, so std::unique_lock and std::scoped_lock work with them too.
#include <mutex>
#include <string>

namespace Qv {

template <class Mutex>
class LkNamedLock {
public:
    // Holds the lock for a scope.
    using Guard = std::lock_guard<LkNamedLock>;

    explicit LkNamedLock(std::string name) : _name(std::move(name)) {}
    LkNamedLock(LkNamedLock const&) = delete;
    LkNamedLock& operator=(LkNamedLock const&) = delete;

    std::string const& getName() const noexcept { return _name; }

    void lock() { _mutex.lock(); }
    void unlock() { _mutex.unlock(); }
    bool tryLock() { return _mutex.try_lock(); }
    bool try_lock() { return tryLock(); }

private:
    Mutex _mutex;
    std::string _name;
};

using LkLock = LkNamedLock<std::mutex>;
// The owning thread may take it again; each lock needs its unlock.
using LkRecLock = LkNamedLock<std::recursive_mutex>;

// The tools name the operating-system flavours of the locks; on this platform
// the standard mutexes already are the operating system's, so they are the same.
using LkLockWindows = LkLock;
using LkRecLockWindows = LkRecLock;

} // namespace Qv
