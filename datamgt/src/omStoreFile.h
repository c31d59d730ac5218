#pragma once
// The small files and paths of the project store: reading and writing its
// XML files with the failures of the file and XML layers reported as the
// store's own, and paths relative to a project.
#include "osFilePath.h"
#include "xmlElement.h"

#include <optional>
#include <string>
#include <string_view>

namespace Qv {

struct OmStoreFile {
    // Throws OmEx::ExBadEntry naming the file when it is missing, cannot be
    // read, is not XML or its root element is not `rootName`.
    static XmlElement read(OsFilePath const& path, std::string_view rootName);
    // Atomically. Throws OmEx::ExWriteFailed naming the file.
    static void write(OsFilePath const& path, XmlElement const& root);

    // Absolute and without "." or ".." components; links are not followed, so
    // the path keeps the names the user gave.
    static OsFilePath makeAbsolute(OsFilePath const& path);
    // `path` under `directory`, '/' separated: "" for the directory itself,
    // none when the path lies elsewhere. Both absolute and normal.
    static std::optional<std::string> relativeTo(OsFilePath const& path, OsFilePath const& directory);
};

} // namespace Qv
