#pragma once
// What this system knows of each image format beyond what the image library
// says: its name here, the extension files get, the depths and component
// counts it stores, the rows it writes at once, and how a short file shows.
#include "imPixelFormat.h"

#include <string>
#include <string_view>
#include <vector>

namespace Qv {

struct FfImageFormatTraits {
    std::string libraryName;                  // the image library's plug-in name: "openexr"
    std::string name;                         // "EXR"
    std::string extension;                    // first extension: "exr"
    std::vector<ImPixelFormat::Depth> depths; // the depths it stores
    int maxComps = 4;
    int blockRows = 64;
    // The library reads the file through an FfWatchedFile and asks for no
    // byte past what it needs, so that a short read means the data ran out.
    bool watchReads = false;
    // How many times its pixels, as the library gives them, can outweigh the
    // file at most, its codecs at their best (a flat image, the narrowest
    // depth widened): a header that claims more is not believed before
    // anything is allocated for it. 0 when unknown.
    int maxRatio = 0;

    // The depth stored for the one asked: itself when the format has it, else
    // the closest deeper one, else the deepest.
    ImPixelFormat storedDepth(ImPixelFormat wanted) const;

    // The traits of a plug-in; a plug-in not in the table gets its name in
    // upper case, every depth and 4 components.
    static FfImageFormatTraits find(std::string_view libraryName);
};

} // namespace Qv
