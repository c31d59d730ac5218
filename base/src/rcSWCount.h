#pragma once
// Control block of strong and weak ownership, kept apart from the object so
// that weak holders can still ask about an object that is gone.
//
// Every handle counts in the block count; strong handles count in the strong
// count as well. Whoever brings the strong count to zero destroys the object;
// whoever brings the block count to zero frees the block. A weak holder
// becomes strong only through tryAddStrong, which never moves the strong count
// away from zero: once the object's destruction has been decided, nobody gets
// it back.
#include "lkCounter.h"

namespace Qv {

template <class Counter>
class RCSWCount {
public:
    // Born owned by one strong handle.
    RCSWCount() noexcept : _blockCount(1), _strongCount(1) {}
    RCSWCount(RCSWCount const&) = delete;
    RCSWCount& operator=(RCSWCount const&) = delete;

    int getStrongCount() const noexcept { return _strongCount.get(); }
    int getBlockCount() const noexcept { return _blockCount.get(); }
    bool isExpired() const noexcept { return _strongCount.get() == 0; }

    // A copy of a strong handle: the caller already holds a strong count.
    void addStrong() noexcept {
        _strongCount.increment();
        _blockCount.increment();
    }

    // Promotion of a weak holder (which keeps the block alive meanwhile).
    // Refuses, and returns false, when the object is dead or dying.
    [[nodiscard]] bool tryAddStrong() noexcept {
        int count = _strongCount.get();
        while (count > 0) {
            if (_strongCount.compareAndSwap(count, count + 1)) {
                _blockCount.increment();
                return true;
            }
        }
        return false;
    }

    void addWeak() noexcept { _blockCount.increment(); }

    // Drops a strong count only. True when it was the last: the caller must
    // destroy the object, then still call releaseBlock for its block count.
    [[nodiscard]] bool releaseStrong() noexcept { return _strongCount.decrement() == 0; }

    // Drops a block count. True when it was the last: the caller frees the block.
    [[nodiscard]] bool releaseBlock() noexcept { return _blockCount.decrement() == 0; }

private:
    Counter _blockCount;
    Counter _strongCount;
};

} // namespace Qv
