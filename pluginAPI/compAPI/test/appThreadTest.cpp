#include "inInitMgr.h"
#include "piAppThread.h"

#include <gtest/gtest.h>
#include <thread>

using namespace Qv;

TEST(PiAppThread, IsTheThreadThatInitialisedThePackages) {
    bool onOther = true;
    std::thread([&] {
        InInitMgr::getInstance().initializeAll();
        onOther = PiAppThread::isCurrent();
    }).join();
    EXPECT_TRUE(onOther);
    EXPECT_FALSE(PiAppThread::isCurrent());
    InInitMgr::getInstance().initializeAll();
    EXPECT_TRUE(PiAppThread::isCurrent());
    InInitMgr::getInstance().finalizeAll();
}
