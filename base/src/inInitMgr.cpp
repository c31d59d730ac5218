#include "inInitMgr.h"

#include <algorithm>
#include <cstdlib>
#include <cxxabi.h>
#include <exception>
#include <map>
#include <memory>

namespace Qv {

namespace {

std::string demangle(char const* name) {
    int status = 0;
    std::unique_ptr<char, void (*)(void*)> text(abi::__cxa_demangle(name, nullptr, nullptr, &status),
                                                std::free);
    std::string result = status == 0 && text ? text.get() : name;
    std::string const prefix = "QvInit::";
    if (result.rfind(prefix, 0) == 0)
        result.erase(0, prefix.size());
    return result;
}

// Scoped flag for the two sweeps.
class SweepFlag {
public:
    explicit SweepFlag(bool& flag) : _flag(flag) { _flag = true; }
    ~SweepFlag() { _flag = false; }

private:
    bool& _flag;
};

} // namespace

InInitMgr& InInitMgr::getInstance() {
    // Never destroyed: packages of libraries unloaded late still unregister.
    static InInitMgr* instance = new InInitMgr;
    return *instance;
}

void InInitMgr::registerPackage(InPackageInit& package) {
    std::lock_guard<std::recursive_mutex> lock(_mutex);
    if (std::find(_packages.begin(), _packages.end(), &package) == _packages.end())
        _packages.push_back(&package);
}

void InInitMgr::unregisterPackage(InPackageInit& package) {
    std::lock_guard<std::recursive_mutex> lock(_mutex);
    std::erase(_packages, &package);
    std::erase(_initialized, &package);
}

InPackageInit* InInitMgr::findPackage(std::type_info const& type) const {
    std::lock_guard<std::recursive_mutex> lock(_mutex);
    for (InPackageInit* package : _packages)
        if (package->getPackageType() == type)
            return package;
    return nullptr;
}

std::string InInitMgr::getPackageName(std::type_index type) const {
    std::lock_guard<std::recursive_mutex> lock(_mutex);
    for (InPackageInit* package : _packages)
        if (std::type_index(package->getPackageType()) == type)
            return package->getName();
    return demangle(type.name());
}

std::vector<InPackageInit*> InInitMgr::getPackages() const {
    std::lock_guard<std::recursive_mutex> lock(_mutex);
    return _packages;
}

std::vector<InPackageInit*> InInitMgr::getInitializationOrder() const {
    std::lock_guard<std::recursive_mutex> lock(_mutex);
    std::map<std::type_index, InPackageInit*> byType;
    for (InPackageInit* package : _packages)
        byType.emplace(package->getPackageType(), package);

    enum class Mark { None, Visiting, Done };
    std::map<InPackageInit*, Mark> marks;
    std::vector<InPackageInit*> order;
    std::vector<InPackageInit*> path;

    auto visit = [&](auto&& self, InPackageInit* package) -> void {
        Mark& mark = marks[package];
        if (mark == Mark::Done)
            return;
        if (mark == Mark::Visiting) {
            std::string cycle;
            auto from = std::find(path.begin(), path.end(), package);
            for (auto it = from; it != path.end(); ++it)
                cycle += (*it)->getName() + " -> ";
            cycle += package->getName();
            throw InInitMgrEx::ExDependencyCycle(__FILE__, __LINE__, "Package dependency cycle: " + cycle);
        }
        mark = Mark::Visiting;
        path.push_back(package);
        for (std::type_index dependency : package->getDependencies()) {
            auto found = byType.find(dependency);
            if (found == byType.end())
                throw InInitMgrEx::ExUndeclaredPackage(__FILE__, __LINE__,
                                                       "Package '" + package->getName() + "' depends on '" +
                                                           demangle(dependency.name()) +
                                                           "', which no loaded library declares");
            self(self, found->second);
        }
        path.pop_back();
        marks[package] = Mark::Done;
        order.push_back(package);
    };
    for (InPackageInit* package : _packages)
        visit(visit, package);
    return order;
}

void InInitMgr::initializeAll() {
    std::lock_guard<std::recursive_mutex> lock(_mutex);
    std::vector<InPackageInit*> order = getInitializationOrder();
    _initializingThread.store(std::this_thread::get_id());
    SweepFlag flag(_initializing);
    for (InPackageInit* package : order) {
        if (package->isInitialized())
            continue;
        package->onBeforeInitialize();
        package->initialize();
        package->setInitialized(true);
        _initialized.push_back(package);
        package->onAfterInitialize();
    }
}

void InInitMgr::finalizeAll() {
    std::lock_guard<std::recursive_mutex> lock(_mutex);
    SweepFlag flag(_finalizing);
    // Every package gets its finalise step even when one before it fails;
    // the first failure is passed on afterwards.
    std::exception_ptr firstFailure;
    while (!_initialized.empty()) {
        InPackageInit* package = _initialized.back();
        _initialized.pop_back();
        package->setInitialized(false);
        try {
            package->finalize();
        } catch (...) {
            if (!firstFailure)
                firstFailure = std::current_exception();
        }
    }
    if (firstFailure)
        std::rethrow_exception(firstFailure);
}

} // namespace Qv
