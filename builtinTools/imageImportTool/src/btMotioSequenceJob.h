#pragma once
// `qv motio`: the motion vectors of the frames of an image sequence, or of a
// pair of files, computed whole at full size by the Motio chain over an image
// reader node. qv finds btMotioSequence by its C name and is handed each
// vector image as soon as it is computed; what it does with it is its own.
#include "btMotioTypes.h"
#include "ixTile.h"

#include <string>
#include <vector>

namespace Qv {

struct BtMotioSequenceOptions {
    // One sequence path (its files are the frames), or two image files,
    // which are frames 0 and 1.
    std::vector<std::string> inputs;
    // The frames in play, first to last; every frame of the input when not set.
    bool hasFrames = false;
    long long firstFrame = 0;
    long long lastFrame = 0;
    // 0 "Full" to 6 "Sixty-fourth": the finest proxy scale analysed.
    int quality = 0;
    // Forward vectors of every frame in play but the last; backward vectors
    // of every one but the first.
    bool forward = false;
    bool backward = false;
};

class BtMotioSequenceSink {
public:
    virtual ~BtMotioSequenceSink() = default;
    // Before the analysis of one vector image, `done` of `total` made.
    virtual void analysing(BtMotioTypes::VectorType type, long long frame, int done, int total) = 0;
    // One whole vector image: R the horizontal and G the vertical
    // displacement, in pixels of the frame at full size. `frameText` is the
    // frame's number as its file name writes it ("0012"); for a pair, "0" or "1".
    virtual void vectors(BtMotioTypes::VectorType type, long long frame, std::string const& frameText,
                         IxTile const& tile) = 0;
};

} // namespace Qv

// Throws ExBase whose reason begins with the file or path it is about: a
// file that cannot be read, frames of different sizes, fewer than 2 frames in
// play, frames out of the input. What the analysis throws passes.
extern "C" void btMotioSequence(Qv::BtMotioSequenceOptions const& options, Qv::BtMotioSequenceSink& sink);
// A value of the Motio tool's "Quality", given by its number or its label
// ("2" or "Quarter"); -1 when the text is neither, `labels` then holding the
// labels in the order of their values, separated by ", ".
extern "C" int btMotioQuality(std::string const& text, std::string& labels);
