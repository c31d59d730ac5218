#pragma once
// A node seen as a clip: its frame rate, the shift of its source in time,
// the times it starts and ends (seconds), and what it shows outside them.
// The plain getters read what the node holds; the "Sync" getters evaluate
// the value through the processing nodes at the composition's start, so that
// a time driven by an expression gives what the expression computes.
#include "rational.h"
#include "rcShdPtr.h"
#include "tmTypes.h"

namespace Qv {

class PiOutput;

class PiFootageInterface {
public:
    virtual ~PiFootageInterface();

    virtual Rational getRate(RCShdPtr<PiOutput const> const& output) const = 0;
    virtual void setOffset(double offset) = 0;
    virtual double getOffset() const = 0;
    virtual double getOffsetSync() const = 0;
    virtual void setInTime(double time) = 0;
    virtual double getInTime() const = 0;
    virtual double getInTimeSync() const = 0;
    virtual void setOutTime(double time) = 0;
    virtual double getOutTime() const = 0;
    virtual double getOutTimeSync() const = 0;
    virtual void setRepeatMode(TmTypes::RepeatMode mode) = 0;
    virtual TmTypes::RepeatMode getRepeatMode() const = 0;
};

} // namespace Qv
