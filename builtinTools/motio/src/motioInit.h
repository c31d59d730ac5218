#pragma once
// The package "motio".

namespace QvInit {
class motio {};
} // namespace QvInit
