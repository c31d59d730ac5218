#pragma once
// Writes XML, either element by element onto a stream (openTag, writeTag,
// closeTag) or a whole XmlElement tree. Output is indented, one element a
// line; special characters are escaped so that XmlElement::parse gives back
// exactly what was written.
#include "osFilePath.h"
#include "xmlElement.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace Qv {

class XmlWriter {
public:
    // Writes fragments: no XML declaration.
    explicit XmlWriter(std::ostream& out) : _out(out) {}
    // Tags still open are dropped, never written half.
    ~XmlWriter() = default;
    XmlWriter(XmlWriter const&) = delete;
    XmlWriter& operator=(XmlWriter const&) = delete;

    // An element is written when its outermost open tag is closed.
    // Throws XmlEx::ExInvalidName.
    void openTag(std::string const& name);
    // An element holding only `data`.
    void writeTag(std::string const& name, std::string const& data);
    // A whole tree, inside the open tag if there is one.
    void writeElement(XmlElement const& element);
    // Asserts that a tag is open.
    void closeTag();

    // The tree as a fragment.
    static std::string toString(XmlElement const& root);
    // The tree as a document with its declaration, saved through
    // OsFile::writeAtomically, so a failure leaves an older file intact.
    static void writeFile(OsFilePath const& path, XmlElement const& root);

private:
    void emit(XmlElement const& element);

    std::ostream& _out;
    std::vector<XmlElement> _open;
};

} // namespace Qv
