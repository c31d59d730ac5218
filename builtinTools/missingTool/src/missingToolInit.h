#pragma once
// The package "missingTool".

namespace QvInit {
class missingTool {};
} // namespace QvInit
