#pragma once
// Typed views of a node's stored value, T in bool, int, long long, double
// and string. The view checks at construction that the value is of type T
// (and, with CHECK_NULL, that there is one); setting goes through the value,
// so it is one undoable change that the controller hears of.
#include "assertions.h"
#include "piValue.h"

#include <string>
#include <type_traits>
#include <vector>

namespace Qv {

enum class CheckNull { NO_CHECK = 0, CHECK_NULL = 1 };

namespace PiTypedValueDetail {
template <class T>
constexpr PiValueType typeOf() {
    if constexpr (std::is_same_v<T, bool>)
        return PiValueType::BOOL;
    else if constexpr (std::is_same_v<T, int>)
        return PiValueType::INT;
    else if constexpr (std::is_same_v<T, long long>)
        return PiValueType::LONG_LONG;
    else if constexpr (std::is_same_v<T, double>)
        return PiValueType::DOUBLE;
    else if constexpr (std::is_same_v<T, std::string>)
        return PiValueType::STRING;
    else
        return PiValueType::DOUBLE_ARRAY;
}
} // namespace PiTypedValueDetail

template <class T, class Value = PiValue const>
class PiConstTypedValueUtil {
public:
    PiConstTypedValueUtil() = default;
    explicit PiConstTypedValueUtil(RCShdPtr<Value> value, CheckNull mode = CheckNull::CHECK_NULL)
        : _value(std::move(value)) {
        if (mode == CheckNull::CHECK_NULL)
            QV_ASSERT(!_value.isNull());
        QV_ASSERT(_value.isNull() || _value->getType() == PiTypedValueDetail::typeOf<T>());
    }

    bool isNull() const { return _value.isNull(); }
    T getValue() const { return std::get<T>(_value->getData()); }
    RCShdPtr<Value> const& getPtr() const { return _value; }

protected:
    RCShdPtr<Value> _value;
};

template <class T>
class PiTypedValueUtil : public PiConstTypedValueUtil<T, PiValue> {
public:
    PiTypedValueUtil() = default;
    explicit PiTypedValueUtil(RCShdPtr<PiValue> value, CheckNull mode = CheckNull::CHECK_NULL)
        : PiConstTypedValueUtil<T, PiValue>(std::move(value), mode) {}

    void setValue(T const& value) { this->_value->setData(value); }
};

// A stored array of doubles, element by element.
template <class T>
class PiConstTypedValueArrayUtil;
template <class T>
class PiTypedValueArrayUtil;

template <>
class PiConstTypedValueArrayUtil<double> : public PiConstTypedValueUtil<std::vector<double>, PiValue const> {
public:
    using PiConstTypedValueUtil::PiConstTypedValueUtil;
    std::size_t getSize() const { return getValue().size(); }
    double getValue(std::size_t index) const { return getValue().at(index); }
    using PiConstTypedValueUtil::getValue;
};

template <>
class PiTypedValueArrayUtil<double> : public PiTypedValueUtil<std::vector<double>> {
public:
    using PiTypedValueUtil::PiTypedValueUtil;
    std::size_t getSize() const { return getValue().size(); }
    double getValue(std::size_t index) const { return getValue().at(index); }
    using PiTypedValueUtil::getValue;
    // Grows the array with zeros when `index` is past its end.
    void setValue(std::size_t index, double value) {
        std::vector<double> values = getValue();
        if (index >= values.size())
            values.resize(index + 1, 0.0);
        values[index] = value;
        PiTypedValueUtil::setValue(values);
    }
    using PiTypedValueUtil::setValue;
};

} // namespace Qv
