#pragma once
// A composition entry: a directory of version files "<version>.qvc". The
// versions' order of creation, and the approved one, are kept in the side
// file, never taken from a listing of the directory. A version's file is
// written when its graph is saved (OmGraph::sync); until then it reads as
// an empty graph.
#include "omComponent.h"
#include "omVersion.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Qv {

class OmComposition : public OmComponent {
public:
    static char const* getKindName() { return "composition"; }
    static std::string getFileExtension() { return "qvc"; }
    // The name of the working version when getWorkingVersion makes it.
    static char const* getDefaultWorkingVersionName() { return "Working"; }

    // In no folder and without versions: OmFolder::addEntry places it.
    static RCShdPtr<OmComposition> create(std::string name);

    // In the order they were made.
    std::vector<OmVersion> getVersions() const;
    // Null when there is none of that name.
    OmVersion getVersion(std::string_view name) const;
    // Appended after the others; no file yet. Throws OmEx::ExInvalidName,
    // OmEx::ExNameInUse naming the version and the composition.
    OmVersion addVersion(std::string const& name);
    // The first version; one named getDefaultWorkingVersionName() is added
    // when there is none.
    OmVersion getWorkingVersion();
    // Throws OmEx::ExUnknownVersion for a version of another composition.
    void approveVersion(OmVersion const& version);
    // Null until a version is approved.
    OmVersion getApprovedVersion() const;

    // "<directory>/<name>.qvc"; empty while in no folder.
    OsFilePath getVersionPath(std::string_view name) const;

    std::string getKind() const override { return getKindName(); }

protected:
    void writeContent(XmlElement& entry) const override;
    void readContent(XmlElement const& entry, OsFilePath const& sideFile) override;

private:
    using OmComponent::OmComponent;

    std::optional<std::size_t> findVersion(std::string_view name) const;
    OmVersion makeVersion(std::size_t index) const;

    std::vector<std::string> _versions;
    std::string _approved;
};

} // namespace Qv
