#pragma once
// A file as the image library reads it, noting whether a read came back with
// fewer bytes than it asked: for a library that asks for no byte past what it
// needs, the file ran out before its data did.
#include <OpenImageIO/filesystem.h>
#include <atomic>
#include <cstdint>
#include <string>

namespace Qv {

class FfWatchedFile final : public OIIO::Filesystem::IOFile {
public:
    explicit FfWatchedFile(std::string const& path);

    using IOFile::read;
    std::size_t read(void* buffer, std::size_t size) override;
    std::size_t pread(void* buffer, std::size_t size, std::int64_t offset) override;

    bool ranShort() const { return _ranShort; }

private:
    std::size_t note(std::size_t asked, std::size_t got);

    // The library may read from its own threads.
    std::atomic<bool> _ranShort = false;
};

} // namespace Qv
