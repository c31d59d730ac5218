#include "imageImportServices.h"

#include "assertions.h"
#include "btImageImportController.h"
#include "btImageImportTool.h"
#include "btImageSequence.h"
#include "btSequencePathParser.h"
#include "cmUndoGuardNoLog.h"
#include "exBase.h"
#include "ffIOEx.h"
#include "fmtFormatName.h"
#include "fmtVideoFormat.h"
#include "imMemoryBuffer.h"
#include "msgError.h"
#include "msgServer.h"
#include "msgSubscription.h"
#include "omComposition.h"
#include "omFootageFactory.h"
#include "omGraph.h"
#include "omUtil.h"
#include "piGraph.h"
#include "piImageFile.h"
#include "piImageFileDetails.h"
#include "piImageSequence.h"
#include "piNode.h"
#include "piNodeRate.h"

#include <filesystem>

namespace Qv {

namespace {

MsgSubscription gAlreadyExists("MSG_COMPOSITION_ALREADY_EXISTS");
MsgSubscription gInvalidName("MSG_INVALID_COMPOSITION_NAME");
MsgSubscription gFileNotFound("MSG_FILE_NOT_FOUND");
MsgSubscription gUnknownFormat("MSG_UNKNOWN_FORMAT");
MsgSubscription gImportSucceeded("MSG_IMPORT_SUCCEEDED");

void warn(MsgSubscription const& subscription, std::string const& value) {
    MsgWarning warning(subscription);
    warning.substitute(value);
    warning.display();
}

// The first video format of that size, if any.
std::vector<FmtFormatName> formatsOfSize(int width, int height) {
    return FmtFormatName::getFilteredList(
        FmtVideoFormat::TYPE, {FmtFormatName::All, std::to_string(width), std::to_string(height)});
}

// The depth an import gives: the argument's, else the first file's, integer
// files as ECR.
ImPixelFormat::Depth importDepth(PiImageSequence const& sequence, int depth) {
    if (depth != BtImageImportServices::UNSPECIFIED_DEPTH)
        return static_cast<ImPixelFormat::Depth>(depth);
    try {
        PiImageFilePtr const first = sequence.getImageForReading(0, ImMemoryBuffer::Factory::getInstance());
        ImPixelFormat::Depth const fileDepth = first->getFileLayout().getFormat().getPixelFormat().getDepth();
        return fileDepth == ImPixelFormat::HDR ? ImPixelFormat::HDR : ImPixelFormat::ECR;
    } catch (ExBase const&) {
        return ImPixelFormat::ECR;
    }
}

} // namespace

std::string const& ImageImportServices::getDefaultFolderName() {
    static std::string const name("Footage");
    return name;
}

void ImageImportServices::subscribeMessages() {
    for (MsgSubscription* subscription :
         {&gAlreadyExists, &gInvalidName, &gFileNotFound, &gUnknownFormat, &gImportSucceeded})
        MsgServer::getInstance().subscribe(*subscription);
}

OmFolder ImageImportServices::getDefaultFolder(OmProject const& project) const {
    if (project.isNull())
        return {};
    OmFolder folder = OmUtil::locateOrCreateFolder(
        project,
        OsFilePath((std::filesystem::path(project.getPath().toString()) / getDefaultFolderName()).string()));
    return folder;
}

Rational ImageImportServices::guessPixelRatio(int width, int height) const {
    std::vector<FmtFormatName> const formats = formatsOfSize(width, height);
    if (formats.empty())
        return Rational(1, 1);
    return RationalUtil::fromFractionString(formats.front().getFieldValue(FmtVideoFormat::PIXEL_RATIO), ":");
}

Rational ImageImportServices::guessRate(int width, int height) const {
    std::vector<FmtFormatName> const formats = formatsOfSize(width, height);
    if (formats.empty())
        return PiNodeRate::getProjectRate();
    return RationalUtil::fromFractionString(formats.front().getFieldValue(FmtVideoFormat::RATE), "/");
}

RCShdPtr<PiNode> ImageImportServices::createImportNode(PiGraph& graph,
                                                       RCStrongPtr<PiImageSequence> const& sequence,
                                                       std::string const& name, Options const& options) {
    QV_ASSERT(!sequence.isNull());
    if (sequence->getNbImages() <= 0)
        throw ExBase(__FILE__, __LINE__, "invalid image sequence");
    ImPixelFormat::Depth const actualDepth = importDepth(*sequence, options.depth);
    QV_ASSERT(actualDepth == ImPixelFormat::ECR || actualDepth == ImPixelFormat::HDR);

    RCShdPtr<PiNode> const node = graph.createNode(BtImageImportTool::getTool()->getName(), name);
    auto* const import = node->getInterface<BtImageImportController>();
    QV_ASSERT(import != nullptr);
    if (!options.fileFormatOptions.empty())
        sequence->setFileFormatOptions(options.fileFormatOptions);
    import->setImageSequence(sequence);
    if (!options.fileFormatOptions.empty())
        import->setFileFormatOptions(options.fileFormatOptions);
    // The size the footage gave is what the guesses go by.
    int const width = std::get<int>(import->getReaderNode()->getValue("Width", true)->getData());
    int const height = std::get<int>(import->getReaderNode()->getValue("Height", true)->getData());
    import->setPixelRatio(options.pixelRatio == UNSPECIFIED_PIXEL_RATIO ? guessPixelRatio(width, height)
                                                                        : options.pixelRatio);
    import->setDepth(actualDepth == ImPixelFormat::HDR ? IxPixelFormat::FLOAT32 : IxPixelFormat::FLOAT16);
    // A movie knows its rate; image files do not.
    Rational const mediaRate = sequence->getRate();
    import->setRate(options.rate != UNSPECIFIED_RATE ? options.rate
                    : mediaRate.getNumerator() > 0   ? mediaRate
                                                     : guessRate(width, height));
    import->setUnpremultiplyState(false);
    import->setUnpremultiplyBgColor({0.0f, 0.0f, 0.0f});
    import->setMotionVectorInfo(sequence->getMotionVectorInfo());
    return node;
}

OmLink ImageImportServices::importFootage(OmFolder const& folder,
                                          RCStrongPtr<PiImageSequence> const& imgSequence,
                                          std::string const& name, Options const& options) {
    QV_ASSERT(!folder.isNull());
    QV_ASSERT(!imgSequence.isNull());
    ImPixelFormat::Depth const depth = importDepth(*imgSequence, options.depth);
    QV_ASSERT(depth == ImPixelFormat::ECR || depth == ImPixelFormat::HDR);
    if (!OmUtil::isValidName(name)) {
        warn(gInvalidName, name);
        return {};
    }
    if (!folder.getEntry(name).isNull()) {
        warn(gAlreadyExists, name);
        return {};
    }
    // Imports are not steps a user undoes.
    CmUndoGuardNoLog const noLog;
    OmLink const link = folder.addEntry(name, OmFootageFactory::createComponent(name));
    try {
        RCShdPtr<OmComposition> const composition = rcCast<OmComposition>(link.getComponent());
        OmComponent::SyncGuard const sync(*composition);
        OmGraph graph = OmGraph::open(composition->getWorkingVersion());
        Options withDepth = options;
        withDepth.depth = depth;
        createImportNode(*graph.getInterface(), imgSequence, name, withDepth);
        try {
            PiImageFilePtr const first =
                imgSequence->getImageForReading(0, ImMemoryBuffer::Factory::getInstance());
            composition->setDescription(PiImageFileDetails::getDetailString(*first));
        } catch (ExBase const&) {
            // Footage that cannot be opened yet has no description.
        }
        graph.sync();
    } catch (...) {
        // Nothing is left of an import that failed half-way.
        std::error_code ignored;
        std::filesystem::remove_all(std::filesystem::path(link.getPath().toString()), ignored);
        throw;
    }
    MsgInformation information(gImportSucceeded);
    information.substitute(link.getDisplayPath());
    information.display();
    return link;
}

std::vector<OmLink> ImageImportServices::importFiles(OmFolder const& folder,
                                                     std::vector<std::string> const& paths,
                                                     Options const& options) {
    return importFiles(folder, paths, {}, options);
}

std::vector<OmLink> ImageImportServices::importFiles(OmFolder const& folder,
                                                     std::vector<std::string> const& paths,
                                                     std::string const& name, Options const& options) {
    std::vector<OmLink> links;
    for (std::string const& path : paths) {
        std::string problem;
        RCStrongPtr<PiImageSequence> const sequence = findSequence(path, problem);
        if (sequence.isNull()) {
            MsgWarning(problem).display();
            links.emplace_back();
            continue;
        }
        std::string const entryName = paths.size() == 1 && !name.empty() ? name : sequence->getSequenceName();
        links.push_back(importFootage(folder, sequence, entryName, options));
    }
    return links;
}

RCStrongPtr<PiImageSequence> ImageImportServices::findSequence(std::string const& path,
                                                               std::string& problem) {
    auto refuse = [&](MsgSubscription const& subscription) {
        MsgWarning warning(subscription);
        warning.substitute(path);
        problem = warning.getText();
        return RCStrongPtr<PiImageSequence>();
    };
    std::string resolved;
    try {
        if (path.find('[') != std::string::npos)
            resolved = BtSequencePathParser::resolveSequencePath(path);
        else if (std::filesystem::is_regular_file(path))
            resolved = BtSequencePathParser::resolveFullSequencePath(path);
    } catch (ExBase const&) {
        resolved.clear();
    }
    if (resolved.empty())
        return refuse(gFileNotFound);
    try {
        RCStrongPtr<PiImageSequence> sequence(
            BtImageSequence::create(resolved, BtImageSequence::CHECK_FIRST_FILE).release());
        if (!sequence.isNull() && sequence->getNbImages() > 0)
            return sequence;
    } catch (FfIOEx::ExUnknownFormat const&) {
        return refuse(gUnknownFormat);
    } catch (ExBase const&) {
    }
    return refuse(gFileNotFound);
}

} // namespace Qv
