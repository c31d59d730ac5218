#pragma once
// Where an image reader's tiles are cached. A sequence of files that exist
// is named by its path and the modification date of its first file: two
// readers of the same path share their tiles, across sessions on disk, and
// touching the first file makes new ones. Anything else (a movie, missing
// media, a first file without a date) gets a fresh id and memory only.
#include "pxResultProtocol.h"
#include "uuid.h"

#include <string>

namespace Qv {

class PiImageSequence;

struct BtReaderCacheIdentity {
    Uuid storageId;
    PxResultProtocol::OperatingMode kind = PxResultProtocol::MEMORY;
    // The identity text; empty for a fresh id.
    std::string text;

    static BtReaderCacheIdentity decide(PiImageSequence const& sequence);
};

} // namespace Qv
