#pragma once
// Settings by key, of any value type; the base of the project's and the
// user's settings. Usable between the platform package's initialise and
// finalise steps only: callers assert isInitialized() first.
//
// Observers attached to the settings are told of every setValue and reset,
// after the change and outside the settings' lock, on the changing thread; an
// observer reads the values it cares about back with getValue.
#include "obSubject.h"
#include "piVariant.h"

#include <map>
#include <mutex>
#include <string>

namespace Qv {

class PiSettings : public ObSubject {
public:
    virtual ~PiSettings() = default;

    // Empty (monostate) for a key never set and without default.
    PiVariant getValue(std::string const& key) const;
    void setValue(std::string const& key, PiVariant value);
    // Back to the defaults.
    void reset();

protected:
    explicit PiSettings(std::map<std::string, PiVariant> defaults);

private:
    mutable std::mutex _mutex;
    std::map<std::string, PiVariant> const _defaults;
    std::map<std::string, PiVariant> _values;
};

} // namespace Qv
