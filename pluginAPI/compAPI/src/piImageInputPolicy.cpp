#include "piImageInputPolicy.h"

namespace Qv {

RCShdPtr<PiImageInputPolicy const> PiImageInputPolicy::createPrimary(int first, int second, int third,
                                                                     ResetType reset, bool flag) {
    return RCShdPtr<PiImageInputPolicy const>(
        new PiImageInputPolicy(true, {first, second, third}, reset, flag));
}

RCShdPtr<PiImageInputPolicy const> PiImageInputPolicy::createSecondary(int first, int second, int third,
                                                                       int fourth, ResetType reset,
                                                                       bool flag) {
    return RCShdPtr<PiImageInputPolicy const>(
        new PiImageInputPolicy(false, {first, second, third, fourth}, reset, flag));
}

// An image input has no value to go back to.
void PiImageInputPolicy::resetValue(PiInput&) const {}

} // namespace Qv
