#include "piUndoRedoControllerHelper.h"

#include "piGraph.h"
#include "piNode.h"
#include "piNodeController.h"

namespace Qv {

PiUndoRedoControllerHelper::~PiUndoRedoControllerHelper() = default;

PiCommandStack& PiUndoRedoControllerHelper::getCommandStack() const {
    RCShdPtr<PiNode> node = piControllerOf(*this).getNode();
    QV_ASSERT(node && node->getGraph());
    return node->getGraph()->getCommandStack();
}

bool PiUndoRedoControllerHelper::isUndoRedoOngoing() const {
    return getCommandStack().isUndoRedoOngoing();
}

void PiUndoRedoControllerHelper::commandProcessed(PiCommandStack::State) {}

void PiUndoRedoControllerHelper::endOfOutermostGuard() {}

PiUndoRedoControllerHelper::UndoGuard::UndoGuard(PiUndoRedoControllerHelper& helper, std::string const& label,
                                                 PiExecParam param)
    : _helper(helper) {
    ++_helper._guardDepth;
    try {
        _guard.emplace(_helper.getCommandStack(), label, param);
    } catch (...) {
        --_helper._guardDepth;
        throw;
    }
}

PiUndoRedoControllerHelper::UndoGuard::~UndoGuard() {
    _guard.reset();
    if (--_helper._guardDepth == 0) {
        try {
            _helper.endOfOutermostGuard();
        } catch (...) {
            // A destructor cannot pass it on; the guard's step stands.
        }
    }
}

} // namespace Qv
