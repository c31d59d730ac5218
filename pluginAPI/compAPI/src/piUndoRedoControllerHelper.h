#pragma once
// A controller base for controllers that follow the command stack: they are
// told when a step was processed, and they open steps of their own with the
// nested UndoGuard.
#include "piCommandStack.h"
#include "piUndoGuard.h"

#include <optional>

namespace Qv {

class PiUndoRedoControllerHelper {
public:
    virtual ~PiUndoRedoControllerHelper();

    // The stack of the composition holding the controller's node.
    PiCommandStack& getCommandStack() const;
    bool isUndoRedoOngoing() const;
    void enableCommandProcessedCb() { _commandProcessedCb = true; }
    void disableCommandProcessedCb() { _commandProcessedCb = false; }
    bool isCommandProcessedCbEnabled() const { return _commandProcessedCb; }

    // A step was done, undone or redone (when enabled).
    virtual void commandProcessed(PiCommandStack::State state);
    // The outermost of this controller's UndoGuards closed.
    virtual void endOfOutermostGuard();

    class UndoGuard {
    public:
        UndoGuard(PiUndoRedoControllerHelper& helper, std::string const& label,
                  PiExecParam param = PiExecParam::NOTIFY);
        ~UndoGuard();
        UndoGuard(UndoGuard const&) = delete;
        UndoGuard& operator=(UndoGuard const&) = delete;

    private:
        PiUndoRedoControllerHelper& _helper;
        std::optional<PiUndoGuard> _guard;
    };

private:
    bool _commandProcessedCb = true;
    int _guardDepth = 0;
};

} // namespace Qv
