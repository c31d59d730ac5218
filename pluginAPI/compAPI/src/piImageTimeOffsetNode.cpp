#include "piImageTimeOffsetNode.h"

#include "assertions.h"

#include <algorithm>

namespace Qv {

PiImageTimeOffsetNode::PiImageTimeOffsetNode(PxNode::Init const& init,
                                             PxNodePtr<PxImageProtocol const> const& image,
                                             PxNodePtr<PxAnimValueProtocol<int> const> const& frameOffset)
    : PxNode(init), PxImageNode(init, image), _frameOffset(frameOffset) {
    QV_ASSERT(!_frameOffset.isNull());
}

PiImageTimeOffsetNode::~PiImageTimeOffsetNode() {
    unregisterChild(_frameOffset);
}

PxStrongHndl<PxImageProtocol> PiImageTimeOffsetNode::create(PxStrongHndl<PxNode const> const& image,
                                                            PxStrongHndl<PxNode const> const& frameOffset) {
    PxNode::Init init;
    PxStrongHndl<PiImageTimeOffsetNode> node(
        new PiImageTimeOffsetNode(init, PxNodePtr<PxImageProtocol const>(image),
                                  PxNodePtr<PxAnimValueProtocol<int> const>(frameOffset)));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

void PiImageTimeOffsetNode::init() {
    PxImageNode::init();
    registerChild(_frameOffset);
}

PxValidityInterval PiImageTimeOffsetNode::shiftInterval(PxValidityInterval const& interval, double seconds) {
    if (interval.isEmpty() || seconds == 0.0)
        return interval;
    auto move = [seconds](double t) {
        if (t <= PxValidityInterval::TIME_MIN || t >= PxValidityInterval::TIME_MAX)
            return t;
        return std::clamp(t + seconds, PxValidityInterval::TIME_MIN, PxValidityInterval::TIME_MAX);
    };
    return PxValidityInterval(move(interval.getStart()), move(interval.getEnd()));
}

double PiImageTimeOffsetNode::computeShift(double time, PxValidityInterval& interval) const {
    PxResult<int> offset;
    // Read through the held pointer, as regions of definition are also asked
    // for outside the workers.
    _frameOffset->getAnimValue(offset, PxTimeContext(time));
    offset.reduceVI(interval);
    PxResult<PxImageFormat> const format = getImageFormat();
    format.reduceVI(interval);
    Rational const& rate = format.getValue().getRate();
    double const framesPerSecond = rate.getDenominator() != 0 ? rate.getDouble() : 0.0;
    double const seconds = framesPerSecond > 0.0 ? offset.getValue() / framesPerSecond : 0.0;
    recordShift(seconds);
    return seconds;
}

void PiImageTimeOffsetNode::recordShift(double seconds) const {
    std::lock_guard<std::mutex> lock(_shiftsLock);
    if (_minShift > _maxShift) {
        _minShift = _maxShift = seconds;
        return;
    }
    _minShift = std::min(_minShift, seconds);
    _maxShift = std::max(_maxShift, seconds);
}

PxValidityInterval PiImageTimeOffsetNode::mapIntervalBack(PxValidityInterval const& interval,
                                                          double inputTime, double time, double shift) {
    PxValidityInterval const moved = shiftInterval(interval, -shift);
    if (!interval.contains(inputTime))
        return moved;
    double const start = interval.getStart() == inputTime ? time : std::min(moved.getStart(), time);
    double const end = interval.getEnd() == inputTime ? time : std::max(moved.getEnd(), time);
    return PxValidityInterval(start, end);
}

PxRODResult PiImageTimeOffsetNode::getImageROD(PxTimeStreamContext const& context) const {
    PxValidityInterval interval = PxValidityInterval::FULL;
    double const shift = computeShift(context.getTime(), interval);
    PxRODResult rod =
        getInput()->getImageROD(PxTimeStreamContext(context.getTime() + shift, context.getStream()));
    rod.setVI(shiftInterval(rod.getVI(), -shift).getIntersection(interval));
    return rod;
}

PxImageResult PiImageTimeOffsetNode::getImageResult(PxImageContext const& context) const {
    PxValidityInterval interval = PxValidityInterval::FULL;
    double const shift = computeShift(context.getTime(), interval);
    double const inputTime = context.getTime() + shift;
    PxImageResult result = PxUPtr<PxImageProtocol const>(getInput())
                               ->getImageResult(PxImageContext(inputTime, context.getTilePosition(),
                                                               context.getProxyScale(), context.getStream()));
    result.setVI(
        mapIntervalBack(result.getVI(), inputTime, context.getTime(), shift).getIntersection(interval));
    return result;
}

bool PiImageTimeOffsetNode::propagateAndRemapInvalidation(PxValidityInterval* interval,
                                                          PxUPtr<PxNode const> const& child, int*) const {
    // A change of the offset changes this node's results at the times it
    // changed; only the image's times are moved.
    if (child.get() != static_cast<PxNode const*>(getInput().get()))
        return true;
    double minShift = 0.0, maxShift = 0.0;
    {
        std::lock_guard<std::mutex> lock(_shiftsLock);
        // Nothing served yet, nothing above holds a result: the interval goes
        // on as it is, so that this node still takes the input's new format.
        if (_minShift <= _maxShift) {
            minShift = _minShift;
            maxShift = _maxShift;
        }
    }
    // Input times [a, b] were served at output times [a - shift, b - shift].
    PxValidityInterval const early = shiftInterval(*interval, -maxShift);
    PxValidityInterval const late = shiftInterval(*interval, -minShift);
    *interval = PxValidityInterval(early.getStart(), late.getEnd());
    return true;
}

} // namespace Qv
