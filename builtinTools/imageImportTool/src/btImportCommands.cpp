#include "btImportCommands.h"

#include "exBase.h"
#include "imPixelFormat.h"
#include "imageImportServices.h"
#include "omComponent.h"
#include "omUtil.h"
#include "piImageSequence.h"
#include "piNode.h"

#include <filesystem>
#include <ostream>

namespace Qv {

namespace {

BtImageImportServices::Options toOptions(BtImportCommandOptions const& command) {
    BtImageImportServices::Options options;
    if (command.rate)
        options.rate = RationalUtil::fromFractionString(*command.rate, "/");
    if (command.pixelRatio)
        options.pixelRatio = RationalUtil::fromFractionString(*command.pixelRatio, ":");
    if (command.depth) {
        if (*command.depth == "ECR")
            options.depth = ImPixelFormat::ECR;
        else if (*command.depth == "HDR")
            options.depth = ImPixelFormat::HDR;
        else
            throw ExBase(__FILE__, __LINE__, "depth \"" + *command.depth + "\" is not ECR or HDR");
    }
    if (options.rate.getDouble() <= 0.0 && command.rate)
        throw ExBase(__FILE__, __LINE__, "rate \"" + *command.rate + "\" is not above 0");
    if (options.pixelRatio.getDouble() <= 0.0 && command.pixelRatio)
        throw ExBase(__FILE__, __LINE__, "pixel ratio \"" + *command.pixelRatio + "\" is not above 0");
    return options;
}

OmProject openOrCreateProject(std::string const& path) {
    OsFilePath const location((std::filesystem::absolute(path)).lexically_normal().string());
    return OmProject::isProject(location) ? OmProject::open(location) : OmProject::create(location);
}

} // namespace

} // namespace Qv

extern "C" int btImportCommand(Qv::PiGraph& graph, std::string const& path,
                               Qv::BtImportCommandOptions const& options, std::ostream& out) {
    using namespace Qv;
    BtImageImportServices::Options const importOptions = toOptions(options);
    std::string problem;
    std::string const absolute = std::filesystem::absolute(path).lexically_normal().string();
    RCStrongPtr<PiImageSequence> const sequence = ImageImportServices::findSequence(absolute, problem);
    if (sequence.isNull())
        throw ExBase(__FILE__, __LINE__, problem);
    std::string name = options.name;
    if (name.empty()) {
        name = sequence->getSequenceName();
        if (graph.findNode(name))
            name = graph.makeUniqueName(name);
    }
    RCShdPtr<PiNode> const node =
        BtImageImportServices::getInstance().createImportNode(graph, sequence, name, importOptions);
    out << node->getName() << '\n';
    return 0;
}

extern "C" int btFootageCommand(Qv::BtFootageCommandOptions const& options, std::ostream& out) {
    using namespace Qv;
    BtImageImportServices::Options const importOptions = toOptions(options.import);
    OmProject const project = openOrCreateProject(options.project);
    BtImageImportServices& services = BtImageImportServices::getInstance();
    OmFolder const folder =
        options.folder.empty()
            ? services.getDefaultFolder(project)
            : OmUtil::locateOrCreateFolder(
                  project,
                  OsFilePath(
                      (std::filesystem::path(project.getPath().toString()) / options.folder).string()));
    if (folder.isNull())
        throw ExBase(__FILE__, __LINE__,
                     "folder \"" + options.folder + "\" cannot be made in the project " +
                         project.getPath().toString());
    std::vector<std::string> paths;
    for (std::string const& path : options.paths)
        paths.push_back(std::filesystem::absolute(path).lexically_normal().string());
    std::vector<OmLink> const links = services.importFiles(folder, paths, options.import.name, importOptions);
    int status = 0;
    for (OmLink const& link : links) {
        if (link.isNull()) {
            status = 1;
            continue;
        }
        out << link.getDisplayPath() << ": " << link.getComponent()->getDescription() << '\n';
    }
    return status;
}
