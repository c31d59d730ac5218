#include "piUndoGuard.h"

#include <exception>

namespace Qv {

PiUndoGuard::PiUndoGuard(PiCommandStack& stack, std::string const& label, PiExecParam param)
    : PiUndoGuard(stack, label, param, nullptr) {}

PiUndoGuard::PiUndoGuard(PiCommandStack& stack, std::string const& label, PiExecParam param,
                         std::unique_ptr<PiUndoGuardCbHandler> handler)
    : _stack(stack), _exceptions(std::uncaught_exceptions()) {
    _stack.openStep(label, param, std::move(handler));
}

PiUndoGuard::~PiUndoGuard() {
    bool keep = std::uncaught_exceptions() == _exceptions;
    try {
        _stack.closeStep(keep);
    } catch (...) {
        // Taking a failed step back failed too: nothing sensible is left to do
        // in a destructor; the step is dropped.
    }
}

PiUndoGuardNoLog::PiUndoGuardNoLog(bool enable) : _enabled(enable) {
    if (_enabled)
        ++PiCommandStack::_noLogDepth;
}

PiUndoGuardNoLog::~PiUndoGuardNoLog() {
    if (_enabled)
        --PiCommandStack::_noLogDepth;
}

} // namespace Qv
