#include "msgFileGuard.h"

#include "msgCatalogue.h"
#include "msgServer.h"
#include "rsResources.h"

#include <filesystem>

namespace Qv {

namespace {

std::filesystem::path resolveCatalogPath(std::string const& fileName) {
    std::filesystem::path const path(RsResources::expandAliases(fileName));
    if (path.has_parent_path())
        return path;
    return std::filesystem::path(RsResources::expandAliases("<MsgDir>")) / path;
}

} // namespace

MsgFileGuard::MsgFileGuard(std::string const& fileName)
    : _catalogue(std::make_shared<MsgCatalogue const>(MsgCatalogue::load(resolveCatalogPath(fileName)))) {
    MsgServer::getInstance().openCatalogue(_catalogue);
}

MsgFileGuard::~MsgFileGuard() {
    MsgServer::getInstance().closeCatalogue(_catalogue);
}

} // namespace Qv
