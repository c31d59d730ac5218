#include "stTileKey.h"

#include "stByteReader.h"
#include "stByteWriter.h"

#include <bit>
#include <fmt/format.h>

namespace Qv {

StTileKey::StTileKey(Uuid const& storageId_, std::string variant_, PxImageContext const& context)
    : storageId(storageId_), variant(std::move(variant_)),
      time(context.getTime() == 0.0 ? 0.0 : context.getTime()), stream(context.getStream()),
      tile(context.getTilePosition()), proxyScale(context.getProxyScale()) {}

std::uint64_t StTileKey::fnv1a(void const* data, std::size_t size, std::uint64_t hash) {
    auto const* bytes = static_cast<unsigned char const*>(data);
    for (std::size_t i = 0; i < size; ++i) {
        hash ^= bytes[i];
        hash *= 0x100000001b3ULL;
    }
    return hash;
}

void StTileKey::write(StByteWriter& out) const {
    out.putBytes(storageId.getBytes().data(), storageId.getBytes().size());
    out.putText(variant);
    out.putF64(time);
    out.putI32(stream);
    out.putI32(tile.x);
    out.putI32(tile.y);
    out.putI32(proxyScale);
}

bool StTileKey::read(StByteReader& in) {
    Uuid::Bytes bytes{};
    in.getBytes(bytes.data(), bytes.size());
    storageId = Uuid(bytes);
    variant = in.getText();
    time = in.getF64();
    stream = in.getI32();
    tile.x = in.getI32();
    tile.y = in.getI32();
    proxyScale = in.getI32();
    return in.isGood();
}

std::uint64_t StTileKey::getStableHash() const {
    StByteWriter out;
    write(out);
    return fnv1a(out.getBytes().data(), out.getSize());
}

std::uint64_t StTileKey::getOwnerHash() const {
    StByteWriter out;
    out.putBytes(storageId.getBytes().data(), storageId.getBytes().size());
    out.putText(variant);
    return fnv1a(out.getBytes().data(), out.getSize());
}

std::string StTileKey::dump() const {
    return fmt::format("{} \"{}\" time {} stream {} tile {} proxy {}", storageId.toString(), variant, time,
                       stream, tile.dump(), proxyScale);
}

std::size_t StTileKeyHash::operator()(StTileKey const& key) const noexcept {
    // Cheap and in memory only: the id is already well mixed, the rest is folded in.
    std::uint64_t hash = UuidUtil::hashFunc(key.storageId);
    hash ^= std::hash<std::string>()(key.variant) + 0x9e3779b97f4a7c15ULL + (hash << 6) + (hash >> 2);
    std::uint64_t const parts[] = {
        std::bit_cast<std::uint64_t>(key.time),
        std::uint64_t(std::uint32_t(key.stream)) << 32 | std::uint32_t(key.proxyScale),
        std::uint64_t(std::uint32_t(key.tile.x)) << 32 | std::uint32_t(key.tile.y)};
    return std::size_t(StTileKey::fnv1a(parts, sizeof(parts), hash));
}

} // namespace Qv
