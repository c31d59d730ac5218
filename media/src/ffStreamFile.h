#pragma once
// A movie: many frames in one file, read through the image library's movie
// reader. Movies are written by the movie writer process, not here.
#include "ffFile.h"
#include "imImageConst.h"
#include "imMemory.h"
#include "rational.h"

#include <OpenImageIO/oiioversion.h>
#include <memory>

OIIO_NAMESPACE_BEGIN
class ImageInput;
OIIO_NAMESPACE_END

namespace Qv {

class FfStreamFile : public FfFile {
public:
    // Throws FfIOEx::ExFileNotFound, ExReadError.
    FfStreamFile(OsFilePath const& path, std::string formatName, std::string const& libraryName);
    ~FfStreamFile() override;

    int getNbFrames() const { return _nbFrames; }
    int getWidth() const;
    int getHeight() const;
    // The channels of its frames as the movie stores them (readFrame keeps at most 4).
    int getNbChannels() const;
    // Frames per second; 0/1 when the movie does not say.
    Rational getRate() const;
    // The whole frame, with the movie's channels in 8 bits. Throws
    // FfIOEx::ExReadError for an index out of the movie or a failed read.
    ImImageConst readFrame(int index, ImMemory::Factory const& factory);

private:
    std::unique_ptr<OIIO::ImageInput> _input;
    int _nbFrames = 0;
};

} // namespace Qv
