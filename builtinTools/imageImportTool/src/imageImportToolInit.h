#pragma once
// The package "imageImportTool".
#include "lgLog.h"

namespace QvInit {
class imageImportTool {};
} // namespace QvInit

namespace Qv::LgGroups {
// Live between the package's initialise and finalise steps.
extern LgMinorGroup* MinorLevelImageReader;
} // namespace Qv::LgGroups
