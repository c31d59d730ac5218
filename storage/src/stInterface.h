#pragma once
// What the image storage needs from its setting: stable identities of
// storage, and where and how large the disk tier is.
//
//   QV_DISK_CACHE      the disk tier's folder; "off" disables it. Default:
//                      $XDG_CACHE_HOME/qv/tiles, else ~/.cache/qv/tiles.
//   QV_DISK_CACHE_MB   its bound in MiB (default 4096).
// Both are read when asked for, so a test may point each case at its own folder.
#include "uuid.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace Qv {

class StInterface {
public:
    static StInterface& getInstance();

    static constexpr std::uintmax_t DEFAULT_DISK_CACHE_MB = 4096;

    // A storage id for an identity text (a file's path and dates, a node's
    // settings): the same text gives the same id in every process and on
    // every machine, so that the disk tier finds what an earlier run stored.
    // A name-based UUID (version 5, SHA-1) in getStorageNamespace().
    Uuid getStorageId(std::string const& identity) const;
    // The name-based UUID of RFC 4122 (version 5) of `name` in `nameSpace`.
    static Uuid createNameBasedId(Uuid const& nameSpace, std::string_view name);
    static Uuid const& getStorageNamespace();

    // Empty when the disk tier is off or no folder can be named (no HOME).
    std::optional<std::filesystem::path> getDiskCacheFolder() const;
    // Bytes. A bad QV_DISK_CACHE_MB is reported once on the log and the default used.
    std::uintmax_t getDiskCacheBudget() const;

    StInterface(StInterface const&) = delete;
    StInterface& operator=(StInterface const&) = delete;

private:
    StInterface() = default;
};

} // namespace Qv
