#include "obSubject.h"

#include "assertions.h"
#include "obObserver.h"

#include <algorithm>
#include <exception>

namespace Qv {

namespace {
bool contains(std::vector<ObObserver*> const& observers, ObObserver const* observer) {
    return std::find(observers.begin(), observers.end(), observer) != observers.end();
}
} // namespace

void ObSubject::attach(ObObserver* observer) {
    QV_ASSERT(observer != nullptr);
    std::lock_guard lock(_mutex);
    if (!contains(_observers, observer))
        _observers.push_back(observer);
}

bool ObSubject::detach(ObObserver* observer) {
    std::unique_lock lock(_mutex);
    auto const it = std::find(_observers.begin(), _observers.end(), observer);
    bool const wasAttached = it != _observers.end();
    if (wasAttached)
        _observers.erase(it);
    std::thread::id const self = std::this_thread::get_id();
    _callEnded.wait(lock, [&] {
        return std::none_of(_calls.begin(), _calls.end(),
                            [&](auto const& call) { return call.first == observer && call.second != self; });
    });
    return wasAttached;
}

bool ObSubject::isAttached(ObObserver const* observer) const {
    std::lock_guard lock(_mutex);
    return contains(_observers, observer);
}

int ObSubject::getNbObservers() const {
    std::lock_guard lock(_mutex);
    return static_cast<int>(_observers.size());
}

void ObSubject::notify() {
    std::vector<ObObserver*> snapshot;
    {
        std::lock_guard lock(_mutex);
        snapshot = _observers;
    }
    std::thread::id const self = std::this_thread::get_id();
    std::exception_ptr firstFailure;
    for (ObObserver* observer : snapshot) {
        {
            // Registered under the lock that detach takes: an observer is
            // either gone before its call starts or waited for by detach.
            std::lock_guard lock(_mutex);
            if (!contains(_observers, observer))
                continue;
            _calls.emplace_back(observer, self);
        }
        try {
            observer->update(*this);
        } catch (...) {
            if (!firstFailure)
                firstFailure = std::current_exception();
        }
        {
            std::lock_guard lock(_mutex);
            _calls.erase(std::find(_calls.begin(), _calls.end(), std::make_pair(observer, self)));
        }
        _callEnded.notify_all();
    }
    if (firstFailure)
        std::rethrow_exception(firstFailure);
}

} // namespace Qv
