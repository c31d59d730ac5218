#pragma once
// A package is a static object that announces itself and its dependencies at
// load time; InInitMgr later initialises packages after everything they
// depend on and finalises them in reverse.
#include <string>
#include <typeindex>
#include <typeinfo>
#include <vector>

namespace Qv {

class InPackageInitBase {
public:
    virtual ~InPackageInitBase() = default;
};

class InPackageInit : public InPackageInitBase {
public:
    explicit InPackageInit(char const* name);
    ~InPackageInit() override;

    InPackageInit(InPackageInit const&) = delete;
    InPackageInit& operator=(InPackageInit const&) = delete;

    // Dependencies are identified by the type of the other package, so a tag
    // defined in another translation unit or library works the same.
    virtual void addDependency(std::type_info const& package);
    virtual void removeDependency(std::type_info const& package);
    virtual std::string const& getName() const { return _name; }

    virtual void onBeforeInitialize() {}
    virtual void onAfterInitialize() {}
    virtual void initialize() = 0;
    virtual void finalize() = 0;
    virtual void setInitialized(bool initialized) = 0;
    virtual bool isInitialized() const = 0;
    virtual std::type_info const& getPackageType() const = 0;

    std::vector<std::type_index> const& getDependencies() const { return _dependencies; }

protected:
    // Announces the package to InInitMgr; called once by the concrete constructor.
    void registerPackage();

private:
    std::string _name;
    std::vector<std::type_index> _dependencies;
    bool _registered = false;
};

} // namespace Qv
