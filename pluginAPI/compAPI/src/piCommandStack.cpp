#include "piCommandStack.h"

#include "assertions.h"
#include "piUndoRedoControllerHelper.h"

#include <algorithm>

namespace Qv {

PiCommandStack::~PiCommandStack() = default;

bool PiCommandStack::isLogging() {
    return _noLogDepth == 0;
}

void PiCommandStack::record(std::string const& label, Action undo, Action redo) {
    QV_ASSERT(!isUndoRedoOngoing());
    if (!isLogging())
        return;
    if (_depth > 0) {
        _open.changes.emplace_back(std::move(undo), std::move(redo));
        return;
    }
    Step step;
    step.label = label;
    step.changes.emplace_back(std::move(undo), std::move(redo));
    _undone.clear();
    _done.push_back(std::move(step));
    notify(_done.back(), DONE);
}

std::string PiCommandStack::getUndoLabel() const {
    return _done.empty() ? std::string() : _done.back().label;
}

std::string PiCommandStack::getRedoLabel() const {
    return _undone.empty() ? std::string() : _undone.back().label;
}

void PiCommandStack::undo() {
    QV_ASSERT(canUndo());
    QV_ASSERT(_depth == 0);
    Step step = std::move(_done.back());
    _done.pop_back();
    replay(step, UNDONE);
    _undone.push_back(std::move(step));
    notify(_undone.back(), UNDONE);
}

void PiCommandStack::redo() {
    QV_ASSERT(canRedo());
    QV_ASSERT(_depth == 0);
    Step step = std::move(_undone.back());
    _undone.pop_back();
    replay(step, REDONE);
    _done.push_back(std::move(step));
    notify(_done.back(), REDONE);
}

void PiCommandStack::clear() {
    QV_ASSERT(_depth == 0);
    _done.clear();
    _undone.clear();
}

void PiCommandStack::addHelper(PiUndoRedoControllerHelper* helper) {
    if (std::find(_helpers.begin(), _helpers.end(), helper) == _helpers.end())
        _helpers.push_back(helper);
}

void PiCommandStack::removeHelper(PiUndoRedoControllerHelper* helper) {
    std::erase(_helpers, helper);
}

void PiCommandStack::openStep(std::string const& label, PiExecParam param,
                              std::unique_ptr<CbHandler<State const>> handler) {
    if (_depth++ == 0) {
        _open = Step();
        _open.label = label;
        _open.param = param;
    }
    if (handler)
        _open.handlers.push_back(std::move(handler));
}

void PiCommandStack::closeStep(bool keep) {
    QV_ASSERT(_depth > 0);
    if (--_depth > 0)
        return;
    Step step = std::move(_open);
    _open = Step();
    if (!keep) {
        // Taken back as an undo would, but it never was a step.
        _replaying = true;
        try {
            for (auto it = step.changes.rbegin(); it != step.changes.rend(); ++it)
                it->first();
        } catch (...) {
            _replaying = false;
            throw;
        }
        _replaying = false;
        return;
    }
    if (step.changes.empty())
        return;
    _undone.clear();
    _done.push_back(std::move(step));
    notify(_done.back(), DONE);
}

void PiCommandStack::replay(Step& step, State state) {
    struct Replaying {
        bool& flag;
        explicit Replaying(bool& f) : flag(f) { flag = true; }
        ~Replaying() { flag = false; }
    } replaying(_replaying);
    if (state == UNDONE) {
        for (auto it = step.changes.rbegin(); it != step.changes.rend(); ++it)
            it->first();
    } else {
        for (auto& change : step.changes)
            change.second();
    }
    for (auto const& handler : step.handlers)
        handler->call(state);
}

void PiCommandStack::notify(Step const& step, State state) {
    if (step.param == PiExecParam::SILENT)
        return;
    // A helper may go away while others are told: walk a copy.
    std::vector<PiUndoRedoControllerHelper*> helpers = _helpers;
    for (PiUndoRedoControllerHelper* helper : helpers)
        if (helper->isCommandProcessedCbEnabled())
            helper->commandProcessed(state);
    PiGraphEvent::CommandProcessed event(state, step.label);
    _listeners.dispatch(event);
}

} // namespace Qv
