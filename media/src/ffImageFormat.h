#pragma once
// A format of single images, read and written through the image library.
#include "ffFileFormat.h"
#include "ffImageFormatTraits.h"

namespace Qv {

class FfImageFormat : public FfFileFormat {
public:
    FfImageFormat(FfImageFormatTraits traits, std::vector<std::string> extensions, bool canWrite);

    FfImageFormatTraits const& getTraits() const { return _traits; }
    // Both give a PiImageFile.
    FfFilePtr openFile(OsFilePath const& path) const override;
    FfFilePtr createFile(OsFilePath const& path) const override;

private:
    FfImageFormatTraits _traits;
};

} // namespace Qv
