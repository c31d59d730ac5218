// The catalogue files the tools rely on, and the reading of catalogue text.
#include "../../base/test/baseTestHelpers.h"
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

using namespace TestHelpers;

// The ids the tools subscribe and the number N of values each one substitutes
// (%1 .. %N). A wording change must keep these counts, or the tools' messages break.
std::vector<std::pair<char const*, std::vector<std::pair<char const*, int>>>> const kCatalogues = {
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
      {"MSG_EXPR_UNSUPPORTED_SOCKET_TYPE", 1},
      {"MSG_EXPR_REFERENCE_LOOP", 1},
      {"MSG_EXPR_SOURCE_MISSING", 2}}},
};

std::set<int> placeholdersOf(std::string const& text) {
    static std::regex const placeholder("%([0-9]+)");
    std::set<int> numbers;
    for (std::sregex_iterator it(text.begin(), text.end(), placeholder), end; it != end; ++it)
        numbers.insert(std::stoi((*it)[1]));
    return numbers;
}

TEST(MsgCatalogueFiles, HoldEveryIdWithItsPlaceholdersAndNothingElse) {
    for (auto const& [file, messages] : kCatalogues) {
        SCOPED_TRACE(file);
        MsgFileGuard guard(file);
        for (auto const& [id, placeholders] : messages) {
            SCOPED_TRACE(id);
            MsgSubscription subscription(id);
            ASSERT_NO_THROW(MsgServer::getInstance().subscribe(subscription));
            std::set<int> wanted;
            for (int i = 1; i <= placeholders; ++i)
                wanted.insert(i);
            EXPECT_EQ(placeholdersOf(subscription.getText()), wanted) << subscription.getText();
        }
        auto const loaded = MsgCatalogue::load(RsResources::expandAliases(std::string("<MsgDir>/") + file));
        EXPECT_EQ(loaded.getEntries().size(), messages.size()) << "ids that no tool uses";
    }
}

TEST(MsgCatalogueParse, KeepsIdsAndTrimmedTextsAndSkipsCommentsAndBlankLines) {
    std::istringstream in("# a comment\n\n   \t\nMSG_A = First %1 text  \r\n  # indented\n  MSG_B=x = y\n");
    auto const catalogue = MsgCatalogue::parse(in, "inline.msg");
    ASSERT_EQ(catalogue.getEntries().size(), 2u);
    EXPECT_EQ(*catalogue.find("MSG_A"), "First %1 text");
    EXPECT_EQ(*catalogue.find("MSG_B"), "x = y");
    EXPECT_EQ(catalogue.find("MSG_MISSING"), nullptr);
}

TEST(MsgCatalogueParse, RejectsMalformedLinesNamingFileAndLine) {
    for (auto [text, where] :
         {std::pair{"MSG_OK = fine\nno equals sign here\n", "bad.msg, line 2: expected `ID = text`"},
          {"\n\n = text without id\n", "bad.msg, line 3: the message id"},
          {"MSG BAD = space in id\n", "bad.msg, line 1: the message id \"MSG BAD\""},
          {"MSG_EMPTY =   \n", "bad.msg, line 1: the message MSG_EMPTY has no text"},
          {"MSG_X = one\n# c\nMSG_X = two\n",
           "bad.msg, line 3: the message MSG_X is already defined on line 1"}}) {
        std::istringstream in(text);
        EXPECT_TRUE(
            throwsWith<MsgEx::ExMalformedCatalogue>([&] { MsgCatalogue::parse(in, "bad.msg"); }, where))
            << text;
    }
}

} // namespace
} // namespace Qv
