#pragma once
// The import of footage: turning files on disk into entries of the project
// (a composition holding one "Image Import" node), or into a node of a
// composition at hand. One instance lives from the package's start to its
// end; ImageImportServices is it.
//
// Values left UNSPECIFIED are guessed: the pixel ratio and the rate from the
// video format whose size the footage has (square pixels, and the project's
// rate or 24 a second, when no format has it), the depth from the first
// file (integer files import as ECR, half floats).
#include "coColor.h"
#include "dtTime.h"
#include "imPixelFormat.h"
#include "omFolder.h"
#include "omLink.h"
#include "omProject.h"
#include "piGraph.h"
#include "rational.h"
#include "rcStrongPtr.h"

#include <string>
#include <vector>

namespace Qv {

class PiImageSequence;

class BtImageImportServices {
public:
    static std::string const DEFAULT_SOURCE;         // "File"
    static std::string const DEFAULT_CLIPWAY_SOURCE; // "Clipway"
    static Rational const UNSPECIFIED_RATE;          // 0/1
    static Rational const UNSPECIFIED_PIXEL_RATIO;   // 0/1
    static DtTimeIndex const UNSPECIFIED_START_TIME;
    static constexpr int UNSPECIFIED_DEPTH = 0;

    // What an import may be told; everything else comes from the footage.
    struct Options {
        std::string fileFormatOptions;
        Rational pixelRatio = UNSPECIFIED_PIXEL_RATIO;
        Rational rate = UNSPECIFIED_RATE;
        DtTimeIndex start = UNSPECIFIED_START_TIME;
        int depth = UNSPECIFIED_DEPTH; // or ImPixelFormat::ECR, HDR
    };

    // The background colour that stands for "not chosen yet: guess it from
    // the pixels". Far below any colour a user would pick, so that the
    // comparison's tolerance of 1.0 never mistakes a real colour for it.
    static CoRgbColorTyped<float> const& getUnspecifiedBgColor();
    // Whether `colour` is the unspecified one, within a tolerance of 1.0 per component.
    static bool isUnspecifiedBgColor(CoRgbColorTyped<float> const& colour);

    // Asserts isInitialized().
    static BtImageImportServices& getInstance();
    static bool isInitialized();
    // The package's initialise and finalise steps.
    static void initialize();
    static void finalize();

    virtual ~BtImageImportServices();

    // Where footage goes by default: the project's "Footage" folder, made
    // when missing; a null folder when the project cannot hold it.
    virtual OmFolder getDefaultFolder(OmProject const& project) const = 0;
    // Each path (a sequence path, or one file standing for its whole
    // sequence) imported into `folder`, named `name` when one path is given
    // and a name too, else by its sequence. A refused path is reported
    // through the messages and gives a null link in its place.
    virtual std::vector<OmLink> importFiles(OmFolder const& folder, std::vector<std::string> const& paths,
                                            std::string const& name, Options const& options) = 0;
    virtual std::vector<OmLink> importFiles(OmFolder const& folder, std::vector<std::string> const& paths,
                                            Options const& options) = 0;
    // A new "Image Import" node of `graph` over the sequence (any name when
    // empty). Throws ExBase "invalid image
    // sequence" for a sequence without images.
    virtual RCShdPtr<PiNode> createImportNode(PiGraph& graph, RCStrongPtr<PiImageSequence> const& sequence,
                                              std::string const& name, Options const& options) = 0;
    // The whole import of one sequence into `folder`: an entry named `name`
    // whose working version ("Original Footage") holds the node, or a null
    // link after a warning (a name in use or not valid). Nothing is left of
    // an import that fails half-way.
    virtual OmLink importFootage(OmFolder const& folder, RCStrongPtr<PiImageSequence> const& sequence,
                                 std::string const& name, Options const& options) = 0;
    virtual Rational guessPixelRatio(int width, int height) const = 0;
    virtual Rational guessRate(int width, int height) const = 0;

protected:
    BtImageImportServices() = default;
};

} // namespace Qv
