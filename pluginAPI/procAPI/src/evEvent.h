#pragma once
// Work handed to the application thread: posted from any thread to
// EvEventManager, processed there in post order.
namespace Qv {

class EvEvent {
public:
    virtual ~EvEvent() = default;
    // Runs on the application thread.
    virtual void process() = 0;
};

} // namespace Qv
