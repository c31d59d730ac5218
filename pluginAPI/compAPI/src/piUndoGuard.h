#pragma once
// Scope objects of the command stack.
//
// PiUndoGuard: the changes made while it lives are one undo step with its
// label. Guards nest: an inner guard joins the outermost one's step. If the
// scope is left by an exception, the changes of the step are taken back.
//
// PiUndoGuardNoLog: the changes made while it lives are not logged (a
// composition being read, a transient state). With `false` it does nothing.
#include "piCommandStack.h"

namespace Qv {

// Called with the state each time its step is undone or redone.
using PiUndoGuardCbHandler = CbHandler<PiCommandStack::State const>;

class PiUndoGuard {
public:
    PiUndoGuard(PiCommandStack& stack, std::string const& label, PiExecParam param = PiExecParam::NOTIFY);
    // Takes ownership of `handler`.
    PiUndoGuard(PiCommandStack& stack, std::string const& label, PiExecParam param,
                std::unique_ptr<PiUndoGuardCbHandler> handler);
    ~PiUndoGuard();
    PiUndoGuard(PiUndoGuard const&) = delete;
    PiUndoGuard& operator=(PiUndoGuard const&) = delete;

private:
    PiCommandStack& _stack;
    int _exceptions;
};

class PiUndoGuardNoLog {
public:
    explicit PiUndoGuardNoLog(bool enable = true);
    ~PiUndoGuardNoLog();
    PiUndoGuardNoLog(PiUndoGuardNoLog const&) = delete;
    PiUndoGuardNoLog& operator=(PiUndoGuardNoLog const&) = delete;

private:
    bool _enabled;
};

} // namespace Qv
