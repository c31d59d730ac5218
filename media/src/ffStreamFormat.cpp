#include "ffStreamFormat.h"

#include "ffIOEx.h"
#include "ffStreamFile.h"

namespace Qv {

FfStreamFormat::FfStreamFormat(std::string name, std::vector<std::string> extensions, std::string libraryName)
    : FfFileFormat(std::move(name), std::move(extensions), STREAM_FORMAT, false),
      _libraryName(std::move(libraryName)) {}

FfFilePtr FfStreamFormat::openFile(OsFilePath const& path) const {
    return FfFilePtr(new FfStreamFile(path, getName(), _libraryName));
}

FfFilePtr FfStreamFormat::createFile(OsFilePath const& path) const {
    throw FfIOEx::ExOpNotSupported(__FILE__, __LINE__, path.toString(),
                                   getName() + " files are written by the movie writer");
}

} // namespace Qv
