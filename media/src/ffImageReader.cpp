#include "ffImageReader.h"

#include "assertions.h"
#include "ffHeaderLimits.h"
#include "ffIOEx.h"
#include "ffOiioUtil.h"
#include "ffPromisedSize.h"
#include "ffReadFailure.h"
#include "ffWatchedFile.h"
#include "imComponent.h"
#include "imMemoryBuffer.h"
#include "piImageFile.h"

#include <OpenImageIO/imageio.h>
#include <OpenImageIO/strutil.h>
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fmt/format.h>
#include <vector>

namespace Qv {

namespace {

// One component's bytes of the value 1 in a depth, to fill ONE_CHANNEL.
template <class T>
std::array<std::byte, 4> oneOf() {
    std::array<std::byte, 4> bytes{};
    T const one = IxComponent<T>::fromFloat(1.0f);
    std::memcpy(bytes.data(), &one, sizeof(T));
    return bytes;
}

} // namespace

FfImageReader::FfImageReader(OsFilePath const& path, FfImageFormatTraits const& traits)
    : _path(path), _factory(&ImMemoryBuffer::Factory::getInstance()) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path.toStdPath(), error))
        throw FfIOEx::ExFileNotFound(__FILE__, __LINE__, path.toString());
    std::uintmax_t const size = std::filesystem::file_size(path.toStdPath(), error);
    if (std::optional<std::uintmax_t> const promised = FfPromisedSize::of(path, traits.libraryName);
        !error && promised && size < *promised)
        throw FfIOEx::ExIncompleteFile(
            __FILE__, __LINE__, path.toString(),
            fmt::format("{} bytes of the {} its header promises", size, *promised));
    _input = OIIO::ImageInput::create(traits.libraryName);
    if (!_input)
        throw FfIOEx::ExUnknownFormat(__FILE__, __LINE__, path.toString(),
                                      FfOiioUtil::takeError(OIIO::geterror()));
    // Pixels as the file stores them: alpha is the reader's business, not
    // the library's, so no premultiplication happens on the way.
    OIIO::ImageSpec config;
    config.attribute("oiio:UnassociatedAlpha", 1);
    if (traits.watchReads && _input->supports("ioproxy")) {
        _watch = std::make_unique<FfWatchedFile>(path.toString());
        _input->set_ioproxy(_watch.get());
    }
    OIIO::ImageSpec spec;
    if (!_input->open(path.toString(), spec, config)) {
        std::string const text = FfOiioUtil::takeError(_input->geterror());
        if (FfReadFailure::ranOut(_watch.get(), text))
            throw FfIOEx::ExIncompleteFile(__FILE__, __LINE__, path.toString(), text);
        throw FfIOEx::ExReadError(__FILE__, __LINE__, path.toString(), text);
    }
    // What an open that succeeded left pending is a warning: only errors of the reads count.
    _input->geterror();
    if (spec.width <= 0 || spec.height <= 0 || spec.nchannels <= 0 || spec.depth > 1)
        throw FfIOEx::ExOpNotSupported(__FILE__, __LINE__, path.toString(),
                                       "not a flat two-dimensional image");
    FfHeaderLimits::check(path, size, traits, spec);
    ImPixelFormat const depth = FfOiioUtil::fromTypeDesc(spec.format);
    _fileLayout = ImLayout({0, spec.width, 0, spec.height}, ImFormat(std::min(spec.nchannels, 4), depth));
    // Tiled files read best a whole row of tiles at a time.
    _stripRows = spec.tile_height > 0 ? std::max(spec.tile_height, 64 / spec.tile_height * spec.tile_height)
                                      : traits.blockRows;
    _region = _fileLayout.getRect();
    setFormat(_fileLayout.getFormat());
}

FfImageReader::~FfImageReader() {
    if (_input) {
        _input->close();
        _input->geterror(); // an error nobody asked for is not reported at exit
    }
}

int FfImageReader::getNbFileChannels() const {
    return _input->spec().nchannels;
}

std::vector<std::string> FfImageReader::getChannelNames() const {
    return _input->spec().channelnames;
}

std::vector<std::pair<std::string, std::string>> FfImageReader::getAttributes() const {
    std::vector<std::pair<std::string, std::string>> attributes;
    for (OIIO::ParamValue const& value : _input->spec().extra_attribs)
        attributes.emplace_back(value.name().string(), value.get_string(8));
    return attributes;
}

std::vector<int> FfImageReader::defaultAssignment(int comps) const {
    OIIO::ImageSpec const& spec = _input->spec();
    // Two channels named red and green (motion vectors, say) are two colours,
    // not grey and alpha: blue reads 0.
    auto named = [&](int c, char const* name) {
        std::string const& text = spec.channelnames[static_cast<std::size_t>(c)];
        std::size_t const dot = text.rfind('.');
        return OIIO::Strutil::iequals(dot == std::string::npos ? text : text.substr(dot + 1), name);
    };
    bool const redGreen = spec.nchannels == 2 && spec.alpha_channel < 0 && spec.channelnames.size() == 2 &&
                          named(0, "R") && named(1, "G");
    int const alpha = spec.alpha_channel >= 0                                     ? spec.alpha_channel
                      : !redGreen && (spec.nchannels == 2 || spec.nchannels == 4) ? spec.nchannels - 1
                                                                                  : -1;
    int const colours = alpha >= 0 ? spec.nchannels - 1 : spec.nchannels;
    auto colour = [&](int c) {
        if (redGreen)
            return c < 2 ? c : PiImageFile::ZERO_CHANNEL;
        return colours >= 3 ? c : 0;
    };
    switch (comps) {
    case 1:
        return {alpha >= 0 ? alpha : 0};
    case 2:
        return {0, alpha >= 0 ? alpha : PiImageFile::ONE_CHANNEL};
    case 3:
        return {colour(0), colour(1), colour(2)};
    default:
        return {colour(0), colour(1), colour(2), alpha >= 0 ? alpha : PiImageFile::ONE_CHANNEL};
    }
}

void FfImageReader::setFormat(ImFormat const& format) {
    _format = format;
    _channels = defaultAssignment(format.getComps());
}

void FfImageReader::setChannelAssignment(std::vector<int> const& channels) {
    QV_ASSERT(static_cast<int>(channels.size()) == _format.getComps());
    for (int channel : channels)
        QV_ASSERT(channel == PiImageFile::ZERO_CHANNEL || channel == PiImageFile::ONE_CHANNEL ||
                  (channel >= 0 && channel < getNbFileChannels()));
    _channels = channels;
}

void FfImageReader::setRegion(GeRectangle<int> const& region) {
    _region = _fileLayout.getRect().getIntersection(region);
    _nextY = _region.y1;
}

ImImage FfImageReader::allocateStrip(ImLayout const& layout) {
    // Memory of an earlier strip serves again once its reader let it go; two
    // of them, since a loop still holds the last strip while asking for the next.
    for (ImMemoryPtr const& memory : _pool)
        if (!memory.isNull() && memory->getRefCount() == 1 && memory->getSize() >= layout.getSize())
            return ImImage(layout, memory);
    ImMemoryPtr memory = _factory->create(layout.getSize());
    for (ImMemoryPtr& slot : _pool)
        if (slot.isNull() || slot->getRefCount() == 1) {
            slot = memory;
            break;
        }
    return ImImage(layout, memory);
}

void FfImageReader::read(int y1, int y2, int chBegin, int chEnd, ImPixelFormat depth, std::byte* data,
                         std::size_t rowBytes) {
    OIIO::ImageSpec const& spec = _input->spec();
    OIIO::TypeDesc const type = FfOiioUtil::toTypeDesc(depth);
    bool read = false;
    if (spec.tile_width > 0 && spec.tile_height > 0) {
        // Tiles by tiles: the library's scanline reads of a tiled file
        // divide by a strip height it does not have when they convert.
        // Rows start on a tile's first row; those above y1 are dropped.
        int const skip = y1 % spec.tile_height;
        std::vector<std::byte> above;
        std::byte* target = data;
        if (skip > 0) {
            above.resize(rowBytes * static_cast<std::size_t>(y2 - y1 + skip));
            target = above.data();
        }
        read = _input->read_tiles(0, 0, spec.x, spec.x + spec.width, spec.y + y1 - skip, spec.y + y2, spec.z,
                                  spec.z + std::max(spec.depth, 1), chBegin, chEnd, type, target,
                                  OIIO::AutoStride, static_cast<OIIO::stride_t>(rowBytes));
        if (read && skip > 0)
            std::memcpy(data, above.data() + rowBytes * static_cast<std::size_t>(skip),
                        rowBytes * static_cast<std::size_t>(y2 - y1));
    } else {
        read = _input->read_scanlines(0, 0, spec.y + y1, spec.y + y2, spec.z, chBegin, chEnd, type, data,
                                      OIIO::AutoStride, static_cast<OIIO::stride_t>(rowBytes));
    }
    if (read && !_input->has_error())
        return;
    std::string const text = _input->geterror();
    std::string const detail =
        fmt::format("rows {} to {}{}", y1, y2, text.empty() ? "" : ": " + FfOiioUtil::takeError(text));
    if (FfReadFailure::ranOut(_watch.get(), text))
        throw FfIOEx::ExIncompleteFile(__FILE__, __LINE__, _path.toString(), detail);
    throw FfIOEx::ExCorruptFile(__FILE__, __LINE__, _path.toString(), detail);
}

void FfImageReader::shuffle(std::byte const* scratch, int chBegin, int chEnd, ImWriteGuard const& dst,
                            int xOffset) const {
    ImFormat const& format = dst.getFormat();
    std::size_t const bpc = format.getPixelFormat().getBytesPerComp();
    std::size_t const scratchPixel = bpc * static_cast<std::size_t>(chEnd - chBegin);
    std::size_t const scratchRow = scratchPixel * static_cast<std::size_t>(_fileLayout.getWidth());
    std::size_t const dstPixel = format.getBytesPerPixel();
    std::array<std::byte, 4> const one =
        imVisitFormat(format, [](auto component, auto) { return oneOf<decltype(component)>(); });
    GeRectangle<int> const& rect = dst.getRect();
    for (int y = rect.y1; y < rect.y2; ++y) {
        std::byte const* src = scratch + static_cast<std::size_t>(y - rect.y1) * scratchRow +
                               static_cast<std::size_t>(xOffset) * scratchPixel;
        std::byte* out = dst.getLine(y);
        // Component by component, so that the pixel loop has no branch.
        for (int c = 0; c < format.getComps(); ++c) {
            int const channel = _channels[static_cast<std::size_t>(c)];
            std::byte* to = out + static_cast<std::size_t>(c) * bpc;
            if (channel < 0) {
                std::array<std::byte, 4> value{};
                if (channel == PiImageFile::ONE_CHANNEL)
                    value = one;
                for (int x = 0; x < rect.getWidth(); ++x)
                    std::memcpy(to + static_cast<std::size_t>(x) * dstPixel, value.data(), bpc);
            } else {
                std::byte const* from = src + static_cast<std::size_t>(channel - chBegin) * bpc;
                for (int x = 0; x < rect.getWidth(); ++x)
                    std::memcpy(to + static_cast<std::size_t>(x) * dstPixel,
                                from + static_cast<std::size_t>(x) * scratchPixel, bpc);
            }
        }
    }
}

ImImageConst FfImageReader::readStrip() {
    if (_nextY >= _region.y2 || _region.isEmpty())
        return {};
    int const y1 = _nextY;
    int const y2 = std::min(_region.y2, (y1 / _stripRows + 1) * _stripRows);
    ImLayout const layout({_region.x1, _region.x2, y1, y2}, _format);
    ImImage const strip = allocateStrip(layout);
    ImWriteGuard const dst(strip);
    ImPixelFormat const depth = _format.getPixelFormat();

    int const first = _channels.front();
    bool contiguous = first >= 0;
    for (std::size_t c = 1; c < _channels.size(); ++c)
        contiguous = contiguous && _channels[c] == first + static_cast<int>(c);
    bool const wholeRows = _region.x1 == 0 && _region.x2 == _fileLayout.getWidth();
    if (contiguous && wholeRows) {
        read(y1, y2, first, first + _format.getComps(), depth, dst.getLine(y1), layout.getRowBytes());
    } else {
        int chBegin = getNbFileChannels();
        int chEnd = 0;
        for (int channel : _channels)
            if (channel >= 0) {
                chBegin = std::min(chBegin, channel);
                chEnd = std::max(chEnd, channel + 1);
            }
        if (chEnd <= chBegin)
            chBegin = 0, chEnd = 1;
        std::size_t const rowBytes = depth.getBytesPerComp() * static_cast<std::size_t>(chEnd - chBegin) *
                                     static_cast<std::size_t>(_fileLayout.getWidth());
        _scratch.resize(rowBytes * static_cast<std::size_t>(y2 - y1));
        read(y1, y2, chBegin, chEnd, depth, _scratch.data(), rowBytes);
        shuffle(_scratch.data(), chBegin, chEnd, dst, _region.x1);
    }
    _nextY = y2;
    return strip;
}

} // namespace Qv
