#include "piFileSequenceDnd.h"

#include <algorithm>

namespace Qv {

PiFileSequenceDnd::PiFileSequenceDnd(PiFileDndInterface const& drop, Resolver const& resolver) {
    for (std::string const& file : drop.getFiles()) {
        std::string sequence = resolver(file);
        if (sequence.empty())
            sequence = file;
        // Drops are a handful of files: a linear search is all it takes.
        if (std::find(getFiles().begin(), getFiles().end(), sequence) == getFiles().end())
            addFile(std::move(sequence));
    }
}

} // namespace Qv
