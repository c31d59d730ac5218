// The catalogue files the tools rely on, and the reading of catalogue text.
#include "msgCatalogue.h"
#include "msgEx.h"
#include "msgFileGuard.h"
#include "msgServer.h"
#include "msgSubscription.h"
#include "rsResources.h"

#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <sstream>

namespace Qv {
namespace {

struct Expected {
    char const* id;
    int placeholders; // %1 .. %N, in the order the code substitutes them
};

struct CatalogueContent {
    char const* file;
    std::vector<Expected> messages;
};

// The ids the tools subscribe and the number of values each one substitutes.
// A wording change must keep these counts, or the tools' messages break.
std::vector<CatalogueContent> const kCatalogues = {
    {"missingTool.msg", {{"MSG_TOOL_NODE_MISSING", 2}, {"MSG_TOOL_NODE_BROKEN", 2}}},
    {"renderParams.msg",
     {{"MSG_NO_FRAME_TO_PROCESS", 0},
      {"MSG_NEGATIVE_FRAME_START", 0},
      {"MSG_FORMAT_NOT_SUPPORTED_FOR_EXPORT", 0},
      {"MSG_INVALID_FILE_DESTINATION_DIR", 0}}},
    {"outputController.msg", {{"MSG_UNKNOWN_FILE_FORMAT_AT_OUTPUT", 2}}},
    {"imageImport.msg",
     {{"MSG_SEQUENCE_PATH_SYNTAX_ERROR", 3},
      {"MSG_SEQUENCE_PATH_INTERNAL_ERROR", 1},
      {"MSG_SEQUENCE_PATH_UNKNOWN_TOKEN", 1},
      {"MSG_SEQUENCE_PATH_PARSE_ERROR", 0},
      {"COMMAND_IMPORT_FILES", 0},
      {"MSG_COMPOSITION_ALREADY_EXISTS", 1},
      {"MSG_INVALID_COMPOSITION_NAME", 1},
      {"MSG_FILE_NOT_FOUND", 1},
      {"MSG_UNKNOWN_FORMAT", 1},
      {"MSG_IMPORT_SUCCEEDED", 1}}},
    {"expressions.msg",
     {{"MSG_EXPR_SYNTAX_ERROR", 1},
      {"MSG_EXPR_UNKNOWN_FUNCTION_WITH_ARGS", 2},
      {"MSG_EXPR_UNKNOWN_FUNCTION", 1},
      {"MSG_EXPR_UNKNOWN_ATTRIBUTE", 1},
      {"MSG_EXPR_INTERNAL_ERROR", 1},
      {"MSG_EXPR_UNKNOWN_TOKEN", 1},
      {"MSG_EXPR_PARSE_ERROR", 0},
      {"MSG_EXPR_UNSUPPORTED_ARG_TYPE_FOR_OP", 2},
      {"MSG_EXPR_UNSUPPORTED_ARG_TYPE_FOR_FUNC", 1},
      {"MSG_EXPR_INVALID_ARG_TYPE_IN_3D_VECTOR", 3},
      {"MSG_EXPR_INVALID_ARG_TYPE_IN_2D_VECTOR", 2},
      {"MSG_EXPR_CANNOT_BUILD_VALUE_NODE", 1},
      {"MSG_EXPR_CANNOT_BUILD_3D_VECTOR", 3},
      {"MSG_EXPR_CANNOT_BUILD_2D_VECTOR", 2},
      {"MSG_EXPR_CANNOT_BUILD_CONST_VALUE_NODE", 0},
      {"MSG_EXPR_CANNOT_GET_PROC_NODE", 1},
      {"MSG_EXPR_UNKNOWN_NODE", 1},
      {"MSG_EXPR_UNSUPPORTED_SOCKET_TYPE", 1}}},
};

std::set<int> placeholdersOf(std::string const& text) {
    static std::regex const placeholder("%([0-9]+)");
    std::set<int> numbers;
    for (std::sregex_iterator it(text.begin(), text.end(), placeholder), end; it != end; ++it)
        numbers.insert(std::stoi((*it)[1]));
    return numbers;
}

TEST(MsgCatalogueFiles, HoldEveryIdWithItsPlaceholdersAndNothingElse) {
    for (auto const& catalogue : kCatalogues) {
        SCOPED_TRACE(catalogue.file);
        MsgFileGuard guard(catalogue.file);
        for (auto const& expected : catalogue.messages) {
            SCOPED_TRACE(expected.id);
            MsgSubscription subscription(expected.id);
            ASSERT_NO_THROW(MsgServer::getInstance().subscribe(subscription));
            std::set<int> wanted;
            for (int i = 1; i <= expected.placeholders; ++i)
                wanted.insert(i);
            EXPECT_EQ(placeholdersOf(subscription.getText()), wanted) << subscription.getText();
        }
        auto const loaded =
            MsgCatalogue::load(RsResources::expandAliases(std::string("<MsgDir>/") + catalogue.file));
        EXPECT_EQ(loaded.getEntries().size(), catalogue.messages.size()) << "ids that no tool uses";
    }
}

TEST(MsgCatalogueParse, KeepsIdsAndTrimmedTextsAndSkipsCommentsAndBlankLines) {
    std::istringstream in("# a comment\n"
                          "\n"
                          "   \t\n"
                          "MSG_A = First %1 text  \r\n"
                          "  # an indented comment\n"
                          "  MSG_B=x = y\n"
                          "COMMAND_C = 100% sure\n");
    auto const catalogue = MsgCatalogue::parse(in, "inline.msg");
    EXPECT_EQ(catalogue.getName(), "inline.msg");
    ASSERT_EQ(catalogue.getEntries().size(), 3u);
    ASSERT_NE(catalogue.find("MSG_A"), nullptr);
    EXPECT_EQ(*catalogue.find("MSG_A"), "First %1 text");
    EXPECT_EQ(*catalogue.find("MSG_B"), "x = y");
    EXPECT_EQ(*catalogue.find("COMMAND_C"), "100% sure");
    EXPECT_EQ(catalogue.find("MSG_MISSING"), nullptr);
}

TEST(MsgCatalogueParse, RejectsMalformedLinesNamingFileAndLine) {
    struct Case {
        char const* text;
        char const* expectedInReason;
    };
    Case const cases[] = {
        {"MSG_OK = fine\nno equals sign here\n", "bad.msg, line 2: expected `ID = text`"},
        {"\n\n = text without id\n", "bad.msg, line 3: the message id"},
        {"MSG BAD = space in id\n", "bad.msg, line 1: the message id \"MSG BAD\""},
        {"MSG_EMPTY =   \n", "bad.msg, line 1: the message MSG_EMPTY has no text"},
        {"MSG_X = one\n# c\nMSG_X = two\n",
         "bad.msg, line 3: the message MSG_X is already defined on line 1"},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.text);
        std::istringstream in(c.text);
        try {
            MsgCatalogue::parse(in, "bad.msg");
            ADD_FAILURE() << "accepted";
        } catch (MsgEx::ExMalformedCatalogue const& ex) {
            EXPECT_NE(ex.getReason().find(c.expectedInReason), std::string::npos) << ex.getReason();
        }
    }
}

} // namespace
} // namespace Qv
