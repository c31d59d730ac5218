#include "qvPluginLoader.h"

#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <sstream>
#include <vector>

namespace Qv {

std::string QvPluginLoader::getExecutableDirectory() {
    std::error_code error;
    std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string(".") : self.parent_path().string();
}

std::string QvPluginLoader::load() {
    std::vector<std::string> folders;
    if (char const* pluginPath = std::getenv("QV_PLUGIN_PATH")) {
        std::stringstream stream(pluginPath);
        std::string folder;
        while (std::getline(stream, folder, ':'))
            if (!folder.empty())
                folders.push_back(folder);
    }
    folders.push_back(getExecutableDirectory());

    std::string reasons;
    for (std::string const& folder : folders) {
        std::filesystem::path candidate = std::filesystem::path(folder) / LIBRARY_FILE;
        if (!std::filesystem::exists(candidate)) {
            reasons += (reasons.empty() ? " " : "; ") + candidate.string() + ": no such file";
            continue;
        }
        // The library stays loaded for the life of the process: the records and
        // tools it registers are used up to exit.
        if (dlopen(candidate.c_str(), RTLD_NOW | RTLD_GLOBAL))
            return candidate.string();
        char const* reason = dlerror();
        reasons +=
            (reasons.empty() ? " " : "; ") + candidate.string() + ": " + (reason ? reason : "unknown error");
    }
    throw QvPluginLoaderEx::ExCannotLoad(__FILE__, __LINE__,
                                         std::string("cannot load ") + LIBRARY_FILE + ":" + reasons);
}

} // namespace Qv
