// Messages from subscription to display: substitution, catalogue scopes,
// severities, the sink and message exceptions.
#include "msgCatalogue.h"
#include "msgError.h"
#include "msgEx.h"
#include "msgException.h"
#include "msgFileGuard.h"
#include "msgServer.h"
#include "msgSubscription.h"
#include "resmgtTestFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>
#include <utility>
#include <vector>

namespace Qv {
namespace {

using ::testing::HasSubstr;
using Captured = std::vector<std::pair<MsgSeverity, std::string>>;

TEST(MsgProtocolSubstitute, FillsPlaceholdersByNumberInCallOrder) {
    struct Case {
        char const* text;
        std::vector<std::string> values;
        char const* expected;
    };
    Case const cases[] = {
        {"%1 and %2", {"a", "b"}, "a and b"},
        {"%2 before %1", {"a", "b"}, "b before a"},
        {"%1 %2 %10", {"v1", "v2", "v3", "v4", "v5", "v6", "v7", "v8", "v9", "v10"}, "v1 v2 v10"},
        {"%1%1", {"ab"}, "abab"},
        {"no placeholder", {"ignored"}, "no placeholder"},
        // Unfilled placeholders stay visible, whole: %10 is not %1 followed by 0.
        {"%1 %10", {"x"}, "x %10"},
        {"%3 is missing", {"a"}, "%3 is missing"},
        {"%0, % and 100%", {"a"}, "%0, % and 100%"},
        {"ends with %", {}, "ends with %"},
        {"%99999999999999999999999", {"a"}, "%99999999999999999999999"},
        // A value is inserted as it is, never expanded again.
        {"%1/%2", {"%2", "b"}, "%2/b"},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.text);
        MsgWarning message{std::string(c.text)};
        for (auto const& value : c.values)
            message.substitute(value);
        EXPECT_EQ(message.getText(), c.expected);
    }
}

TEST(MsgProtocolSubstitute, NumbersBecomeDecimalText) {
    MsgWarning message("%1 %2 %3 %4");
    message.substitute(42).substitute(-7).substitute(std::size_t{18446744073709551615u}).substitute("text");
    EXPECT_EQ(message.getText(), "42 -7 18446744073709551615 text");
    EXPECT_EQ(message.getId(), "");
    EXPECT_EQ(message.getSeverity(), MsgSeverity::Warning);
}

class MsgServerTest : public ::testing::Test {
protected:
    std::filesystem::path writeCatalogue(std::string const& name, std::string const& content) {
        return _dir.write(name, content);
    }

    TestFiles::TempDir _dir;
};

TEST_F(MsgServerTest, SubscribedMessagesShowTheirSeverityAndTextThroughTheSink) {
    auto const file = writeCatalogue("test.msg", "MSG_A = Node %1 has %2 inputs\n"
                                                 "MSG_B = Render finished\n");
    MsgSubscription a("MSG_A");
    MsgSubscription b("MSG_B");
    EXPECT_FALSE(a.isSubscribed());
    {
        MsgFileGuard guard(file.string());
        MsgServer::getInstance().subscribe(a);
        MsgServer::getInstance().subscribe(b);
    }
    // Subscriptions keep their text after the catalogue is closed.
    EXPECT_TRUE(a.isSubscribed());
    EXPECT_EQ(a.getText(), "Node %1 has %2 inputs");

    Captured captured;
    {
        MsgSinkGuard sink(
            [&](MsgSeverity severity, std::string const& text) { captured.emplace_back(severity, text); });
        MsgError(a).substitute("Blur").substitute(3).display();
        MsgWarning(b).display();
        MsgInformation(b).display();
    }
    Captured const expected = {{MsgSeverity::Error, "Node Blur has 3 inputs"},
                               {MsgSeverity::Warning, "Render finished"},
                               {MsgSeverity::Information, "Render finished"}};
    EXPECT_EQ(captured, expected);
    EXPECT_EQ(MsgError(a).getId(), "MSG_A");
}

TEST_F(MsgServerTest, EachSubscriptionOfAnIdIsResolvedOnItsOwn) {
    auto const file = writeCatalogue("test.msg", "MSG_SAME = shared text\n");
    MsgSubscription first("MSG_SAME");
    MsgSubscription second("MSG_SAME");
    MsgFileGuard guard(file.string());
    MsgServer::getInstance().subscribe(first);
    EXPECT_TRUE(first.isSubscribed());
    EXPECT_FALSE(second.isSubscribed());
    MsgServer::getInstance().subscribe(second);
    EXPECT_EQ(second.getText(), "shared text");
}

TEST_F(MsgServerTest, UnknownIdNamesTheIdAndTheCatalogue) {
    auto const file = writeCatalogue("tools.msg", "MSG_KNOWN = known\n");
    MsgFileGuard guard(file.string());
    MsgSubscription unknown("MSG_NOT_THERE");
    try {
        MsgServer::getInstance().subscribe(unknown);
        FAIL() << "subscribed";
    } catch (MsgEx::ExUnknownId const& ex) {
        EXPECT_THAT(ex.getReason(), HasSubstr("MSG_NOT_THERE"));
        EXPECT_THAT(ex.getReason(), HasSubstr("tools.msg"));
    }
    EXPECT_FALSE(unknown.isSubscribed());
}

TEST_F(MsgServerTest, GuardClosesItsCatalogueAndOnlyItsOwn) {
    auto const outerFile = writeCatalogue("outer.msg", "MSG_OUTER = outer\nMSG_BOTH = from outer\n");
    auto const innerFile = writeCatalogue("inner.msg", "MSG_INNER = inner\nMSG_BOTH = from inner\n");
    MsgSubscription outer("MSG_OUTER");
    MsgSubscription inner("MSG_INNER");
    MsgSubscription both("MSG_BOTH");
    {
        MsgFileGuard outerGuard(outerFile.string());
        {
            MsgFileGuard innerGuard(innerFile.string());
            MsgServer::getInstance().subscribe(both);
            EXPECT_EQ(both.getText(), "from inner"); // the latest catalogue is asked first
        }
        EXPECT_THROW(MsgServer::getInstance().subscribe(inner), MsgEx::ExUnknownId);
        MsgServer::getInstance().subscribe(outer);
        MsgServer::getInstance().subscribe(both);
        EXPECT_EQ(both.getText(), "from outer");
    }
    try {
        MsgServer::getInstance().subscribe(outer);
        FAIL() << "catalogue still open";
    } catch (MsgEx::ExUnknownId const& ex) {
        EXPECT_THAT(ex.getReason(), HasSubstr("MSG_OUTER"));
        EXPECT_THAT(ex.getReason(), HasSubstr("no catalogue is open"));
    }
}

TEST_F(MsgServerTest, BadCatalogueFilesFailTheGuardWithFileAndLine) {
    auto const bad = writeCatalogue("bad.msg", "# header\nMSG_OK = ok\nMSG_BROKEN\n");
    try {
        MsgFileGuard guard(bad.string());
        FAIL() << "opened";
    } catch (MsgEx::ExMalformedCatalogue const& ex) {
        EXPECT_THAT(ex.getReason(), HasSubstr(bad.string() + ", line 3"));
    }
    // A bare name is looked for in the resources' msg folder, and the error says where.
    try {
        MsgFileGuard guard("noSuchCatalogue.msg");
        FAIL() << "opened";
    } catch (MsgEx::ExCatalogueNotFound const& ex) {
        EXPECT_THAT(ex.getReason(), HasSubstr("msg/noSuchCatalogue.msg"));
    }
    // A failed guard leaves nothing open.
    MsgSubscription ok("MSG_OK");
    EXPECT_THROW(MsgServer::getInstance().subscribe(ok), MsgEx::ExUnknownId);
}

TEST(MsgProtocol, UnsubscribedMessageIsAClearError) {
    MsgSubscription never("MSG_NEVER_SUBSCRIBED");
    try {
        MsgWarning warning(never);
        FAIL() << "built";
    } catch (MsgEx::ExNotSubscribed const& ex) {
        EXPECT_THAT(ex.getReason(), HasSubstr("MSG_NEVER_SUBSCRIBED"));
    }
}

struct TestEx {
    QV_DECLARE_EX(ExCustom, ExBase);
};

TEST(MsgException, CarriesIdAndFinalTextAndKeepsItsTypeThroughCloneAndRaise) {
    TestFiles::TempDir dir;
    auto const file = dir.write("test.msg", "MSG_BAD_FILE = Cannot read %1\n");
    MsgSubscription subscription("MSG_BAD_FILE");
    {
        MsgFileGuard guard(file.string());
        MsgServer::getInstance().subscribe(subscription);
    }
    MsgError error(subscription);
    error.substitute("a.exr");
    MsgException<TestEx::ExCustom> const original(__FILE__, 7, error);
    EXPECT_EQ(original.getReason(), "Cannot read a.exr");
    EXPECT_STREQ(original.what(), "Cannot read a.exr");
    EXPECT_EQ(original.getMessageId(), "MSG_BAD_FILE");
    EXPECT_EQ(original.getLine(), 7);

    OPtrRet<ExBase> const copy = original.clone();
    try {
        copy->raise();
    } catch (MsgException<TestEx::ExCustom> const& ex) {
        EXPECT_EQ(ex.getMessageId(), "MSG_BAD_FILE");
        EXPECT_EQ(ex.getReason(), "Cannot read a.exr");
    } catch (...) {
        ADD_FAILURE() << "raised with another type";
    }
    EXPECT_THROW(MsgException<>(__FILE__, __LINE__, MsgWarning("plain")).raise(), ExBase);
}

TEST(MsgServerSink, DefaultSinkWritesSeverityAndTextOnStandardError) {
    MsgSink const previous = MsgServer::getInstance().setSink({});
    ::testing::internal::CaptureStderr();
    MsgWarning("Video frame larger than 1080P is not supported.").display();
    std::string const written = ::testing::internal::GetCapturedStderr();
    MsgServer::getInstance().setSink(previous);
    EXPECT_EQ(written, "warning: Video frame larger than 1080P is not supported.\n");
}

TEST(MsgServerSink, MessagesFromManyThreadsReachTheSinkWhole) {
    constexpr int kThreads = 4;
    constexpr int kMessages = 250;
    std::vector<std::string> received; // deliberately unguarded: the server serialises the sink
    MsgSinkGuard sink([&](MsgSeverity, std::string const& text) { received.push_back(text); });
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([t] {
            for (int i = 0; i < kMessages; ++i)
                MsgWarning("thread %1 message %2").substitute(t).substitute(i).display();
        });
    for (auto& thread : threads)
        thread.join();
    ASSERT_EQ(received.size(), std::size_t{kThreads * kMessages});
    std::sort(received.begin(), received.end());
    EXPECT_EQ(std::adjacent_find(received.begin(), received.end()), received.end());
    EXPECT_TRUE(std::binary_search(received.begin(), received.end(), std::string("thread 3 message 249")));
}

} // namespace
} // namespace Qv
