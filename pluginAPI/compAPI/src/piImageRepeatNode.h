#pragma once
// A clip placed on the time line: between its marks an image plays as it is,
// outside them the repeat mode decides which of its frames shows.
//
// Times are in frames of the image's own rate. With D = mark out - mark in
// (mark out exclusive), output frame u shows source frame
//   u                               when D <= 0, or in <= u < out;
//   outside the marks, by mode:
//     NONE    nothing: an empty region and tiles without pixels;
//     LOOP    in + ((u - in) mod D), a true modulo also before the mark in;
//     HOLD    clamp(u, in, out - 1);
//     BOUNCE  in + (w < D ? w : 2D - 1 - w) with w = (u - in) mod 2D, so
//             that each end frame shows twice in a row.
// A time between frames reads the same fraction into its source frame. An
// image without a positive rate is not remapped, and a mode value outside
// the four shows nothing outside the marks, as NONE does.
//
// Results hold for as long as the mapping stays one shift (or, holding, one
// source frame) and the input holds; an invalidation of the input reaches
// every output time that read it: the whole time line once a looped or
// bounced source frame changes, the held side to its end once a held frame
// changes.
//
// The fifth input is the clip's "Lock Duration". It does not change the
// mapping: a controller keeps the duration when the mark in moves. The node
// takes it so that every clip tool wires the same four timing inputs; its
// changes do not invalidate the node's results.
#include "piEnumPolicy.h"
#include "pxAnimValueProtocol.h"
#include "pxImageNode.h"
#include "tmTypes.h"

#include <mutex>
#include <optional>

namespace Qv {

class PiImageRepeatNode : public PxImageNode {
public:
    PiImageRepeatNode(PxNode::Init const& init, PxNodePtr<PxImageProtocol const> const& image,
                      PxNodePtr<PxAnimValueProtocol<int> const> const& repeatMode,
                      PxNodePtr<PxAnimValueProtocol<int> const> const& markIn,
                      PxNodePtr<PxAnimValueProtocol<int> const> const& markOut,
                      PxNodePtr<PxAnimValueProtocol<bool> const> const& lockDuration);
    ~PiImageRepeatNode() override;

    // Builds and initialises the node; the mode and marks must give
    // integers, the lock a bool.
    static PxStrongHndl<PxImageProtocol> create(PxStrongHndl<PxNode const> const& image,
                                                PxStrongHndl<PxNode const> const& repeatMode,
                                                PxStrongHndl<PxNode const> const& markIn,
                                                PxStrongHndl<PxNode const> const& markOut,
                                                PxStrongHndl<PxNode const> const& lockDuration);

    void init() override;
    PxRODResult getImageROD(PxTimeStreamContext const& context) const override;
    PxImageResult getImageResult(PxImageContext const& context) const override;
    bool propagateAndRemapInvalidation(PxValidityInterval* interval, PxUPtr<PxNode const> const& child,
                                       int* stream) const override;

    // The source frame that output frame `frame` shows; none where it shows
    // nothing.
    static std::optional<long long> mapFrame(TmTypes::RepeatMode mode, long long markIn, long long markOut,
                                             long long frame);

    // The four modes in the order of their values, labelled with their
    // display names; NONE is the default.
    static RCShdPtr<PiEnumPolicy const> getRepeatModeInputPolicy();

private:
    struct Mapping;

    // Where time `time` reads the input; narrows `interval` to the mode and
    // marks read there, and records what an invalidation must reach.
    Mapping computeMapping(double time, PxValidityInterval& interval) const;
    void recordMapping(Mapping const& mapping) const;

    PxNodePtr<PxAnimValueProtocol<int> const> _repeatMode;
    PxNodePtr<PxAnimValueProtocol<int> const> _markIn;
    PxNodePtr<PxAnimValueProtocol<int> const> _markOut;
    PxNodePtr<PxAnimValueProtocol<bool> const> _lockDuration;

    // Source times served outside the marks, each the hull of what was
    // served: looped or bounced windows [in, out), held first frames, held
    // last frames (seconds; EMPTY until served).
    mutable std::mutex _servedLock;
    mutable PxValidityInterval _repeatedWindows = PxValidityInterval::EMPTY;
    mutable PxValidityInterval _heldFirstFrames = PxValidityInterval::EMPTY;
    mutable PxValidityInterval _heldLastFrames = PxValidityInterval::EMPTY;
};

} // namespace Qv
