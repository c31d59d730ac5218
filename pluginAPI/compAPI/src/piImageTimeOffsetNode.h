#pragma once
// An image moved along the time line: at time t it gives its input at
// t + k frames of the input's own rate, k read from an integer value node.
// What the input says of its validity is moved back by the same amount, and
// an invalidation of the input reaches the nodes above moved back too, over
// every shift this node has served, so that caches above it keep exactly what
// still holds. An input without a positive rate is not shifted.
#include "pxAnimValueProtocol.h"
#include "pxImageNode.h"

#include <mutex>

namespace Qv {

class PiImageTimeOffsetNode : public PxImageNode {
public:
    PiImageTimeOffsetNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& image,
                          PxNodePtr<PxAnimValueProtocol<int> const> const& frameOffset);
    ~PiImageTimeOffsetNode() override;

    // Builds and initialises the node; the offset must give integers.
    static PxStrongHndl<PxImageProtocol> create(PxStrongHndl<PxNode const> const& image,
                                                PxStrongHndl<PxNode const> const& frameOffset);

    void init() override;
    PxRODResult getImageROD(PxTimeStreamContext const& context) const override;
    PxImageResult getImageResult(PxImageContext const& context) const override;
    bool propagateAndRemapInvalidation(PxValidityInterval* interval, PxUPtr<PxNode const> const& child,
                                       int* stream) const override;

    // `interval` moved by `seconds`; the host's time limits stand for an open
    // end and stay where they are, other ends stay within the limits.
    static PxValidityInterval shiftInterval(PxValidityInterval const& interval, double seconds);
    // An interval of the input, read at `inputTime`, as an interval of a node
    // that shifts time by `shift` seconds, asked at `time`. The two times
    // correspond exactly: an end at the input's time is an end at the time
    // asked for, and an interval that held the one holds the other, however
    // the shift rounds (interpolated keys give intervals of one instant).
    static PxValidityInterval mapIntervalBack(PxValidityInterval const& interval, double inputTime,
                                              double time, double shift);

private:
    // The shift in seconds at `time`; narrows `interval` to where it holds.
    double computeShift(double time, PxValidityInterval& interval) const;
    void recordShift(double seconds) const;

    PxNodePtr<PxAnimValueProtocol<int> const> _frameOffset;
    mutable std::mutex _shiftsLock;
    // The smallest and largest shift served so far; none when min > max.
    mutable double _minShift = 1.0;
    mutable double _maxShift = -1.0;
};

} // namespace Qv
