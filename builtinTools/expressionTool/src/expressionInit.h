#pragma once
// The package "expression".

namespace QvInit {
class expression {};
} // namespace QvInit
