#include "ffImageWriter.h"

#include "ffIOEx.h"
#include "ffOiioUtil.h"
#include "imFormatChange.h"
#include "imMemoryBuffer.h"
#include "imReadGuard.h"
#include "imWriteGuard.h"
#include "osFile.h"
#include "osFileEx.h"
#include "osFileUtils.h"

#include <OpenImageIO/imageio.h>
#include <fmt/format.h>

namespace Qv {

namespace {

std::vector<std::string> channelNames(int comps) {
    switch (comps) {
    case 1:
        return {"A"};
    case 2:
        return {"Y", "A"};
    case 3:
        return {"R", "G", "B"};
    default:
        return {"R", "G", "B", "A"};
    }
}

} // namespace

FfImageWriter::FfImageWriter(OsFilePath const& path, FfImageFormatTraits const& traits)
    : _path(path), _traits(traits), _options(new FfFileFormatOptions(traits.name)) {
    try {
        std::string const directory = path.getDirectoryName();
        _temporary = OsFileUtils::createUniqueFileName(directory.empty() ? "." : directory, ".qvtmp",
                                                       path.getExtension());
    } catch (OsFileEx::ExFileError const& error) {
        throw FfIOEx::ExWriteError(__FILE__, __LINE__, path.toString(), error.getReason());
    }
}

FfImageWriter::~FfImageWriter() {
    if (!_closed && !_discarded)
        discard();
}

void FfImageWriter::discard() {
    _discarded = true;
    if (_output) {
        _output->close();
        _output->geterror();
        _output.reset();
    }
    try {
        OsFile(_temporary).remove();
    } catch (ExBase const&) {
        // Nothing more can be done; the name marks it as temporary.
    }
}

void FfImageWriter::fail(char const* file, int line, std::string const& detail) {
    discard();
    throw FfIOEx::ExWriteError(file, line, _path.toString(), detail);
}

void FfImageWriter::setSize(int width, int height) {
    if (_output)
        throw FfIOEx::ExOpNotSupported(__FILE__, __LINE__, _path.toString(),
                                       "the size is set before the first block");
    _size = {width, height};
}

void FfImageWriter::setFormat(ImFormat const& format) {
    if (_output)
        throw FfIOEx::ExOpNotSupported(__FILE__, __LINE__, _path.toString(),
                                       "the format is set before the first block");
    _format = format;
}

void FfImageWriter::setChannelNames(std::vector<std::string> names) {
    if (_output)
        throw FfIOEx::ExOpNotSupported(__FILE__, __LINE__, _path.toString(),
                                       "the channel names are set before the first block");
    _channelNames = std::move(names);
}

ImFormat FfImageWriter::getFormat() const {
    if (_output)
        return _stored;
    if (_format.isNull())
        return {};
    ImPixelFormat depth = _traits.storedDepth(_format.getPixelFormat());
    if (std::optional<int> const bits = _options->getBitDepth())
        depth = _traits.storedDepth(ImPixelFormat::fromBits(*bits > 8 && *bits < 16 ? 16 : *bits));
    return ImFormat(std::min(_format.getComps(), _traits.maxComps), depth);
}

GeVector2<int> FfImageWriter::getPreferredBlockSize() const {
    return {_size.x > 0 ? _size.x : 1, _traits.blockRows};
}

void FfImageWriter::open(ImFormat const& blockFormat) {
    if (_size.x <= 0 || _size.y <= 0)
        throw FfIOEx::ExOpNotSupported(__FILE__, __LINE__, _path.toString(), "no image size was set");
    if (_format.isNull())
        _format = blockFormat;
    _stored = getFormat();
    OIIO::ImageSpec spec(_size.x, _size.y, _stored.getComps(),
                         FfOiioUtil::toTypeDesc(_stored.getPixelFormat()));
    bool const named = static_cast<int>(_channelNames.size()) == _stored.getComps();
    spec.channelnames = named ? _channelNames : channelNames(_stored.getComps());
    // Stored as given: formats of unassociated alpha get the pixels unchanged.
    spec.attribute("oiio:UnassociatedAlpha", 1);
    spec.alpha_channel = named                     ? -1
                         : _stored.getComps() == 1 ? 0
                         : _stored.getComps() == 2 ? 1
                         : _stored.getComps() == 4 ? 3
                                                   : -1;
    if (std::optional<int> const bits = _options->getBitDepth();
        bits && *bits != 8 && *bits != 16 && *bits != 32)
        spec.attribute("oiio:BitsPerSample", *bits);
    for (FfFileFormatOptions::Attribute const& attribute : _options->getAttributes()) {
        if (attribute.isInteger)
            spec.attribute(attribute.name, std::stoi(attribute.value));
        else
            spec.attribute(attribute.name, attribute.value);
    }
    _output = OIIO::ImageOutput::create(_traits.libraryName);
    if (!_output)
        fail(__FILE__, __LINE__, FfOiioUtil::takeError(OIIO::geterror()));
    if (!_output->open(_temporary.toString(), spec))
        fail(__FILE__, __LINE__, FfOiioUtil::takeError(_output->geterror()));
}

void FfImageWriter::writeRows(ImImageConst const& rows) {
    ImReadGuard const guard(rows);
    GeRectangle<int> const& rect = rows.getRect();
    if (!_output->write_scanlines(rect.y1, rect.y2, 0,
                                  FfOiioUtil::toTypeDesc(rows.getFormat().getPixelFormat()),
                                  guard.getLine(rect.y1), OIIO::AutoStride,
                                  static_cast<OIIO::stride_t>(rows.getLayout().getRowBytes())))
        fail(__FILE__, __LINE__, FfOiioUtil::takeError(_output->geterror()));
    _nextY = rect.y2;
}

void FfImageWriter::writeBlock(ImImageConst const& block) {
    if (block.isNull())
        return;
    if (_closed)
        throw FfIOEx::ExOpNotSupported(__FILE__, __LINE__, _path.toString(), "the file is closed");
    if (_discarded)
        throw FfIOEx::ExOpNotSupported(__FILE__, __LINE__, _path.toString(),
                                       "the file was given up after an error");
    if (!_output)
        open(block.getFormat());
    GeRectangle<int> const& rect = block.getRect();
    GeRectangle<int> const image{0, _size.x, 0, _size.y};
    if (!image.contains(rect) || rect.isEmpty())
        throw FfIOEx::ExOpNotSupported(
            __FILE__, __LINE__, _path.toString(),
            fmt::format("block {} outside the image {}", rect.dump(), image.dump()));
    bool const startsBand = _band.isNull();
    if (startsBand && rect.y1 != _nextY)
        throw FfIOEx::ExOpNotSupported(
            __FILE__, __LINE__, _path.toString(),
            fmt::format("block {} out of order: the next row is {}", rect.dump(), _nextY));
    if (startsBand && rect.x1 == 0 && rect.x2 == _size.x &&
        block.getFormat().getComps() == _stored.getComps()) {
        writeRows(block);
        return;
    }
    if (startsBand) {
        ImLayout const layout({0, _size.x, rect.y1, rect.y2},
                              ImFormat(_stored.getComps(), block.getFormat().getPixelFormat()));
        _band = ImImage(layout, ImMemoryBuffer::Factory::getInstance());
        _bandCoverage = FfBandCoverage(_size.x);
    }
    if (rect.y1 != _band.getRect().y1 || rect.y2 != _band.getRect().y2)
        throw FfIOEx::ExOpNotSupported(
            __FILE__, __LINE__, _path.toString(),
            fmt::format("block {} is not in the row of blocks {}", rect.dump(), _band.getRect().dump()));
    imFormatChange(ImWriteGuard(_band), ImReadGuard(block));
    _bandCoverage.add(rect.x1, rect.x2);
    if (_bandCoverage.isComplete()) {
        ImImage const band = _band;
        _band = ImImage();
        writeRows(band);
    }
}

void FfImageWriter::close() {
    if (_closed)
        return;
    if (_discarded)
        throw FfIOEx::ExOpNotSupported(__FILE__, __LINE__, _path.toString(),
                                       "the file was given up after an error");
    if (!_output || _nextY != _size.y) {
        std::string detail = fmt::format("closed after {} of {} rows", _nextY, _size.y);
        if (!_band.isNull()) {
            auto const [x1, x2] = _bandCoverage.firstGap();
            detail += fmt::format(", columns {} to {} of rows {} to {} never written", x1, x2,
                                  _band.getRect().y1, _band.getRect().y2);
        }
        discard();
        throw FfIOEx::ExIncompleteFile(__FILE__, __LINE__, _path.toString(), detail);
    }
    if (!_output->close())
        fail(__FILE__, __LINE__, FfOiioUtil::takeError(_output->geterror()));
    _output.reset();
    try {
        OsFile(_temporary).renameTo(_path);
    } catch (OsFileEx::ExFileError const& error) {
        fail(__FILE__, __LINE__, error.getReason());
    }
    _closed = true;
}

} // namespace Qv
