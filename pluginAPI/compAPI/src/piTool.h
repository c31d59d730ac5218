#pragma once
// A registered tool: its protocol, which it owns, and its signature, recorded
// from the protocol's describe() the first time it is needed.
#include "piToolProtocol.h"
#include "piToolSignature.h"
#include "rcBase.h"
#include "rcShdPtr.h"

#include <optional>

namespace Qv {

class PiTool : public RCBase<> {
public:
    explicit PiTool(OPtr<PiToolProtocol> protocol);

    PiToolProtocol const& getProtocol() const { return *_protocol; }
    // The full name, the registry's key.
    std::string const& getName() const { return _name; }
    std::string getShortName() const { return _protocol->getShortToolName(); }
    // Internal tools and those of the category "." are in no list.
    bool isListed() const;
    PiToolSignature const& getSignature() const;
    OPtrRet<PiNodeController> createController() const;

private:
    OPtr<PiToolProtocol> _protocol;
    std::string _name;
    // Built on the application thread, the only one that creates nodes.
    mutable std::optional<PiToolSignature> _signature;
};

} // namespace Qv
