#pragma once
// InInit<Tag> is the package whose identity is the empty class Tag of the
// namespace QvInit. Each package's source file defines, for its own Tag, the
// constructor (name, registerPackage, then its dependencies in order),
// initialize and finalize, and holds the one static object:
//
//   template <> InInit<QvInit::motio>::InInit() : InPackageInit("motio") {
//       registerPackage();
//       addDependency(InInit<QvInit::base>::getType());
//   }
//   template <> void InInit<QvInit::motio>::initialize() { ... }
//   template <> void InInit<QvInit::motio>::finalize() { ... }
//   static InInit<QvInit::motio> gPackage;
#include "inPackageInit.h"

namespace Qv {

template <class Tag>
class InInit : public InPackageInit {
public:
    InInit();

    static std::type_info const& getType() { return typeid(Tag); }

    void initialize() override;
    void finalize() override;
    void setInitialized(bool initialized) override { _initialized = initialized; }
    bool isInitialized() const override { return _initialized; }
    std::type_info const& getPackageType() const override { return getType(); }

private:
    static inline bool _initialized = false;
};

} // namespace Qv
