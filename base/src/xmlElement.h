#pragma once
// An XML element as a value: name, attributes in the order they were set,
// text and child elements. Comments and processing instructions are not kept.
// Numbers are written in the classic locale, doubles in their shortest form
// that reads back to the same value.
#include "osFilePath.h"

#include <concepts>
#include <list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Qv {

class XmlElement {
public:
    using Attribute = std::pair<std::string, std::string>;

    // Throws XmlEx::ExInvalidName.
    explicit XmlElement(std::string name);

    // Reads the one root element of a document. Throws XmlEx::ExParseError
    // naming `sourceName` (when given), the line and the column.
    static XmlElement parse(std::string_view text, std::string_view sourceName = {});
    // Throws OsFileEx::ExFileNotFound, ExIOError, XmlEx::ExParseError.
    static XmlElement parseFile(OsFilePath const& path);

    std::string const& getNodeName() const { return _name; }
    // The line of the element's start tag in the parsed text; 0 for an
    // element made in code. Lets a reader name the line of a bad value.
    int getLine() const { return _line; }

    // The text of the element, its character data and CDATA sections joined.
    std::string const& getData() const { return _data; }
    void setData(std::string data) { _data = std::move(data); }

    bool hasAttribute(std::string_view name) const { return findAttribute(name) != nullptr; }
    std::vector<Attribute> const& getAttributes() const { return _attributes; }
    // Required forms throw XmlEx::ExMissingAttribute; forms with a default give
    // it when the attribute is absent. A value that is present but not of the
    // type throws XmlEx::ExInvalidAttribute in both.
    std::string const& getAttribute(std::string_view name) const;
    std::string getAttribute(std::string_view name, std::string_view defaultValue) const;
    int getIntAttribute(std::string_view name) const;
    int getIntAttribute(std::string_view name, int defaultValue) const;
    double getDoubleAttribute(std::string_view name) const;
    double getDoubleAttribute(std::string_view name, double defaultValue) const;
    // "true" or "1", "false" or "0".
    bool getBoolAttribute(std::string_view name) const;
    bool getBoolAttribute(std::string_view name, bool defaultValue) const;

    // Sets or replaces. Throws XmlEx::ExInvalidName.
    void setAttribute(std::string_view name, std::string value);
    void setAttribute(std::string_view name, char const* value) { setAttribute(name, std::string(value)); }
    void setAttribute(std::string_view name, bool value) { setAttribute(name, value ? "true" : "false"); }
    template <std::integral T>
    requires(!std::same_as<T, bool>) void setAttribute(std::string_view name, T value) {
        if constexpr (std::is_signed_v<T>)
            setAttribute(name, formatNumber(static_cast<long long>(value)));
        else
            setAttribute(name, formatNumber(static_cast<unsigned long long>(value)));
    }
    template <std::floating_point T>
    void setAttribute(std::string_view name, T value) {
        setAttribute(name, formatNumber(static_cast<double>(value)));
    }

    // Children keep their place in memory while others are added, so the
    // reference returned by addChild stays valid.
    std::list<XmlElement> const& getChildren() const { return _children; }
    std::list<XmlElement>& getChildren() { return _children; }
    XmlElement& addChild(std::string name) { return addChild(XmlElement(std::move(name))); }
    XmlElement& addChild(XmlElement child);
    // The first child of that name, or null.
    XmlElement const* findChild(std::string_view name) const;
    XmlElement* findChild(std::string_view name);
    // Throws XmlEx::ExMissingElement.
    XmlElement const& getChild(std::string_view name) const;

    // Same content, wherever each was read from.
    friend bool operator==(XmlElement const& a, XmlElement const& b) {
        return a._name == b._name && a._attributes == b._attributes && a._data == b._data &&
               a._children == b._children;
    }

private:
    struct Unchecked {};
    XmlElement(Unchecked, std::string name) : _name(std::move(name)) {}
    friend class XmlTreeBuilder;

    static std::string formatNumber(long long value);
    static std::string formatNumber(unsigned long long value);
    static std::string formatNumber(double value);

    std::string const* findAttribute(std::string_view name) const;

    std::string _name;
    std::vector<Attribute> _attributes;
    std::string _data;
    std::list<XmlElement> _children;
    int _line = 0;
};

} // namespace Qv
