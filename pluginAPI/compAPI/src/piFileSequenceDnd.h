#pragma once
// A drop of files that stand for the image sequences they belong to: each
// dropped file becomes its sequence's path, and a sequence dropped through
// several of its files is listed once, where its first file was.
//
// The sequence path language belongs to the tool that reads the footage, so
// the tool gives the resolver. It is called once a file, when the drop is
// made; a file it gives no sequence for ("") stays as dropped, so that the
// node that takes it says what is wrong with it.
#include "piFileDndImp.h"

#include <functional>

namespace Qv {

class PiFileSequenceDnd : public PiFileDndImp {
public:
    using Resolver = std::function<std::string(std::string const& file)>;

    PiFileSequenceDnd(PiFileDndInterface const& drop, Resolver const& resolver);
};

} // namespace Qv
