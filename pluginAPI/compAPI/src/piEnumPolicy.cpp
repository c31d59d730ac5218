#include "piEnumPolicy.h"

#include "assertions.h"

#include <algorithm>

namespace Qv {

PiEnumPolicy::Builder& PiEnumPolicy::Builder::addPair(int value, std::string label) {
    _pairs.emplace_back(value, std::move(label));
    return *this;
}

PiEnumPolicy::Builder& PiEnumPolicy::Builder::setDefaultValue(int value) {
    _default = value;
    return *this;
}

PiEnumPolicy::Builder& PiEnumPolicy::Builder::setAnimatable(bool animatable) {
    _animatable = animatable;
    return *this;
}

RCShdPtr<PiEnumPolicy const> PiEnumPolicy::Builder::create() const {
    QV_ASSERT(!_pairs.empty());
    int defaultValue = _default.value_or(_pairs.front().first);
    QV_ASSERT(
        std::any_of(_pairs.begin(), _pairs.end(), [&](auto const& p) { return p.first == defaultValue; }));
    return RCShdPtr<PiEnumPolicy const>(new PiEnumPolicy(_pairs, defaultValue, _animatable));
}

PiEnumPolicy::PiEnumPolicy(std::vector<std::pair<int, std::string>> pairs, int defaultValue, bool animatable)
    : PiTypedInputPolicy<int>(animatable), _pairs(std::move(pairs)), _default(defaultValue) {}

bool PiEnumPolicy::canSetValue(PiVariant const& value) const {
    int const* v = std::get_if<int>(&value);
    return v && std::any_of(_pairs.begin(), _pairs.end(), [&](auto const& p) { return p.first == *v; });
}

std::vector<PiVariant> PiEnumPolicy::getDomain() const {
    std::vector<PiVariant> domain;
    for (auto const& pair : _pairs)
        domain.emplace_back(pair.first);
    return domain;
}

std::vector<std::string> PiEnumPolicy::getDomainLabels() const {
    std::vector<std::string> labels;
    for (auto const& pair : _pairs)
        labels.push_back(pair.second);
    return labels;
}

std::string PiEnumPolicy::getDomainLabel(PiVariant const& value) const {
    int const* v = std::get_if<int>(&value);
    for (auto const& pair : _pairs)
        if (v && pair.first == *v)
            return pair.second;
    return {};
}

} // namespace Qv
