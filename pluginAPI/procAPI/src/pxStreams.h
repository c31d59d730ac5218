#pragma once
// Image streams: one image per stream at each time, 0 the main (or left)
// view, 1 the second (right) view of a stereo pair.
namespace Qv {

class PxStreams {
public:
    static constexpr int MAX_NB_STREAMS = 2;
    // Asserts that the number names a stream.
    static void validateStream(int stream);
};

} // namespace Qv
