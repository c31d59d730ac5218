// Messages from subscription to display: substitution, catalogue scopes,
// severities, the sink and message exceptions.
#include "../../base/test/baseTestHelpers.h"
#include "msgCatalogue.h"
#include "msgError.h"
#include "msgEx.h"
#include "msgException.h"
#include "msgFileGuard.h"
#include "msgServer.h"
#include "msgSubscription.h"

#include <algorithm>
#include <thread>
#include <utility>
#include <vector>

namespace Qv {
namespace {

using namespace TestHelpers;
using Captured = std::vector<std::pair<MsgSeverity, std::string>>;
using MsgServerTest = TempDirTest;

void subscribe(MsgSubscription& subscription) {
    MsgServer::getInstance().subscribe(subscription);
}

// Unfilled placeholders stay visible, whole: %10 is not %1 followed by 0. A
// value is inserted as it is, never expanded again.
TEST(MsgProtocolSubstitute, FillsPlaceholdersByNumberInCallOrder) {
    struct Case {
        char const* text;
        std::vector<std::string> values;
        char const* expected;
    } const cases[] = {
        {"%2 before %1", {"a", "b"}, "b before a"},
        {"%1 %2 %10", {"v1", "v2", "v3", "v4", "v5", "v6", "v7", "v8", "v9", "v10"}, "v1 v2 v10"},
        {"%1%1", {"ab"}, "abab"},
        {"%1 %10", {"x"}, "x %10"},
        {"%0, % and 100%", {"a"}, "%0, % and 100%"},
        {"ends with %", {}, "ends with %"},
        {"%99999999999999999999999", {"a"}, "%99999999999999999999999"},
        {"%1/%2", {"%2", "b"}, "%2/b"}};
    for (auto const& c : cases) {
        MsgWarning message{std::string(c.text)};
        for (auto const& value : c.values)
            message.substitute(value);
        EXPECT_EQ(message.getText(), c.expected) << c.text;
    }
    EXPECT_EQ(MsgWarning("%1 %2").substitute(-7).substitute(std::size_t{18446744073709551615u}).getText(),
              "-7 18446744073709551615");
}

struct TestEx {
    QV_DECLARE_EX(ExCustom, ExBase);
};

TEST_F(MsgServerTest, SubscribedMessagesReachTheSinkWithTheirSeverityOrAnExceptionWithTheirId) {
    auto const file = writeFile("test.msg", "MSG_A = Node %1 has %2 inputs\nMSG_B = Render finished\n");
    MsgSubscription a("MSG_A"), b("MSG_B");
    {
        MsgFileGuard guard(file);
        subscribe(a);
        subscribe(b);
    }
    // Subscriptions keep their text after the catalogue is closed.
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

    // An exception built from a message keeps its id, final text and type through clone and raise.
    OPtrRet<ExBase> const copy =
        MsgException<TestEx::ExCustom>(__FILE__, 7, MsgError(a).substitute("Blur").substitute(3)).clone();
    auto const* typed = dynamic_cast<MsgException<TestEx::ExCustom> const*>(copy.get());
    ASSERT_NE(typed, nullptr);
    EXPECT_EQ(typed->getMessageId(), "MSG_A");
    EXPECT_STREQ(typed->what(), "Node Blur has 3 inputs");
    EXPECT_THROW(copy->raise(), MsgException<TestEx::ExCustom>);
    EXPECT_THROW(MsgException<>(__FILE__, __LINE__, MsgWarning("plain")).raise(), ExBase);
}

TEST_F(MsgServerTest, GuardClosesItsCatalogueAndOnlyItsOwn) {
    auto const outerFile = writeFile("outer.msg", "MSG_OUTER = outer\nMSG_BOTH = from outer\n");
    auto const innerFile = writeFile("inner.msg", "MSG_INNER = inner\nMSG_BOTH = from inner\n");
    MsgSubscription outer("MSG_OUTER"), inner("MSG_INNER"), both("MSG_BOTH");
    {
        MsgFileGuard outerGuard(outerFile);
        {
            MsgFileGuard innerGuard(innerFile);
            subscribe(both);
            EXPECT_EQ(both.getText(), "from inner"); // the latest catalogue is asked first
        }
        EXPECT_TRUE(throwsWith<MsgEx::ExUnknownId>([&] { subscribe(inner); }, "MSG_INNER", "outer.msg"));
        subscribe(both);
        EXPECT_EQ(both.getText(), "from outer");
    }
    EXPECT_TRUE(
        throwsWith<MsgEx::ExUnknownId>([&] { subscribe(outer); }, "MSG_OUTER", "no catalogue is open"));
    EXPECT_FALSE(outer.isSubscribed());
    EXPECT_TRUE(throwsWith<MsgEx::ExNotSubscribed>([&] { MsgWarning{outer}; }, "MSG_OUTER"));
}

TEST_F(MsgServerTest, BadCatalogueFilesFailTheGuardWithFileAndLine) {
    auto const bad = writeFile("bad.msg", "# header\nMSG_OK = ok\nMSG_BROKEN\n");
    EXPECT_TRUE(throwsWith<MsgEx::ExMalformedCatalogue>([&] { MsgFileGuard{bad}; }, bad + ", line 3"));
    // A bare name is looked for in the resources' msg folder, and the error says where.
    EXPECT_TRUE(throwsWith<MsgEx::ExCatalogueNotFound>([&] { MsgFileGuard{"noSuchCatalogue.msg"}; },
                                                       "msg/noSuchCatalogue.msg"));
    // A failed guard leaves nothing open.
    MsgSubscription ok("MSG_OK");
    EXPECT_THROW(subscribe(ok), MsgEx::ExUnknownId);
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
    std::vector<std::string> received; // deliberately unguarded: the server serialises the sink
    MsgSinkGuard sink([&](MsgSeverity, std::string const& text) { received.push_back(text); });
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([t] {
            for (int i = 0; i < 250; ++i)
                MsgWarning("thread %1 message %2").substitute(t).substitute(i).display();
        });
    for (auto& thread : threads)
        thread.join();
    std::sort(received.begin(), received.end());
    EXPECT_EQ(std::unique(received.begin(), received.end()) - received.begin(), 1000);
    EXPECT_TRUE(std::binary_search(received.begin(), received.end(), std::string("thread 3 message 249")));
}

} // namespace
} // namespace Qv
