#include "piTool.h"

#include "assertions.h"
#include "piNodeController.h"

namespace Qv {

PiTool::PiTool(OPtr<PiToolProtocol> protocol) : _protocol(std::move(protocol)) {
    QV_ASSERT(_protocol != nullptr);
    _name = _protocol->getToolName();
}

bool PiTool::isListed() const {
    return !_protocol->isInternal() && _protocol->getCategory() != PiToolProtocol::getUnlistedCategory();
}

PiToolSignature const& PiTool::getSignature() const {
    if (!_signature) {
        PiToolSignature signature;
        _protocol->describe(signature);
        _signature = std::move(signature);
    }
    return *_signature;
}

OPtrRet<PiNodeController> PiTool::createController() const {
    OPtrRet<PiNodeController> controller = _protocol->createController();
    QV_ASSERT(controller != nullptr);
    return controller;
}

} // namespace Qv
