#include "ffFileFormatMgr.h"

#include "ffIOEx.h"
#include "ffImageFormat.h"
#include "ffStreamFormat.h"

#include <OpenImageIO/imageio.h>
#include <OpenImageIO/strutil.h>
#include <algorithm>

namespace Qv {

namespace {

// Plug-ins that are no file format of images, and IFF, whose reader in the
// image library divides by zero on every scanline read and crashes on a
// short file: the formats this system cannot read safely.
bool isPseudoFormat(std::string const& name) {
    return name == "null" || name == "term" || name == "iff";
}

// The library's HEIF writer copies whole strides of the image it builds out
// of each row it is given, reading past the end of the last: HEIF is read only.
bool writesSafely(std::string const& name) {
    return name != "heif";
}

std::string lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

// The preferred extension first, then the library's others.
std::vector<std::string> ordered(std::string const& first, std::vector<std::string> extensions) {
    auto const found = std::find(extensions.begin(), extensions.end(), first);
    if (found != extensions.end())
        extensions.erase(found);
    if (!first.empty())
        extensions.insert(extensions.begin(), first);
    return extensions;
}

} // namespace

FfFileFormatMgr& FfFileFormatMgr::getInstance() {
    static FfFileFormatMgr instance;
    return instance;
}

FfFileFormatMgr::FfFileFormatMgr() {
    std::vector<std::string> const readable =
        OIIO::Strutil::splits(OIIO::get_string_attribute("input_format_list"), ",");
    std::vector<std::string> const writable =
        OIIO::Strutil::splits(OIIO::get_string_attribute("output_format_list"), ",");
    // "openexr:exr,sxr;tiff:tif,tiff;..."
    for (std::string const& entry :
         OIIO::Strutil::splits(OIIO::get_string_attribute("extension_list"), ";")) {
        std::size_t const colon = entry.find(':');
        std::string const library = entry.substr(0, colon);
        std::vector<std::string> extensions = colon == std::string::npos
                                                  ? std::vector<std::string>{}
                                                  : OIIO::Strutil::splits(entry.substr(colon + 1), ",");
        bool const canRead = std::find(readable.begin(), readable.end(), library) != readable.end();
        bool const canWrite =
            std::find(writable.begin(), writable.end(), library) != writable.end() && writesSafely(library);
        if (isPseudoFormat(library) || !canRead)
            continue;
        if (library == "ffmpeg") {
            _formats.emplace_back(new FfStreamFormat("MOV", ordered("mov", std::move(extensions)), library));
            continue;
        }
        FfImageFormatTraits traits = FfImageFormatTraits::find(library);
        if (traits.extension.empty() && !extensions.empty())
            traits.extension = extensions.front();
        std::vector<std::string> all = ordered(traits.extension, std::move(extensions));
        _formats.emplace_back(new FfImageFormat(std::move(traits), std::move(all), canWrite));
    }
    // Movies are named even where the library reads none: renders write them
    // through the movie writer.
    if (findFormat("MOV").isNull())
        _formats.emplace_back(new FfStreamFormat("MOV", {"mov"}, "ffmpeg"));
}

FfFileFormatPtr FfFileFormatMgr::findFormat(std::string_view name) const {
    std::string const wanted = lower(name);
    for (FfFileFormatPtr const& format : _formats) {
        if (lower(format->getName()) == wanted)
            return format;
        if (auto const* image = dynamic_cast<FfImageFormat const*>(format.get());
            image && image->getTraits().libraryName == wanted)
            return format;
    }
    return {};
}

FfFileFormatPtr FfFileFormatMgr::findFormatByExtension(std::string_view extension, int kinds) const {
    if (!extension.empty() && extension.front() == '.')
        extension.remove_prefix(1);
    std::string const wanted = lower(extension);
    for (FfFileFormatPtr const& format : _formats) {
        if ((format->getKind() & kinds) == 0)
            continue;
        auto const& extensions = format->getExtensions();
        if (std::find(extensions.begin(), extensions.end(), wanted) != extensions.end())
            return format;
    }
    return {};
}

FfFilePtr FfFileFormatMgr::openFile(OsFilePath const& path) const {
    FfFileFormatPtr const format = findFormatByExtension(path.getExtension());
    if (format.isNull())
        throw FfIOEx::ExUnknownFormat(__FILE__, __LINE__, path.toString());
    return format->openFile(path);
}

PiImageFilePtr FfFileFormatMgr::openImageFile(OsFilePath const& path) const {
    FfFileFormatPtr const format = findFormatByExtension(path.getExtension(), FfFileFormat::IMAGE_FORMAT);
    if (format.isNull())
        throw FfIOEx::ExUnknownFormat(__FILE__, __LINE__, path.toString());
    return rcCast<PiImageFile>(format->openFile(path));
}

FfFilePtr FfFileFormatMgr::createFile(OsFilePath const& path, FfFileFormat const& format) const {
    return format.createFile(path);
}

PiImageFilePtr FfFileFormatMgr::createImageFile(OsFilePath const& path) const {
    FfFileFormatPtr const format = findFormatByExtension(path.getExtension(), FfFileFormat::IMAGE_FORMAT);
    if (format.isNull())
        throw FfIOEx::ExUnknownFormat(__FILE__, __LINE__, path.toString());
    return rcCast<PiImageFile>(format->createFile(path));
}

} // namespace Qv
