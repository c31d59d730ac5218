#pragma once
// What a cached tile is found by: the storage id of what made it, a variant
// text (the settings of that node), the time, the stream, the tile position
// and the proxy scale. Every component separates entries: two tiles that
// differ in any one of them never meet.
#include "gePoint2.h"
#include "pxImageContext.h"
#include "uuid.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace Qv {

class StByteReader;
class StByteWriter;

struct StTileKey {
    Uuid storageId;
    std::string variant;
    double time = 0.0;
    int stream = 0;
    GePoint2<int> tile;
    int proxyScale = 0;

    StTileKey() = default;
    // -0.0 is taken as 0.0, so that the two spellings of the time meet.
    StTileKey(Uuid const& storageId, std::string variant, PxImageContext const& context);

    friend bool operator==(StTileKey const&, StTileKey const&) = default;

    // 64-bit FNV-1a of getBytes(): stable across processes and machines,
    // which names the key's file on disk.
    std::uint64_t getStableHash() const;
    // The same of the storage id and variant alone: the owner of the entry.
    std::uint64_t getOwnerHash() const;
    // The key as bytes, in the layout of a disk entry's header.
    void write(StByteWriter& out) const;
    // False when the bytes end early.
    bool read(StByteReader& in);

    std::string dump() const;

    static std::uint64_t fnv1a(void const* data, std::size_t size, std::uint64_t hash = FNV_OFFSET);
    static constexpr std::uint64_t FNV_OFFSET = 0xcbf29ce484222325ULL;
};

struct StTileKeyHash {
    std::size_t operator()(StTileKey const& key) const noexcept;
};

} // namespace Qv
