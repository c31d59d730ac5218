#pragma once
// The undo log of a composition: labelled steps, each a list of changes
// that know how to take themselves back and to make themselves again.
// Every change of the graph records itself here; a guard (PiUndoGuard)
// gathers the changes of one user action into one step. Application thread
// only.
#include "cbDispatcher.h"
#include "cbHandler.h"
#include "piGraphEvent.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Qv {

class PiUndoRedoControllerHelper;

// How a step tells the world it was processed: NOTIFY tells the listeners,
// SILENT keeps it to the stack.
enum class PiExecParam { NOTIFY = 0, SILENT = 1 };

class PiCommandStack {
public:
    enum State { DONE = 0, UNDONE = 1, REDONE = 2 };
    using Action = std::function<void()>;

    PiCommandStack() = default;
    ~PiCommandStack();
    PiCommandStack(PiCommandStack const&) = delete;
    PiCommandStack& operator=(PiCommandStack const&) = delete;

    // Logs a change that has just been made. Inside a guard it joins the
    // guard's step; outside any, it is a step of its own under `label`.
    // Asserts "!isUndoRedoOngoing()": replaying a step makes no new ones.
    void record(std::string const& label, Action undo, Action redo);

    bool canUndo() const { return !_done.empty(); }
    bool canRedo() const { return !_undone.empty(); }
    std::string getUndoLabel() const;
    std::string getRedoLabel() const;
    std::size_t getNbUndoSteps() const { return _done.size(); }
    std::size_t getNbRedoSteps() const { return _undone.size(); }
    // Asserts that there is a step and that no guard is open.
    void undo();
    void redo();
    void clear();

    bool isUndoRedoOngoing() const { return _replaying; }
    // Changes are logged: no PiUndoGuardNoLog is alive.
    static bool isLogging();

    void addCallback(CbHandler<PiGraphEvent const>* handler) { _listeners.addCallback(handler); }
    void removeCallback(CbHandler<PiGraphEvent const>* handler) { _listeners.removeCallback(handler); }
    // Tells the listeners of an event of the graph.
    void signal(PiGraphEvent const& event) { _listeners.dispatch(event); }
    void addHelper(PiUndoRedoControllerHelper* helper);
    void removeHelper(PiUndoRedoControllerHelper* helper);

private:
    friend class PiUndoGuard;
    friend class PiUndoGuardNoLog;

    struct Step {
        std::string label;
        PiExecParam param = PiExecParam::NOTIFY;
        std::vector<std::pair<Action, Action>> changes;
        std::vector<std::shared_ptr<CbHandler<State const>>> handlers;
    };

    void openStep(std::string const& label, PiExecParam param,
                  std::unique_ptr<CbHandler<State const>> handler);
    // The outermost close keeps the step, or takes its changes back.
    void closeStep(bool keep);
    void replay(Step& step, State state);
    void notify(Step const& step, State state);

    std::vector<Step> _done;
    std::vector<Step> _undone;
    Step _open;
    int _depth = 0;
    bool _replaying = false;
    CbDispatcher<PiGraphEvent const> _listeners;
    std::vector<PiUndoRedoControllerHelper*> _helpers;
    // Live PiUndoGuardNoLog objects, of every stack.
    static inline int _noLogDepth = 0;
};

} // namespace Qv
