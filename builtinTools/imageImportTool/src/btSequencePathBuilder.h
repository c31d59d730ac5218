#pragma once
// Turns the notifications of the sequence path grammar into the canonical,
// fully explicit path: every item "first", "first:last" or "first:last|step".
// Items written with '#' or "*f" are resolved against the files on disk when
// the parse is complete.
//
// How the disk is read. The bracket is cut out of the path and a '*' put
// before the last '.' of the file name ("shots/p.[#].exr" lists "p.*.exr");
// what stands at the '*' of a listed name is its number. Names are taken by
// the width of that number, narrowest first, then by value; runs of
// consecutive numbers of one width make the frames found, and a run that ends
// at 9, 99, ... joins the unpadded run of the next width that goes on from it.
// Decided here:
// - a file name without any '.' cannot be matched: OsFileEx::ExInvalidPath;
// - names whose number is not all decimal digits, is empty, or does not fit
//   a 32-bit int are ignored, and a width with no such number adds nothing;
// - runs only go up: when the written name itself holds '*' or '?', numbers
//   may come out of order, and one not above the one before it opens a run;
// - a step walks on across the breaks between runs, a break counting as one
//   frame: p1 p2 p3 p7 p8 p9 under [#|2] gives 1:3|2,7:9|2.
// And as the notifications have it: what the '#' items select is written
// after the explicit items; a wildcard that selects nothing empties the whole
// path; a '#' item leaves its skip, step and count to the items after it
// ("[#+2,#]" skips two frames in both); one frame taken from a run is written
// alone, without the step.
#include "btSequencePathEx.h"
#include "rcBase.h"
#include "rcShdPtr.h"

#include <string>
#include <vector>

namespace Qv {

class BtSequencePathBuilder {
public:
    // One '#' item as written (frameCount, skip, step), or one run of frames
    // found on disk (first, last, width).
    class AllFramesSequence : public RCBase<> {
    public:
        int frameCount = 0;
        int skip = 0;
        int step = 1;
        int first = 0;
        int last = 0;
        int width = 0;
        bool used = false;
        bool hasRange = true;
    };
    using AllFramesSequencePtr = RCShdPtr<AllFramesSequence>;

    BtSequencePathBuilder() = default;
    virtual ~BtSequencePathBuilder();
    BtSequencePathBuilder(BtSequencePathBuilder const&) = delete;
    BtSequencePathBuilder& operator=(BtSequencePathBuilder const&) = delete;

    // Back to the state of a new builder.
    virtual void reset();

    // Literal text outside the bracket.
    void addToFilePath(std::string const& text);

    // The grammar's notifications; false stops the parse.
    bool notifyRangeExists();
    bool notifyConstant(std::string const& text);
    bool notifyRange(std::string const& first, std::string const& last);
    bool notifyStartFrame(std::string const& text);
    bool notifyStep(std::string const& text);
    bool notifySkip(std::string const& text);
    bool notifyFrameCount(std::string const& text);
    bool notifyAllFrames();
    bool notifyEndSequence();
    bool notifyParseComplete();
    bool notifyUnrecognizedToken(std::string const& text, int from, int to);
    void notifyParseError(int from, int to);

    // The canonical path; "" when a wildcard selected no file.
    std::string const& getResult() const { return _filePath; }
    // The failure kept by notifyParseError or notifyUnrecognizedToken, or null.
    BtSequencePathEx const* getFailureException() const { return _failure.get(); }

    // Subscribe and release the messages of the parse; the package's
    // initialise and finalise steps call them.
    static void initialize();
    static void finalize();

private:
    enum Kind { RANGE = 0, START_FRAME = 1, CONSTANT = 2, ALL_FRAMES = 3 };
    struct Run {
        int first;
        int last;
        int width;
    };

    void beginItem();
    void appendToSpec(std::string const& text);
    void normalizeUnresolvedSequences();
    std::vector<Run> collectSequenceInfo();
    static void mergeSequences(std::vector<Run>& runs);
    std::string resolve(AllFramesSequence const& wish, std::vector<AllFramesSequencePtr> const& runs) const;

    std::string _filePath;
    std::string _spec;
    int _itemCount = 0;
    int _start = 0;
    int _end = 0;
    int _skip = 0;
    int _step = 1;
    int _frameCount = 0;
    int _kind = 0;
    int _width = 0;
    int _totalFrames = 0;
    std::vector<AllFramesSequencePtr> _unresolved;
    OPtr<BtSequencePathEx> _failure;
};

} // namespace Qv
