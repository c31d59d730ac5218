#pragma once
// Why the image library could not read a file: its data ran out before its
// pixels did (truncated), or the data is all there and does not decode
// (damaged). The evidence, each where the format gives it:
//  - a read through FfWatchedFile that came back short, for the formats
//    whose traits watch reads (EXR, TIFF, DPX, PNG, TGA, HDR, BMP, GIF).
//    Their libraries say so in words of their own, or not at all (DPX), so
//    the reads themselves are the sign to trust;
//  - the library's text naming the end of the data ("end of file", "end of
//    JPEG file", "hit EOF", "too short", "truncated", JPEG 2000's "inconsistent
//    with stream length"): JPEG's library reads its file itself and says
//    "Premature end of JPEG file" (and "premature end of data segment" of
//    damage), and most formats outside the table say so in their own words.
// Anything else is damage. Formats whose header fixes the file's size are
// checked against it before any read (FfPromisedSize). A full-length file
// whose tables point past its end reads as truncated: nothing in the file
// tells the two apart.
#include <string>

namespace Qv {

class FfWatchedFile;

namespace FfReadFailure {
// `watch` is the file the library read through, null when it read the file itself.
bool ranOut(FfWatchedFile const* watch, std::string const& libraryText);
} // namespace FfReadFailure

} // namespace Qv
