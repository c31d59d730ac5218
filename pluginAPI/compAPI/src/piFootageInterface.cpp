#include "piFootageInterface.h"

namespace Qv {

PiFootageInterface::~PiFootageInterface() = default;

} // namespace Qv
