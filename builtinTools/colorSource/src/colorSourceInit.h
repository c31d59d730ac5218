#pragma once
// The package "colorSource".

namespace QvInit {
class colorSource {};
} // namespace QvInit
