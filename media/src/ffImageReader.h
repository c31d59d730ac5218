#pragma once
// Reads one image file in strips through the image library: the file is
// opened once, its header read once, and each strip's rows are read straight
// into the strip's memory in the depth asked, when the channels wanted are
// a run of the file's; otherwise through one scratch buffer per reader.
//
// A read fails when the library says so, and also when it returns with an
// error pending (JPEG's and uncompressed TIFF's do, filling what they could
// not decode). Whether the file was cut short or is damaged, FfReadFailure
// tells from what the library did and said.
#include "ffImageFormatTraits.h"
#include "geRectangle.h"
#include "geVector.h"
#include "imImage.h"
#include "imLayout.h"
#include "imWriteGuard.h"
#include "osFilePath.h"

#include <OpenImageIO/oiioversion.h>
#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

OIIO_NAMESPACE_BEGIN
class ImageInput;
OIIO_NAMESPACE_END

namespace Qv {

class FfWatchedFile;

class FfImageReader {
public:
    // Opens the file and reads its header. Throws FfIOEx::ExFileNotFound,
    // ExUnknownFormat when the library cannot read it, ExIncompleteFile when
    // the header is cut short, ExReadError.
    FfImageReader(OsFilePath const& path, FfImageFormatTraits const& traits);
    ~FfImageReader();

    ImLayout const& getFileLayout() const { return _fileLayout; }
    int getNbFileChannels() const;
    std::vector<std::string> getChannelNames() const;
    std::vector<std::pair<std::string, std::string>> getAttributes() const;

    void setFormat(ImFormat const& format);
    ImFormat const& getFormat() const { return _format; }
    // Asserts one entry per component, each a file channel or a constant.
    void setChannelAssignment(std::vector<int> const& channels);
    void setRegion(GeRectangle<int> const& region);
    void setMemoryFactory(ImMemory::Factory const& factory) { _factory = &factory; }
    // Throws FfIOEx::ExIncompleteFile when the file ends before the strip's
    // rows, ExCorruptFile when they do not decode.
    ImImageConst readStrip();
    // Width and height of a full strip.
    GeVector2<int> getStripSize() const { return {_region.getWidth(), _stripRows}; }

private:
    std::vector<int> defaultAssignment(int comps) const;
    ImImage allocateStrip(ImLayout const& layout);
    void read(int y1, int y2, int chBegin, int chEnd, ImPixelFormat depth, std::byte* data,
              std::size_t rowBytes);
    void shuffle(std::byte const* scratch, int chBegin, int chEnd, ImWriteGuard const& dst,
                 int xOffset) const;

    OsFilePath _path;
    std::unique_ptr<FfWatchedFile> _watch; // outlives the input that reads through it
    std::unique_ptr<OIIO::ImageInput> _input;
    ImLayout _fileLayout;
    ImFormat _format;
    std::vector<int> _channels;
    GeRectangle<int> _region;
    int _nextY = 0;
    int _stripRows = 64;
    ImMemory::Factory const* _factory;
    std::array<ImMemoryPtr, 2> _pool;
    std::vector<std::byte> _scratch;
};

} // namespace Qv
