#pragma once
// The file formats of the system: the image formats that the image library
// reads (EXR, DPX, TIFF, PNG, JPEG, Cineon, TGA, SGI, HDR and more), and
// "MOV", the stream format of movies. Found by name or by extension; they
// open files and create them.
#include "ffFileFormat.h"
#include "piImageFile.h"

#include <string_view>
#include <vector>

namespace Qv {

class FfFileFormatMgr {
public:
    // Built on first use from what the image library offers; read only after.
    static FfFileFormatMgr& getInstance();

    std::vector<FfFileFormatPtr> const& getFormats() const { return _formats; }
    // By name, in any case: "EXR", "exr", "MOV"; also the image library's
    // plug-in name ("openexr"). Null when none.
    FfFileFormatPtr findFormat(std::string_view name) const;
    // By extension, in any case, with or without its dot, among the formats
    // of the kinds asked (FfFileFormat::Kind). Null when none.
    FfFileFormatPtr findFormatByExtension(std::string_view extension,
                                          int kinds = FfFileFormat::ANY_FORMAT) const;

    // Opens the file with the format of its extension. Throws
    // FfIOEx::ExUnknownFormat for an extension no format has, and what the
    // format throws (ExFileNotFound, ExReadError).
    FfFilePtr openFile(OsFilePath const& path) const;
    // The same for an image file; a file of another kind is ExUnknownFormat.
    PiImageFilePtr openImageFile(OsFilePath const& path) const;
    // A file to write in that format; see FfFileFormat::createFile.
    FfFilePtr createFile(OsFilePath const& path, FfFileFormat const& format) const;
    // An image file to write, its format from the extension. Throws
    // FfIOEx::ExUnknownFormat when no image format has it.
    PiImageFilePtr createImageFile(OsFilePath const& path) const;

private:
    FfFileFormatMgr();

    std::vector<FfFileFormatPtr> _formats;
};

} // namespace Qv
