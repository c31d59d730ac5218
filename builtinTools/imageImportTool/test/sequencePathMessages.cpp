// Subscribes the sequence path messages for every test of the program, as the
// package's initialise step does in the host.
#include "btSequencePathBuilder.h"
#include "msgFileGuard.h"

#include <gtest/gtest.h>

namespace {

class SequencePathMessages : public ::testing::Environment {
public:
    void SetUp() override {
        Qv::MsgFileGuard catalogue("imageImport.msg");
        Qv::BtSequencePathBuilder::initialize();
    }
};

::testing::Environment* const gMessages = ::testing::AddGlobalTestEnvironment(new SequencePathMessages);

} // namespace
