#include "stImageCacheBaseNode.h"

#include "assertions.h"
#include "stInterface.h"
#include "stTileStore.h"

namespace Qv {

StImageCacheBaseNode::StImageCacheBaseNode(PxNode::Init const& init, Uuid storageId,
                                           PxResultProtocol::OperatingMode kind)
    : PxNode(init), PxImageProtocol(init), _storageId(storageId), _kind(kind) {}

StImageCacheBaseNode::~StImageCacheBaseNode() = default;

void StImageCacheBaseNode::checkResult(PxImageResult const& result, PxImageContext const& context) {
    QV_ASSERT(result.getTile().isValid());
    QV_ASSERT_MSG(result.getVI().contains(context.getTime()), "result.getVI().contains( ctx.getTime() )");
}

PxImageResult StImageCacheBaseNode::getMemCachedImageResult(PxImageContext const& context) const {
    PxImageResult result = StTileStore::getInstance().get(makeKey(context));
    if (!result.getVI().contains(context.getTime()))
        return PxImageResult();
    return result;
}

void StImageCacheBaseNode::setMemCachedImageResult(PxImageResult const& result,
                                                   PxImageContext const& context) const {
    checkResult(result, context);
    StTileStore::getInstance().put(makeKey(context), result);
}

PxImageResult StImageCacheBaseNode::getDiskCachedImageResult(PxImageContext const& context,
                                                             LookupData& lookup) const {
    lookup.key = makeKey(context);
    lookup.location.reset();
    lookup.isSet = true;
    StTileStore& store = StTileStore::getInstance();
    PxImageResult result = store.get(lookup.key);
    if (result.getVI().contains(context.getTime()))
        return result;
    if (_kind != PxResultProtocol::MEMORY_AND_DISK)
        return PxImageResult();
    lookup.location = StDiskStore::getInstance().locate(lookup.key);
    if (!lookup.location)
        return PxImageResult();
    result = StDiskStore::getInstance().read(*lookup.location);
    if (!result.getVI().contains(context.getTime()))
        return PxImageResult();
    store.put(lookup.key, result);
    return result;
}

void StImageCacheBaseNode::setDiskCachedImageResult(PxImageResult const& result,
                                                    PxImageContext const& context,
                                                    LookupData const& lookup) const {
    checkResult(result, context);
    StTileKey const key = makeKey(context);
    // Memory first: askers of the tile find it there while the file is written.
    StTileStore::getInstance().put(key, result);
    if (_kind != PxResultProtocol::MEMORY_AND_DISK)
        return;
    StDiskStore& disk = StDiskStore::getInstance();
    std::optional<StDiskStore::Location> location;
    // A lookup of this very key in the folder of now is reused; anything else is worked out again.
    if (lookup.isSet && lookup.key == key && lookup.location) {
        std::optional<std::filesystem::path> const folder = StInterface::getInstance().getDiskCacheFolder();
        if (folder && *folder == lookup.location->folder && !disk.hasFailed(*folder))
            location = lookup.location;
    }
    if (!location)
        location = disk.locate(key);
    if (location)
        disk.write(*location, result);
}

void StImageCacheBaseNode::dropCachedEntries(PxValidityInterval const& interval) const {
    StTileStore::getInstance().remove(_storageId, _variant, interval);
    if (_kind == PxResultProtocol::MEMORY_AND_DISK)
        StDiskStore::getInstance().remove(_storageId, _variant, interval);
}

void StImageCacheBaseNode::invalidateAndReinitialize(PxValidityInterval const& interval,
                                                     PxUPtr<PxNode const> const& child, int stream) {
    dropCachedEntries(interval);
    PxImageProtocol::invalidateAndReinitialize(interval, child, stream);
}

} // namespace Qv
