#include "assertions.h"
#include "baseTestHelpers.h"
#include "osFileEx.h"
#include "xmlElement.h"
#include "xmlEx.h"
#include "xmlWriter.h"

#include <cmath>
#include <limits>
#include <locale>
#include <sstream>

using namespace Qv;
using namespace Qv::TestHelpers;

namespace {

using XmlTest = TempDirTest;

// A decimal comma in the global locale must not leak into files.
struct CommaDecimal : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

XmlElement makeTree() {
    XmlElement root("Composition");
    root.setAttribute("name", "a <b> & \"c\" 'd'");
    root.setAttribute("lines", "one\ntwo\tthree\r\nfour");
    root.setAttribute("utf8", "caf\xC3\xA9 \xE6\x97\xA5");
    root.setAttribute("enabled", true);
    XmlElement& node = root.addChild("Node");
    node.setData("  text with <markup> & ]]> kept  "); // mixed with children
    node.addChild("Inner").addChild("Leaf");
    root.addChild("Blank").setData(" ");
    XmlElement& values = root.addChild("Values");
    for (double d :
         {0.1, 1.0 / 3.0, -2.5e-300, std::numeric_limits<double>::max(),
          std::numeric_limits<double>::denorm_min(), 1e21, -0.0, std::numeric_limits<double>::infinity()})
        values.addChild("V").setAttribute("v", d);
    values.addChild("Int").setAttribute("v", std::numeric_limits<int>::min());
    values.addChild("Big").setAttribute("v", 1234567u);
    return root;
}

TEST_F(XmlTest, TreeRoundTripsThroughTextAndFileExactly) {
    std::locale const previous = std::locale::global(std::locale(std::locale::classic(), new CommaDecimal));
    XmlElement const tree = makeTree();
    std::string text = XmlWriter::toString(tree);
    EXPECT_EQ(text.find(','), std::string::npos) << text;
    EXPECT_NE(text.find("v=\"1234567\""), std::string::npos) << text;

    XmlElement parsed = XmlElement::parse(text);
    EXPECT_EQ(parsed, tree);
    EXPECT_EQ(XmlWriter::toString(parsed), text);
    std::vector<double> read;
    for (XmlElement const& v : parsed.getChild("Values").getChildren())
        read.push_back(v.getDoubleAttribute("v"));
    EXPECT_EQ(read[1], 1.0 / 3.0);
    EXPECT_TRUE(std::signbit(read[6]));
    EXPECT_EQ(parsed.getChild("Blank").getData(), " ");
    EXPECT_EQ(parsed.getAttribute("lines"), "one\ntwo\tthree\r\nfour");

    XmlWriter::writeFile(path("comp.xml"), tree);
    EXPECT_EQ(XmlElement::parseFile(path("comp.xml")), tree);
    std::locale::global(previous);
}

TEST_F(XmlTest, StreamWriterWritesNothingUntilTheOutermostTagCloses) {
    std::ostringstream out;
    XmlWriter writer(out);
    writer.openTag("ImageSequence");
    writer.writeTag("Path", "/shots/a.[001:003].dpx");
    writer.openTag("B");
    writer.writeElement(makeTree());
    writer.closeTag();
    EXPECT_EQ(out.str(), "");
    writer.closeTag();
    XmlElement back = XmlElement::parse(out.str());
    EXPECT_EQ(back.getChild("Path").getData(), "/shots/a.[001:003].dpx");
    EXPECT_EQ(back.getChild("B").getChild("Composition"), makeTree());
    EXPECT_THROW(writer.closeTag(), AssertionsEx::ExAssertionFailed);
}

TEST_F(XmlTest, RefusesNamesThatXmlDoesNotAllow) {
    for (char const* name : {"", "1st", "a b", "a<b", "-x"}) {
        SCOPED_TRACE(name);
        EXPECT_THROW(XmlElement{name}, XmlEx::ExInvalidName);
        EXPECT_THROW(XmlElement("ok").setAttribute(name, "v"), XmlEx::ExInvalidName);
        std::ostringstream out;
        EXPECT_THROW(XmlWriter(out).openTag(name), XmlEx::ExInvalidName);
    }
    for (char const* name : {"_a", "ns:a", "a-b.c9", "\xC3\xA9t\xC3\xA9"})
        EXPECT_NO_THROW(XmlElement{name}) << name;
}

TEST_F(XmlTest, TypedAttributesGiveDefaultsAndNameWhatIsWrong) {
    XmlElement e = XmlElement::parse(
        R"(<Node i=" 8 " d="2.5e-3" b="true" word="abc" tail="12abc" huge="99999999999" empty="" dot="1,5"/>)");
    EXPECT_EQ(e.getIntAttribute("i"), 8);
    EXPECT_EQ(e.getIntAttribute("absent", 5), 5);
    EXPECT_EQ(e.getDoubleAttribute("d"), 2.5e-3);
    EXPECT_TRUE(e.getBoolAttribute("b"));
    EXPECT_TRUE(
        throwsWith<XmlEx::ExMissingAttribute>([&] { e.getIntAttribute("schema"); }, "schema", "<Node>"));
    // A value that is there but wrong is an error even when a default is offered.
    for (char const* name : {"word", "tail", "huge", "empty", "d"})
        EXPECT_TRUE(throwsWith<XmlEx::ExInvalidAttribute>([&] { e.getIntAttribute(name, 0); }, name,
                                                          "'" + e.getAttribute(name) + "'"));
    for (char const* name : {"tail", "empty", "dot"})
        EXPECT_TRUE(throwsWith<XmlEx::ExInvalidAttribute>([&] { e.getDoubleAttribute(name, 0); }, name,
                                                          "'" + e.getAttribute(name) + "'"));
    EXPECT_THROW(e.getBoolAttribute("word", false), XmlEx::ExInvalidAttribute);
}

TEST_F(XmlTest, ReadsEntitiesCdataAndChildren) {
    XmlElement root = XmlElement::parse("<?xml version=\"1.0\"?>\n<!-- saved -->\n"
                                        "<Root a2=\"&lt;&amp;&#65;\"><Item>first</Item><!-- note -->\n"
                                        "  <Item>x<![CDATA[<raw> & ]]>y</Item></Root>\n");
    EXPECT_EQ(root.getAttribute("a2"), "<&A");
    ASSERT_EQ(root.getChildren().size(), 2u);
    EXPECT_EQ(std::next(root.getChildren().begin())->getData(), "x<raw> & y");
    EXPECT_TRUE(throwsWith<XmlEx::ExMissingElement>([&] { root.getChild("None"); }, "<None>"));

    // References handed out by addChild survive later additions.
    XmlElement tree("T");
    XmlElement& first = tree.addChild("A");
    for (int i = 0; i < 100; ++i)
        tree.addChild("B");
    first.setAttribute("still", "here");
    EXPECT_EQ(tree.getChild("A").getAttribute("still"), "here");
}

TEST_F(XmlTest, ParseErrorsNameTheSourceLineAndColumn) {
    std::string deep;
    for (int i = 0; i < 5000; ++i)
        deep = "<a>\n" + deep + "</a>";
    for (auto [text, where] : {std::pair<std::string, char const*>{"<a>\n<b>\n</a>", "line 3, column 3"},
                               {"<a>\n  <b x=1/>\n</a>", "line 2, column 8"},
                               {"<a>\n<b></b>\n", "line 2"},
                               {"", "line 1"},
                               {"   \n<!-- only -->\n", "line 3"},
                               {"<a/>\n<b/>", "line 2"},
                               {deep, "line 1001"}}) // nesting is bounded
        EXPECT_TRUE(throwsWith<XmlEx::ExParseError>([&] { XmlElement::parse(text, "comp.xml"); },
                                                    "'comp.xml'", where))
            << text.substr(0, 20);
    auto const bad = writeFile("bad.xml", "<?xml version=\"1.0\"?>\n<Root>\n  <Node>\n</Root>\n");
    EXPECT_TRUE(
        throwsWith<XmlEx::ExParseError>([&] { XmlElement::parseFile(path("bad.xml")); }, bad, "line 4"));
    EXPECT_THROW(XmlElement::parseFile(path("absent.xml")), OsFileEx::ExFileNotFound);
}

TEST_F(XmlTest, ParsedElementsKnowTheLineOfTheirStartTag) {
    XmlElement root =
        XmlElement::parse("<?xml version=\"1.0\"?>\n<a>\n  <b/>\n\n  <c>\n    <d/>\n  </c>\n</a>\n");
    EXPECT_EQ(root.getLine(), 2);
    EXPECT_EQ(root.getChild("b").getLine(), 3);
    EXPECT_EQ(root.getChild("c").getLine(), 5);
    EXPECT_EQ(root.getChild("c").getChild("d").getLine(), 6);
    EXPECT_EQ(XmlElement("made").getLine(), 0);
    EXPECT_EQ(root, XmlElement::parse(XmlWriter::toString(root))) << "the line is not part of the content";
}

} // namespace
