#pragma once
// A numbered collection of images that a tool reads by index: one file per
// frame, or the frames of one movie. The reader node asks it for the file at
// an index; a composition keeps it as a small XML fragment, read back through
// the factory registered for the fragment's root tag. The kinds themselves
// live in the tool library, which registers their factories at its start.
//
// Shared by RCStrongPtr between a tool, its controller and its processing
// node; immutable but for the format options (and what a kind caches).
// Reading is called from many worker threads at once, one file per call.
#include "coMotionVectorInfo.h"
#include "imMemory.h"
#include "piImageFile.h"
#include "rational.h"
#include "rcBase.h"
#include "rcStrongPtr.h"

#include <functional>
#include <iosfwd>
#include <mutex>
#include <string>

namespace Qv {

class XmlElement;

class PiImageSequence : public RCBase<> {
public:
    ~PiImageSequence() override = default;

    virtual int getNbImages() const = 0;
    // The path text in sequence notation, or the movie's path.
    virtual std::string getPath() const = 0;
    virtual std::string getSequenceName() const = 0;

    // The file at an index (a position in the sequence, not a frame number),
    // open for reading, with the sequence's format options and the memory
    // factory handed to it. Throws FfIOEx: what opening throws (a missing
    // file), FfIOEx::ExUnknownFormat for a file that is no image file.
    virtual PiImageFilePtr getImageForReading(int index, ImMemory::Factory const& factory) const;
    // A new file at an index, its format from the file's extension, `options`
    // handed to it. Throws FfIOEx::ExUnknownFormat when no image format has it.
    virtual PiImageFilePtr getImageForWriting(int index, std::string const& options);
    virtual std::string getFileNameAt(int index) const = 0;

    virtual std::string getFileFormatOptions() const;
    virtual void setFileFormatOptions(std::string const& options);
    // Whether its files may be missing yet (the frames of a render to come).
    virtual bool nonExistentMediaAllowed() const { return _nonExistentMediaAllowed; }
    virtual bool isStream() const = 0;
    // The frame number of index 0; 0 for a movie.
    virtual int getStartFileNo() const { return 0; }
    // Frames per second as the media says (a movie); 0/1 when it does not.
    virtual Rational getRate() const { return Rational(0, 1); }
    // How its pixels carry motion vectors: none unless a kind says.
    virtual CoMotionVectorInfo getMotionVectorInfo() const { return _motionVectorInfo; }
    // The XML fragment that createFromFragment reads back.
    virtual void write(std::ostream& os) const = 0;

    // Readers of fragments, by root tag. Registering a tag again replaces its
    // reader; the registry is safe to use from any thread.
    using Factory = std::function<RCStrongPtr<PiImageSequence>(XmlElement const& root)>;
    static void registerFactory(std::string const& tag, Factory factory);
    static void unregisterFactory(std::string const& tag);
    // Null when no reader has the root's tag or the reader made no sequence.
    // Malformed XML throws XmlEx::ExParseError; what a reader throws passes.
    static RCStrongPtr<PiImageSequence> createFromFragment(std::string const& xml);

protected:
    PiImageSequence() = default;
    void setNonExistentMediaAllowed(bool allowed) { _nonExistentMediaAllowed = allowed; }
    void setMotionVectorInfo(CoMotionVectorInfo const& info) { _motionVectorInfo = info; }

private:
    bool _nonExistentMediaAllowed = false;
    CoMotionVectorInfo _motionVectorInfo;
    // Options are set on the application thread while workers open files.
    mutable std::mutex _optionsLock;
    std::string _fileFormatOptions;
};

using PiImageSequencePtr = RCStrongPtr<PiImageSequence>;

} // namespace Qv
