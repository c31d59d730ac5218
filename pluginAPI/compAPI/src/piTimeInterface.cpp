#include "piTimeInterface.h"

namespace Qv {

PiTimeInterface::~PiTimeInterface() = default;

double PiTimeInterface::transformTime(double time, RCShdPtr<PiOutput const> const&,
                                      RCShdPtr<PiInput const> const&) const {
    return time;
}

bool PiTimeInterface::reverseTransformTime(double time, RCShdPtr<PiInput const> const&,
                                           RCShdPtr<PiOutput const> const&, double& result) const {
    result = time;
    return true;
}

bool PiTimeInterface::hasTimeTransform(RCShdPtr<PiOutput const> const&,
                                       RCShdPtr<PiInput const> const&) const {
    return false;
}

} // namespace Qv
