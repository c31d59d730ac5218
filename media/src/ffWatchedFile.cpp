#include "ffWatchedFile.h"

namespace Qv {

FfWatchedFile::FfWatchedFile(std::string const& path) : IOFile(path, IOProxy::Read) {}

std::size_t FfWatchedFile::note(std::size_t asked, std::size_t got) {
    if (got < asked)
        _ranShort = true;
    return got;
}

std::size_t FfWatchedFile::read(void* buffer, std::size_t size) {
    return note(size, IOFile::read(buffer, size));
}

std::size_t FfWatchedFile::pread(void* buffer, std::size_t size, std::int64_t offset) {
    return note(size, IOFile::pread(buffer, size, offset));
}

} // namespace Qv
