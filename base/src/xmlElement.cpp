#include "xmlElement.h"

#include "osFile.h"
#include "xmlEx.h"

#include <algorithm>
#include <charconv>
#include <fmt/format.h>
#include <limits>
#include <pugixml.hpp>

namespace Qv {

namespace {

bool isNameStart(unsigned char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == ':' || c >= 0x80;
}

bool isNameChar(unsigned char c) {
    return isNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.';
}

// Non-ASCII bytes are let through: the letters of other scripts are valid
// name characters and checking each range of the standard buys nothing here.
void checkName(std::string_view name, char const* what) {
    bool valid = !name.empty() && isNameStart(static_cast<unsigned char>(name.front())) &&
                 std::all_of(name.begin(), name.end(),
                             [](char c) { return isNameChar(static_cast<unsigned char>(c)); });
    if (!valid)
        throw XmlEx::ExInvalidName(__FILE__, __LINE__,
                                   fmt::format("'{}' is not a valid XML {} name", name, what));
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// from_chars ignores the locale, and requiring it to take the whole text
// refuses "12abc" as well as "abc".
template <class T>
bool parseNumber(std::string_view text, T& value) {
    text = trimmed(text);
    char const* end = text.data() + text.size();
    auto [ptr, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && ptr == end && !text.empty();
}

[[noreturn]] void throwInvalid(XmlElement const& element, std::string_view name, std::string const& value,
                               char const* type) {
    throw XmlEx::ExInvalidAttribute(__FILE__, __LINE__,
                                    fmt::format("attribute '{}' of element <{}> is not {}: '{}'", name,
                                                element.getNodeName(), type, value));
}

int toInt(XmlElement const& element, std::string_view name, std::string const& text) {
    int value = 0;
    if (!parseNumber(text, value))
        throwInvalid(element, name, text, "an integer");
    return value;
}

double toDouble(XmlElement const& element, std::string_view name, std::string const& text) {
    double value = 0;
    if (!parseNumber(text, value))
        throwInvalid(element, name, text, "a number");
    return value;
}

bool toBool(XmlElement const& element, std::string_view name, std::string const& text) {
    std::string_view value = trimmed(text);
    if (value == "true" || value == "1")
        return true;
    if (value == "false" || value == "0")
        return false;
    throwInvalid(element, name, text, "a boolean");
}

std::size_t lineOfOffset(std::string_view text, std::size_t offset) {
    offset = std::min(offset, text.size());
    return 1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(offset), '\n');
}

std::size_t columnOfOffset(std::string_view text, std::size_t offset) {
    offset = std::min(offset, text.size());
    std::size_t newline = text.substr(0, offset).rfind('\n');
    return newline == std::string_view::npos ? offset + 1 : offset - newline;
}

[[noreturn]] void throwParseError(std::string_view text, std::string_view sourceName, std::ptrdiff_t offset,
                                  std::string_view description) {
    auto at = static_cast<std::size_t>(std::max<std::ptrdiff_t>(offset, 0));
    std::string source = sourceName.empty() ? std::string("XML text") : fmt::format("'{}'", sourceName);
    throw XmlEx::ExParseError(__FILE__, __LINE__,
                              fmt::format("XML syntax error in {} at line {}, column {}: {}", source,
                                          lineOfOffset(text, at), columnOfOffset(text, at), description));
}

} // namespace

// Turns the nodes of a parsed document into elements. A class, not a
// function, so that it may use the constructor that skips the name check:
// the parser has checked them already.
class XmlTreeBuilder {
public:
    // Far beyond any document of ours; it keeps a hostile one from
    // exhausting the stack, as building recurses.
    static constexpr int MAX_DEPTH = 1000;

    XmlTreeBuilder(std::string_view text, std::string_view sourceName)
        : _text(text), _sourceName(sourceName) {
        for (std::size_t i = 0; i < text.size(); ++i)
            if (text[i] == '\n')
                _newlines.push_back(i);
    }

    XmlElement build(pugi::xml_node node, int depth = 1) const {
        if (depth > MAX_DEPTH)
            throwParseError(_text, _sourceName, node.offset_debug(),
                            fmt::format("elements nested deeper than {} levels", MAX_DEPTH));
        XmlElement element(XmlElement::Unchecked{}, node.name());
        element._line = lineAt(node.offset_debug());
        for (pugi::xml_attribute attribute : node.attributes()) {
            std::string_view name = attribute.name();
            auto it = std::find_if(element._attributes.begin(), element._attributes.end(),
                                   [&](XmlElement::Attribute const& a) { return a.first == name; });
            if (it == element._attributes.end())
                element._attributes.emplace_back(name, attribute.value());
            else
                it->second = attribute.value();
        }
        for (pugi::xml_node child : node.children()) {
            switch (child.type()) {
            case pugi::node_element:
                element._children.push_back(build(child, depth + 1));
                break;
            case pugi::node_pcdata:
            case pugi::node_cdata:
                element._data += child.value();
                break;
            default:
                break;
            }
        }
        return element;
    }

private:
    // Lines counted once for the whole text: a search per element, not a scan.
    int lineAt(std::ptrdiff_t offset) const {
        auto at = static_cast<std::size_t>(std::max<std::ptrdiff_t>(offset, 0));
        return 1 +
               static_cast<int>(std::lower_bound(_newlines.begin(), _newlines.end(), at) - _newlines.begin());
    }

    std::string_view _text;
    std::string_view _sourceName;
    std::vector<std::size_t> _newlines;
};

XmlElement::XmlElement(std::string name) : _name(std::move(name)) {
    checkName(_name, "element");
}

XmlElement XmlElement::parse(std::string_view text, std::string_view sourceName) {
    pugi::xml_document document;
    // Blank text that is an element's only content is data (a value of " ");
    // blanks between elements are layout and dropped.
    unsigned options = pugi::parse_default | pugi::parse_ws_pcdata_single;
    pugi::xml_parse_result result =
        document.load_buffer(text.data(), text.size(), options, pugi::encoding_utf8);
    if (!result)
        throwParseError(text, sourceName, result.offset, result.description());
    pugi::xml_node root;
    for (pugi::xml_node node : document.children()) {
        if (node.type() != pugi::node_element)
            continue;
        // The parser is lenient here; a document has one root.
        if (root)
            throwParseError(text, sourceName, node.offset_debug(), "more than one root element");
        root = node;
    }
    if (!root)
        throwParseError(text, sourceName, static_cast<std::ptrdiff_t>(text.size()), "no root element");
    return XmlTreeBuilder(text, sourceName).build(root);
}

XmlElement XmlElement::parseFile(OsFilePath const& path) {
    return parse(OsFile(path).readText(), path.toString());
}

std::string const* XmlElement::findAttribute(std::string_view name) const {
    auto it = std::find_if(_attributes.begin(), _attributes.end(),
                           [&](Attribute const& attribute) { return attribute.first == name; });
    return it == _attributes.end() ? nullptr : &it->second;
}

std::string const& XmlElement::getAttribute(std::string_view name) const {
    if (std::string const* value = findAttribute(name))
        return *value;
    throw XmlEx::ExMissingAttribute(__FILE__, __LINE__,
                                    fmt::format("element <{}> has no attribute '{}'", _name, name));
}

std::string XmlElement::getAttribute(std::string_view name, std::string_view defaultValue) const {
    std::string const* value = findAttribute(name);
    return value ? *value : std::string(defaultValue);
}

int XmlElement::getIntAttribute(std::string_view name) const {
    return toInt(*this, name, getAttribute(name));
}

int XmlElement::getIntAttribute(std::string_view name, int defaultValue) const {
    std::string const* value = findAttribute(name);
    return value ? toInt(*this, name, *value) : defaultValue;
}

double XmlElement::getDoubleAttribute(std::string_view name) const {
    return toDouble(*this, name, getAttribute(name));
}

double XmlElement::getDoubleAttribute(std::string_view name, double defaultValue) const {
    std::string const* value = findAttribute(name);
    return value ? toDouble(*this, name, *value) : defaultValue;
}

bool XmlElement::getBoolAttribute(std::string_view name) const {
    return toBool(*this, name, getAttribute(name));
}

bool XmlElement::getBoolAttribute(std::string_view name, bool defaultValue) const {
    std::string const* value = findAttribute(name);
    return value ? toBool(*this, name, *value) : defaultValue;
}

void XmlElement::setAttribute(std::string_view name, std::string value) {
    for (Attribute& attribute : _attributes) {
        if (attribute.first == name) {
            attribute.second = std::move(value);
            return;
        }
    }
    checkName(name, "attribute");
    _attributes.emplace_back(std::string(name), std::move(value));
}

XmlElement& XmlElement::addChild(XmlElement child) {
    _children.push_back(std::move(child));
    return _children.back();
}

XmlElement const* XmlElement::findChild(std::string_view name) const {
    auto it = std::find_if(_children.begin(), _children.end(),
                           [&](XmlElement const& child) { return child._name == name; });
    return it == _children.end() ? nullptr : &*it;
}

XmlElement* XmlElement::findChild(std::string_view name) {
    return const_cast<XmlElement*>(std::as_const(*this).findChild(name));
}

XmlElement const& XmlElement::getChild(std::string_view name) const {
    if (XmlElement const* child = findChild(name))
        return *child;
    throw XmlEx::ExMissingElement(__FILE__, __LINE__,
                                  fmt::format("element <{}> has no child <{}>", _name, name));
}

// fmt's "{}" is locale independent, and for a double it is the shortest text
// that reads back to the same value.
std::string XmlElement::formatNumber(long long value) {
    return fmt::format("{}", value);
}

std::string XmlElement::formatNumber(unsigned long long value) {
    return fmt::format("{}", value);
}

std::string XmlElement::formatNumber(double value) {
    return fmt::format("{}", value);
}

} // namespace Qv
