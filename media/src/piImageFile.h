#pragma once
// One image file, for reading or for writing.
//
// Reading: the file's own size and format are known at open. Set the format
// wanted in memory (depth and component count), optionally which file channel
// feeds each component and a region of interest; then readStrip() gives the
// region's rows from top to bottom, a few at a time, and a null image after
// the last. A file that ends early throws FfIOEx::ExIncompleteFile, one
// whose data does not decode FfIOEx::ExCorruptFile.
//
// Writing: set the size, optionally the format to store and the format
// options, then give blocks of pixels (any format; the file converts) in rows
// of blocks from top to bottom, each row of blocks of one height, and close().
// The pixels go to a temporary file beside the target, renamed to it by
// close(): a file that is not closed, or whose writing failed, leaves nothing.
#include "ffFile.h"
#include "geRectangle.h"
#include "geVector.h"
#include "imFormat.h"
#include "imImageConst.h"
#include "imLayout.h"
#include "imMemory.h"

#include <string>
#include <utility>
#include <vector>

namespace Qv {

class PiImageFile : public FfFile {
public:
    // A channel assignment entry that is no channel of the file.
    static constexpr int ZERO_CHANNEL = -1;
    static constexpr int ONE_CHANNEL = -2;

    bool isForWriting() const { return _forWriting; }

    // Format options as text, "key=value" pairs (FfFileFormatOptionsMgr).
    // Throws FfIOEx::ExBadOptions for an option the format does not know.
    virtual void setFormatOptions(std::string const& options) = 0;
    virtual std::string getFormatOptions() const = 0;

    // The format of the pixels in memory (reading) or in the file (writing;
    // a depth the format cannot store becomes its nearest one).
    virtual void setFormat(ImFormat const& format) = 0;
    virtual ImFormat getFormat() const = 0;

    // --- reading
    // The file's size at the origin and its stored format; the component count
    // is the file's channel count, at most 4.
    virtual ImLayout getFileLayout() const = 0;
    virtual int getNbFileChannels() const = 0;
    virtual std::vector<std::string> getChannelNames() const = 0;
    // The file channel of each component in memory, or ZERO_CHANNEL, ONE_CHANNEL.
    // By default: red, green, blue from the first three (a grey file feeds all
    // three), alpha from the file's alpha, else 1; a single component is the
    // alpha, else the first channel.
    virtual void setChannelAssignment(std::vector<int> const& channels) = 0;
    virtual GeRectangle<int> getMaxRect() const = 0;
    // Clipped to getMaxRect(); reading starts again at its top.
    virtual void setRegion(GeRectangle<int> const& region) = 0;
    // Where strips get their memory; ImMemoryBuffer's factory unless set. The
    // factory must outlive the file.
    virtual void setMemoryFactory(ImMemory::Factory const& factory) = 0;
    virtual ImImageConst readStrip() = 0;
    // The file's metadata as name and value texts, for PiImageFileDetails.
    virtual std::vector<std::pair<std::string, std::string>> getAttributes() const = 0;

    // --- writing
    virtual void setSize(int width, int height) = 0;
    // Width and height of the blocks the format writes best: whole rows of a
    // few lines for the formats here; a width of 1 when the size is not set.
    // Of a file open for reading, the size of its strips.
    virtual GeVector2<int> getPreferredBlockSize() const = 0;
    virtual void writeBlock(ImImageConst const& block) = 0;
    virtual void close() = 0;

protected:
    PiImageFile(OsFilePath path, std::string formatName, bool forWriting)
        : FfFile(std::move(path), std::move(formatName)), _forWriting(forWriting) {}

private:
    bool _forWriting;
};

using PiImageFilePtr = RCShdPtr<PiImageFile>;

} // namespace Qv
