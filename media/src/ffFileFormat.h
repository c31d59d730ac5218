#pragma once
// A file format: its name, its extensions, whether it holds single images or
// streams of frames, and the files it opens and creates.
#include "ffFile.h"
#include "osFilePath.h"
#include "rcBase.h"
#include "rcShdPtr.h"

#include <string>
#include <vector>

namespace Qv {

class FfFileFormat : public RCBase<> {
public:
    // The kinds asked of FfFileFormatMgr::findFormatByExtension.
    enum Kind { IMAGE_FORMAT = 1, STREAM_FORMAT = 2, ANY_FORMAT = IMAGE_FORMAT | STREAM_FORMAT };

    std::string const& getName() const { return _name; }
    // Lower case, without the dot; the first is the one files are given.
    std::vector<std::string> const& getExtensions() const { return _extensions; }
    Kind getKind() const { return _kind; }
    bool isImageFormat() const { return _kind == IMAGE_FORMAT; }
    bool isStreamFormat() const { return _kind == STREAM_FORMAT; }
    bool canWrite() const { return _canWrite; }

    // Opens an existing file. Throws FfIOEx::ExFileNotFound, ExReadError.
    virtual FfFilePtr openFile(OsFilePath const& path) const = 0;
    // A file to write at the path. Throws FfIOEx::ExOpNotSupported for a
    // format that cannot write, ExWriteError for a folder that is not there.
    virtual FfFilePtr createFile(OsFilePath const& path) const = 0;

protected:
    FfFileFormat(std::string name, std::vector<std::string> extensions, Kind kind, bool canWrite)
        : _name(std::move(name)), _extensions(std::move(extensions)), _kind(kind), _canWrite(canWrite) {}
    ~FfFileFormat() override = default;

private:
    std::string _name;
    std::vector<std::string> _extensions;
    Kind _kind;
    bool _canWrite;
};

using FfFileFormatPtr = RCShdPtr<FfFileFormat>;

} // namespace Qv
