#include "ffStreamFrameFile.h"

#include "assertions.h"
#include "ffIOEx.h"
#include "imFormatChange.h"
#include "imImage.h"
#include "imMemoryBuffer.h"
#include "imReadGuard.h"
#include "imWriteGuard.h"

#include <fmt/format.h>

namespace Qv {

FfStreamFrameFile::FfStreamFrameFile(RCShdPtr<FfStreamFile> movie, std::shared_ptr<std::mutex> lock,
                                     int index)
    : PiImageFile(movie->getPath(), movie->getFormatName(), false), _movie(std::move(movie)),
      _lock(std::move(lock)), _index(index), _factory(&ImMemoryBuffer::Factory::getInstance()) {
    std::lock_guard const guard(*_lock);
    if (index < 0 || index >= _movie->getNbFrames())
        throw FfIOEx::ExReadError(__FILE__, __LINE__, getPath().toString(),
                                  fmt::format("no frame {} in {} frames", index, _movie->getNbFrames()));
    _width = _movie->getWidth();
    _height = _movie->getHeight();
    _nbChannels = _movie->getNbChannels();
    _rate = _movie->getRate();
    _region = getMaxRect();
    setFormat(ImFormat(std::clamp(_nbChannels, 1, 4), ImPixelFormat::UINT8));
}

void FfStreamFrameFile::setFormat(ImFormat const& format) {
    _format = format;
    _channels = defaultAssignment(format.getComps());
}

ImLayout FfStreamFrameFile::getFileLayout() const {
    return ImLayout(getMaxRect(), ImFormat(std::clamp(_nbChannels, 1, 4), ImPixelFormat::UINT8));
}

std::vector<std::string> FfStreamFrameFile::getChannelNames() const {
    static std::vector<std::string> const GREY{"Y", "A"};
    static std::vector<std::string> const COLOUR{"R", "G", "B", "A"};
    std::vector<std::string> const& names = _nbChannels <= 2 ? GREY : COLOUR;
    return {names.begin(), names.begin() + std::clamp(_nbChannels, 0, static_cast<int>(names.size()))};
}

// As image files do: colour from the first three (a grey movie feeds all
// three), alpha from a second or fourth channel, else 1.
std::vector<int> FfStreamFrameFile::defaultAssignment(int comps) const {
    int const channels = std::clamp(_nbChannels, 1, 4);
    int const alpha = channels == 2 || channels == 4 ? channels - 1 : -1;
    auto colour = [&](int c) { return channels >= 3 ? c : 0; };
    switch (comps) {
    case 1:
        return {alpha >= 0 ? alpha : 0};
    case 2:
        return {0, alpha >= 0 ? alpha : ONE_CHANNEL};
    case 3:
        return {colour(0), colour(1), colour(2)};
    default:
        return {colour(0), colour(1), colour(2), alpha >= 0 ? alpha : ONE_CHANNEL};
    }
}

void FfStreamFrameFile::setChannelAssignment(std::vector<int> const& channels) {
    QV_ASSERT(static_cast<int>(channels.size()) == _format.getComps());
    for (int channel : channels)
        QV_ASSERT(channel == ZERO_CHANNEL || channel == ONE_CHANNEL ||
                  (channel >= 0 && channel < std::min(_nbChannels, 4)));
    _channels = channels;
}

void FfStreamFrameFile::setRegion(GeRectangle<int> const& region) {
    _region = getMaxRect().getIntersection(region);
    _regionRead = false;
}

ImImageConst FfStreamFrameFile::readStrip() {
    if (_regionRead || _region.isEmpty())
        return {};
    if (_frame.isNull()) {
        std::lock_guard const guard(*_lock);
        _frame = _movie->readFrame(_index, ImMemoryBuffer::Factory::getInstance());
    }
    // The channels picked in the movie's 8 bits first, then one conversion
    // to the depth asked, straight into the caller's memory when that is 8 bits.
    ImFormat const picked(_format.getComps(), ImPixelFormat::UINT8);
    ImLayout const layout(_region, picked);
    ImImage const shuffled = _format == picked ? ImImage(ImLayout(_region, _format), *_factory)
                                               : ImImage(layout, ImMemoryBuffer::Factory::getInstance());
    {
        ImReadGuard const src(_frame);
        ImWriteGuard const dst(shuffled);
        std::size_t const srcPixel = _frame.getFormat().getBytesPerPixel();
        std::size_t const dstPixel = picked.getBytesPerPixel();
        for (int y = _region.y1; y < _region.y2; ++y) {
            std::uint8_t const* from = reinterpret_cast<std::uint8_t const*>(src.getLine(y)) +
                                       static_cast<std::size_t>(_region.x1) * srcPixel;
            std::uint8_t* to = reinterpret_cast<std::uint8_t*>(dst.getLine(y));
            for (int x = 0; x < _region.getWidth(); ++x)
                for (int c = 0; c < picked.getComps(); ++c) {
                    int const channel = _channels[static_cast<std::size_t>(c)];
                    to[static_cast<std::size_t>(x) * dstPixel + static_cast<std::size_t>(c)] =
                        channel >= 0
                            ? from[static_cast<std::size_t>(x) * srcPixel + static_cast<std::size_t>(channel)]
                        : channel == ONE_CHANNEL ? std::uint8_t{255}
                                                 : std::uint8_t{0};
                }
        }
    }
    _regionRead = true;
    if (_format == picked)
        return shuffled;
    ImImage const strip(ImLayout(_region, _format), *_factory);
    imFormatChange(ImWriteGuard(strip), ImReadGuard(shuffled));
    return strip;
}

std::vector<std::pair<std::string, std::string>> FfStreamFrameFile::getAttributes() const {
    std::vector<std::pair<std::string, std::string>> attributes{{"frame", std::to_string(_index)}};
    if (!_rate.isZero())
        attributes.emplace_back("FramesPerSecond",
                                fmt::format("{}/{}", _rate.getNumerator(), _rate.getDenominator()));
    return attributes;
}

void FfStreamFrameFile::refuseWriting() const {
    throw FfIOEx::ExOpNotSupported(__FILE__, __LINE__, getPath().toString(),
                                   "a movie frame is read only; movies are written by the movie writer");
}

void FfStreamFrameFile::setSize(int, int) {
    refuseWriting();
}

GeVector2<int> FfStreamFrameFile::getPreferredBlockSize() const {
    return {_region.getWidth(), _region.getHeight()};
}

void FfStreamFrameFile::writeBlock(ImImageConst const&) {
    refuseWriting();
}

void FfStreamFrameFile::close() {
    refuseWriting();
}

} // namespace Qv
