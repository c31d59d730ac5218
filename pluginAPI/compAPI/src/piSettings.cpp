#include "piSettings.h"

namespace Qv {

PiSettings::PiSettings(std::map<std::string, PiVariant> defaults)
    : _defaults(std::move(defaults)), _values(_defaults) {}

PiVariant PiSettings::getValue(std::string const& key) const {
    std::lock_guard lock(_mutex);
    auto it = _values.find(key);
    return it == _values.end() ? PiVariant() : it->second;
}

void PiSettings::setValue(std::string const& key, PiVariant value) {
    {
        std::lock_guard lock(_mutex);
        _values[key] = std::move(value);
    }
    notify();
}

void PiSettings::reset() {
    {
        std::lock_guard lock(_mutex);
        _values = _defaults;
    }
    notify();
}

} // namespace Qv
