#include "btSequenceReadJob.h"

#include "btImageImportServices.h"
#include "btImageReaderNode.h"
#include "btImageSequence.h"
#include "btReaderCacheIdentity.h"
#include "btReaderSettingsText.h"
#include "btSequencePathParser.h"
#include "cbHandler.h"
#include "evEventManager.h"
#include "exBase.h"
#include "ffImageWriteUtil.h"
#include "imMemoryBuffer.h"
#include "ixUtil.h"
#include "piImageFile.h"
#include "piImageSequence.h"
#include "piImageSocket.h"
#include "pxHandles.h"
#include "pxRequestMgr.h"
#include "pxSetRequest.h"
#include "stBufferManager.h"
#include "statScalar.h"
#include "statTypes.h"

#include <charconv>
#include <cstdio>
#include <fmt/format.h>
#include <ostream>

namespace Qv {

namespace {

long long parseFrame(std::string_view text, std::string const& whole) {
    long long value = 0;
    char const* const end = text.data() + text.size();
    auto const [ptr, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc() || ptr != end)
        throw ExBase(__FILE__, __LINE__,
                     fmt::format("frame list \"{}\": \"{}\" is not a frame number", whole, text));
    return value;
}

std::string outputName(std::string const& pattern, long long frame) {
    std::size_t const hash = pattern.find('#');
    if (hash == std::string::npos)
        return pattern;
    return pattern.substr(0, hash) + fmt::format("{:04d}", frame) + pattern.substr(hash + 1);
}

template <class Arg, class Value>
void setState(PxStrongHndl<BtImageReaderNode> const& node, void (BtImageReaderNode::*setter)(Arg),
              Value value) {
    PxRequestMgr& mgr = PxRequestMgr::getInstance();
    PxRequestPtr<PxSetRequest<BtImageReaderNode, Arg>> request(new PxSetRequest<BtImageReaderNode, Arg>(
        PxNodePtr<BtImageReaderNode>(node), setter, std::move(value)));
    mgr.postRequest(request, 0);
    mgr.waitForRequest(request);
    mgr.releaseRequest(request);
}

// Prints the guess and hands it to the node, as the reader's controller does.
class GuessHandler : public CbHandler<BtImageReaderNode::ColorGuess> {
public:
    GuessHandler(std::ostream& out) : _out(out) {}
    void call(BtImageReaderNode::ColorGuess& guess) override {
        CoRgbColorTyped<float> const& c = guess.second;
        char text[96];
        std::snprintf(text, sizeof text, "guessedColor: %.9g %.9g %.9g\n", static_cast<double>(c.r),
                      static_cast<double>(c.g), static_cast<double>(c.b));
        _out << text;
        _guess = c;
        _arrived = true;
    }
    bool takeArrived() { return std::exchange(_arrived, false); }
    CoRgbColorTyped<float> const& getGuess() const { return _guess; }

private:
    std::ostream& _out;
    CoRgbColorTyped<float> _guess{};
    bool _arrived = false;
};

} // namespace

} // namespace Qv

void btParseFrameList(std::string const& text, std::vector<long long>& frames) {
    using namespace Qv;
    frames.clear();
    std::size_t start = 0;
    while (start <= text.size()) {
        std::size_t const comma = std::min(text.find(',', start), text.size());
        std::string_view const item(text.data() + start, comma - start);
        // A dash after the first character separates a range; a leading one is a sign.
        std::size_t const dash = item.find('-', 1);
        if (dash == std::string_view::npos) {
            frames.push_back(parseFrame(item, text));
        } else {
            long long const first = parseFrame(item.substr(0, dash), text);
            long long const last = parseFrame(item.substr(dash + 1), text);
            if (last < first || last - first > 10'000'000)
                throw ExBase(
                    __FILE__, __LINE__,
                    fmt::format("frame list \"{}\": \"{}\" is not a range from low to high", text, item));
            for (long long frame = first; frame <= last; ++frame)
                frames.push_back(frame);
        }
        start = comma + 1;
    }
}

extern "C" int btReadSequence(Qv::BtSequenceReadOptions const& options, std::ostream& out) {
    using namespace Qv;
    if (options.frames.empty())
        throw ExBase(__FILE__, __LINE__, "no frame to read");
    if (options.proxy < 0 || options.proxy > 16)
        throw ExBase(__FILE__, __LINE__, fmt::format("proxy scale {} is not one of 0 to 16", options.proxy));
    if (!options.output.empty() && options.output.find('#') == std::string::npos && options.frames.size() > 1)
        throw ExBase(__FILE__, __LINE__,
                     "output " + options.output +
                         " has no # for the frame number, and more than one frame is read");
    std::string const resolved = BtSequencePathParser::resolveSequencePath(options.path);
    if (resolved.empty())
        throw ExBase(__FILE__, __LINE__, options.path + ": no file matches");
    RCStrongPtr<PiImageSequence> const sequence(
        BtImageSequence::create(resolved, BtImageSequence::CHECK_FIRST_FILE).release());
    if (sequence.isNull() || sequence->getNbImages() <= 0)
        throw ExBase(__FILE__, __LINE__, options.path + ": no image sequence");
    long long const start = sequence->getStartFileNo();
    for (long long frame : options.frames)
        if (frame < start || frame - start >= sequence->getNbImages())
            throw ExBase(__FILE__, __LINE__, fmt::format("{} has no image at frame {}", options.path, frame));

    // The first file gives the size, the components and the depth.
    ImLayout layout;
    {
        PiImageFilePtr const first = sequence->getImageForReading(0, ImMemoryBuffer::Factory::getInstance());
        layout = first->getFileLayout();
    }
    IxPixelFormat const fileFormat = imToIxPixelFormat(layout.getFormat());
    IxPixelFormat::Depth const depth =
        options.depth.empty() ? fileFormat.getDepth() : BtReaderSettingsText::parseDepth(options.depth);
    CoMotionVectorInfo const vectors = BtReaderSettingsText::parseVectors(options.vectors);
    // Image files carry no rate a reader trusts: 24 a second unless the media says.
    Rational const rate = sequence->getRate().getNumerator() > 0 && sequence->getRate().getDenominator() > 0
                              ? sequence->getRate()
                              : Rational(24, 1);

    BtImageReaderNode::setProxiesOnRead(options.proxiesOnRead);
    BtReaderCacheIdentity const identity = BtReaderCacheIdentity::decide(*sequence);
    PxNode::Init init;
    PxStrongHndl<BtImageReaderNode> const node(
        new BtImageReaderNode(init, identity.storageId, identity.kind));
    PxNode::init(node);
    // Nothing runs yet: the state goes in directly.
    node->setImageSequence(sequence);
    node->setImageSize({layout.getRect().getWidth(), layout.getRect().getHeight()});
    node->setComps(static_cast<unsigned>(fileFormat.getComps()));
    node->setPixelDepth(static_cast<unsigned>(depth));
    node->setStartTime(start);
    node->setRate(rate);
    node->setFormatOptions(options.formatOptions);
    node->setMotionVectorInfo(vectors);
    node->setUnpremultiply(options.unpremultiply);
    if (options.guessBackground)
        node->setUnpremultiplyColor(BtImageImportServices::getUnspecifiedBgColor());
    else if (!options.background.empty())
        node->setUnpremultiplyColor(BtReaderSettingsText::parseColor(options.background));
    GuessHandler guesses(out);
    node->getColorDispatcher().addCallback(&guesses);

    StBufferManager::getInstance().resetPeak();
    for (long long frame : options.frames) {
        double const time = static_cast<double>(frame) / rate.getDouble();
        IxTile tile = piComputeImageFrame(PxStrongHndl<PxNode const>(node), time, options.proxy);
        EvEventManager::getInstance().processEvents();
        if (guesses.takeArrived()) {
            // The frame was read before its background was known: again, with it.
            setState(node, &BtImageReaderNode::setUnpremultiplyColor, guesses.getGuess());
            tile = piComputeImageFrame(PxStrongHndl<PxNode const>(node), time, options.proxy);
        }
        if (!options.output.empty())
            FfImageWriteUtil::writeTile(OsFilePath(outputName(options.output, frame)), tile);
    }
    node->getColorDispatcher().removeCallback(&guesses);
    if (options.stats) {
        out << "fileImports: " << StatScalar::get(StatTypes::FILE_IMPORT_SCALAR_ID) << '\n';
        out << "proxyTiles: " << StatScalar::get(StatTypes::PROXY_TILE_SCALAR_ID) << '\n';
        out << "errorTiles: " << StatScalar::get(StatTypes::ERROR_TILE_SCALAR_ID) << '\n';
        out << "imageMemoryPeakMB: "
            << (StBufferManager::getInstance().getPeak() + (1u << 20) - 1) / (1u << 20) << '\n';
    }
    return 0;
}
