#pragma once
// The settings of an image reader as the command line writes them: a depth
// "UINT8", "FLOAT16" or "FLOAT32"; vectors "none" (or nothing), "absolute"
// or "normalized:MAX"; colours "R G B". Parsers throw ExBase naming the text.
#include "coColor.h"
#include "coMotionVectorInfo.h"
#include "ixPixelFormat.h"

#include <string>

namespace Qv::BtReaderSettingsText {

IxPixelFormat::Depth parseDepth(std::string const& text);
std::string depthName(unsigned depth);
CoMotionVectorInfo parseVectors(std::string const& text);
// "R,G,B": three numbers.
CoRgbColorTyped<float> parseColor(std::string const& text);
// "R G B" in the shortest form that reads back the same.
std::string colorText(CoRgbColorTyped<float> const& colour);

} // namespace Qv::BtReaderSettingsText
