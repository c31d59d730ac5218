#pragma once
// The image sequence of a path as the host's command line makes it. The host
// links none of the tool library, so it finds this entry point by its C name,
// BT_CREATE_IMAGE_SEQUENCE_SYMBOL; sequences kept as fragments it reads
// through PiImageSequence::createFromFragment instead.
#include "piImageSequence.h"

#include <string>

namespace Qv {

// Resolves the path's wildcards against the disk and makes the sequence of
// the result, without opening its files; null when the wildcards select no
// file. Throws what resolving and BtImageSequence::create throw.
using BtCreateImageSequenceFunction = void (*)(std::string const& text,
                                               RCStrongPtr<PiImageSequence>& sequence);
inline constexpr char const* BT_CREATE_IMAGE_SEQUENCE_SYMBOL = "btCreateImageSequence";

} // namespace Qv

extern "C" void btCreateImageSequence(std::string const& text,
                                      Qv::RCStrongPtr<Qv::PiImageSequence>& sequence);
