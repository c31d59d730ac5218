#include "xmlWriter.h"

#include "assertions.h"
#include "osFile.h"

#include <pugixml.hpp>
#include <sstream>

namespace Qv {

namespace {

void appendTo(pugi::xml_node parent, XmlElement const& element) {
    pugi::xml_node node = parent.append_child(element.getNodeName().c_str());
    for (XmlElement::Attribute const& attribute : element.getAttributes())
        node.append_attribute(attribute.first.c_str()).set_value(attribute.second.c_str());
    // Text goes first: the reader joins an element's text wherever it stands,
    // and pugixml writes an element with text without indenting inside it.
    if (!element.getData().empty())
        node.append_child(pugi::node_pcdata).set_value(element.getData().c_str());
    for (XmlElement const& child : element.getChildren())
        appendTo(node, child);
}

// pugixml does the escaping: markup characters, quotes, and in attributes
// the line breaks and tabs that a reader would otherwise turn into blanks.
void print(std::ostream& out, XmlElement const& element, unsigned flags) {
    pugi::xml_document document;
    appendTo(document, element);
    document.save(out, "  ", flags | pugi::format_indent, pugi::encoding_utf8);
}

} // namespace

void XmlWriter::openTag(std::string const& name) {
    _open.emplace_back(name);
}

void XmlWriter::writeTag(std::string const& name, std::string const& data) {
    XmlElement element(name);
    element.setData(data);
    writeElement(element);
}

void XmlWriter::writeElement(XmlElement const& element) {
    if (_open.empty())
        emit(element);
    else
        _open.back().addChild(element);
}

void XmlWriter::closeTag() {
    QV_ASSERT(!_open.empty());
    XmlElement element = std::move(_open.back());
    _open.pop_back();
    writeElement(element);
}

void XmlWriter::emit(XmlElement const& element) {
    print(_out, element, pugi::format_no_declaration);
}

std::string XmlWriter::toString(XmlElement const& root) {
    std::ostringstream out;
    print(out, root, pugi::format_no_declaration);
    return std::move(out).str();
}

void XmlWriter::writeFile(OsFilePath const& path, XmlElement const& root) {
    std::ostringstream out;
    out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    print(out, root, pugi::format_no_declaration);
    OsFile(path).writeAtomically(out.str());
}

} // namespace Qv
