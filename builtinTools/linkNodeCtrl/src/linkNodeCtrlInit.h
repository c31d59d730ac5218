#pragma once
// The package "linkNodeCtrl".

namespace QvInit {
class linkNodeCtrl {};
} // namespace QvInit
