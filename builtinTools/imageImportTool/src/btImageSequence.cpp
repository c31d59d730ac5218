#include "btImageSequence.h"

#include "assertions.h"
#include "btSequencePath.h"
#include "ffFileFormatMgr.h"
#include "ffIOEx.h"
#include "ffStreamFile.h"
#include "ffStreamFrameFile.h"
#include "imMemoryBuffer.h"
#include "liStringUtil.h"
#include "wideStringUtil.h"
#include "xmlElement.h"
#include "xmlWriter.h"

#include <filesystem>
#include <list>
#include <memory>
#include <mutex>
#include <ostream>
#include <sstream>

namespace Qv {

std::string const BtImageSequence::IMAGE_SEQUENCE_ROOT_TAG = "ImageSequence";
std::string const BtImageSequence::STREAM_SEQUENCE_ROOT_TAG = "StreamSequence";

namespace {

std::string const PATH_TAG = "Path";
// The older form, which listed files and frames one by one.
std::string const LEGACY_SEQUENCE_TAG = "Sequence";
std::string const LEGACY_PREFIX_TAG = "Prefix";
std::string const LEGACY_SUFFIX_TAG = "Suffix";
std::string const LEGACY_GROUP_TAG = "FrameSequence";
std::string const LEGACY_FRAME_TAG = "Frame";
std::string const LEGACY_FRAMES_TAG = "Frames";
std::string const LEGACY_FROM_ATTRIBUTE = "From";
std::string const LEGACY_TO_ATTRIBUTE = "To";
std::string const LEGACY_FILE_TAG = "File";

void writeFragment(std::ostream& os, std::string const& rootTag, std::string const& path) {
    std::ostringstream text;
    XmlWriter writer(text);
    writer.openTag(rootTag);
    writer.writeTag(PATH_TAG, BtImageSequence::getLocationSubstituter().substitute(path));
    writer.closeTag();
    os << text.str();
}

// One file per frame, named by a sequence path.
class ImgFileSequence final : public PiImageSequence {
public:
    ImgFileSequence(OPtrRet<BtSequencePath> path, int flags)
        : _path(std::move(path)), _pathText(_path->getPath()), _sequenceName(_path->getSequenceName()) {
        setNonExistentMediaAllowed((flags & BtImageSequence::ALLOW_NON_EXISTENT_MEDIA) != 0);
    }

    int getNbImages() const override { return _path->getNbFiles(); }
    // Kept as text: the path's own spelling is cached unguarded, and workers ask.
    std::string getPath() const override { return _pathText; }
    std::string getSequenceName() const override { return _sequenceName; }
    // An index past the end has no frame text: prefix and suffix alone.
    std::string getFileNameAt(int index) const override { return _path->getFileNameAt(index); }
    bool isStream() const override { return false; }
    int getStartFileNo() const override { return _path->getStartFileNo(); }
    void write(std::ostream& os) const override {
        writeFragment(os, BtImageSequence::IMAGE_SEQUENCE_ROOT_TAG, _pathText);
    }

    PiImageFilePtr getImageForWriting(int index, std::string const& options) override {
        std::string const name = getFileNameAt(index);
        FfFileFormatMgr const& formats = FfFileFormatMgr::getInstance();
        FfFileFormatPtr const format = getWriteFormat();
        PiImageFilePtr const file = rcDynamicCast<PiImageFile>(formats.createFile(OsFilePath(name), *format));
        if (file.isNull())
            throw FfIOEx::ExUnknownFormat(__FILE__, __LINE__, WideStringUtil::widen(name));
        file->setFormatOptions(options);
        return file;
    }

private:
    // Found once, by the extension of the pattern; a render writes every
    // frame of the sequence in it.
    FfFileFormatPtr getWriteFormat() {
        std::lock_guard const guard(_formatLock);
        if (_imageFormat.isNull()) {
            _imageFormat = FfFileFormatMgr::getInstance().findFormatByExtension(
                OsFilePath(_path->getPattern()).getExtension(), FfFileFormat::IMAGE_FORMAT);
            if (_imageFormat.isNull())
                throw FfIOEx::ExUnknownFormat(__FILE__, __LINE__, WideStringUtil::widen(getFileNameAt(0)));
        }
        return _imageFormat;
    }

    OPtr<BtSequencePath> const _path;
    std::string const _pathText;
    std::string const _sequenceName;
    std::mutex _formatLock;
    FfFileFormatPtr _imageFormat;
};

// Every frame inside one movie, opened once.
class StreamFileSequence final : public PiImageSequence {
public:
    explicit StreamFileSequence(OsFilePath const& path) : _path(path), _lock(std::make_shared<std::mutex>()) {
        _movie = rcDynamicCast<FfStreamFile>(FfFileFormatMgr::getInstance().openFile(path));
        if (_movie.isNull())
            throw FfIOEx::ExUnknownFormat(__FILE__, __LINE__, path.toString());
        // Named as a file of a sequence would be: "clip.0001.mov" is "clip".
        _sequenceName = BtSequencePath::createFromFilePath(path.toString())->getSequenceName();
    }

    int getNbImages() const override { return _movie->getNbFrames(); }
    std::string getPath() const override { return _path.toString(); }
    std::string getSequenceName() const override { return _sequenceName; }
    std::string getFileNameAt(int) const override { return _path.toString(); }
    bool isStream() const override { return true; }
    Rational getRate() const override { return _movie->getRate(); }
    void write(std::ostream& os) const override {
        writeFragment(os, BtImageSequence::STREAM_SEQUENCE_ROOT_TAG, _path.toString());
    }

    PiImageFilePtr getImageForReading(int index, ImMemory::Factory const& factory) const override {
        PiImageFilePtr const file(new FfStreamFrameFile(_movie, _lock, index));
        file->setFormatOptions(getFileFormatOptions());
        file->setMemoryFactory(factory);
        return file;
    }
    PiImageFilePtr getImageForWriting(int, std::string const&) override {
        throw FfIOEx::ExOpNotSupported(__FILE__, __LINE__, _path.toString(),
                                       "movies are written by the movie writer, not frame by frame");
    }

private:
    OsFilePath const _path;
    RCShdPtr<FfStreamFile> _movie;
    // The movie's reader seeks: one frame read at a time.
    std::shared_ptr<std::mutex> const _lock;
    std::string _sequenceName;
};

// The current form holds the path; the older one lists files and frames,
// which are gathered into one path and made again in the current form.
RCStrongPtr<PiImageSequence> readImageSequence(XmlElement const& root) {
    QV_ASSERT_MSG(root.getNodeName() == BtImageSequence::IMAGE_SEQUENCE_ROOT_TAG,
                  "root.getNodeName() == BtImageSequence::IMAGE_SEQUENCE_ROOT_TAG");
    std::list<XmlElement> const& elements = root.getChildren();
    if (!elements.empty() && elements.front().getNodeName() == PATH_TAG) {
        std::string const& data = elements.front().getData();
        if (data.empty())
            return {};
        return RCStrongPtr<PiImageSequence>(
            new ImgFileSequence(BtSequencePath::create(BtImageSequence::getLocationExpander().substitute(
                                    WideStringUtil::narrowMB(data))),
                                BtImageSequence::NO_CHECK));
    }
    OPtr<BtSequencePath> collected = BtSequencePath::create();
    for (XmlElement const& child : elements) {
        if (child.getNodeName() != LEGACY_SEQUENCE_TAG) {
            collected->addFileName(WideStringUtil::narrowMB(child.getData()));
            continue;
        }
        XmlElement const* prefixElement = child.findChild(LEGACY_PREFIX_TAG);
        XmlElement const* suffixElement = child.findChild(LEGACY_SUFFIX_TAG);
        std::string const prefix = prefixElement ? WideStringUtil::narrowMB(prefixElement->getData()) : "";
        std::string const suffix = suffixElement ? WideStringUtil::narrowMB(suffixElement->getData()) : "";
        for (XmlElement const& group : child.getChildren()) {
            if (group.getNodeName() != LEGACY_GROUP_TAG)
                continue;
            for (XmlElement const& item : group.getChildren()) {
                if (item.getNodeName() == LEGACY_FRAME_TAG) {
                    collected->addFileName(prefix + WideStringUtil::narrowMB(item.getData()) + suffix);
                } else if (item.getNodeName() == LEGACY_FRAMES_TAG) {
                    std::string const from = item.getAttribute(LEGACY_FROM_ATTRIBUTE);
                    int const first = item.getIntAttribute(LEGACY_FROM_ATTRIBUTE);
                    int const last = item.getIntAttribute(LEGACY_TO_ATTRIBUTE);
                    // Numbers as wide as the first one was written: "0098" to "0102".
                    for (int n = first; n <= last; ++n) {
                        std::string number = LiStringUtil::convertNb(n);
                        if (number.size() < from.size())
                            number.insert(0, from.size() - number.size(), '0');
                        collected->addFileName(prefix + number + suffix);
                    }
                } else if (item.getNodeName() == LEGACY_FILE_TAG) {
                    collected->addFileName(WideStringUtil::narrowMB(item.getData()));
                }
            }
        }
    }
    if (collected->getNbFiles() <= 0)
        return {};
    return BtImageSequence::create(collected->getPath(), BtImageSequence::NO_CHECK);
}

RCStrongPtr<PiImageSequence> readStreamSequence(XmlElement const& root) {
    std::list<XmlElement> const& elements = root.getChildren();
    QV_ASSERT_MSG(elements.size() == 1, "elements.getCardinality() == 1");
    return RCStrongPtr<PiImageSequence>(
        new StreamFileSequence(OsFilePath(BtImageSequence::getLocationExpander().substitute(
            WideStringUtil::narrowMB(elements.front().getData())))));
}

OPtrRet<PiImageSequence> createFileSequence(OPtrRet<BtSequencePath> path, int flags) {
    auto sequence = std::make_unique<ImgFileSequence>(std::move(path), flags);
    if ((flags & BtImageSequence::CHECK_FIRST_FILE) != 0) {
        bool const mayBeMissing = (flags & BtImageSequence::ALLOW_NON_EXISTENT_MEDIA) != 0;
        std::error_code error;
        if (!mayBeMissing || std::filesystem::exists(sequence->getFileNameAt(0), error))
            sequence->getImageForReading(0, ImMemoryBuffer::Factory::getInstance());
    }
    return sequence;
}

// Null for a path that is a movie; throws when no format has its extension.
FfFileFormatPtr findFormatOf(std::string const& path) {
    OsFilePath const file(path);
    FfFileFormatPtr const format = FfFileFormatMgr::getInstance().findFormatByExtension(file.getExtension());
    if (format.isNull())
        throw FfIOEx::ExUnknownFormat(__FILE__, __LINE__, file.toString());
    return format;
}

} // namespace

OPtrRet<PiImageSequence> BtImageSequence::create(std::string const& path, int flags) {
    if (findFormatOf(path)->isStreamFormat())
        return std::make_unique<StreamFileSequence>(OsFilePath(path));
    return createFileSequence(BtSequencePath::create(path), flags);
}

OPtrRet<PiImageSequence> BtImageSequence::create(std::string const& path, int in, int out, int flags) {
    if (findFormatOf(path)->isStreamFormat())
        return std::make_unique<StreamFileSequence>(OsFilePath(path));
    return createFileSequence(BtSequencePath::create(path, in, out), flags);
}

void BtImageSequence::initialize() {
    PiImageSequence::registerFactory(IMAGE_SEQUENCE_ROOT_TAG, readImageSequence);
    PiImageSequence::registerFactory(STREAM_SEQUENCE_ROOT_TAG, readStreamSequence);
}

void BtImageSequence::finalize() {
    PiImageSequence::unregisterFactory(STREAM_SEQUENCE_ROOT_TAG);
    PiImageSequence::unregisterFactory(IMAGE_SEQUENCE_ROOT_TAG);
}

LiStringSubstituter& BtImageSequence::getLocationSubstituter() {
    static LiStringSubstituter substituter;
    return substituter;
}

LiStringSubstituter& BtImageSequence::getLocationExpander() {
    static LiStringSubstituter expander;
    return expander;
}

} // namespace Qv
