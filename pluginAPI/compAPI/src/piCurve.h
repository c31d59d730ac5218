#pragma once
// A value over time: a constant, or keyframes. Between two keyframes a
// linear curve interpolates (integers round to the nearest), a constant one
// holds the earlier keyframe; before the first and after the last the
// nearest keyframe holds. Each result comes with the interval over which it
// holds, so that caches above know how long it stays valid.
#include "pxResult.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

namespace Qv {

template <class T>
class PiCurve {
public:
    using Key = std::pair<double, T>;

    PiCurve() = default;
    PiCurve(T constant, bool linear) : _constant(std::move(constant)), _linear(linear) {}

    T const& getConstant() const { return _constant; }
    std::vector<Key> const& getKeys() const { return _keys; }
    bool isAnimated() const { return !_keys.empty(); }
    bool isLinear() const { return _linear; }

    void setConstant(T value) {
        _constant = std::move(value);
        _keys.clear();
    }
    void setKey(double time, T value) {
        auto it = std::lower_bound(_keys.begin(), _keys.end(), time,
                                   [](Key const& key, double t) { return key.first < t; });
        if (it != _keys.end() && it->first == time)
            it->second = std::move(value);
        else
            _keys.insert(it, Key(time, std::move(value)));
    }
    bool removeKey(double time) {
        return std::erase_if(_keys, [&](Key const& key) { return key.first == time; }) > 0;
    }
    void setKeys(std::vector<Key> keys) {
        std::sort(keys.begin(), keys.end(), [](Key const& a, Key const& b) { return a.first < b.first; });
        _keys = std::move(keys);
    }

    PxResult<T> evaluate(double time) const {
        constexpr double lowest = PxValidityInterval::TIME_MIN;
        constexpr double highest = PxValidityInterval::TIME_MAX;
        if (_keys.empty())
            return PxResult<T>(_constant, PxValidityInterval::FULL);
        if (time <= _keys.front().first)
            return PxResult<T>(_keys.front().second, PxValidityInterval(lowest, _keys.front().first));
        if (time >= _keys.back().first)
            return PxResult<T>(_keys.back().second, PxValidityInterval(_keys.back().first, highest));
        auto next = std::upper_bound(_keys.begin(), _keys.end(), time,
                                     [](double t, Key const& key) { return t < key.first; });
        auto previous = next - 1;
        if (!interpolates()) {
            double end = std::nextafter(next->first, -std::numeric_limits<double>::infinity());
            return PxResult<T>(previous->second, PxValidityInterval(previous->first, end));
        }
        double ratio = (time - previous->first) / (next->first - previous->first);
        return PxResult<T>(lerp(previous->second, next->second, ratio), PxValidityInterval(time, time));
    }

    friend bool operator==(PiCurve const&, PiCurve const&) = default;

private:
    bool interpolates() const {
        if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>)
            return _linear;
        else
            return false;
    }
    static T lerp(T const& a, T const& b, double ratio) {
        if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>) {
            double value = static_cast<double>(a) + (static_cast<double>(b) - static_cast<double>(a)) * ratio;
            if constexpr (std::is_integral_v<T>)
                return static_cast<T>(std::lround(value));
            else
                return static_cast<T>(value);
        } else {
            return a;
        }
    }

    T _constant{};
    std::vector<Key> _keys;
    bool _linear = true;
};

} // namespace Qv
