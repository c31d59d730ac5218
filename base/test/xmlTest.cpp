#include "assertions.h"
#include "osFileEx.h"
#include "xmlElement.h"
#include "xmlEx.h"
#include "xmlWriter.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <locale>
#include <sstream>
#include <unistd.h>

using namespace Qv;
namespace fs = std::filesystem;

namespace {

template <class Ex, class F>
std::string reasonOf(F&& f) {
    try {
        f();
    } catch (Ex const& ex) {
        return ex.what();
    }
    ADD_FAILURE() << "no exception";
    return {};
}

// A decimal comma in the global locale must not leak into files.
struct CommaDecimal : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

class ScopedGlobalLocale {
public:
    explicit ScopedGlobalLocale(std::locale const& locale) : _previous(std::locale::global(locale)) {}
    ~ScopedGlobalLocale() { std::locale::global(_previous); }

private:
    std::locale _previous;
};

XmlElement makeTree() {
    XmlElement root("Composition");
    root.setAttribute("name", "a <b> & \"c\" 'd'");
    root.setAttribute("lines", "one\ntwo\tthree\r\nfour");
    root.setAttribute("utf8", "caf\xC3\xA9 \xE6\x97\xA5");
    root.setAttribute("schema", 3);
    root.setAttribute("enabled", true);
    XmlElement& node = root.addChild("Node");
    node.setData("  text with <markup> & ]]> kept  ");
    XmlElement& blank = root.addChild("Blank");
    blank.setData(" ");
    XmlElement& values = root.addChild("Values");
    double const doubles[] = {0.1,
                              1.0 / 3.0,
                              -2.5e-300,
                              std::numeric_limits<double>::max(),
                              std::numeric_limits<double>::denorm_min(),
                              1e21,
                              123456789.125,
                              -0.0,
                              std::numeric_limits<double>::infinity()};
    for (double d : doubles)
        values.addChild("V").setAttribute("v", d);
    values.addChild("Int").setAttribute("v", std::numeric_limits<int>::min());
    values.addChild("Big").setAttribute("v", 1234567u);
    node.addChild("Inner").addChild("Leaf");
    return root;
}

TEST(XmlTest, TreeRoundTripsThroughTextAndFileExactly) {
    ScopedGlobalLocale comma(std::locale(std::locale::classic(), new CommaDecimal));
    XmlElement const tree = makeTree();
    std::string text = XmlWriter::toString(tree);
    EXPECT_EQ(text.find(','), std::string::npos) << text;
    EXPECT_NE(text.find("v=\"0.1\""), std::string::npos) << text;
    EXPECT_NE(text.find("v=\"1234567\""), std::string::npos) << text;

    XmlElement parsed = XmlElement::parse(text);
    EXPECT_EQ(parsed, tree);
    EXPECT_EQ(XmlWriter::toString(parsed), text);
    std::vector<double> read;
    for (XmlElement const& v : parsed.getChild("Values").getChildren())
        if (v.getNodeName() == "V")
            read.push_back(v.getDoubleAttribute("v"));
    ASSERT_EQ(read.size(), 9u);
    EXPECT_EQ(read[1], 1.0 / 3.0);
    EXPECT_TRUE(std::signbit(read[7]));
    EXPECT_EQ(parsed.getChild("Blank").getData(), " ");
    EXPECT_EQ(parsed.getAttribute("lines"), "one\ntwo\tthree\r\nfour");

    fs::path file = fs::temp_directory_path() / ("qvXmlTest_" + std::to_string(getpid()) + ".xml");
    XmlWriter::writeFile(OsFilePath(file.string()), tree);
    EXPECT_EQ(XmlElement::parseFile(OsFilePath(file.string())), tree);
    fs::remove(file);
}

TEST(XmlTest, StreamWriterWritesFragments) {
    std::ostringstream out;
    XmlWriter writer(out);
    writer.openTag("ImageSequence");
    writer.writeTag("Path", "/shots/a.[001:003].dpx");
    writer.closeTag();
    EXPECT_EQ(out.str(), "<ImageSequence>\n  <Path>/shots/a.[001:003].dpx</Path>\n</ImageSequence>\n");

    XmlElement back = XmlElement::parse(out.str());
    EXPECT_EQ(back.getNodeName(), "ImageSequence");
    ASSERT_EQ(back.getChildren().size(), 1u);
    EXPECT_EQ(back.getChildren().front().getData(), "/shots/a.[001:003].dpx");

    std::ostringstream nested;
    XmlWriter second(nested);
    second.openTag("A");
    second.openTag("B");
    second.writeElement(makeTree());
    EXPECT_EQ(nested.str(), ""); // nothing until the outermost tag closes
    second.closeTag();
    second.closeTag();
    EXPECT_EQ(XmlElement::parse(nested.str()).getChild("B").getChild("Composition"), makeTree());
    EXPECT_THROW(second.closeTag(), AssertionsEx::ExAssertionFailed);
}

TEST(XmlTest, RefusesNamesThatXmlDoesNotAllow) {
    for (char const* name : {"", "1st", "a b", "a<b", "-x", "a\"b"}) {
        SCOPED_TRACE(name);
        EXPECT_THROW(XmlElement{name}, XmlEx::ExInvalidName);
        XmlElement e("ok");
        EXPECT_THROW(e.setAttribute(name, "v"), XmlEx::ExInvalidName);
        std::ostringstream out;
        EXPECT_THROW(XmlWriter(out).openTag(name), XmlEx::ExInvalidName);
    }
    for (char const* name : {"a", "_a", "ns:a", "a-b.c9", "\xC3\xA9t\xC3\xA9"})
        EXPECT_NO_THROW(XmlElement{name}) << name;
}

TEST(XmlTest, TypedAttributesGiveDefaultsAndNameWhatIsWrong) {
    XmlElement e = XmlElement::parse(R"(<Node i="42" neg="-7" pad=" 8 " d="2.5e-3" b="true" z="0"
        word="abc" tail="12abc" huge="99999999999" empty="" dot="1,5"/>)");
    EXPECT_EQ(e.getIntAttribute("i"), 42);
    EXPECT_EQ(e.getIntAttribute("neg"), -7);
    EXPECT_EQ(e.getIntAttribute("pad"), 8);
    EXPECT_EQ(e.getIntAttribute("absent", 5), 5);
    EXPECT_EQ(e.getDoubleAttribute("d"), 2.5e-3);
    EXPECT_EQ(e.getDoubleAttribute("i"), 42.0);
    EXPECT_EQ(e.getDoubleAttribute("absent", 0.5), 0.5);
    EXPECT_TRUE(e.getBoolAttribute("b"));
    EXPECT_FALSE(e.getBoolAttribute("z"));
    EXPECT_TRUE(e.getBoolAttribute("absent", true));
    EXPECT_EQ(e.getAttribute("word"), "abc");
    EXPECT_EQ(e.getAttribute("absent", "dflt"), "dflt");

    std::string missing = reasonOf<XmlEx::ExMissingAttribute>([&] { e.getIntAttribute("schema"); });
    EXPECT_NE(missing.find("schema"), std::string::npos) << missing;
    EXPECT_NE(missing.find("Node"), std::string::npos) << missing;
    EXPECT_THROW(e.getAttribute("schema"), XmlEx::ExMissingAttribute);
    EXPECT_THROW(e.getBoolAttribute("schema"), XmlEx::ExMissingAttribute);

    struct Bad {
        char const* attribute;
        bool asInt;
    } const bad[] = {{"word", true},  {"tail", true},  {"huge", true},   {"empty", true}, {"d", true},
                     {"word", false}, {"tail", false}, {"empty", false}, {"dot", false}};
    for (Bad const& b : bad) {
        SCOPED_TRACE(b.attribute);
        // A value that is there but wrong is an error even when a default is offered.
        std::string reason =
            b.asInt ? reasonOf<XmlEx::ExInvalidAttribute>([&] { e.getIntAttribute(b.attribute, 0); })
                    : reasonOf<XmlEx::ExInvalidAttribute>([&] { e.getDoubleAttribute(b.attribute, 0); });
        EXPECT_NE(reason.find(b.attribute), std::string::npos) << reason;
        EXPECT_NE(reason.find(e.getAttribute(b.attribute)), std::string::npos) << reason;
    }
    EXPECT_THROW(e.getBoolAttribute("word", false), XmlEx::ExInvalidAttribute);
}

TEST(XmlTest, ReadsStructureTextAndChildren) {
    XmlElement root = XmlElement::parse("<?xml version=\"1.0\"?>\n<!-- saved -->\n"
                                        "<Root a='1' a2=\"&lt;&amp;&#65;\">\n"
                                        "  <Item>first</Item><!-- note -->\n"
                                        "  <Item>x<![CDATA[<raw> & ]]>y</Item>\n"
                                        "  <Other/>\n"
                                        "</Root>\n");
    EXPECT_EQ(root.getNodeName(), "Root");
    EXPECT_EQ(root.getAttribute("a2"), "<&A");
    EXPECT_EQ(root.getData(), "");
    ASSERT_EQ(root.getChildren().size(), 3u);
    EXPECT_EQ(root.findChild("Item")->getData(), "first");
    EXPECT_EQ(std::next(root.getChildren().begin())->getData(), "x<raw> & y");
    EXPECT_EQ(root.findChild("None"), nullptr);
    std::string reason = reasonOf<XmlEx::ExMissingElement>([&] { root.getChild("None"); });
    EXPECT_NE(reason.find("None"), std::string::npos) << reason;

    // References handed out by addChild survive later additions.
    XmlElement tree("T");
    XmlElement& first = tree.addChild("A");
    for (int i = 0; i < 100; ++i)
        tree.addChild("B");
    first.setAttribute("still", "here");
    EXPECT_EQ(tree.getChild("A").getAttribute("still"), "here");
}

TEST(XmlTest, ParseErrorsNameTheSourceLineAndColumn) {
    struct Case {
        char const* text;
        char const* where;
    } const cases[] = {
        {"<a>\n<b>\n</a>", "line 3, column 3"}, {"<a>\n  <b x=1/>\n</a>", "line 2, column 8"},
        {"<a>\n<b></b>\n", "line 2"},           {"", "line 1"},
        {"   \n<!-- only -->\n", "line 3"},     {"<a/>\n<b/>", "line 2"},
        {"<a>\n\n\n<&/></a>", "line 4"},
    };
    for (Case const& c : cases) {
        SCOPED_TRACE(c.text);
        std::string reason = reasonOf<XmlEx::ExParseError>([&] { XmlElement::parse(c.text, "comp.xml"); });
        EXPECT_NE(reason.find(c.where), std::string::npos) << reason;
        EXPECT_NE(reason.find("comp.xml"), std::string::npos) << reason;
    }

    std::string deep;
    for (int i = 0; i < 5000; ++i)
        deep += "<a>\n";
    for (int i = 0; i < 5000; ++i)
        deep += "</a>";
    std::string tooDeep = reasonOf<XmlEx::ExParseError>([&] { XmlElement::parse(deep); });
    EXPECT_NE(tooDeep.find("line 1001"), std::string::npos) << tooDeep;

    fs::path file = fs::temp_directory_path() / ("qvXmlBad_" + std::to_string(getpid()) + ".xml");
    std::ofstream(file) << "<?xml version=\"1.0\"?>\n<Root>\n  <Node>\n</Root>\n";
    std::string reason =
        reasonOf<XmlEx::ExParseError>([&] { XmlElement::parseFile(OsFilePath(file.string())); });
    EXPECT_NE(reason.find(file.string()), std::string::npos) << reason;
    EXPECT_NE(reason.find("line 4"), std::string::npos) << reason;
    fs::remove(file);
    EXPECT_THROW(XmlElement::parseFile(OsFilePath(file.string())), OsFileEx::ExFileNotFound);
}

} // namespace
