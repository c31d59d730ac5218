#pragma once
// Finding things in projects by path, entry names, and the alias that lets
// paths saved in compositions survive a move of the project home.
#include "omFolder.h"
#include "omLink.h"
#include "omProject.h"

#include <string>
#include <string_view>

namespace Qv {

struct OmUtil {
    // A name an entry or a version may take: not empty, not starting with '.'
    // (hidden names are the store's unfinished files), and left unchanged by
    // LiStringUtil::sanitizeComponentName.
    static bool isValidName(std::string_view name);

    // The folder at `path`, absolute or relative to the project's root, with
    // the missing folders made. Null for a null project, a path outside the
    // project, a component or file in the way, or a part that is no valid
    // name. Throws OmEx::ExWriteFailed when the disk refuses a new folder.
    static OmFolder locateOrCreateFolder(OmProject const& project, OsFilePath const& path);

    // The entry at `path`: an absolute path is taken in the project holding
    // it (OmProject::locate), a relative one in OmProject::getCurrent(). A
    // project's own directory gives its root folder. Null when nothing is
    // there or no project holds it.
    static OmLink resolvePath(OsFilePath const& path);
    static OmLink resolvePath(OmProject const& project, OsFilePath const& path);

    // "$(PROJECT_HOME)": stands for OmProject::getCurrentProjectHomeFolderPath().
    static char const* getProjectHomeAlias() { return "$(PROJECT_HOME)"; }
    // The path with the project home at its start replaced by the alias;
    // any other path is given back as it is.
    static std::string toSymbolicPath(OsFilePath const& absolutePath);
    // The alias at the start of the text replaced by the project home of now.
    static OsFilePath fromSymbolicPath(std::string_view text);
};

} // namespace Qv
