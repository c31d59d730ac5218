#pragma once
// The protocol of tools whose inputs carry policies: the tool writes one
// describe(Descriptor &); this template collects the primary input and the
// policies from it once, and attaches the policies to every controller it
// makes. A tool described again (the host asks for its signature) does not
// copy them a second time, so every node shares the same policy objects.
#include "piNodeController.h"
#include "piToolInterfaceManip.h"
#include "piToolPolicyDescriptor.h"
#include "piToolProtocol.h"

#include <memory>
#include <vector>

namespace Qv {

template <class Controller, class Descriptor = PiToolPolicyDescriptor>
class PiToolPolicyProtocol : public PiToolInterfaceManip, public virtual PiToolProtocol {
public:
    ~PiToolPolicyProtocol() override = default;

    // The one operation each tool writes.
    virtual void describe(Descriptor& descriptor) const = 0;

    void describe(PiToolDescriptor& descriptor) override {
        Descriptor wrapper(&descriptor);
        describe(wrapper);
        if (!_described)
            copyFromDescriptor(wrapper);
    }

    std::string getPrimaryInput() const override {
        describeOnce();
        return _primaryInput;
    }

    OPtrRet<PiNodeController> createController() const override {
        describeOnce();
        OPtrRet<Controller> controller = makeController();
        initializeController(*controller);
        return controller;
    }

protected:
    virtual void copyFromDescriptor(Descriptor& descriptor) const {
        _primaryInput = descriptor.getPrimaryInput();
        _policies = descriptor.getPolicies();
        _described = true;
    }

    virtual void initializeController(Controller& controller) const {
        std::vector<PiToolPolicyDescriptor::PolicyEntry> const policies = _policies;
        for (auto const& entry : policies)
            PiToolInterfaceManip::addInputPolicy(controller, entry.getName(), entry.getPtr());
    }

    // How the tool's controller is made; a tool whose controller takes an
    // argument overrides it.
    virtual OPtrRet<Controller> makeController() const { return std::make_unique<Controller>(); }

private:
    // Collects without the host: a descriptor over nothing.
    void describeOnce() const {
        if (_described)
            return;
        Descriptor descriptor(nullptr);
        describe(descriptor);
        if (!_described)
            copyFromDescriptor(descriptor);
    }

    mutable bool _described = false;
    mutable std::string _primaryInput;
    mutable std::vector<PiToolPolicyDescriptor::PolicyEntry> _policies;
};

} // namespace Qv
