#pragma once
// The package manager: packages register at static construction; the host
// runs initializeAll after loading its libraries and finalizeAll before exit.
#include "exBase.h"
#include "inPackageInit.h"

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

namespace Qv {

struct InInitMgrEx {
    // A package depends on a package that no loaded library declares.
    QV_DECLARE_EX(ExUndeclaredPackage, ExBase);
    // Packages depend on each other in a circle.
    QV_DECLARE_EX(ExDependencyCycle, ExBase);
};

class InInitMgr {
public:
    static InInitMgr& getInstance();

    void registerPackage(InPackageInit& package);
    void unregisterPackage(InPackageInit& package);

    // Initialises every registered package not yet initialised, each after all
    // of its dependencies. Throws before initialising anything when the
    // declarations are inconsistent. An exception from a package's initialise
    // step leaves the ones before it initialised.
    void initializeAll();
    // Finalises the initialised packages in the reverse of their initialise order.
    void finalizeAll();

    bool isInitializing() const { return _initializing; }
    // The thread that ran the last initialise sweep: the application thread.
    std::thread::id getInitializingThread() const { return _initializingThread.load(); }
    bool isFinalizing() const { return _finalizing; }

    // The order initializeAll uses: registration order, each package preceded
    // by its dependencies in declaration order.
    std::vector<InPackageInit*> getInitializationOrder() const;
    std::vector<InPackageInit*> getPackages() const;
    InPackageInit* findPackage(std::type_info const& type) const;
    // The package's name, or the demangled tag when no package has that type.
    std::string getPackageName(std::type_index type) const;

private:
    InInitMgr() = default;

    mutable std::recursive_mutex _mutex;
    std::vector<InPackageInit*> _packages;
    std::vector<InPackageInit*> _initialized; // in initialise order
    bool _initializing = false;
    bool _finalizing = false;
    std::atomic<std::thread::id> _initializingThread{};
};

} // namespace Qv
