#include "ffStreamFile.h"

#include "ffIOEx.h"
#include "ffOiioUtil.h"
#include "imImage.h"

#include <OpenImageIO/imageio.h>
#include <filesystem>
#include <fmt/format.h>

namespace Qv {

FfStreamFile::FfStreamFile(OsFilePath const& path, std::string formatName, std::string const& libraryName)
    : FfFile(path, std::move(formatName)) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path.toStdPath(), error))
        throw FfIOEx::ExFileNotFound(__FILE__, __LINE__, path.toString());
    _input = OIIO::ImageInput::create(libraryName);
    OIIO::ImageSpec spec;
    if (!_input || !_input->open(path.toString(), spec))
        throw FfIOEx::ExReadError(__FILE__, __LINE__, path.toString(),
                                  FfOiioUtil::takeError(_input ? _input->geterror() : OIIO::geterror()));
    _nbFrames = spec.get_int_attribute("oiio:subimages", 1);
}

FfStreamFile::~FfStreamFile() {
    if (_input) {
        _input->close();
        _input->geterror();
    }
}

int FfStreamFile::getWidth() const {
    return _input->spec().width;
}

int FfStreamFile::getHeight() const {
    return _input->spec().height;
}

int FfStreamFile::getNbChannels() const {
    return _input->spec().nchannels;
}

Rational FfStreamFile::getRate() const {
    int rate[2] = {0, 1};
    if (_input->spec().getattribute("FramesPerSecond", OIIO::TypeRational, rate) && rate[1] != 0)
        return Rational(rate[0], rate[1]);
    return Rational(0, 1);
}

ImImageConst FfStreamFile::readFrame(int index, ImMemory::Factory const& factory) {
    if (index < 0 || index >= _nbFrames || !_input->seek_subimage(index, 0))
        throw FfIOEx::ExReadError(__FILE__, __LINE__, getPath().toString(),
                                  fmt::format("no frame {} in {} frames", index, _nbFrames));
    OIIO::ImageSpec const& spec = _input->spec();
    ImLayout const layout({0, spec.width, 0, spec.height},
                          ImFormat(std::min(spec.nchannels, 4), ImPixelFormat::UINT8));
    ImImage const frame(layout, factory);
    // The first argument is the subimage, the frame of a movie: it is read
    // from there whatever the seek before chose.
    if (!_input->read_image(index, 0, 0, layout.getFormat().getComps(), OIIO::TypeDesc::UINT8,
                            frame.getMemory()->getData(), OIIO::AutoStride,
                            static_cast<OIIO::stride_t>(layout.getRowBytes())))
        throw FfIOEx::ExReadError(__FILE__, __LINE__, getPath().toString(),
                                  FfOiioUtil::takeError(_input->geterror()));
    return frame;
}

} // namespace Qv
