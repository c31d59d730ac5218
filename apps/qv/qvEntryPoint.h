#pragma once
// qv links nothing of the tool library: it finds the library's entry points
// by their C names once the library is loaded.
#include "exBase.h"

#include <dlfcn.h>
#include <string>

namespace Qv {

// Throws ExBase naming the symbol when the loaded library lacks it.
template <class Function>
Function findEntryPoint(char const* symbol) {
    void* address = dlsym(RTLD_DEFAULT, symbol);
    if (!address)
        throw ExBase(__FILE__, __LINE__, std::string("the tool library has no ") + symbol);
    return reinterpret_cast<Function>(address);
}

} // namespace Qv
