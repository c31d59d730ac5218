#include "ffImageFile.h"

#include "ffFileFormatOptionsMgr.h"
#include "ffIOEx.h"

namespace Qv {

FfImageFile::FfImageFile(OsFilePath const& path, FfImageFormatTraits const& traits, bool forWriting)
    : PiImageFile(path, traits.name, forWriting) {}

RCShdPtr<FfImageFile> FfImageFile::open(OsFilePath const& path, FfImageFormatTraits const& traits) {
    RCShdPtr<FfImageFile> file(new FfImageFile(path, traits, false));
    file->_reader = std::make_unique<FfImageReader>(path, traits);
    return file;
}

RCShdPtr<FfImageFile> FfImageFile::create(OsFilePath const& path, FfImageFormatTraits const& traits) {
    RCShdPtr<FfImageFile> file(new FfImageFile(path, traits, true));
    file->_writer = std::make_unique<FfImageWriter>(path, traits);
    return file;
}

FfImageReader& FfImageFile::reader() const {
    if (!_reader)
        throw FfIOEx::ExOpNotSupported(__FILE__, __LINE__, getPath().toString(),
                                       "the file is open for writing");
    return *_reader;
}

FfImageWriter& FfImageFile::writer() const {
    if (!_writer)
        throw FfIOEx::ExOpNotSupported(__FILE__, __LINE__, getPath().toString(),
                                       "the file is open for reading");
    return *_writer;
}

void FfImageFile::setFormatOptions(std::string const& options) {
    FfFileFormatOptionsPtr parsed = FfFileFormatOptionsMgr::createOptions(getFormatName(), options);
    _options = parsed->getText();
    if (_writer)
        _writer->setOptions(std::move(parsed));
}

std::string FfImageFile::getFormatOptions() const {
    return _options;
}

void FfImageFile::setFormat(ImFormat const& format) {
    if (_writer)
        _writer->setFormat(format);
    else
        reader().setFormat(format);
}

ImFormat FfImageFile::getFormat() const {
    return _writer ? _writer->getFormat() : reader().getFormat();
}

ImLayout FfImageFile::getFileLayout() const {
    return reader().getFileLayout();
}

int FfImageFile::getNbFileChannels() const {
    return reader().getNbFileChannels();
}

std::vector<std::string> FfImageFile::getChannelNames() const {
    return reader().getChannelNames();
}

void FfImageFile::setChannelAssignment(std::vector<int> const& channels) {
    reader().setChannelAssignment(channels);
}

GeRectangle<int> FfImageFile::getMaxRect() const {
    return reader().getFileLayout().getRect();
}

void FfImageFile::setRegion(GeRectangle<int> const& region) {
    reader().setRegion(region);
}

void FfImageFile::setMemoryFactory(ImMemory::Factory const& factory) {
    reader().setMemoryFactory(factory);
}

ImImageConst FfImageFile::readStrip() {
    return reader().readStrip();
}

std::vector<std::pair<std::string, std::string>> FfImageFile::getAttributes() const {
    return reader().getAttributes();
}

void FfImageFile::setSize(int width, int height) {
    writer().setSize(width, height);
}

GeVector2<int> FfImageFile::getPreferredBlockSize() const {
    return _writer ? _writer->getPreferredBlockSize() : reader().getStripSize();
}

void FfImageFile::writeBlock(ImImageConst const& block) {
    writer().writeBlock(block);
}

void FfImageFile::close() {
    writer().close();
}

} // namespace Qv
