#include "piImageRepeatNode.h"

#include "assertions.h"
#include "piImageTimeOffsetNode.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Qv {

namespace {
long long floorMod(long long value, long long modulus) {
    long long const rest = value % modulus;
    return rest < 0 ? rest + modulus : rest;
}

// One output frame's source frame (none: nothing shows), and the frames
// around it, [first, end), over which the mapping stays one shift or, when
// `holds`, shows that same source frame; an end without value is unbounded.
struct FrameRun {
    std::optional<long long> source;
    std::optional<long long> first;
    std::optional<long long> end;
    bool holds = false;
};

FrameRun mapFrameRun(TmTypes::RepeatMode mode, long long in, long long out, long long frame) {
    long long const duration = out - in;
    if (duration <= 0)
        return {frame, std::nullopt, std::nullopt};
    if (frame >= in && frame < out)
        return {frame, in, out};
    bool const before = frame < in;
    switch (mode) {
    case TmTypes::LOOP: {
        long long const w = floorMod(frame - in, duration);
        return {in + w, frame - w, frame - w + duration};
    }
    case TmTypes::HOLD:
        return before ? FrameRun{in, std::nullopt, in, true} : FrameRun{out - 1, out, std::nullopt, true};
    case TmTypes::BOUNCE: {
        long long const w = floorMod(frame - in, 2 * duration);
        if (w < duration)
            return {in + w, frame - w, frame - w + duration};
        // Backwards every frame has its own shift.
        return {in + 2 * duration - 1 - w, frame, frame + 1};
    }
    case TmTypes::NONE:
        break;
    }
    return before ? FrameRun{std::nullopt, std::nullopt, in} : FrameRun{std::nullopt, out, std::nullopt};
}

// The times of frames [first, end) at `fps`, cut to the host's limits; the
// frame boundaries are those of PxValidityInterval::createFrameInterval.
PxValidityInterval framesToTimes(std::optional<long long> first, std::optional<long long> end, double fps) {
    double const start = first ? static_cast<double>(*first) / fps : PxValidityInterval::TIME_MIN;
    double const last =
        end ? std::nextafter(static_cast<double>(*end) / fps, -std::numeric_limits<double>::infinity())
            : PxValidityInterval::TIME_MAX;
    return PxValidityInterval(start, last).getIntersection(PxValidityInterval::FULL);
}

bool touches(PxValidityInterval const& a, PxValidityInterval const& b) {
    return a.getIntersection(b).isNonEmpty();
}

void extendHull(PxValidityInterval& hull, PxValidityInterval const& interval) {
    hull = PxValidityInterval(std::min(hull.getStart(), interval.getStart()),
                              std::max(hull.getEnd(), interval.getEnd()));
}
} // namespace

struct PiImageRepeatNode::Mapping {
    // False where nothing shows.
    bool shows = true;
    double inputTime = 0.0;
    // The output times read at one shift.
    PxValidityInterval shiftRun = PxValidityInterval::FULL;
    // When holding: the output times that show the held frame, and that
    // frame's source times; EMPTY otherwise.
    PxValidityInterval holdRun = PxValidityInterval::EMPTY;
    PxValidityInterval heldFrame = PxValidityInterval::EMPTY;

    // An interval of the input read for output time `time`, as an interval of
    // the output.
    PxValidityInterval mapInputInterval(PxValidityInterval const& input, double time) const {
        if (holdRun.isNonEmpty() && input.getStart() <= heldFrame.getStart() &&
            input.getEnd() >= heldFrame.getEnd())
            return holdRun;
        return PiImageTimeOffsetNode::mapIntervalBack(input, inputTime, time, inputTime - time)
            .getIntersection(shiftRun);
    }
};

PiImageRepeatNode::PiImageRepeatNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& image,
                                     PxNodePtr<PxAnimValueProtocol<int> const> const& repeatMode,
                                     PxNodePtr<PxAnimValueProtocol<int> const> const& markIn,
                                     PxNodePtr<PxAnimValueProtocol<int> const> const& markOut,
                                     PxNodePtr<PxAnimValueProtocol<bool> const> const& lockDuration)
    : PxNode(init), PxImageNode(init, image), _repeatMode(repeatMode), _markIn(markIn), _markOut(markOut),
      _lockDuration(lockDuration) {
    QV_ASSERT(!_repeatMode.isNull());
    QV_ASSERT(!_markIn.isNull());
    QV_ASSERT(!_markOut.isNull());
    QV_ASSERT(!_lockDuration.isNull());
}

PiImageRepeatNode::~PiImageRepeatNode() {
    unregisterChild(_lockDuration);
    unregisterChild(_markOut);
    unregisterChild(_markIn);
    unregisterChild(_repeatMode);
}

PxStrongHndl<PxImageProtocol> PiImageRepeatNode::create(PxStrongHndl<PxNode const> const& image,
                                                        PxStrongHndl<PxNode const> const& repeatMode,
                                                        PxStrongHndl<PxNode const> const& markIn,
                                                        PxStrongHndl<PxNode const> const& markOut,
                                                        PxStrongHndl<PxNode const> const& lockDuration) {
    PxNode::Init init;
    PxStrongHndl<PiImageRepeatNode> node(new PiImageRepeatNode(
        init, PxNodePtr<PxImageProtocol const>(image), PxNodePtr<PxAnimValueProtocol<int> const>(repeatMode),
        PxNodePtr<PxAnimValueProtocol<int> const>(markIn), PxNodePtr<PxAnimValueProtocol<int> const>(markOut),
        PxNodePtr<PxAnimValueProtocol<bool> const>(lockDuration)));
    PxNode::init(node);
    return PxStrongHndl<PxImageProtocol>(node);
}

void PiImageRepeatNode::init() {
    PxImageNode::init();
    registerChild(_repeatMode);
    registerChild(_markIn);
    registerChild(_markOut);
    registerChild(_lockDuration);
}

std::optional<long long> PiImageRepeatNode::mapFrame(TmTypes::RepeatMode mode, long long markIn,
                                                     long long markOut, long long frame) {
    return mapFrameRun(mode, markIn, markOut, frame).source;
}

RCShdPtr<PiEnumPolicy const> PiImageRepeatNode::getRepeatModeInputPolicy() {
    static RCShdPtr<PiEnumPolicy const> const policy = [] {
        PiEnumPolicy::Builder builder;
        for (TmTypes::RepeatMode mode : TmTypes::getRepeatModes())
            builder.addPair(mode, TmTypes::repeatModeToString(mode));
        return builder.setDefaultValue(TmTypes::NONE).create();
    }();
    return policy;
}

PiImageRepeatNode::Mapping PiImageRepeatNode::computeMapping(double time,
                                                             PxValidityInterval& interval) const {
    Mapping mapping;
    mapping.inputTime = time;
    // Read through the held pointers, as regions of definition are also asked
    // for outside the workers.
    PxTimeContext const context(time);
    PxResult<int> mode, markIn, markOut;
    _repeatMode->getAnimValue(mode, context);
    _markIn->getAnimValue(markIn, context);
    _markOut->getAnimValue(markOut, context);
    mode.reduceVI(interval);
    markIn.reduceVI(interval);
    markOut.reduceVI(interval);
    PxResult<PxImageFormat> const format = getImageFormat();
    format.reduceVI(interval);
    Rational const& rate = format.getValue().getRate();
    double const fps = rate.getDenominator() != 0 ? rate.getDouble() : 0.0;
    if (!(fps > 0.0))
        return mapping;

    long long const in = markIn.getValue();
    long long const out = markOut.getValue();
    PxValidityInterval const frameTimes = PxValidityInterval::createFrameInterval(fps, time);
    long long const frame = std::llround(frameTimes.getStart() * fps);
    FrameRun const run =
        mapFrameRun(TmTypes::repeatModeFromInt(mode.getValue()).value_or(TmTypes::NONE), in, out, frame);
    mapping.shiftRun = framesToTimes(run.first, run.end, fps);
    if (!run.source) {
        mapping.shows = false;
        return mapping;
    }
    if (*run.source == frame)
        return mapping;

    // Outside the marks: the same fraction into the source frame, from the
    // source frame's own start, so that a frame start maps to a frame start.
    mapping.inputTime = static_cast<double>(*run.source) / fps + (time - frameTimes.getStart());
    std::lock_guard<std::mutex> lock(_servedLock);
    if (run.holds) {
        mapping.holdRun = mapping.shiftRun;
        mapping.shiftRun = frameTimes;
        mapping.heldFrame = framesToTimes(*run.source, *run.source + 1, fps);
        extendHull(frame < in ? _heldFirstFrames : _heldLastFrames, mapping.heldFrame);
    } else {
        extendHull(_repeatedWindows, framesToTimes(in, out, fps));
    }
    return mapping;
}

PxRODResult PiImageRepeatNode::getImageROD(PxTimeStreamContext const& context) const {
    PxValidityInterval interval = PxValidityInterval::FULL;
    Mapping const mapping = computeMapping(context.getTime(), interval);
    if (!mapping.shows)
        return PxRODResult(GeRectangle<float>{}, interval.getIntersection(mapping.shiftRun));
    PxRODResult rod = getInput()->getImageROD(PxTimeStreamContext(mapping.inputTime, context.getStream()));
    rod.setVI(mapping.mapInputInterval(rod.getVI(), context.getTime()).getIntersection(interval));
    return rod;
}

PxImageResult PiImageRepeatNode::getImageResult(PxImageContext const& context) const {
    PxValidityInterval interval = PxValidityInterval::FULL;
    Mapping const mapping = computeMapping(context.getTime(), interval);
    if (!mapping.shows)
        return PxImageResult(allocateEmptyImageBuffer(), interval.getIntersection(mapping.shiftRun));
    PxImageResult result = PxUPtr<PxImageProtocol const>(getInput())
                               ->getImageResult(PxImageContext(mapping.inputTime, context.getTilePosition(),
                                                               context.getProxyScale(), context.getStream()));
    result.setVI(mapping.mapInputInterval(result.getVI(), context.getTime()).getIntersection(interval));
    return result;
}

bool PiImageRepeatNode::propagateAndRemapInvalidation(PxValidityInterval* interval,
                                                      PxUPtr<PxNode const> const& child, int*) const {
    // The lock changes no result; the mode and marks change the results at
    // the times they changed.
    if (child.get() == static_cast<PxNode const*>(_lockDuration.get()))
        return false;
    if (child.get() != static_cast<PxNode const*>(getInput().get()))
        return true;
    // Every output time reads its own input time inside the marks, and
    // nothing else outside them but what was served there.
    std::lock_guard<std::mutex> lock(_servedLock);
    if (touches(*interval, _repeatedWindows)) {
        *interval = PxValidityInterval::FULL;
        return true;
    }
    double const start =
        touches(*interval, _heldFirstFrames) ? PxValidityInterval::TIME_MIN : interval->getStart();
    double const end =
        touches(*interval, _heldLastFrames) ? PxValidityInterval::TIME_MAX : interval->getEnd();
    *interval = PxValidityInterval(start, end);
    return true;
}

} // namespace Qv
