#pragma once
// The receiving side of the observer pattern: an object told by an ObSubject
// that it changed. update() runs on the thread that notified, outside the
// subject's lock, so it may read the subject back or attach and detach.
namespace Qv {

class ObSubject;

class ObObserver {
public:
    virtual ~ObObserver() = default;
    virtual void update(ObSubject& subject) = 0;

protected:
    ObObserver() = default;
    ObObserver(ObObserver const&) = default;
    ObObserver& operator=(ObObserver const&) = default;
};

} // namespace Qv
