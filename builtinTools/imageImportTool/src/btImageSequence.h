#pragma once
// The image sequences of this library: a sequence path naming one file per
// frame ("shots/p.[0001:0250].exr"), or one movie holding every frame
// ("shots/p.mov"). The kind is chosen by the extension of the path. Each is
// kept in a composition as an XML fragment, rooted "ImageSequence" or
// "StreamSequence" with the path as its one child:
//
//     <ImageSequence>
//       <Path>shots/p.[0001:0250].exr</Path>
//     </ImageSequence>
//
// and read back through PiImageSequence::createFromFragment, once initialize
// has registered the readers. Older compositions list their files instead
// ("Sequence" with "Prefix", "Suffix" and "FrameSequence" groups); they are
// read into the current form and saved in it.
#include "exBase.h"
#include "liStringSubstituter.h"
#include "piImageSequence.h"

#include <string>

namespace Qv {

class BtImageSequence {
public:
    static std::string const IMAGE_SEQUENCE_ROOT_TAG;  // "ImageSequence"
    static std::string const STREAM_SEQUENCE_ROOT_TAG; // "StreamSequence"

    // How much create checks of the files, a set of bits:
    // - NO_CHECK: the path is taken as written. A movie is opened all the same,
    //   since its frames are counted from it. Sequences read from fragments are
    //   made so: a composition whose files are gone still loads.
    // - ALLOW_NON_EXISTENT_MEDIA: files that do not exist yet are fine (the
    //   frames a render is about to write): the sequence's
    //   nonExistentMediaAllowed() is true, and CHECK_FIRST_FILE is skipped
    //   while the first file is missing.
    // - CHECK_FIRST_FILE: the file at index 0 is opened, so that a user who
    //   names files learns at once that they are missing or of another kind.
    enum CreateFlags { NO_CHECK = 0, ALLOW_NON_EXISTENT_MEDIA = 1, CHECK_FIRST_FILE = 2 };

    // A sequence over a canonical path (wildcards already resolved) or a movie.
    // Throws FfIOEx::ExUnknownFormat naming the path when no format has its
    // extension; with CHECK_FIRST_FILE, what opening the first file throws;
    // for a movie, what opening it throws.
    static OPtrRet<PiImageSequence> create(std::string const& path, int flags = NO_CHECK);
    // The files from index `in` through `out` of a path's sequence, spacing and
    // padding kept (BtSequencePath::create(path, in, out)): a clip of it.
    // Bounds out of the sequence fail an assertion. A movie is taken whole.
    static OPtrRet<PiImageSequence> create(std::string const& path, int in, int out, int flags = NO_CHECK);

    // Registers the fragment readers of both roots; finalize removes them.
    static void initialize();
    static void finalize();

    // Replaces absolute locations by their symbolic names in the paths that
    // fragments store ("/projects/a/shots" by "<Project>/shots"). Empty until
    // the project store fills it; used on the application thread only.
    static LiStringSubstituter& getLocationSubstituter();
    // The way back: symbolic names in a stored path replaced by the absolute
    // locations they stand for now, as a fragment is read.
    static LiStringSubstituter& getLocationExpander();
};

} // namespace Qv
