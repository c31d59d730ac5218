#pragma once
// A configuration variable: a key, a description and an alias through which a
// value reaches it. The value is looked up when asked for, never at static
// construction, so a variable may be a file-scope object of any package.
#include "exBase.h"

#include <charconv>
#include <optional>
#include <string>
#include <type_traits>

namespace Qv {

// The context of the process environment.
class InInitEnv {};

template <class Context, int Index>
class InContextAlias;

// An environment variable that gives a value to a configuration variable.
template <>
class InContextAlias<InInitEnv, 0> {
public:
    explicit InContextAlias(char const* name) : _name(name) {}
    std::string const& getName() const { return _name; }
    std::optional<std::string> lookup() const;

private:
    std::string _name;
};

struct InVariableEx {
    // The value was asked for while none was given, or the text given does not parse.
    QV_DECLARE_EX(ExNotValid, ExBase);
};

class InVariableBase {
public:
    InVariableBase(char const* key, char const* description, InContextAlias<InInitEnv, 0> alias);
    virtual ~InVariableBase() = default;

    std::string const& getKey() const { return _key; }
    std::string const& getDescription() const { return _description; }
    std::string const& getAliasName() const { return _alias.getName(); }

    // True when a value was given and it parses as the variable's type. A text
    // that does not parse is reported once on the log and counts as not given.
    bool isValid() const;
    // The text given, if any.
    std::optional<std::string> getText() const { return _alias.lookup(); }

protected:
    virtual bool parse(std::string const& text) const = 0;
    // Throws InVariableEx::ExNotValid naming the key and alias when !isValid().
    void checkValid() const;

private:
    std::string _key;
    std::string _description;
    InContextAlias<InInitEnv, 0> _alias;
};

template <class T>
class InVariable : public InVariableBase {
public:
    using InVariableBase::InVariableBase;

    T getValue() const {
        checkValid();
        T value{};
        convert(*getText(), value);
        return value;
    }

protected:
    bool parse(std::string const& text) const override {
        T value{};
        return convert(text, value);
    }

private:
    static bool convert(std::string const& text, T& value) {
        if constexpr (std::is_same_v<T, std::string>) {
            value = text;
            return true;
        } else if constexpr (std::is_same_v<T, bool>) {
            if (text == "1" || text == "true" || text == "yes" || text == "on")
                value = true;
            else if (text == "0" || text == "false" || text == "no" || text == "off")
                value = false;
            else
                return false;
            return true;
        } else {
            char const* first = text.data();
            char const* last = first + text.size();
            auto [end, error] = std::from_chars(first, last, value);
            return error == std::errc() && end == last && !text.empty();
        }
    }
};

} // namespace Qv
