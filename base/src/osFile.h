#pragma once
// Access to one regular file through its path.
#include "liDate.h"
#include "osFilePath.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace Qv {

class OsFile {
public:
    explicit OsFile(OsFilePath path) : _path(std::move(path)) {}

    OsFilePath const& getPath() const { return _path; }

    // A regular file (or a link to one) is there.
    bool exists() const;
    // It exists and this process may write it.
    bool isWritable() const;
    // Throws OsFileEx::ExFileNotFound.
    std::uintmax_t getSize() const;
    // When the content last changed, to the whole second (LiDate keeps no
    // fraction: two changes within one second may give the same date, two a
    // second or more apart never do). Throws OsFileEx::ExFileNotFound,
    // ExInvalidPath for a directory, ExIOError.
    LiDate getModificationDate() const;

    // Removes the file; false when there was none. Throws
    // OsFileEx::ExInvalidPath for a directory, OsFileEx::ExIOError when the
    // system refuses.
    bool remove() const;
    // Moves the file to `target`, replacing a file there. This object keeps
    // naming the old path. Throws OsFileEx::ExFileNotFound, ExIOError.
    void renameTo(OsFilePath const& target) const;

    // The whole content. Throws OsFileEx::ExFileNotFound, ExInvalidPath for a
    // directory, ExIOError.
    std::string readText() const;
    // Replaces the content so that no reader ever sees a part of it: it goes
    // to a new file beside this one, which is then renamed over it. On any
    // failure the old file is left as it was and the new one removed. Refuses
    // a file that is read only and a directory. Throws OsFileEx::ExInvalidPath,
    // ExIOError.
    void writeAtomically(std::string_view content) const;

private:
    OsFilePath _path;
};

} // namespace Qv
