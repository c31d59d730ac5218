#pragma once
// A file opened or created through a file format: an image file
// (PiImageFile) or a stream file (FfStreamFile). Shared by whoever uses it;
// callers find its kind with rcDynamicCast.
#include "osFilePath.h"
#include "rcBase.h"
#include "rcShdPtr.h"

#include <string>

namespace Qv {

class FfFile : public RCBase<> {
public:
    OsFilePath const& getPath() const { return _path; }
    // The name of its format, as FfFileFormatMgr knows it ("EXR", "MOV").
    std::string const& getFormatName() const { return _formatName; }

protected:
    FfFile(OsFilePath path, std::string formatName)
        : _path(std::move(path)), _formatName(std::move(formatName)) {}
    ~FfFile() override = default;

private:
    OsFilePath _path;
    std::string _formatName;
};

using FfFilePtr = RCShdPtr<FfFile>;

} // namespace Qv
