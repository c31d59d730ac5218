#pragma once
// The package "renderedResultTool".
#include "lgLog.h"

namespace QvInit {
class renderedResultTool {};
} // namespace QvInit

namespace Qv::LgGroups {
// Live between the package's initialise and finalise steps.
extern LgMinorGroup* MinorLevelRenderedResultTool;
} // namespace Qv::LgGroups
