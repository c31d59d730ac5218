#include "btMotioSequenceJob.h"

#include "assertions.h"
#include "btImageReaderNode.h"
#include "btImageSequence.h"
#include "btMotioTool.h"
#include "btMotionUtils.h"
#include "btRangeSpec.h"
#include "btReaderCacheIdentity.h"
#include "btSequencePath.h"
#include "btSequencePathParser.h"
#include "exBase.h"
#include "imMemoryBuffer.h"
#include "ixUtil.h"
#include "piGraph.h"
#include "piImageFile.h"
#include "piImageModifier.h"
#include "piImageSequence.h"
#include "piImageSocket.h"
#include "piInputPolicy.h"
#include "piNode.h"
#include "piOutput.h"
#include "piProcBuilder.h"
#include "uuid.h"

#include <array>
#include <fmt/format.h>
#include <ostream>

namespace Qv {

namespace {

// Two files of any names, played as frames 0 and 1. Never kept in a
// composition, so it has no fragment.
class FilePairSequence final : public PiImageSequence {
public:
    explicit FilePairSequence(std::vector<std::string> files) : _files(std::move(files)) {}
    int getNbImages() const override { return static_cast<int>(_files.size()); }
    std::string getPath() const override { return _files.front(); }
    std::string getSequenceName() const override { return "pair"; }
    std::string getFileNameAt(int index) const override { return _files.at(static_cast<std::size_t>(index)); }
    bool isStream() const override { return false; }
    void write(std::ostream&) const override {}

private:
    std::vector<std::string> _files;
};

// The input as the reader plays it: the sequence, its frame numbers and the
// number text of each of its files.
struct Input {
    RCStrongPtr<PiImageSequence> sequence;
    // What messages name: the path as the user wrote it.
    std::string name;
    bool pair = false;
    std::vector<std::string> frameTexts;
    BtReaderCacheIdentity identity;
};

Input openInput(std::vector<std::string> const& inputs) {
    Input input;
    if (inputs.size() == 2) {
        input.pair = true;
        input.name = inputs[0];
        input.sequence = RCStrongPtr<PiImageSequence>(new FilePairSequence(inputs));
        input.frameTexts = {"0", "1"};
        // Two files of any names share nothing with a reader of either: a fresh cache.
        input.identity.storageId = Uuid::createRandom();
        return input;
    }
    if (inputs.size() != 1)
        throw ExBase(__FILE__, __LINE__, "motion needs one sequence path or two files");
    input.name = inputs[0];
    std::string const resolved = BtSequencePathParser::resolveSequencePath(input.name);
    if (resolved.empty())
        throw ExBase(__FILE__, __LINE__, input.name + ": no file matches");
    input.sequence = RCStrongPtr<PiImageSequence>(BtImageSequence::create(resolved).release());
    if (input.sequence.isNull())
        throw ExBase(__FILE__, __LINE__, input.name + ": no image sequence");
    int const nbImages = input.sequence->getNbImages();
    BtRangeSpec const* range = nullptr;
    OPtr<BtSequencePath> path;
    if (!input.sequence->isStream()) {
        path = BtSequencePath::create(resolved);
        range = path->getRangeSpec();
    }
    for (int index = 0; index < nbImages; ++index) {
        std::string text = range ? range->getValueAt(index) : std::string();
        input.frameTexts.push_back(text.empty() ? std::to_string(input.sequence->getStartFileNo() + index)
                                                : std::move(text));
    }
    input.identity = BtReaderCacheIdentity::decide(*input.sequence);
    return input;
}

// Reasons of the file layer begin with the file's name: not twice.
[[noreturn]] void rethrowNaming(std::string const& file, ExBase const& error) {
    std::string const& reason = error.getReason();
    throw ExBase(__FILE__, __LINE__, reason.rfind(file + ": ", 0) == 0 ? reason : file + ": " + reason);
}

// Opens every file in play, so that an unreadable one or one of another size
// is told before any analysis; returns the first file's layout.
ImLayout checkFiles(PiImageSequence const& sequence, int first, int last) {
    ImLayout layout;
    std::string firstName;
    for (int index = first; index <= last; ++index) {
        std::string const name = sequence.getFileNameAt(index);
        ImLayout here;
        try {
            here =
                sequence.getImageForReading(index, ImMemoryBuffer::Factory::getInstance())->getFileLayout();
        } catch (AssertionsEx::ExAssertionFailed const&) {
            throw;
        } catch (ExBase const& error) {
            rethrowNaming(name, error);
        }
        // The analysis runs on luminance, which an alpha alone does not have.
        if (here.getFormat().getComps() == 1)
            throw ExBase(__FILE__, __LINE__,
                         name + ": one channel, which images read as an alpha: no colour to find motion in");
        GeRectangle<int> const& rect = here.getRect();
        if (index == first) {
            layout = here;
            firstName = name;
        } else if (rect.getWidth() != layout.getRect().getWidth() ||
                   rect.getHeight() != layout.getRect().getHeight()) {
            throw ExBase(__FILE__, __LINE__,
                         fmt::format("{} is {}x{}, {} is {}x{}", name, rect.getWidth(), rect.getHeight(),
                                     firstName, layout.getRect().getWidth(), layout.getRect().getHeight()));
        }
    }
    return layout;
}

PxStrongHndl<BtImageReaderNode> createReader(Input const& input, ImLayout const& layout,
                                             Rational const& rate) {
    IxPixelFormat const fileFormat = imToIxPixelFormat(layout.getFormat());
    PxNode::Init init;
    PxStrongHndl<BtImageReaderNode> const node(
        new BtImageReaderNode(init, input.identity.storageId, input.identity.kind));
    PxNode::init(node);
    // Nothing runs yet: the state goes in directly.
    node->setImageSequence(input.sequence);
    node->setImageSize({layout.getRect().getWidth(), layout.getRect().getHeight()});
    node->setComps(static_cast<unsigned>(fileFormat.getComps()));
    node->setPixelDepth(static_cast<unsigned>(fileFormat.getDepth()));
    node->setStartTime(input.sequence->getStartFileNo());
    node->setRate(rate);
    return node;
}

// A composition in memory: a "Motio" node whose input plays the files. No
// tool plays a reader made outside a composition, so a Color Source stands
// in for one and its output publishes the reader instead of its colour;
// nothing changes the stand-in afterwards, so nothing rebuilds it.
class MotioComposition {
public:
    MotioComposition(PxStrongHndl<PxNode const> const& frames, int quality) {
        RCShdPtr<PiNode> const source = _graph->createNode("Color Source", "Frames");
        RCShdPtr<PiNode> const motio = _graph->createNode(BtMotioTool::getToolName(), "Motio");
        motio->getInput(BtMotioTool::getQualityInputName(), true)->setConstantValue(quality);
        RCShdPtr<PiOutput> const output = source->getOutput(PiImageModifier::getOutputName(), true);
        _graph->connect(output, motio->getInput(PiImageModifier::getSingleInputName(), true));
        PiProcBuilder::publish(*source, {{output.get(), frames}});
        _vectors = {motio->getOutput(BtMotionUtils::getFwdVectorsSocketName(), true),
                    motio->getOutput(BtMotionUtils::getBwdVectorsSocketName(), true)};
    }
    MotioComposition(MotioComposition const&) = delete;
    MotioComposition& operator=(MotioComposition const&) = delete;

    PxStrongHndl<PxNode const> const& getVectors(BtMotioTypes::VectorType type) const {
        return _vectors[type]->getProcNode();
    }

private:
    RCShdPtr<PiGraph> _graph{new PiGraph};
    std::array<RCShdPtr<PiOutput>, BtMotioTypes::NB_VECTOR_TYPES> _vectors;
};

} // namespace

} // namespace Qv

extern "C" void btMotioSequence(Qv::BtMotioSequenceOptions const& options, Qv::BtMotioSequenceSink& sink) {
    using namespace Qv;
    Input input;
    try {
        input = openInput(options.inputs);
    } catch (AssertionsEx::ExAssertionFailed const&) {
        throw;
    } catch (ExBase const& error) {
        rethrowNaming(options.inputs.empty() ? std::string() : options.inputs.front(), error);
    }
    long long const start = input.sequence->getStartFileNo();
    long long const count = input.sequence->getNbImages();
    long long first = start;
    long long last = start + count - 1;
    if (options.hasFrames) {
        for (long long frame : {options.firstFrame, options.lastFrame})
            if (frame < start || frame > last)
                throw ExBase(__FILE__, __LINE__, fmt::format("{}: no image at frame {}", input.name, frame));
        first = options.firstFrame;
        last = options.lastFrame;
    }
    if (last - first + 1 < 2)
        throw ExBase(__FILE__, __LINE__,
                     fmt::format("{}: {} frame{} in play, motion needs 2 or more", input.name,
                                 std::max(0LL, last - first + 1), last == first ? "" : "s"));
    ImLayout const layout =
        checkFiles(*input.sequence, static_cast<int>(first - start), static_cast<int>(last - start));
    // Image files carry no rate a reader trusts: 24 a second unless the media says.
    Rational const rate =
        input.sequence->getRate().getNumerator() > 0 && input.sequence->getRate().getDenominator() > 0
            ? input.sequence->getRate()
            : Rational(24, 1);
    PxStrongHndl<BtImageReaderNode> const reader = createReader(input, layout, rate);
    MotioComposition const composition(PxStrongHndl<PxNode const>(reader), options.quality);

    // Frame by frame, forward then backward, so that each frame's files are
    // read while the analyses that need them run.
    int const total =
        static_cast<int>((last - first) * ((options.forward ? 1 : 0) + (options.backward ? 1 : 0)));
    int done = 0;
    for (long long frame = first; frame <= last; ++frame) {
        double const time = static_cast<double>(frame) / rate.getDouble();
        std::string const& text = input.frameTexts[static_cast<std::size_t>(frame - start)];
        // A pair's frames are 0 and 1; a sequence's are its files' numbers.
        long long const number = input.pair ? frame : btFrameValue(text);
        for (auto type = BtMotioTypes::FORWARD_VECTORS; type < BtMotioTypes::NB_VECTOR_TYPES;
             type = BtMotioTypes::next(type)) {
            bool const wanted = type == BtMotioTypes::FORWARD_VECTORS ? options.forward && frame < last
                                                                      : options.backward && frame > first;
            if (!wanted)
                continue;
            sink.analysing(type, number, done, total);
            IxTile const tile = piComputeImageFrame(composition.getVectors(type), time, 0);
            sink.vectors(type, number, text, tile);
            ++done;
        }
    }
}

int btMotioQuality(std::string const& text, std::string& labels) {
    using namespace Qv;
    RCShdPtr<PiInputPolicy const> const policy = BtMotioTool::getQualityInputPolicy();
    std::vector<PiVariant> const values = policy->getDomain();
    std::vector<std::string> const names = policy->getDomainLabels();
    labels.clear();
    for (std::size_t i = 0; i < values.size() && i < names.size(); ++i) {
        int const value = std::get<int>(values[i]);
        if (text == names[i] || text == std::to_string(value))
            return value;
        labels += (labels.empty() ? "" : ", ") + names[i];
    }
    return -1;
}
