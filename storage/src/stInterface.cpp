#include "stInterface.h"

#include "lgLog.h"

#include <array>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <fmt/format.h>
#include <mutex>
#include <set>
#include <vector>

namespace Qv {

namespace {

// SHA-1 (FIPS 180-4), which version 5 identifiers are defined over. Only
// identities go through it, a few short texts per node, never pixels.
class Sha1 {
public:
    void update(std::uint8_t const* data, std::size_t size) {
        for (std::size_t i = 0; i < size; ++i) {
            _block[_blockSize++] = data[i];
            if (_blockSize == 64)
                processBlock();
        }
        _length += std::uint64_t(size) * 8;
    }

    std::array<std::uint8_t, 20> finish() {
        std::uint64_t const length = _length;
        std::uint8_t const one = 0x80;
        update(&one, 1);
        std::uint8_t const zero = 0;
        while (_blockSize != 56)
            update(&zero, 1);
        for (int i = 7; i >= 0; --i) {
            std::uint8_t const byte = std::uint8_t(length >> (8 * i));
            update(&byte, 1);
        }
        std::array<std::uint8_t, 20> digest{};
        for (int i = 0; i < 5; ++i)
            for (int j = 0; j < 4; ++j)
                digest[std::size_t(4 * i + j)] = std::uint8_t(_state[std::size_t(i)] >> (24 - 8 * j));
        return digest;
    }

private:
    static std::uint32_t rotate(std::uint32_t value, int bits) {
        return (value << bits) | (value >> (32 - bits));
    }

    void processBlock() {
        std::uint32_t w[80];
        for (int i = 0; i < 16; ++i)
            w[i] = std::uint32_t(_block[std::size_t(4 * i)]) << 24 |
                   std::uint32_t(_block[std::size_t(4 * i + 1)]) << 16 |
                   std::uint32_t(_block[std::size_t(4 * i + 2)]) << 8 |
                   std::uint32_t(_block[std::size_t(4 * i + 3)]);
        for (int i = 16; i < 80; ++i)
            w[i] = rotate(w[i - 3] ^ w[i - 8] ^ w[i - 14] ^ w[i - 16], 1);
        std::uint32_t a = _state[0], b = _state[1], c = _state[2], d = _state[3], e = _state[4];
        for (int i = 0; i < 80; ++i) {
            std::uint32_t f = 0;
            std::uint32_t k = 0;
            if (i < 20) {
                f = (b & c) | (~b & d);
                k = 0x5A827999;
            } else if (i < 40) {
                f = b ^ c ^ d;
                k = 0x6ED9EBA1;
            } else if (i < 60) {
                f = (b & c) | (b & d) | (c & d);
                k = 0x8F1BBCDC;
            } else {
                f = b ^ c ^ d;
                k = 0xCA62C1D6;
            }
            std::uint32_t const t = rotate(a, 5) + f + e + k + w[i];
            e = d;
            d = c;
            c = rotate(b, 30);
            b = a;
            a = t;
        }
        _state[0] += a;
        _state[1] += b;
        _state[2] += c;
        _state[3] += d;
        _state[4] += e;
        _blockSize = 0;
    }

    std::array<std::uint32_t, 5> _state{0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
    std::array<std::uint8_t, 64> _block{};
    std::size_t _blockSize = 0;
    std::uint64_t _length = 0;
};

// Reports a bad value of a variable once per text, not at every tile.
void warnOnce(std::string const& text) {
    static std::mutex mutex;
    static std::set<std::string> reported;
    {
        std::lock_guard lock(mutex);
        if (!reported.insert(text).second)
            return;
    }
    LgLog::outputEntry(LgLog::WARNING, text);
}

} // namespace

// Chosen once for this system; changing it changes every storage id, which
// makes every disk entry of earlier runs unreachable.
Uuid const& StInterface::getStorageNamespace() {
    static Uuid const nameSpace = Uuid::fromString("5d0c6f4e-8a61-4b1e-9f3a-2c7e1b9d4a60");
    return nameSpace;
}

StInterface& StInterface::getInstance() {
    static StInterface instance;
    return instance;
}

Uuid StInterface::createNameBasedId(Uuid const& nameSpace, std::string_view name) {
    Sha1 sha;
    sha.update(nameSpace.getBytes().data(), nameSpace.getBytes().size());
    sha.update(reinterpret_cast<std::uint8_t const*>(name.data()), name.size());
    std::array<std::uint8_t, 20> const digest = sha.finish();
    Uuid::Bytes bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = digest[i];
    bytes[6] = std::uint8_t((bytes[6] & 0x0F) | 0x50); // version 5
    bytes[8] = std::uint8_t((bytes[8] & 0x3F) | 0x80); // the variant of RFC 4122
    return Uuid(bytes);
}

Uuid StInterface::getStorageId(std::string const& identity) const {
    return createNameBasedId(getStorageNamespace(), identity);
}

std::optional<std::filesystem::path> StInterface::getDiskCacheFolder() const {
    char const* text = std::getenv("QV_DISK_CACHE");
    if (text && *text) {
        if (std::string_view(text) == "off")
            return std::nullopt;
        std::error_code error;
        std::filesystem::path folder = std::filesystem::absolute(text, error);
        return error ? std::filesystem::path(text) : folder;
    }
    // XDG asks to ignore a relative XDG_CACHE_HOME.
    char const* xdg = std::getenv("XDG_CACHE_HOME");
    if (xdg && *xdg && std::filesystem::path(xdg).is_absolute())
        return std::filesystem::path(xdg) / "qv" / "tiles";
    char const* home = std::getenv("HOME");
    if (home && *home)
        return std::filesystem::path(home) / ".cache" / "qv" / "tiles";
    warnOnce("Neither QV_DISK_CACHE, XDG_CACHE_HOME nor HOME is set: the disk cache of tiles is off");
    return std::nullopt;
}

std::uintmax_t StInterface::getDiskCacheBudget() const {
    constexpr std::uintmax_t MIB = std::uintmax_t(1) << 20;
    char const* text = std::getenv("QV_DISK_CACHE_MB");
    if (!text || !*text)
        return DEFAULT_DISK_CACHE_MB * MIB;
    char* end = nullptr;
    errno = 0;
    unsigned long long const mib = std::strtoull(text, &end, 10);
    if (*end != '\0' || errno != 0 || mib < 1 || mib > (UINTMAX_MAX >> 20) ||
        !std::isdigit(static_cast<unsigned char>(text[0]))) {
        warnOnce(
            fmt::format("QV_DISK_CACHE_MB must be a whole number of MiB from 1, not \"{}\"; the disk cache "
                        "of tiles keeps {} MiB",
                        text, DEFAULT_DISK_CACHE_MB));
        return DEFAULT_DISK_CACHE_MB * MIB;
    }
    return std::uintmax_t(mib) * MIB;
}

} // namespace Qv
