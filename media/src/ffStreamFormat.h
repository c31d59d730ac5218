#pragma once
// A format of movies, read through the image library's movie reader.
#include "ffFileFormat.h"

namespace Qv {

class FfStreamFormat : public FfFileFormat {
public:
    FfStreamFormat(std::string name, std::vector<std::string> extensions, std::string libraryName);

    // An FfStreamFile.
    FfFilePtr openFile(OsFilePath const& path) const override;
    // Throws FfIOEx::ExOpNotSupported: movies are written by the movie writer.
    FfFilePtr createFile(OsFilePath const& path) const override;

private:
    std::string _libraryName;
};

} // namespace Qv
