#pragma once
// One frame of a movie as an image file open for reading, so that whoever
// reads image files reads movie frames the same way. The movie is opened once
// and shared by the frames of a sequence; its reader seeks, so every frame
// read and every look at the movie's header holds the lock shared with it.
//
// The movie decodes whole frames: the first strip asked is the whole region
// (the whole frame unless a region was set), and the next one is null.
// Pixels come in 8 bits from the movie and are converted to the format set.
#include "ffStreamFile.h"
#include "piImageFile.h"

#include <memory>
#include <mutex>

namespace Qv {

class FfStreamFrameFile : public PiImageFile {
public:
    // `lock` guards `movie` wherever else it is used. Throws FfIOEx::ExReadError
    // for an index out of the movie.
    FfStreamFrameFile(RCShdPtr<FfStreamFile> movie, std::shared_ptr<std::mutex> lock, int index);

    int getFrameIndex() const { return _index; }

    // Movies take no options on reading: the text is kept as it is.
    void setFormatOptions(std::string const& options) override { _options = options; }
    std::string getFormatOptions() const override { return _options; }
    void setFormat(ImFormat const& format) override;
    ImFormat getFormat() const override { return _format; }

    ImLayout getFileLayout() const override;
    int getNbFileChannels() const override { return _nbChannels; }
    std::vector<std::string> getChannelNames() const override;
    // Asserts one entry per component, each a channel of the frame or a constant.
    void setChannelAssignment(std::vector<int> const& channels) override;
    GeRectangle<int> getMaxRect() const override { return {0, _width, 0, _height}; }
    void setRegion(GeRectangle<int> const& region) override;
    void setMemoryFactory(ImMemory::Factory const& factory) override { _factory = &factory; }
    // Throws FfIOEx::ExReadError when the frame does not decode.
    ImImageConst readStrip() override;
    std::vector<std::pair<std::string, std::string>> getAttributes() const override;

    // Movies are written by the movie writer: these throw FfIOEx::ExOpNotSupported.
    void setSize(int width, int height) override;
    GeVector2<int> getPreferredBlockSize() const override;
    void writeBlock(ImImageConst const& block) override;
    void close() override;

private:
    std::vector<int> defaultAssignment(int comps) const;
    [[noreturn]] void refuseWriting() const;

    RCShdPtr<FfStreamFile> _movie;
    std::shared_ptr<std::mutex> _lock;
    int _index;
    int _width = 0;
    int _height = 0;
    int _nbChannels = 0;
    Rational _rate;
    std::string _options;
    ImFormat _format;
    std::vector<int> _channels;
    GeRectangle<int> _region;
    bool _regionRead = false;
    ImMemory::Factory const* _factory;
    // The decoded frame, kept for another region of the same file.
    ImImageConst _frame;
};

} // namespace Qv
