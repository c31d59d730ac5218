#include "btReaderCommand.h"

#include "btImageImportController.h"
#include "btImageReaderController.h"
#include "btImageReaderTool.h"
#include "btReaderSettingsText.h"
#include "evEventManager.h"
#include "exBase.h"
#include "piGraph.h"
#include "piImageSequence.h"
#include "piImageSocket.h"
#include "piNode.h"
#include "piOutput.h"
#include "rational.h"

#include <filesystem>
#include <fmt/format.h>
#include <ostream>

namespace Qv {

namespace {

std::string ratioText(Rational const& ratio, char separator) {
    return fmt::format("{}{}{}", ratio.getNumerator(), separator, ratio.getDenominator());
}

// A reader node, or the reader inside an import node.
struct Target {
    BtImageReaderController& reader;
    BtImageImportController* import;
    RCShdPtr<PiNode> node;
};

Target findReader(PiGraph& graph, std::string const& name) {
    RCShdPtr<PiNode> const node = graph.findNode(name);
    if (!node)
        throw ExBase(__FILE__, __LINE__, name + ": no such node");
    if (auto* const import = node->getInterface<BtImageImportController>())
        return {import->getReader(), import, node};
    auto* const reader = node->getInterface<BtImageReaderController>();
    if (!reader)
        throw ExBase(__FILE__, __LINE__,
                     name + ": a node of " + node->getToolName() + ", not an image reader or import");
    return {*reader, nullptr, node};
}

void printAttributes(BtImageReaderController const& reader, std::ostream& out) {
    RCStrongPtr<PiImageSequence> const sequence = reader.getImageSequence();
    RCShdPtr<PiNode> const node = reader.getNode();
    auto stored = [&](std::string const& name) { return node->getValue(name, true)->getData(); };
    out << "path: " << reader.getSequenceString() << '\n';
    out << "images: " << (sequence.isNull() ? 0 : sequence->getNbImages()) << '\n';
    out << "size: " << std::get<int>(stored(BtImageReaderTool::getWidthName())) << 'x'
        << std::get<int>(stored(BtImageReaderTool::getHeightName())) << '\n';
    out << "depth: " << BtReaderSettingsText::depthName(reader.getDepth()) << '\n';
    out << "rate: " << ratioText(reader.getRate(), '/') << '\n';
    out << "pixelRatio: " << ratioText(reader.getPixelRatio(), '/') << '\n';
    out << "markIn: " << reader.getInTime() << '\n';
    out << "markOut: " << reader.getOutTime() << '\n';
    out << "offset: " << reader.getOffset() << '\n';
    out << "repeatMode: " << TmTypes::repeatModeToString(reader.getRepeatMode()) << '\n';
    out << "unpremultiply: " << (reader.getUnpremultiplyState() ? "on" : "off") << '\n';
    out << "bgColor: " << BtReaderSettingsText::colorText(reader.getUnpremultiplyBgColor()) << '\n';
    out << "vectors: " << reader.getMotionVectorInfo().dump() << '\n';
    std::string const identity = reader.getCacheIdentity();
    out << "cache: " << (identity.empty() ? "fresh" : identity) << '\n';
}

// The frame `frame` read once, so that the reader guesses its background.
void guessBackground(BtImageReaderController& reader, std::optional<long long> const& frame,
                     std::ostream& out) {
    reader.guessUnpremultiplyBgColor();
    long long const at = frame ? *frame : reader.getInTime();
    double const time = static_cast<double>(at) / reader.getRate().getDouble();
    RCShdPtr<PiOutput> const output =
        reader.getNode()->getOutput(BtImageReaderTool::getOutputImageName(), true);
    PiImageSocket<PiOutput>(output).getValue(time, 0);
    EvEventManager::getInstance().processEvents();
    out << "guessedColor: " << BtReaderSettingsText::colorText(reader.getUnpremultiplyBgColor()) << '\n';
}

void applySettings(BtImageReaderController& reader, BtReaderCommandOptions const& options) {
    if (options.rate)
        reader.setRate(RationalUtil::fromFractionString(*options.rate, "/"));
    if (options.pixelRatio)
        reader.setPixelRatio(RationalUtil::fromFractionString(*options.pixelRatio, ":"));
    if (options.depth)
        reader.setDepth(BtReaderSettingsText::parseDepth(*options.depth));
    if (options.formatOptions)
        reader.setFileFormatOptions(*options.formatOptions);
    if (options.unpremultiply) {
        if (*options.unpremultiply != "on" && *options.unpremultiply != "off")
            throw ExBase(__FILE__, __LINE__,
                         "unpremultiply \"" + *options.unpremultiply + "\" is not on or off");
        reader.setUnpremultiplyState(*options.unpremultiply == "on");
    }
    if (options.background)
        reader.setUnpremultiplyBgColor(BtReaderSettingsText::parseColor(*options.background));
    if (options.vectors)
        reader.setMotionVectorInfo(BtReaderSettingsText::parseVectors(*options.vectors));
}

int run(PiGraph& graph, BtReaderCommandOptions const& options, std::ostream& out) {
    Target const target = findReader(graph, options.node);
    BtImageReaderController& reader = target.reader;
    if (options.path) {
        std::error_code error;
        std::filesystem::path const absolute = std::filesystem::absolute(*options.path, error);
        std::string const path = error ? *options.path : absolute.string();
        if (!(target.import ? target.import->setSequencePath(path) : reader.setSequencePath(path)))
            throw ExBase(__FILE__, __LINE__, reader.getErrorString());
        out << target.node->getName() << '\n';
    }
    if (options.reload && !reader.reloadImageSequence())
        throw ExBase(__FILE__, __LINE__, reader.getErrorString());
    applySettings(reader, options);
    if (options.relocate)
        reader.relocateExternalDependencies({*options.relocate});
    if (options.guessBackground)
        guessBackground(reader, options.frame, out);
    if (options.dependencies)
        for (std::string const& file : reader.getExternalDependencies(PiExternalDependencyInterface::FILES))
            out << file << '\n';
    if (!options.isEdit() && !options.dependencies)
        printAttributes(reader, out);
    return 0;
}

} // namespace

} // namespace Qv

extern "C" int btReaderCommand(Qv::PiGraph& graph, Qv::BtReaderCommandOptions const& options,
                               std::ostream& out) {
    try {
        return Qv::run(graph, options, out);
    } catch (Qv::ExBase const& ex) {
        // What failed, on which node: the one line qv prints.
        std::string const prefix = options.node + ": ";
        if (ex.getReason().rfind(prefix, 0) == 0)
            throw;
        throw Qv::ExBase(__FILE__, __LINE__, prefix + ex.getReason());
    }
}
