#pragma once
// A one-line description of an image file for people: format, size,
// channels, depth and the compression when the file says.
#include "piImageFile.h"

#include <string>

namespace Qv {

namespace PiImageFileDetails {
// "EXR, 1920 x 1080, 4 channels (R G B A), ECR, compression zip". Asserts a
// file open for reading.
std::string getDetailString(PiImageFile const& file);
} // namespace PiImageFileDetails

} // namespace Qv
