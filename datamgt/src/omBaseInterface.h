#pragma once
// What every object of the project store answers: projects, folders, links,
// components and composition graphs.
#include "osFilePath.h"

#include <string>

namespace Qv {

class OmBaseInterface {
public:
    virtual ~OmBaseInterface() = default;

    // Names nothing: a default-made handle, an entry that is not there.
    virtual bool isNull() const = 0;
    // Writes the changes not yet on disk. Every file goes to a temporary file
    // beside it that is then renamed over it, so a failure (OmEx::ExWriteFailed)
    // leaves the old file whole; nothing is written when nothing changed.
    virtual void sync() = 0;
    // Absolute; empty for a null object and for a component not yet in a folder.
    virtual OsFilePath getPath() const = 0;
    virtual std::string getName() const = 0;

protected:
    OmBaseInterface() = default;
    OmBaseInterface(OmBaseInterface const&) = default;
    OmBaseInterface& operator=(OmBaseInterface const&) = default;
};

} // namespace Qv
