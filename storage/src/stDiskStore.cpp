#include "stDiskStore.h"

#include "assertions.h"
#include "ixReadGuard.h"
#include "ixWriteGuard.h"
#include "lgLog.h"
#include "pxWorkerBlockedGuard.h"
#include "stBsBufferFactory.h"
#include "stBufferEx.h"
#include "stByteReader.h"
#include "stByteWriter.h"
#include "stInterface.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>
#include <vector>
#include <zlib.h>

namespace Qv {

namespace fs = std::filesystem;

namespace {

constexpr char MAGIC[8] = {'Q', 'V', 'T', 'I', 'L', 'E', '\r', '\n'};
// Magic, version and header size: enough to know how much header to read.
constexpr std::size_t PREFIX_SIZE = 16;
// Far above any real header (the variant text is the only part that grows),
// so that a damaged size never makes a large read.
constexpr std::uint32_t MAX_HEADER_SIZE = 1u << 20;
constexpr int MAX_TILE_SIDE = 1 << 20;
constexpr std::size_t STAGING_SIZE = 256 * 1024;
constexpr char const* BUFFER_LABEL = "DiskCache";

class FileDescriptor {
public:
    explicit FileDescriptor(int fd) : _fd(fd) {}
    ~FileDescriptor() {
        if (_fd >= 0)
            ::close(_fd);
    }
    FileDescriptor(FileDescriptor const&) = delete;
    FileDescriptor& operator=(FileDescriptor const&) = delete;
    int get() const { return _fd; }
    // Closes now, so that an error of the last writes is seen; false with errno set.
    bool close() {
        int const fd = std::exchange(_fd, -1);
        return ::close(fd) == 0;
    }

private:
    int _fd;
};

enum class ReadStatus { OK, SHORT, ERROR };

ReadStatus readAt(int fd, void* data, std::size_t size, off_t offset) {
    auto* out = static_cast<char*>(data);
    while (size > 0) {
        ssize_t const n = ::pread(fd, out, size, offset);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return ReadStatus::ERROR;
        }
        if (n == 0)
            return ReadStatus::SHORT;
        out += n;
        size -= std::size_t(n);
        offset += n;
    }
    return ReadStatus::OK;
}

bool writeAll(int fd, void const* data, std::size_t size) {
    auto const* in = static_cast<char const*>(data);
    while (size > 0) {
        ssize_t const n = ::write(fd, in, size);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        in += n;
        size -= std::size_t(n);
    }
    return true;
}

std::uint32_t crc(std::uint32_t value, void const* data, std::size_t size) {
    auto const* bytes = static_cast<Bytef const*>(data);
    while (size > 0) {
        uInt const chunk = uInt(std::min<std::size_t>(size, UINT_MAX));
        value = std::uint32_t(crc32(value, bytes, chunk));
        bytes += chunk;
        size -= chunk;
    }
    return value;
}

std::string toHex(std::uint64_t value) {
    return fmt::format("{:016x}", value);
}

bool isValidComps(std::int32_t comps) {
    return comps == IxPixelFormat::ALPHA || comps == IxPixelFormat::RGB || comps == IxPixelFormat::RGBA;
}

bool isValidDepth(std::int32_t depth) {
    return depth == IxPixelFormat::UINT8 || depth == IxPixelFormat::FLOAT16 ||
           depth == IxPixelFormat::FLOAT32 || depth == IxPixelFormat::COMPLEX;
}

std::size_t getPackedRowBytes(IxPixelFormat const& format, GeRectangle<int> const& region) {
    return region.isEmpty() ? 0 : std::size_t(region.getWidth()) * format.getBytesPerPixel();
}

std::size_t getPackedBytes(IxPixelFormat const& format, GeRectangle<int> const& region) {
    return region.isEmpty() ? 0 : getPackedRowBytes(format, region) * std::size_t(region.getHeight());
}

// What a header says, once its checksum and every field passed.
struct Header {
    std::uint32_t size = 0;
    StTileKey key;
    IxPixelFormat format;
    GeRectangle<int> region;
    CoRgbaColorTyped<float> fill;
    PxValidityInterval interval;
    std::uint64_t payloadBytes = 0;
    std::uint32_t payloadCrc = 0;
};

std::string buildHeader(StTileKey const& key, IxTile const& tile, PxValidityInterval const& interval,
                        std::uint64_t payloadBytes, std::uint32_t payloadCrc) {
    StByteWriter out;
    out.putBytes(MAGIC, sizeof(MAGIC));
    out.putU32(StDiskStore::FORMAT_VERSION);
    out.putU32(0); // the header's size, set below
    key.write(out);
    IxPixelFormat const& format = tile.getPixelFormat();
    out.putI32(format.getComps());
    out.putI32(format.getDepth());
    out.putI32(format.getAspectRatio().getNumerator());
    out.putI32(format.getAspectRatio().getDenominator());
    GeRectangle<int> const& region = tile.getPixelRegion();
    out.putI32(region.x1);
    out.putI32(region.x2);
    out.putI32(region.y1);
    out.putI32(region.y2);
    CoRgbaColorTyped<float> const& fill = tile.getFillColor();
    out.putF32(fill.r);
    out.putF32(fill.g);
    out.putF32(fill.b);
    out.putF32(fill.a);
    out.putF64(interval.getStart());
    out.putF64(interval.getEnd());
    out.putU64(payloadBytes);
    out.putU32(payloadCrc);
    std::string bytes = out.getBytes();
    std::uint32_t const size = std::uint32_t(bytes.size() + 4);
    for (int i = 0; i < 4; ++i)
        bytes[12 + std::size_t(i)] = char(std::uint8_t(size >> (8 * i)));
    std::uint32_t const headerCrc = crc(crc32(0, nullptr, 0), bytes.data(), bytes.size());
    for (int i = 0; i < 4; ++i)
        bytes.push_back(char(std::uint8_t(headerCrc >> (8 * i))));
    return bytes;
}

// The header's size from the first PREFIX_SIZE bytes; 0 when they are not of an entry.
std::uint32_t readPrefix(char const* prefix) {
    if (std::memcmp(prefix, MAGIC, sizeof(MAGIC)) != 0)
        return 0;
    StByteReader in(prefix + sizeof(MAGIC), PREFIX_SIZE - sizeof(MAGIC));
    if (in.getU32() != StDiskStore::FORMAT_VERSION)
        return 0;
    std::uint32_t const size = in.getU32();
    return size > PREFIX_SIZE + 4 && size <= MAX_HEADER_SIZE ? size : 0;
}

std::optional<Header> parseHeader(std::string const& bytes) {
    std::size_t const body = bytes.size() - 4;
    StByteReader crcIn(bytes.data() + body, 4);
    if (crc(crc32(0, nullptr, 0), bytes.data(), body) != crcIn.getU32())
        return std::nullopt;
    StByteReader in(bytes.data() + PREFIX_SIZE, body - PREFIX_SIZE);
    Header header;
    header.size = std::uint32_t(bytes.size());
    if (!header.key.read(in))
        return std::nullopt;
    std::int32_t const comps = in.getI32();
    std::int32_t const depth = in.getI32();
    std::int32_t const aspectNum = in.getI32();
    std::int32_t const aspectDen = in.getI32();
    header.region.x1 = in.getI32();
    header.region.x2 = in.getI32();
    header.region.y1 = in.getI32();
    header.region.y2 = in.getI32();
    header.fill.r = in.getF32();
    header.fill.g = in.getF32();
    header.fill.b = in.getF32();
    header.fill.a = in.getF32();
    double const start = in.getF64();
    double const end = in.getF64();
    header.payloadBytes = in.getU64();
    header.payloadCrc = in.getU32();
    if (!in.isGood() || in.getPosition() != body - PREFIX_SIZE)
        return std::nullopt;
    if (!isValidComps(comps) || !isValidDepth(depth) || aspectNum <= 0 || aspectDen <= 0)
        return std::nullopt;
    GeRectangle<int> const& r = header.region;
    // Whole numbers only: a damaged rectangle must not make a huge buffer.
    if (std::int64_t(r.x2) - r.x1 < 0 || std::int64_t(r.y2) - r.y1 < 0 ||
        std::int64_t(r.x2) - r.x1 > MAX_TILE_SIDE || std::int64_t(r.y2) - r.y1 > MAX_TILE_SIDE)
        return std::nullopt;
    header.format = IxPixelFormat(IxPixelFormat::Comps(comps), IxPixelFormat::Depth(depth),
                                  Rational(aspectNum, aspectDen));
    header.interval = PxValidityInterval(start, end);
    if (header.interval.isEmpty() || header.payloadBytes != getPackedBytes(header.format, header.region))
        return std::nullopt;
    return header;
}

// The whole header of an open entry; nullopt when it is damaged, `error` set
// (to errno) when reading failed otherwise.
std::optional<Header> readHeader(int fd, std::uint64_t fileSize, int& error) {
    error = 0;
    if (fileSize < PREFIX_SIZE)
        return std::nullopt;
    char prefix[PREFIX_SIZE];
    ReadStatus status = readAt(fd, prefix, PREFIX_SIZE, 0);
    if (status != ReadStatus::OK) {
        error = status == ReadStatus::ERROR ? errno : 0;
        return std::nullopt;
    }
    std::uint32_t const size = readPrefix(prefix);
    if (size == 0 || size > fileSize)
        return std::nullopt;
    std::string bytes(size, '\0');
    status = readAt(fd, bytes.data(), size, 0);
    if (status != ReadStatus::OK) {
        error = status == ReadStatus::ERROR ? errno : 0;
        return std::nullopt;
    }
    std::optional<Header> header = parseHeader(bytes);
    if (header && fileSize != header->size + header->payloadBytes)
        return std::nullopt; // cut short, or something appended
    return header;
}

// Dates the file now, to the nanosecond: the file system's own stamp is as
// coarse as the kernel's tick, and entries written within one tick would
// then tie in the order of use.
void stampNow(int fd) {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    timespec const times[2] = {now, now};
    ::futimens(fd, times); // a failure only leaves the entry older than it is
}

void removeEntry(fs::path const& file) {
    std::error_code ignored;
    fs::remove(file, ignored);
}

bool isEntryName(fs::path const& file) {
    return file.extension() == StDiskStore::EXTENSION;
}

bool isTemporaryName(fs::path const& file) {
    return file.extension() == ".tmp";
}

} // namespace

StDiskStore& StDiskStore::getInstance() {
    static StDiskStore* const instance = new StDiskStore;
    return *instance;
}

StDiskStore::FolderState& StDiskStore::getState(fs::path const& folder) {
    std::lock_guard lock(_lock);
    std::unique_ptr<FolderState>& state = _folders[folder];
    if (!state)
        state = std::make_unique<FolderState>();
    return *state;
}

void StDiskStore::reset() {
    std::lock_guard lock(_lock);
    // States are never freed while the process runs: a thread may still use one.
    for (auto& [folder, state] : _folders) {
        state->failed = false;
        state->counted = false;
        state->bytes = 0;
    }
}

bool StDiskStore::hasFailed(fs::path const& folder) {
    return getState(folder).failed.load();
}

void StDiskStore::fail(fs::path const& folder, std::string const& what, int error) {
    if (getState(folder).failed.exchange(true))
        return;
    LgLog::outputEntry(LgLog::WARNING,
                       fmt::format("The disk cache of tiles in \"{}\" is off for this run: {}: {}",
                                   folder.string(), what, std::strerror(error)));
}

fs::path StDiskStore::getRelativePath(StTileKey const& key) {
    std::string const hash = toHex(key.getStableHash());
    return fs::path(hash.substr(0, 2)) / (toHex(key.getOwnerHash()) + "-" + hash + EXTENSION);
}

std::optional<StDiskStore::Location> StDiskStore::locate(StTileKey const& key) {
    std::optional<fs::path> folder = StInterface::getInstance().getDiskCacheFolder();
    if (!folder || getState(*folder).failed)
        return std::nullopt;
    Location location;
    location.key = key;
    location.file = *folder / getRelativePath(key);
    location.folder = std::move(*folder);
    return location;
}

PxImageResult StDiskStore::read(Location const& location) {
    QV_ASSERT(location.isSet());
    if (getState(location.folder).failed)
        return PxImageResult();
    PxWorkerBlockedGuard const blocked;
    FileDescriptor fd(::open(location.file.c_str(), O_RDONLY | O_CLOEXEC));
    if (fd.get() < 0) {
        if (errno != ENOENT && errno != ENOTDIR)
            fail(location.folder, fmt::format("cannot open \"{}\"", location.file.string()), errno);
        return PxImageResult();
    }
    struct stat info {};
    if (::fstat(fd.get(), &info) != 0) {
        fail(location.folder, fmt::format("cannot read \"{}\"", location.file.string()), errno);
        return PxImageResult();
    }
    int error = 0;
    std::optional<Header> const header = readHeader(fd.get(), std::uint64_t(info.st_size), error);
    if (error != 0) {
        fail(location.folder, fmt::format("cannot read \"{}\"", location.file.string()), error);
        return PxImageResult();
    }
    if (!header || !(header->key == location.key)) {
        removeEntry(location.file);
        return PxImageResult();
    }
    IxTile tile;
    try {
        tile = StBsBufferFactory::getInstance().createTile(header->format, header->region, BUFFER_LABEL,
                                                           header->fill);
    } catch (StBufferEx::ExOutOfBuffers const&) {
        return PxImageResult(); // no room for it now; the entry stays for later
    }
    if (header->payloadBytes > 0) {
        IxWriteGuard const out(tile);
        std::byte* const pixels = out.getLine(header->region.y1);
        ReadStatus const status = readAt(fd.get(), pixels, header->payloadBytes, off_t(header->size));
        if (status == ReadStatus::ERROR) {
            fail(location.folder, fmt::format("cannot read \"{}\"", location.file.string()), errno);
            return PxImageResult();
        }
        if (status == ReadStatus::SHORT ||
            crc(crc32(0, nullptr, 0), pixels, header->payloadBytes) != header->payloadCrc) {
            removeEntry(location.file);
            return PxImageResult();
        }
        // The rows were read packed; spread them to the tile's aligned rows,
        // last first, since each moves up in memory.
        std::size_t const packed = getPackedRowBytes(header->format, header->region);
        std::size_t const stride = tile.getRowBytes();
        for (int row = header->region.getHeight() - 1; row > 0; --row)
            std::memmove(pixels + std::size_t(row) * stride, pixels + std::size_t(row) * packed, packed);
    }
    auto const now = std::chrono::system_clock::now();
    auto const modified = std::chrono::system_clock::time_point(
        std::chrono::seconds(info.st_mtim.tv_sec) + std::chrono::nanoseconds(info.st_mtim.tv_nsec));
    if (now - modified > std::chrono::seconds(TOUCH_AFTER_SECONDS))
        stampNow(fd.get()); // renews its place in the order of use
    return PxImageResult(tile, header->interval);
}

void StDiskStore::write(Location const& location, PxImageResult const& result) {
    QV_ASSERT(location.isSet());
    IxTile const& tile = result.getTile();
    QV_ASSERT(tile.isValid());
    FolderState& state = getState(location.folder);
    if (state.failed)
        return;
    PxWorkerBlockedGuard const blocked;

    IxPixelFormat const& format = tile.getPixelFormat();
    GeRectangle<int> const& region = tile.getPixelRegion();
    std::size_t const packed = getPackedRowBytes(format, region);
    std::uint64_t const payloadBytes = getPackedBytes(format, region);
    std::optional<IxReadGuard> pixels;
    std::uint32_t payloadCrc = std::uint32_t(crc32(0, nullptr, 0));
    if (payloadBytes > 0) {
        pixels.emplace(tile);
        for (int y = region.y1; y < region.y2; ++y)
            payloadCrc = crc(payloadCrc, pixels->getLine(y), packed);
    }
    std::string const header = buildHeader(location.key, tile, result.getVI(), payloadBytes, payloadCrc);

    std::error_code error;
    fs::create_directories(location.file.parent_path(), error);
    if (error) {
        fail(location.folder,
             fmt::format("cannot make the folder \"{}\"", location.file.parent_path().string()),
             error.value());
        return;
    }
    fs::path const temporary =
        location.file.string() + fmt::format(".{}.{}.tmp", ::getpid(), _nextTemporary++);
    FileDescriptor fd(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    if (fd.get() < 0) {
        fail(location.folder, fmt::format("cannot write \"{}\"", temporary.string()), errno);
        return;
    }
    bool written = writeAll(fd.get(), header.data(), header.size());
    if (written && payloadBytes > 0) {
        // Rows go out in large writes, without their padding.
        std::vector<char> staging;
        staging.reserve(std::max(STAGING_SIZE, packed));
        for (int y = region.y1; y < region.y2 && written; ++y) {
            if (staging.size() + packed > staging.capacity()) {
                written = writeAll(fd.get(), staging.data(), staging.size());
                staging.clear();
            }
            char const* line = reinterpret_cast<char const*>(pixels->getLine(y));
            staging.insert(staging.end(), line, line + packed);
        }
        if (written)
            written = writeAll(fd.get(), staging.data(), staging.size());
    }
    int const writeError = errno;
    if (written)
        stampNow(fd.get());
    bool const closed = fd.close();
    if (!written || !closed) {
        int const reason = !written ? writeError : errno;
        removeEntry(temporary);
        fail(location.folder, fmt::format("cannot write \"{}\"", temporary.string()), reason);
        return;
    }
    if (::rename(temporary.c_str(), location.file.c_str()) != 0) {
        int const reason = errno;
        removeEntry(temporary);
        fail(location.folder, fmt::format("cannot rename \"{}\"", temporary.string()), reason);
        return;
    }
    std::uintmax_t const budget = StInterface::getInstance().getDiskCacheBudget();
    std::uintmax_t bytes = 0;
    if (!state.counted.load()) {
        bytes = sweep(location.folder, state, false);
    } else {
        bytes = state.bytes += header.size() + payloadBytes;
    }
    if (bytes > budget)
        sweep(location.folder, state, true);
}

std::uintmax_t StDiskStore::enforceBudget(fs::path const& folder) {
    return sweep(folder, getState(folder), true);
}

std::uintmax_t StDiskStore::sweep(fs::path const& folder, FolderState& state, bool always) {
    std::unique_lock lock(state.sweepLock, std::try_to_lock);
    if (!lock.owns_lock())
        return state.bytes; // another thread sweeps it now
    if (!always && state.counted)
        return state.bytes;

    struct Entry {
        fs::file_time_type modified;
        std::uintmax_t size;
        fs::path file;
    };
    std::vector<Entry> entries;
    std::uintmax_t total = 0;
    auto const now = fs::file_time_type::clock::now();
    std::error_code error;
    // Only this store's own files are counted and removed: the folder may hold anything else.
    for (fs::directory_iterator sub(folder, error), end; !error && sub != end; sub.increment(error)) {
        std::error_code ignored;
        if (!sub->is_directory(ignored) || sub->path().filename().string().size() != 2)
            continue;
        for (fs::directory_iterator it(sub->path(), ignored); !ignored && it != end; it.increment(ignored)) {
            fs::path const& file = it->path();
            std::error_code statError;
            fs::file_time_type const modified = it->last_write_time(statError);
            std::uintmax_t const size = it->file_size(statError);
            if (statError)
                continue; // removed meanwhile, by another process perhaps
            if (isTemporaryName(file)) {
                if (now - modified > std::chrono::seconds(STALE_TEMPORARY_SECONDS))
                    removeEntry(file);
            } else if (isEntryName(file)) {
                entries.push_back({modified, size, file});
                total += size;
            }
        }
    }
    std::uintmax_t const budget = StInterface::getInstance().getDiskCacheBudget();
    if (total > budget) {
        std::sort(entries.begin(), entries.end(),
                  [](Entry const& a, Entry const& b) { return a.modified < b.modified; });
        std::uintmax_t const target = budget / 10 * 9;
        for (Entry const& entry : entries) {
            if (total <= target)
                break;
            removeEntry(entry.file);
            total -= entry.size;
        }
    }
    state.bytes = total;
    state.counted = true;
    return total;
}

std::size_t StDiskStore::remove(Uuid const& storageId, std::string const& variant,
                                PxValidityInterval const& interval) {
    std::optional<fs::path> const folder = StInterface::getInstance().getDiskCacheFolder();
    if (!folder || getState(*folder).failed)
        return 0;
    StTileKey owner;
    owner.storageId = storageId;
    owner.variant = variant;
    std::string const prefix = toHex(owner.getOwnerHash()) + "-";
    PxWorkerBlockedGuard const blocked;
    std::size_t count = 0;
    std::error_code error;
    for (fs::directory_iterator sub(*folder, error), end; !error && sub != end; sub.increment(error)) {
        std::error_code ignored;
        if (!sub->is_directory(ignored))
            continue;
        for (fs::directory_iterator it(sub->path(), ignored); !ignored && it != end; it.increment(ignored)) {
            fs::path const& file = it->path();
            if (!isEntryName(file) || file.filename().string().rfind(prefix, 0) != 0)
                continue;
            FileDescriptor fd(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
            struct stat info {};
            if (fd.get() < 0 || ::fstat(fd.get(), &info) != 0)
                continue;
            int readError = 0;
            std::optional<Header> const header = readHeader(fd.get(), std::uint64_t(info.st_size), readError);
            if (readError != 0)
                continue;
            // A damaged entry goes as well: nobody could read it.
            if (!header || (header->key.storageId == storageId && header->key.variant == variant &&
                            header->interval.getIntersection(interval).isNonEmpty())) {
                removeEntry(file);
                ++count;
            }
        }
    }
    return count;
}

} // namespace Qv
