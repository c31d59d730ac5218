#pragma once
// Makes the component of a footage entry: a composition whose working
// version is "Original Footage".
#include "omComposition.h"

#include <string>

namespace Qv {

class OmFootageFactory {
public:
    static char const* getOriginalVersionName() { return "Original Footage"; }

    // Nothing is written: the composition's directory is made when
    // OmFolder::addEntry adds it, its version file when its graph is saved.
    // Throws OmEx::ExInvalidName.
    static RCShdPtr<OmComposition> createComponent(std::string const& name);
};

} // namespace Qv
