#pragma once
// Loads the tool library into the process. Its static objects announce its
// packages as it loads; the caller then runs the initialise sweep.
#include "exBase.h"

#include <string>

namespace Qv {

struct QvPluginLoaderEx {
    QV_DECLARE_EX(ExCannotLoad, ExBase);
};

class QvPluginLoader {
public:
    static constexpr char const* LIBRARY_FILE = "libQVbuiltinTools.so";

    // Looks in every folder of QV_PLUGIN_PATH (colon separated), then beside the
    // executable. Returns the path loaded; throws ExCannotLoad naming every
    // place tried and the loader's reason.
    static std::string load();

private:
    static std::string getExecutableDirectory();
};

} // namespace Qv
