#pragma once
// The application thread: the one that initialised the packages. Controllers,
// the composition graph and the building of processing nodes live there.
namespace Qv {

class PiAppThread {
public:
    static bool isCurrent();
};

} // namespace Qv
