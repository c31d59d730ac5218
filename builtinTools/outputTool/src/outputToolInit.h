#pragma once
// The package "outputTool".
#include "lgLog.h"

namespace QvInit {
class outputTool {};
} // namespace QvInit

namespace Qv::LgGroups {
// Live between the package's initialise and finalise steps.
extern LgMinorGroup* MinorLevelOutputTool;
} // namespace Qv::LgGroups
