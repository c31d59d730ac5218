#pragma once
// How a node maps time between its outputs and its inputs: the time at
// which an input is read for a time asked of an output, and back. A node
// that shifts or stretches time overrides all three; the defaults say that
// time passes through unchanged.
#include "rcShdPtr.h"

namespace Qv {

class PiInput;
class PiOutput;

class PiTimeInterface {
public:
    virtual ~PiTimeInterface();

    // The time at which `input` is read when `output` is asked for `time`.
    virtual double transformTime(double time, RCShdPtr<PiOutput const> const& output,
                                 RCShdPtr<PiInput const> const& input) const;
    // The time of `output` that reads `input` at `time`; false when there is
    // none, `result` then unchanged.
    virtual bool reverseTransformTime(double time, RCShdPtr<PiInput const> const& input,
                                      RCShdPtr<PiOutput const> const& output, double& result) const;
    virtual bool hasTimeTransform(RCShdPtr<PiOutput const> const& output,
                                  RCShdPtr<PiInput const> const& input) const;
};

} // namespace Qv
