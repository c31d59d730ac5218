#pragma once
// Writes one image file through the image library, atomically: the pixels go
// to a temporary file in the target's folder, renamed to the target when the
// last row is written and the file closed. A writer destroyed before that, or
// after a failure, removes the temporary file.
//
// Blocks come in rows of blocks from top to bottom. A block of whole rows in
// the stored component count goes to the library as it is; narrower blocks
// are gathered into a band of rows, in any order, written when every pixel
// of the band has come (FfBandCoverage): a block given again or over another
// replaces those pixels and adds none. After a failure, or a close with rows
// missing, the temporary file is gone and the writer takes nothing more.
#include "ffBandCoverage.h"
#include "ffFileFormatOptions.h"
#include "ffImageFormatTraits.h"
#include "geVector.h"
#include "imImage.h"
#include "osFilePath.h"

#include <OpenImageIO/oiioversion.h>
#include <memory>
#include <string>
#include <vector>

OIIO_NAMESPACE_BEGIN
class ImageOutput;
OIIO_NAMESPACE_END

namespace Qv {

class FfImageWriter {
public:
    // Throws FfIOEx::ExOpNotSupported for a format that cannot write,
    // ExWriteError when the target's folder is not there.
    FfImageWriter(OsFilePath const& path, FfImageFormatTraits const& traits);
    ~FfImageWriter();

    void setOptions(FfFileFormatOptionsPtr options) { _options = std::move(options); }
    FfFileFormatOptions const& getOptions() const { return *_options; }
    // Before the first block, else FfIOEx::ExOpNotSupported.
    void setSize(int width, int height);
    void setFormat(ImFormat const& format);
    // Before the first block: names of the stored components, none of them an
    // alpha (motion vectors as "R", "G", say). Names that do not match the
    // stored count are ignored, and the defaults of the count are used.
    void setChannelNames(std::vector<std::string> names);
    // The stored format: the one set, else the first block's, as the format stores it.
    ImFormat getFormat() const;
    GeVector2<int> getPreferredBlockSize() const;
    // Throws FfIOEx::ExOpNotSupported for a block out of order or outside the
    // image, or after the writer gave up; ExWriteError when the library fails.
    void writeBlock(ImImageConst const& block);
    // Throws FfIOEx::ExIncompleteFile when pixels are missing, ExWriteError.
    void close();

private:
    void open(ImFormat const& blockFormat);
    void writeRows(ImImageConst const& rows);
    // Closes the library's file, removes the temporary one, and takes no more blocks.
    void discard();
    [[noreturn]] void fail(char const* file, int line, std::string const& detail);

    OsFilePath _path;
    OsFilePath _temporary;
    FfImageFormatTraits _traits;
    FfFileFormatOptionsPtr _options;
    std::unique_ptr<OIIO::ImageOutput> _output;
    GeVector2<int> _size;
    ImFormat _format; // as set
    ImFormat _stored; // as written, once open
    std::vector<std::string> _channelNames;
    ImImage _band; // rows being gathered from narrow blocks
    FfBandCoverage _bandCoverage;
    int _nextY = 0;
    bool _closed = false;
    bool _discarded = false;
};

} // namespace Qv
