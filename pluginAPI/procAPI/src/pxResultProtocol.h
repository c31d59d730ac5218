#pragma once
// How a caching node keeps what it computed: in memory only, or in memory
// and in a folder on disk that outlives the process.
namespace Qv {

struct PxResultProtocol {
    enum OperatingMode { MEMORY = 0, MEMORY_AND_DISK = 1 };
};

} // namespace Qv
