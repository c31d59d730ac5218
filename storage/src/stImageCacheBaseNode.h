#pragma once
// Base of image nodes whose tiles are cached: in memory (StTileStore, shared
// by the whole process) and, for a node of kind MEMORY_AND_DISK, on disk
// (StDiskStore, shared by every process on the machine). A tile is found by
// (storage id, variant text, time, stream, tile position, proxy scale): two
// nodes with the same storage id and variant share their entries, which is
// how a reader rebuilt by its controller, or a later run, finds the tiles
// read before.
//
// The node decides what to compute; the cache operations only look up and
// store. A result handed to a set operation must be finished: its tile is
// shared with every later reader and must not be written again.
//
// Setters run in a set request (the graph is quiet), so the storage id and
// variant are read without a lock by the tile operations.
#include "pxImageProtocol.h"
#include "pxResultProtocol.h"
#include "stDiskStore.h"
#include "stTileKey.h"
#include "uuid.h"

#include <optional>
#include <string>

namespace Qv {

class StImageCacheBaseNode : public PxImageProtocol {
public:
    // What a disk lookup found out: the entry's key and place, so that the
    // set that follows a miss need not work them out again.
    struct LookupData {
        StTileKey key;
        std::optional<StDiskStore::Location> location;
        bool isSet = false;
    };

    // Proxy scales 0 to 5 may be cached on disk; finer ones (1/64 of the
    // size and less) only in memory, where they are cheap to compute again.
    // A motion pyramid chains two caches, the second one shifted by this
    // number, to reach 2 * 6 = 12 levels: an 8K frame (8192 pixels wide)
    // comes down to 2 pixels at level 12.
    static int getNbDiskCachedProxyScales() { return 6; }

    Uuid const& getStorageId() const { return _storageId; }
    std::string const& getCacheVariant() const { return _variant; }
    PxResultProtocol::OperatingMode getStorageKind() const { return _kind; }

    // Drops this node's entries whose interval meets `interval` (memory tier,
    // and for MEMORY_AND_DISK the disk entries of this storage id and
    // variant), whatever their stream, then does what PxImageProtocol does.
    void invalidateAndReinitialize(PxValidityInterval const& interval, PxUPtr<PxNode const> const& child,
                                   int stream) override;
    // The first half of it, for a node that drops its entries for another reason.
    void dropCachedEntries(PxValidityInterval const& interval) const;

protected:
    StImageCacheBaseNode(PxNode::Init const& init, Uuid storageId, PxResultProtocol::OperatingMode kind);
    ~StImageCacheBaseNode() override;

    // A new id or variant (a text of the node's settings) leaves the earlier
    // entries unreachable: that is how a setter clears them. They age out of
    // both tiers in the order of use.
    void setStorageId(Uuid const& id) { _storageId = id; }
    void setCacheVariant(std::string const& variant) { _variant = variant; }

    // A miss is PxImageResult() (the invalid tile, an empty interval). A hit's
    // interval contains the context's time.
    PxImageResult getMemCachedImageResult(PxImageContext const& context) const;
    // Asserts a valid tile and an interval that contains the context's time.
    // A tile that the image memory budget cannot hold is not kept.
    void setMemCachedImageResult(PxImageResult const& result, PxImageContext const& context) const;

    // The memory tier first, then the disk; a disk hit enters the memory tier.
    // With the disk off (QV_DISK_CACHE=off, an I/O error earlier, or kind
    // MEMORY) only the memory tier is asked.
    PxImageResult getDiskCachedImageResult(PxImageContext const& context, LookupData& lookup) const;
    // Stores in memory and, unless the disk is off, on disk. `lookup` may come
    // from the get that missed, or be new.
    void setDiskCachedImageResult(PxImageResult const& result, PxImageContext const& context,
                                  LookupData const& lookup) const;

    StTileKey makeKey(PxImageContext const& context) const {
        return StTileKey(_storageId, _variant, context);
    }

private:
    static void checkResult(PxImageResult const& result, PxImageContext const& context);

    Uuid _storageId;
    std::string _variant;
    PxResultProtocol::OperatingMode _kind;
};

} // namespace Qv
