#pragma once
// The disk tier of the image caches: entries that outlive the process, one
// file per entry in a folder that StInterface names, bounded by its budget.
//
// Layout: <folder>/<hh>/<owner>-<key>.qvt, where <key> is the 16 hex digits
// of the key's stable hash, <hh> its first two (so that no folder grows too
// large) and <owner> the hash of the storage id and variant (so that the
// entries of one node are found by name). A file holds:
//
//   "QVTILE\r\n", format version, header size,
//   the full key (a hash collision is then a miss, not a wrong tile),
//   pixel format, region, fill colour, validity interval,
//   pixel bytes and their CRC-32, the header's CRC-32,
//   the pixels, rows packed without the tile's padding.
//
// All numbers are little-endian. Files are written to a temporary file
// beside the entry and renamed onto it, so that a reader sees a whole entry
// or none. A damaged entry (bad magic, short, wrong checksum, another key) is
// a miss and is removed. An I/O error (a read-only folder, a full disk) is
// reported once on the log, and the tier then behaves as disabled for that
// folder for the rest of the process. Nothing here throws to the caller.
//
// The bound: when the folder holds more than its budget, the entries least
// recently used (by modification time, renewed on a hit) go until it holds
// 90% of it, so that the sweep does not run at every write.
#include "pxImageResults.h"
#include "pxValidityInterval.h"
#include "stTileKey.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace Qv {

class StDiskStore {
public:
    static StDiskStore& getInstance();

    static constexpr std::uint32_t FORMAT_VERSION = 1;
    static constexpr char const* EXTENSION = ".qvt";
    // A hit renews an entry's date only when it is older than this, to spare the file system a write per
    // read.
    static constexpr int TOUCH_AFTER_SECONDS = 60;
    // Temporary files older than this are left over from a killed process.
    static constexpr int STALE_TEMPORARY_SECONDS = 3600;

    // Where an entry lives, found once for a lookup and reused by the write after it.
    struct Location {
        StTileKey key;
        std::filesystem::path folder;
        std::filesystem::path file;
        bool isSet() const { return !file.empty(); }
    };

    // The place of the key's entry in the current folder; nullopt when the
    // tier is off (QV_DISK_CACHE=off) or failed for that folder.
    std::optional<Location> locate(StTileKey const& key);
    // The entry's result; PxImageResult() on a miss. Its tile's pixels are
    // counted against the image memory budget ("DiskCache"); no room there is a miss.
    PxImageResult read(Location const& location);
    // Stores the result; asserts a valid tile.
    void write(Location const& location, PxImageResult const& result);
    // Drops the entries of that storage id and variant whose interval meets
    // `interval`, in the current folder; returns how many went.
    std::size_t remove(Uuid const& storageId, std::string const& variant, PxValidityInterval const& interval);
    // Runs the bound on the folder now; returns the bytes of entries left.
    std::uintmax_t enforceBudget(std::filesystem::path const& folder);
    // Whether the tier failed for that folder.
    bool hasFailed(std::filesystem::path const& folder);
    // Forgets every folder's state, failures included (for tests).
    void reset();

    // The entry file's name for a key, relative to the folder.
    static std::filesystem::path getRelativePath(StTileKey const& key);

    StDiskStore(StDiskStore const&) = delete;
    StDiskStore& operator=(StDiskStore const&) = delete;

private:
    struct FolderState {
        std::atomic<bool> failed{false};
        // Bytes of entries, counted on the first write and kept up to date
        // by this process's writes and sweeps; other processes' writes are
        // found at the next sweep.
        std::atomic<bool> counted{false};
        std::atomic<std::uintmax_t> bytes{0};
        std::mutex sweepLock;
    };

    StDiskStore() = default;
    FolderState& getState(std::filesystem::path const& folder);
    // Reports the error once and turns the tier off for the folder.
    void fail(std::filesystem::path const& folder, std::string const& what, int error);
    // The bound, by one thread at a time per folder.
    std::uintmax_t sweep(std::filesystem::path const& folder, FolderState& state, bool always);

    std::mutex _lock;
    std::map<std::filesystem::path, std::unique_ptr<FolderState>> _folders;
    std::atomic<std::uint64_t> _nextTemporary{0};
};

} // namespace Qv
