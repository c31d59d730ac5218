#include "ffImageFormat.h"

#include "ffIOEx.h"
#include "ffImageFile.h"

namespace Qv {

FfImageFormat::FfImageFormat(FfImageFormatTraits traits, std::vector<std::string> extensions, bool canWrite)
    : FfFileFormat(traits.name, std::move(extensions), IMAGE_FORMAT, canWrite), _traits(std::move(traits)) {}

FfFilePtr FfImageFormat::openFile(OsFilePath const& path) const {
    return FfImageFile::open(path, _traits);
}

FfFilePtr FfImageFormat::createFile(OsFilePath const& path) const {
    if (!canWrite())
        throw FfIOEx::ExOpNotSupported(__FILE__, __LINE__, path.toString(),
                                       getName() + " files are read only");
    return FfImageFile::create(path, _traits);
}

} // namespace Qv
