#pragma once
// The frame rate a node's times are counted in: the rate of the clip it
// gives when it is one (PiFootageInterface), else the project's default rate
// of new compositions, else 24 frames a second. A time typed as a bare frame
// number takes this rate.
#include "rational.h"

namespace Qv {

class PiNode;

namespace PiNodeRate {
// A rate above zero, whatever the node.
Rational get(PiNode const* node);
// The project's default rate; 24/1 when the settings give none.
Rational getProjectRate();
} // namespace PiNodeRate

} // namespace Qv
