#pragma once
// The changing side of the observer pattern. Observers are borrowed, not
// owned: an observer detaches itself before it dies.
//
// Thread safety: attach, detach and notify may be called from any thread.
// notify calls each observer outside the lock, in attach order, and skips an
// observer detached meanwhile. detach returns only once no other thread is
// inside that observer's update, so the observer may be destroyed right after
// (from inside its own update, detach does not wait for itself); an update
// must therefore not wait for a thread that is detaching it.
#include <condition_variable>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace Qv {

class ObObserver;

class ObSubject {
public:
    ObSubject() = default;
    ObSubject(ObSubject const&) = delete;
    ObSubject& operator=(ObSubject const&) = delete;
    virtual ~ObSubject() = default;

    // An observer attached twice is attached once. A null observer fails the
    // assertion "observer != nullptr".
    void attach(ObObserver* observer);
    void attach(ObObserver& observer) { attach(&observer); }
    // False when it was not attached.
    bool detach(ObObserver* observer);
    bool detach(ObObserver& observer) { return detach(&observer); }
    bool isAttached(ObObserver const* observer) const;
    int getNbObservers() const;

    // Calls update on every observer. An observer that throws does not keep
    // the others from being told; the first exception is rethrown at the end.
    void notify();

private:
    mutable std::mutex _mutex;
    std::condition_variable _callEnded;
    std::vector<ObObserver*> _observers;
    // The updates in progress: observer and calling thread.
    std::vector<std::pair<ObObserver*, std::thread::id>> _calls;
};

} // namespace Qv
