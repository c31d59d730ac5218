// The footage of an image reader: choosing it by path, reading its
// attributes once, reloading it and following it when it moves.
#include "assertions.h"
#include "btImageReaderController.h"
#include "btImageReaderTool.h"
#include "btImageSequence.h"
#include "btSequencePath.h"
#include "btSequencePathEx.h"
#include "btSequencePathParser.h"
#include "ffIOEx.h"
#include "imMemoryBuffer.h"
#include "ixUtil.h"
#include "piGraph.h"
#include "piImageFile.h"
#include "piImageSequence.h"
#include "piNode.h"
#include "piNodeRate.h"
#include "piTool.h"

#include <filesystem>
#include <sstream>

namespace Qv {

void BtImageReaderController::takeSequenceName(RCShdPtr<PiNode> const& node,
                                               std::string const& sequenceName) {
    PiGraph* const graph = node->getGraph();
    if (!graph || !isDefaultName(node->getName(), node->getTool()->getShortName()))
        return;
    // No separator, no blank end.
    std::string name;
    for (char c : sequenceName)
        name += c == '.' ? '_' : c;
    while (!name.empty() && std::isspace(static_cast<unsigned char>(name.back())))
        name.pop_back();
    if (!name.empty() && name != node->getName())
        graph->renameNode(node, graph->findNode(name) ? graph->makeUniqueName(name) : name);
}

bool BtImageReaderController::fail(std::string text) {
    _errorString = std::move(text);
    return false;
}

bool BtImageReaderController::setSequencePath(std::string const& path) {
    QV_ASSERT(!isUndoOrRedoOngoing());
    std::string text = path;
    std::string scheme;
    BtSequencePath::extractScheme(text, scheme);
    if (text.empty())
        return fail("No path was specified");
    std::string resolved;
    try {
        resolved = BtSequencePathParser::resolveSequencePath(path);
    } catch (BtSequencePathEx const& ex) {
        return fail("Error parsing the path: " + ex.getReason());
    } catch (ExBase const& ex) {
        // A '#' over a folder that is not there.
        return fail("Error parsing the path: " + ex.getReason());
    }
    if (resolved.empty())
        return fail("No files match the query: " + path);
    RCStrongPtr<PiImageSequence> sequence;
    try {
        sequence = RCStrongPtr<PiImageSequence>(BtImageSequence::create(resolved, 2).release());
    } catch (FfIOEx::ExUnknownFormat const&) {
        return fail("Format of specified files is not supported");
    } catch (ExBase const& ex) {
        return fail("Could not create the image sequence. " + ex.getReason());
    }
    if (sequence.isNull() || sequence->getNbImages() <= 0)
        return fail("Could not create the image sequence.");

    RCShdPtr<PiNode> const node = getNode();
    {
        auto const guard = makeGuard("Set Sequence Path");
        setImageSequenceProc(sequence);
        takeSequenceName(node, sequence->getSequenceName());
    }
    _errorString.clear();
    return true;
}

void BtImageReaderController::setImageSequence(OPtr<PiImageSequence> imageSequence) {
    QV_ASSERT(imageSequence != nullptr);
    RCStrongPtr<PiImageSequence> const sequence(imageSequence.release());
    QV_ASSERT(imageSequence == nullptr);
    setImageSequence(sequence);
}

void BtImageReaderController::setImageSequence(RCStrongPtr<PiImageSequence> const& imageSequence) {
    QV_ASSERT(!imageSequence.isNull());
    auto const guard = makeGuard("Set Sequence Path");
    setImageSequenceProc(imageSequence);
}

void BtImageReaderController::setImageSequenceProc(RCStrongPtr<PiImageSequence> const& sequence,
                                                   bool initialize) {
    std::ostringstream fragment;
    sequence->write(fragment);
    _imageSequence = sequence;
    dropTransientGraph();
    {
        // The footage is already ours: the change of value only records the step.
        _storingSequence = true;
        struct Reset {
            bool& flag;
            ~Reset() { flag = false; }
        } const reset{_storingSequence};
        setStored(BtImageReaderTool::getImageSequenceName(), fragment.str(), {});
    }
    if (initialize) {
        setStored(BtImageReaderTool::getImageSequenceInitializedName(), false, {});
        initImageSequence();
    }
    rebuildOutput();
}

std::string BtImageReaderController::getSequenceString() const {
    return _imageSequence.isNull() ? std::string() : _imageSequence->getPath();
}

long long BtImageReaderController::getDefaultInTime() const {
    return _imageSequence.isNull() ? 0 : _imageSequence->getStartFileNo();
}

long long BtImageReaderController::getDefaultOutTime() const {
    // Exclusive: the first frame after the footage.
    return _imageSequence.isNull() ? 0 : _imageSequence->getStartFileNo() + _imageSequence->getNbImages();
}

void BtImageReaderController::initImageSequence() {
    RCShdPtr<PiNode> const node = getNode();
    RCShdPtr<PiValue> const initialized =
        node->getValue(BtImageReaderTool::getImageSequenceInitializedName());
    QV_ASSERT(!initialized.isNull());
    if (std::get<bool>(initialized->getData()) || _imageSequence.isNull())
        return;
    PiImageFormat format;
    unsigned depth = IxPixelFormat::FLOAT16;
    try {
        PiImageFilePtr const first =
            _imageSequence->getImageForReading(0, ImMemoryBuffer::Factory::getInstance());
        ImLayout const layout = first->getFileLayout();
        format.width = layout.getWidth();
        format.height = layout.getHeight();
        depth = static_cast<unsigned>(imToIxPixelFormat(layout.getFormat()).getDepth());
    } catch (ExBase const&) {
        // Footage not there yet: the attributes wait for it.
        return;
    }
    Rational const rate = _imageSequence->getRate();
    format.rate = rate.getNumerator() > 0 && rate.getDenominator() > 0 ? rate : PiNodeRate::getProjectRate();
    format.pixelAspect = Rational(1, 1);
    PiImageFormatValue(node->getValue(BtImageReaderTool::getImageFormatName(), true)).setValue(format);
    setStored(BtImageReaderTool::getWidthName(), format.width, {});
    setStored(BtImageReaderTool::getHeightName(), format.height, {});
    setStored(BtImageReaderTool::getDepthName(), static_cast<int>(depth), {});
    CoMotionVectorInfo const vectors = _imageSequence->getMotionVectorInfo();
    setStored(BtImageReaderTool::getMotionVectorStatusName(), static_cast<int>(vectors.status), {});
    setStored(BtImageReaderTool::getMotionVectorTypeName(), static_cast<int>(vectors.type), {});
    setStored(BtImageReaderTool::getMotionVectorMaxDisplacementName(),
              static_cast<double>(vectors.maxDisplacement), {});
    setInput(BtImageReaderTool::getMarkInName(), static_cast<int>(getDefaultInTime()), {});
    setInput(BtImageReaderTool::getMarkOutName(), static_cast<int>(getDefaultOutTime()), {});
    initialized->setData(true);
}

bool BtImageReaderController::reloadImageSequence() {
    if (_imageSequence.isNull())
        return fail("No path was specified");
    auto const guard = makeGuard("Reload Image Sequence");
    return setSequencePath(_imageSequence->getPath());
}

bool BtImageReaderController::relocateExternalDependencies(std::vector<Relocation> const& relocations) {
    if (_imageSequence.isNull())
        return false;
    namespace fs = std::filesystem;
    std::string path = _imageSequence->getPath();
    std::string newPath;
    if (_imageSequence->isStream()) {
        for (auto const& [from, to] : relocations)
            if (fs::path(from).lexically_normal() == fs::path(path).lexically_normal())
                newPath = to;
    } else {
        OPtr<BtSequencePath> const sequencePath = BtSequencePath::create(path);
        fs::path const directory = fs::path(sequencePath->getDirectory()).lexically_normal();
        fs::path const firstFile = fs::path(_imageSequence->getFileNameAt(0)).lexically_normal();
        for (auto const& [from, to] : relocations) {
            fs::path const old = fs::path(from).lexically_normal();
            // Either the folder moved, or the first file (and its siblings with it).
            fs::path target;
            if (old == directory || old / "" == directory / "")
                target = to;
            else if (old == firstFile)
                target = fs::path(to).parent_path();
            if (!target.empty()) {
                sequencePath->setDirectory(target.string());
                newPath = sequencePath->getPath();
            }
        }
    }
    if (newPath.empty() || newPath == path)
        return false;
    RCStrongPtr<PiImageSequence> const moved(
        BtImageSequence::create(newPath, BtImageSequence::NO_CHECK).release());
    auto const guard = makeGuard("Relocate Image Sequence");
    // The same footage in another place: what the user set of it stays.
    setImageSequenceProc(moved, false);
    return true;
}

} // namespace Qv
