#pragma once
// Mutexes that carry a name given at construction, so that a report about a
// lock (a wait, a misuse) can say which one. They meet the standard Lockable
// requirements, so std::unique_lock and std::scoped_lock work with them too.
#include <mutex>
#include <string>

namespace Qv {

class LkLock {
public:
    // Holds the lock for a scope.
    using Guard = std::lock_guard<LkLock>;

    explicit LkLock(std::string name);
    ~LkLock();
    LkLock(LkLock const&) = delete;
    LkLock& operator=(LkLock const&) = delete;

    std::string const& getName() const noexcept { return _name; }

    void lock() { _mutex.lock(); }
    void unlock() { _mutex.unlock(); }
    bool tryLock() { return _mutex.try_lock(); }
    bool try_lock() { return tryLock(); }

private:
    std::mutex _mutex;
    std::string _name;
};

// The owning thread may take it again; each lock needs its unlock.
class LkRecLock {
public:
    using Guard = std::lock_guard<LkRecLock>;

    explicit LkRecLock(std::string name);
    ~LkRecLock();
    LkRecLock(LkRecLock const&) = delete;
    LkRecLock& operator=(LkRecLock const&) = delete;

    std::string const& getName() const noexcept { return _name; }

    void lock() { _mutex.lock(); }
    void unlock() { _mutex.unlock(); }
    bool tryLock() { return _mutex.try_lock(); }
    bool try_lock() { return tryLock(); }

private:
    std::recursive_mutex _mutex;
    std::string _name;
};

// The tools name the operating-system flavours of the locks; on this platform
// the standard mutexes already are the operating system's, so they are the same.
using LkLockWindows = LkLock;
using LkRecLockWindows = LkRecLock;

} // namespace Qv
