#include "ffReadFailure.h"

#include "ffWatchedFile.h"

#include <algorithm>
#include <cctype>

namespace Qv {

bool FfReadFailure::ranOut(FfWatchedFile const* watch, std::string const& libraryText) {
    if (watch && watch->ranShort())
        return true;
    std::string text = libraryText;
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    for (char const* words : {"end of file", "end of jpeg file", "hit eof", "too short", "truncated",
                              "inconsistent with stream length"})
        if (text.find(words) != std::string::npos)
            return true;
    return false;
}

} // namespace Qv
