#include "baseTestHelpers.h"
#include "rcShdPtr.h"
#include "rcStrongPtr.h"

#include <atomic>
#include <barrier>
#include <gtest/gtest.h>
#include <thread>
#include <type_traits>
#include <vector>

using namespace Qv;
using namespace Qv::TestHelpers;

namespace {

// Counts live objects so that a test sees every destruction.
struct Tracked {
    static inline std::atomic<int> live{0};
    static inline std::atomic<int> destroyed{0};
    Tracked() { ++live; }
    Tracked(Tracked const&) { ++live; }
    Tracked& operator=(Tracked const&) = default;
    virtual ~Tracked() { --live, ++destroyed; }
};

struct Shape : RCBase<LkCounter<int>>, Tracked {
    int value = 7;
};
struct Circle : Shape {};
struct Square : Shape {};

struct Node : Tracked {
    int value = 3;
};
struct Leaf : Node {};
struct Other : Node {};

class RcPointerTest : public ::testing::Test {
protected:
    void SetUp() override { Tracked::live = Tracked::destroyed = 0; }
    void TearDown() override { EXPECT_EQ(Tracked::live, 0) << "an object leaked"; }
};

// Const is never cast away, downcasts and adoption of bare pointers are explicit.
static_assert(!std::is_constructible_v<RCShdPtr<Shape>, RCShdPtr<Shape const>>);
static_assert(!std::is_convertible_v<RCShdPtr<Shape>, RCShdPtr<Circle>>);
static_assert(!std::is_convertible_v<Shape*, RCShdPtr<Shape>>);
static_assert(!std::is_constructible_v<RCStrongPtr<Node>, RCStrongPtr<Node const>>);
static_assert(!std::is_convertible_v<RCStrongPtr<Node>, RCStrongPtr<Leaf>>);
static_assert(!std::is_constructible_v<RCWeakPtr<Node>, RCWeakPtr<Node const>>);
static_assert(!std::is_convertible_v<RCWeakPtr<Node>, RCStrongPtr<Node>>, "promotion is explicit");
static_assert(!std::is_convertible_v<Node*, RCStrongPtr<Node>>);

TEST_F(RcPointerTest, NullDereferenceAndFailedCastsNameTheTypes) {
    RCShdPtr<Shape> shd;
    RCStrongPtr<Node const> strong;
    RCWeakPtr<Node> weak = RCStrongPtr<Node>(new Node); // dies at once
    RCWeakAccessor<Node> dead(weak);
    EXPECT_TRUE(throwsWith<RCEx::ExNullPtr>([&] { (void)*shd; }, "Shape"));
    EXPECT_TRUE(throwsWith<RCEx::ExNullPtr>([&] { (void)strong->value; }, "Node"));
    EXPECT_TRUE(throwsWith<RCEx::ExNullPtr>([&] { (void)dead->value; }, "Node"));

    RCShdPtr<Shape> circle(new Circle);
    RCShdPtr<Circle> asCircle = rcCast<Circle>(circle);
    EXPECT_EQ(rcCast<Circle const>(RCShdPtr<Shape const>(circle)), circle);
    EXPECT_TRUE(throwsWith<RCEx::ExCastFailed>([&] { rcCast<Square>(circle); }, "Circle", "Square"));
    EXPECT_EQ(circle->getRefCount(), 2) << "a failed cast must not leak a reference";
    EXPECT_TRUE(rcCast<Square>(RCShdPtr<Shape>()).isNull()) << "null casts to null, it is no failure";
    EXPECT_TRUE(rcDynamicCast<Square>(circle).isNull());

    RCStrongPtr<Node> leaf(new Leaf);
    RCWeakPtr<Node> watch = leaf;
    RCStrongPtr<Leaf> asLeaf = rcCast<Leaf>(leaf);
    EXPECT_TRUE(throwsWith<RCEx::ExCastFailed>([&] { rcCast<Other>(leaf); }, "Leaf", "Other"));
    EXPECT_TRUE(rcDynamicCast<Other>(leaf).isNull());
    EXPECT_EQ(leaf.getStrongCount(), 2);
    leaf.reset();
    EXPECT_FALSE(watch.isExpired()) << "the cast result owns the object too";
    asLeaf.reset();
    EXPECT_TRUE(watch.isExpired());
}

TEST_F(RcPointerTest, CountsStayExactThroughSelfAssignmentMovesAndCopiesOfTheObject) {
    RCShdPtr<Shape> a(new Shape);
    RCShdPtr<Shape> b = a;
    b = b;
    b = std::move(b);
    a = b; // same object on both sides
    EXPECT_EQ(a->getRefCount(), 2);
    RCShdPtr<Shape> c = std::move(b);
    EXPECT_TRUE(b.isNull());
    RCShdPtr<Shape> d(c.get()); // a bare pointer joins the count, it does not start another
    EXPECT_EQ(a->getRefCount(), 3);
    // Copying the object must not copy its count.
    RCShdPtr<Shape> copy(new Shape(*a));
    *copy = *a;
    EXPECT_EQ(copy->getRefCount(), 1);
    EXPECT_EQ(a->getRefCount(), 3);
    a.reset(), c.reset(), d = nullptr;
    EXPECT_EQ(Tracked::destroyed, 1);

    RCStrongPtr<Node> e(new Node), f(new Node), g(new Node);
    RCStrongPtr<Node> third = e;
    e = e;
    e = std::move(e);
    EXPECT_EQ(e.getStrongCount(), 2);
    f = e; // over a sole owner
    EXPECT_EQ(Tracked::destroyed, 2);
    g = std::move(f);
    EXPECT_TRUE(f.isNull());
    EXPECT_EQ(Tracked::destroyed, 3);
    e.swap(f);
    EXPECT_EQ(f.getStrongCount(), 3);
}

TEST_F(RcPointerTest, DeadWeakPointerGivesNullAndNeverResurrects) {
    RCStrongPtr<Node const> strong(RCStrongPtr<Leaf>(std::make_unique<Leaf>()));
    RCWeakPtr<Node const> weak = strong;
    RCWeakPtr<Node const> copy = weak;
    copy = copy;
    {
        RCWeakAccessor<Node const> access(weak);
        ASSERT_FALSE(access.isNull());
        strong.reset();
        EXPECT_EQ(access->value, 3);
        EXPECT_EQ(Tracked::destroyed, 0) << "the accessor keeps it alive for its scope";
    }
    EXPECT_EQ(Tracked::destroyed, 1) << "the last owner deletes through the base pointer";
    EXPECT_TRUE(weak.isExpired());
    EXPECT_TRUE(copy == weak) << "identity survives the object";
    EXPECT_TRUE(RCWeakAccessor<Node const>(copy).isNull());
    EXPECT_TRUE(weak.getStrong().isNull()) << "a failed promotion must not have revived the count";
}

TEST_F(RcPointerTest, CountsStayExactUnderThreads) {
    RCShdPtr<Shape> shd(new Shape);
    RCStrongPtr<Node> strong(new Node);
    RCWeakPtr<Node> weak = strong;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 20000; ++i) {
                RCShdPtr<Shape const> s = shd;
                RCStrongPtr<Node> q{RCWeakPtr<Node>(weak)};
                ASSERT_FALSE(q.isNull());
            }
        });
    for (auto& t : threads)
        t.join();
    EXPECT_EQ(shd->getRefCount(), 1);
    EXPECT_EQ(strong.getStrongCount(), 1);
}

// The last strong release races with promotions of weak pointers: either a
// promotion wins and sees a whole object, or it gets null; the object dies
// exactly once, and never after a promotion has seen it dead.
TEST_F(RcPointerTest, PromotionRacingTheLastReleaseNeverResurrects) {
    struct Probe {
        std::atomic<bool> alive{true};
        ~Probe() { alive = false; }
    };
    constexpr int kRounds = 3000;
    RCWeakPtr<Probe> weak;
    std::atomic<int> promotions{0}, failures{0};
    std::barrier sync(2); // this thread releases, the other one promotes
    std::thread promoter([&] {
        for (int round = 0; round < kRounds; ++round) {
            sync.arrive_and_wait();
            bool sawDead = false;
            for (int i = 0; i < 20; ++i) {
                RCWeakAccessor<Probe> access(weak);
                if (access.isNull())
                    sawDead = true;
                else
                    ++(sawDead || !access->alive ? failures : promotions);
            }
            sync.arrive_and_wait();
        }
    });
    for (int round = 0; round < kRounds; ++round) {
        RCStrongPtr<Probe> strong(std::make_unique<Probe>());
        weak = strong;
        sync.arrive_and_wait();
        strong.reset();
        sync.arrive_and_wait();
        EXPECT_TRUE(weak.getStrong().isNull());
    }
    promoter.join();
    // How often a promotion wins depends on the scheduler; that none ever
    // reached a dead object does not.
    EXPECT_EQ(failures, 0) << "a promotion reached a dead object";
}

} // namespace
