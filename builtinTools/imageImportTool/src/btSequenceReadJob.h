#pragma once
// `qv read`: frames of an image sequence through a reader node, computed
// whole on the workers in the order given, optionally written to files.
// qv finds btReadSequence by its C name in the loaded library.
#include <iosfwd>
#include <string>
#include <vector>

namespace Qv {

struct BtSequenceReadOptions {
    std::string path;
    std::vector<long long> frames;
    // "#" becomes the frame number padded to 4; empty: nothing written.
    std::string output;
    int proxy = 0;
    // "UINT8", "FLOAT16", "FLOAT32"; empty: the first file's.
    std::string depth;
    std::string formatOptions;
    bool unpremultiply = false;
    // "R,G,B", or empty for black.
    std::string background;
    bool guessBackground = false;
    // "absolute" or "normalized:MAX"; empty: no vectors.
    std::string vectors;
    bool proxiesOnRead = false;
    bool stats = false;
};

} // namespace Qv

// "1-24", "5", "1,3,5-9": frames in order, repeats kept. Throws ExBase naming the bad item.
extern "C" void btParseFrameList(std::string const& text, std::vector<long long>& frames);
extern "C" int btReadSequence(Qv::BtSequenceReadOptions const& options, std::ostream& out);
