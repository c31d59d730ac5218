#pragma once
// The package "valueSourceTool".
#include "lgLog.h"

namespace QvInit {
class valueSourceTool {};
} // namespace QvInit

namespace Qv::LgGroups {
// Live between the package's initialise and finalise steps.
extern LgMinorGroup* MinorLevelValueSourceTool;
} // namespace Qv::LgGroups
