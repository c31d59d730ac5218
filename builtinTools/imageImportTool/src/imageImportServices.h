#pragma once
// The import of footage as this package does it (see BtImageImportServices).
#include "btImageImportServices.h"

namespace Qv {

class ImageImportServices : public BtImageImportServices {
public:
    OmFolder getDefaultFolder(OmProject const& project) const override;
    std::vector<OmLink> importFiles(OmFolder const& folder, std::vector<std::string> const& paths,
                                    std::string const& name, Options const& options) override;
    std::vector<OmLink> importFiles(OmFolder const& folder, std::vector<std::string> const& paths,
                                    Options const& options) override;
    RCShdPtr<PiNode> createImportNode(PiGraph& graph, RCStrongPtr<PiImageSequence> const& sequence,
                                      std::string const& name, Options const& options) override;
    OmLink importFootage(OmFolder const& folder, RCStrongPtr<PiImageSequence> const& sequence,
                         std::string const& name, Options const& options) override;
    Rational guessPixelRatio(int width, int height) const override;
    Rational guessRate(int width, int height) const override;

    // The name of the default folder, "Footage".
    static std::string const& getDefaultFolderName();
    static void subscribeMessages();

    // The sequence a path names (a sequence path, or one file standing for
    // its whole sequence), or null with the message that says why: a missing
    // file or a format not known.
    static RCStrongPtr<PiImageSequence> findSequence(std::string const& path, std::string& problem);
};

} // namespace Qv
