#include "rcShdPtr.h"
#include "rcStrongPtr.h"

#include <atomic>
#include <barrier>
#include <functional>
#include <gtest/gtest.h>
#include <thread>
#include <type_traits>
#include <vector>

using namespace Qv;

namespace {

// Counts live objects so that a test sees every destruction.
struct Tracked {
    static inline std::atomic<int> live{0};
    static inline std::atomic<int> destroyed{0};
    Tracked() { ++live; }
    Tracked(Tracked const&) { ++live; }
    Tracked& operator=(Tracked const&) = default;
    virtual ~Tracked() {
        --live;
        ++destroyed;
    }
};

struct Shape : RCBase<LkCounter<int>>, Tracked {
    int value = 7;
};
struct Circle : Shape {};
struct Square : Shape {};

// Destructor kept protected, as for records that only their pointer may delete.
class Sealed : public RCBase<LkCounter<int>>, public Tracked {
protected:
    ~Sealed() override = default;
};

struct Node : Tracked {
    int value = 3;
};
struct Leaf : Node {};
struct Other : Node {};

class RcPointerTest : public ::testing::Test {
protected:
    void SetUp() override {
        Tracked::live = 0;
        Tracked::destroyed = 0;
    }
    void TearDown() override { EXPECT_EQ(Tracked::live, 0) << "an object leaked"; }
};

} // namespace

// ---- Type rules --------------------------------------------------------------

static_assert(std::is_convertible_v<RCShdPtr<Shape>, RCShdPtr<Shape const>>);
static_assert(!std::is_convertible_v<RCShdPtr<Shape const>, RCShdPtr<Shape>>);
static_assert(!std::is_constructible_v<RCShdPtr<Shape>, RCShdPtr<Shape const>>);
static_assert(!std::is_same_v<RCShdPtr<Shape>, RCShdPtr<Shape const>>);
static_assert(std::is_convertible_v<RCShdPtr<Circle>, RCShdPtr<Shape>>);
static_assert(!std::is_convertible_v<RCShdPtr<Shape>, RCShdPtr<Circle>>);
static_assert(!std::is_convertible_v<Shape*, RCShdPtr<Shape>>, "adopting a bare pointer is explicit");

static_assert(std::is_convertible_v<RCStrongPtr<Node>, RCStrongPtr<Node const>>);
static_assert(!std::is_constructible_v<RCStrongPtr<Node>, RCStrongPtr<Node const>>);
static_assert(std::is_convertible_v<RCStrongPtr<Leaf>, RCStrongPtr<Node>>);
static_assert(!std::is_convertible_v<RCStrongPtr<Node>, RCStrongPtr<Leaf>>);
static_assert(std::is_convertible_v<RCWeakPtr<Node>, RCWeakPtr<Node const>>);
static_assert(!std::is_constructible_v<RCWeakPtr<Node>, RCWeakPtr<Node const>>);
static_assert(std::is_convertible_v<RCStrongPtr<Node>, RCWeakPtr<Node>>);
static_assert(!std::is_convertible_v<RCWeakPtr<Node>, RCStrongPtr<Node>>, "promotion is explicit");
static_assert(!std::is_convertible_v<Node*, RCStrongPtr<Node>>);

// ---- Null dereference and casts --------------------------------------------

TEST_F(RcPointerTest, NullDereferenceThrowsNamingThePointee) {
    RCShdPtr<Shape> shd;
    RCStrongPtr<Node const> strong;
    RCWeakPtr<Node> dead;
    {
        RCStrongPtr<Node> temp(new Node);
        dead = temp;
    }
    RCWeakAccessor<Node> accessor(dead);

    struct Case {
        char const* what;
        std::function<void()> deref;
        char const* typeName;
    };
    std::vector<Case> const cases = {
        {"RCShdPtr *", [&] { (void)*shd; }, "Shape"},
        {"RCShdPtr ->", [&] { (void)shd->value; }, "Shape"},
        {"RCStrongPtr *", [&] { (void)*strong; }, "Node"},
        {"RCStrongPtr ->", [&] { (void)strong->value; }, "Node"},
        {"RCWeakAccessor of a dead object", [&] { (void)accessor->value; }, "Node"},
    };
    for (auto const& c : cases) {
        try {
            c.deref();
            ADD_FAILURE() << c.what << " did not throw";
        } catch (RCEx::ExNullPtr const& ex) {
            EXPECT_NE(ex.getReason().find(c.typeName), std::string::npos) << c.what << ": " << ex.getReason();
        }
    }
}

TEST_F(RcPointerTest, CheckedCastOfShdPtr) {
    RCShdPtr<Shape> circle(new Circle);
    RCShdPtr<Shape const> constCircle = circle;

    RCShdPtr<Circle> asCircle = rcCast<Circle>(circle);
    EXPECT_EQ(asCircle.get(), circle.get());
    EXPECT_EQ(circle->getRefCount(), 3);
    EXPECT_EQ(rcCast<Circle const>(constCircle).get(), circle.get());

    try {
        rcCast<Square>(circle);
        FAIL() << "a circle became a square";
    } catch (RCEx::ExCastFailed const& ex) {
        EXPECT_NE(ex.getReason().find("Circle"), std::string::npos) << ex.getReason();
        EXPECT_NE(ex.getReason().find("Square"), std::string::npos) << ex.getReason();
    }
    EXPECT_EQ(circle->getRefCount(), 3) << "a failed cast must not leak a reference";

    EXPECT_TRUE(rcCast<Square>(RCShdPtr<Shape>()).isNull()) << "null casts to null, it is no failure";
    EXPECT_TRUE(rcDynamicCast<Square>(circle).isNull());
    EXPECT_EQ(rcDynamicCast<Circle>(circle), circle);
}

TEST_F(RcPointerTest, CheckedCastOfStrongPtrSharesOwnership) {
    RCStrongPtr<Node> leaf(new Leaf);
    RCWeakPtr<Node> watch = leaf;
    RCStrongPtr<Leaf> asLeaf = rcCast<Leaf>(leaf);
    EXPECT_EQ(leaf.getStrongCount(), 2);

    EXPECT_THROW(rcCast<Other>(leaf), RCEx::ExCastFailed);
    EXPECT_TRUE(rcCast<Other>(RCStrongPtr<Node>()).isNull());
    EXPECT_TRUE(rcDynamicCast<Other>(leaf).isNull());
    EXPECT_EQ(leaf.getStrongCount(), 2);

    leaf.reset();
    EXPECT_FALSE(watch.isExpired()) << "the cast result owns the object too";
    asLeaf.reset();
    EXPECT_TRUE(watch.isExpired());
    EXPECT_EQ(Tracked::destroyed, 1);
}

// ---- RCShdPtr counting -----------------------------------------------------

TEST_F(RcPointerTest, ShdPtrCountsThroughCopiesMovesAndSelfAssignment) {
    RCShdPtr<Shape> a(new Shape);
    RCShdPtr<Shape> b = a;
    EXPECT_EQ(a->getRefCount(), 2);
    b = b;
    EXPECT_EQ(a->getRefCount(), 2);
    b = std::move(b);
    EXPECT_EQ(b, a);
    EXPECT_EQ(a->getRefCount(), 2);
    RCShdPtr<Shape> c = std::move(b);
    EXPECT_TRUE(b.isNull());
    EXPECT_EQ(a->getRefCount(), 2);
    a = c; // same object on both sides
    EXPECT_EQ(a->getRefCount(), 2);
    // Rebuilding from a bare pointer joins the count, it does not start another.
    RCShdPtr<Shape> d(c.get());
    EXPECT_EQ(a->getRefCount(), 3);
    a.reset();
    c.reset();
    EXPECT_EQ(Tracked::destroyed, 0);
    d.reset(new Shape);
    EXPECT_EQ(Tracked::destroyed, 1);
    d = nullptr;
    EXPECT_EQ(Tracked::destroyed, 2);
}

TEST_F(RcPointerTest, CopyOfACountedObjectStartsItsOwnCount) {
    RCShdPtr<Shape> a(new Shape);
    RCShdPtr<Shape> a2 = a;
    RCShdPtr<Shape> copy(new Shape(*a));
    EXPECT_EQ(copy->getRefCount(), 1);
    *copy = *a;
    EXPECT_EQ(copy->getRefCount(), 1);
    EXPECT_EQ(a->getRefCount(), 2);
}

TEST_F(RcPointerTest, ProtectedDestructorIsReachedThroughTheCount) {
    RCShdPtr<Sealed const> p(new Sealed);
    p.reset();
    EXPECT_EQ(Tracked::destroyed, 1);
}

TEST_F(RcPointerTest, CountsStayExactUnderThreads) {
    RCShdPtr<Shape> shd(new Shape);
    RCStrongPtr<Node> strong(new Node);
    RCWeakPtr<Node> weak = strong;
    constexpr int kThreads = 4;
    constexpr int kRounds = 20000;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < kRounds; ++i) {
                RCShdPtr<Shape const> s = shd;
                RCStrongPtr<Node const> p = strong;
                RCWeakPtr<Node> w = weak;
                RCStrongPtr<Node> q(w);
                ASSERT_FALSE(q.isNull());
            }
        });
    }
    for (auto& t : threads)
        t.join();
    EXPECT_EQ(shd->getRefCount(), 1);
    EXPECT_EQ(strong.getStrongCount(), 1);
    EXPECT_EQ(Tracked::destroyed, 0);
}

// ---- Strong and weak pointers ---------------------------------------------

TEST_F(RcPointerTest, DeadWeakPointerGivesNullAndNeverResurrects) {
    RCStrongPtr<Node> strong(new Node);
    RCWeakPtr<Node> weak = strong;
    RCWeakPtr<Node const> constWeak = weak;
    EXPECT_FALSE(weak.isExpired());
    {
        RCWeakAccessor<Node> access(weak);
        ASSERT_FALSE(access.isNull());
        EXPECT_EQ(access->value, 3);
        strong.reset();
        EXPECT_EQ(Tracked::destroyed, 0) << "the accessor keeps it alive for its scope";
    }
    EXPECT_EQ(Tracked::destroyed, 1);
    EXPECT_TRUE(weak.isExpired());
    EXPECT_FALSE(weak.isNull()) << "it still names the object it watched";
    EXPECT_TRUE(weak.getStrong().isNull());
    EXPECT_TRUE(RCStrongPtr<Node const>(constWeak).isNull());
    EXPECT_TRUE(RCWeakAccessor<Node>(weak).isNull());
    EXPECT_TRUE(RCWeakPtr<Node const>(weak).isExpired()) << "converting a dead weak pointer";
    EXPECT_TRUE(weak.getStrong().isNull()) << "a failed promotion must not have revived the count";
    EXPECT_EQ(Tracked::destroyed, 1);
}

TEST_F(RcPointerTest, StrongAssignmentsKeepExactCounts) {
    struct Case {
        char const* what;
        std::function<void(RCStrongPtr<Node>& a, RCStrongPtr<Node>& b)> op;
        int strongA, strongB, destroyed;
    };
    // a and b start on two objects; a shares its object with a third pointer.
    std::vector<Case> const cases = {
        {"self copy", [](auto& a, auto&) { a = a; }, 2, 1, 0},
        {"self move", [](auto& a, auto&) { a = std::move(a); }, 2, 1, 0},
        {"copy over a sole owner", [](auto& a, auto& b) { b = a; }, 3, 3, 1},
        {"move over a sole owner", [](auto& a, auto& b) { b = std::move(a); }, 0, 2, 1},
        {"copy between sharers", [](auto& a, auto& b) { b = a, a = b; }, 3, 3, 1},
        {"swap", [](auto& a, auto& b) { a.swap(b); }, 1, 2, 0},
        {"reset", [](auto& a, auto&) { a.reset(); }, 0, 1, 0},
        {"reset to a new object", [](auto&, auto& b) { b.reset(new Node); }, 2, 1, 1},
    };
    for (auto const& c : cases) {
        Tracked::destroyed = 0;
        {
            RCStrongPtr<Node> a(new Node);
            RCStrongPtr<Node> third = a;
            RCStrongPtr<Node> b(new Node);
            c.op(a, b);
            EXPECT_EQ(a.getStrongCount(), c.strongA) << c.what;
            EXPECT_EQ(b.getStrongCount(), c.strongB) << c.what;
            EXPECT_EQ(Tracked::destroyed, c.destroyed) << c.what;
        }
        EXPECT_EQ(Tracked::live, 0) << c.what;
    }
}

TEST_F(RcPointerTest, WeakAssignmentsAndIdentity) {
    RCStrongPtr<Node> a(new Node);
    RCStrongPtr<Node> b(new Node);
    RCWeakPtr<Node> wa = a;
    RCWeakPtr<Node> wb = b;
    wa = wa;
    wa = std::move(wa);
    EXPECT_FALSE(wa.isExpired());
    RCWeakPtr<Node> wa2 = wa;
    EXPECT_TRUE(wa2 == wa);
    EXPECT_FALSE(wa == wb);
    wb = wa;
    EXPECT_TRUE(wb == wa);
    b.reset(); // wb no longer watched it: it dies now
    EXPECT_EQ(Tracked::destroyed, 1);
    RCWeakPtr<Node> moved = std::move(wa2);
    EXPECT_TRUE(wa2.isNull());
    EXPECT_TRUE(moved == wa);
    a.reset();
    EXPECT_TRUE(moved == wa) << "identity survives the object";
    EXPECT_TRUE(RCWeakPtr<Node>().isExpired());
}

TEST_F(RcPointerTest, ObjectDiesWithLastStrongEvenThroughABasePointer) {
    RCStrongPtr<Node const> base;
    {
        auto leaf = std::make_unique<Leaf>();
        base = RCStrongPtr<Leaf>(std::move(leaf));
    }
    RCWeakPtr<Node const> weak = base;
    base.reset();
    EXPECT_EQ(Tracked::destroyed, 1);
    EXPECT_TRUE(weak.isExpired());
}

TEST(RcSWCountTest, CountsFollowOwnersAndPromotionRefusesZero) {
    RCSWCount<LkCounter<int>> counts; // one strong owner
    counts.addWeak();
    EXPECT_TRUE(counts.tryAddStrong());
    EXPECT_EQ(counts.getStrongCount(), 2);
    EXPECT_EQ(counts.getBlockCount(), 3);
    EXPECT_FALSE(counts.releaseStrong());
    EXPECT_FALSE(counts.releaseBlock());
    EXPECT_TRUE(counts.releaseStrong()) << "last strong owner destroys the object";
    EXPECT_TRUE(counts.isExpired());
    EXPECT_FALSE(counts.tryAddStrong());
    EXPECT_EQ(counts.getStrongCount(), 0);
    EXPECT_EQ(counts.getBlockCount(), 2);
    EXPECT_FALSE(counts.releaseBlock());
    EXPECT_TRUE(counts.releaseBlock()) << "the last holder frees the block";
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
    RCStrongPtr<Probe> strong;
    RCWeakPtr<Probe> weak;
    std::atomic<int> promotions{0};
    std::atomic<int> failures{0};
    std::barrier sync(3); // the releaser, the promoter and this thread
    std::thread releaser([&] {
        for (int round = 0; round < kRounds; ++round) {
            sync.arrive_and_wait();
            strong.reset();
            sync.arrive_and_wait();
        }
    });
    std::thread promoter([&] {
        for (int round = 0; round < kRounds; ++round) {
            sync.arrive_and_wait();
            bool sawDead = false;
            for (int i = 0; i < 20; ++i) {
                RCWeakAccessor<Probe> access(weak);
                if (access.isNull()) {
                    sawDead = true;
                } else if (sawDead || !access->alive) {
                    ++failures;
                } else {
                    ++promotions;
                }
            }
            sync.arrive_and_wait();
        }
    });
    for (int round = 0; round < kRounds; ++round) {
        strong = RCStrongPtr<Probe>(std::make_unique<Probe>());
        weak = strong;
        sync.arrive_and_wait();
        sync.arrive_and_wait();
        ASSERT_TRUE(weak.isExpired());
        ASSERT_TRUE(weak.getStrong().isNull());
    }
    releaser.join();
    promoter.join();
    EXPECT_EQ(failures, 0) << "a promotion reached a dead object";
    EXPECT_GT(promotions, 0);
}
