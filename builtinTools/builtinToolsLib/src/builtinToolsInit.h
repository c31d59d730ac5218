#pragma once
// The package "builtinTools".

namespace QvInit {
class builtinTools {};
} // namespace QvInit
