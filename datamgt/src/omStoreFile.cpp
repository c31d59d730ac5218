#include "omStoreFile.h"

#include "omEx.h"
#include "osFileEx.h"
#include "xmlEx.h"
#include "xmlWriter.h"

#include <filesystem>
#include <fmt/format.h>

namespace Qv {

XmlElement OmStoreFile::read(OsFilePath const& path, std::string_view rootName) {
    try {
        XmlElement root = XmlElement::parseFile(path);
        if (root.getNodeName() != rootName)
            throw OmEx::ExBadEntry(__FILE__, __LINE__,
                                   fmt::format("'{}': <{}> where <{}> was expected", path.toString(),
                                               root.getNodeName(), rootName));
        return root;
    } catch (XmlEx::ExXmlError const& error) {
        throw OmEx::ExBadEntry(__FILE__, __LINE__,
                               fmt::format("'{}': {}", path.toString(), error.getReason()));
    } catch (OsFileEx::ExFileError const& error) {
        throw OmEx::ExBadEntry(__FILE__, __LINE__, error.getReason());
    }
}

void OmStoreFile::write(OsFilePath const& path, XmlElement const& root) {
    try {
        XmlWriter::writeFile(path, root);
    } catch (OsFileEx::ExFileError const& error) {
        // The file layer's reason names the file and the system's cause.
        throw OmEx::ExWriteFailed(__FILE__, __LINE__, error.getReason());
    }
}

OsFilePath OmStoreFile::makeAbsolute(OsFilePath const& path) {
    return OsFilePath(std::filesystem::absolute(path.toStdPath()).lexically_normal().string());
}

std::optional<std::string> OmStoreFile::relativeTo(OsFilePath const& path, OsFilePath const& directory) {
    std::string const& text = path.toString();
    std::string const& dir = directory.toString();
    if (text == dir)
        return std::string();
    // The root directory alone already ends with its separator.
    std::size_t const length = dir.ends_with('/') ? dir.size() : dir.size() + 1;
    if (text.size() <= length || !text.starts_with(dir) || text[length - 1] != '/')
        return std::nullopt;
    return text.substr(length);
}

} // namespace Qv
