#pragma once
// Where the installation's data files live (message catalogues, interface
// descriptions) and the path aliases that name places inside it.
#include "exBase.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace Qv {

struct RsEx {
    // No resources folder in any of the places looked at; the reason lists them.
    QV_DECLARE_EX(ExResourcesNotFound, ExBase);
    // A `<Name>` in a path that is not a known alias; the reason names it and the path.
    QV_DECLARE_EX(ExUnknownAlias, ExBase);
};

struct RsResources {
    // The resources folder: $QV_RESOURCES when set, else ../share/qv beside the
    // executable when it exists, else the source tree's resources folder.
    static std::filesystem::path getResourcesDir();

    // The decision behind getResourcesDir, from explicit candidates: a given
    // environment value wins and must be a folder; then the first existing of
    // the others. Throws RsEx::ExResourcesNotFound.
    static std::filesystem::path locate(std::optional<std::string> const& fromEnvironment,
                                        std::filesystem::path const& besideExecutable,
                                        std::filesystem::path const& fromSourceTree);

    // Replaces every alias in a path: `<ToolUiDir>` by <resources>/ui and
    // `<MsgDir>` by <resources>/msg. A `<Name>` made of letters, digits and '_'
    // that is no alias throws RsEx::ExUnknownAlias; other text is kept as it is.
    static std::string expandAliases(std::string_view path);
};

} // namespace Qv
