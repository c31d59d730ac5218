// Opens the expression catalogue and starts the parser for every test of the
// program, as the package's initialise step does in the host.
#include "btExpParser.h"
#include "msgFileGuard.h"

#include <gtest/gtest.h>

namespace {

class ExpParserEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        Qv::MsgFileGuard catalogue("expressions.msg");
        Qv::BtExpParser::initialize();
    }
    void TearDown() override { Qv::BtExpParser::finalize(); }
};

::testing::Environment* const gEnvironment = ::testing::AddGlobalTestEnvironment(new ExpParserEnvironment);

} // namespace
