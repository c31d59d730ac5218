#pragma once
// One version of a composition: a file "<name>.qvc" in the composition's
// directory. A value; a default-made version is null.
#include "osFilePath.h"
#include "rcShdPtr.h"

#include <string>

namespace Qv {

class OmComposition;

class OmVersion {
public:
    OmVersion();
    ~OmVersion();
    OmVersion(OmVersion const&);
    OmVersion& operator=(OmVersion const&);

    bool isNull() const { return _composition.isNull(); }
    // The file name without its extension, e.g. "Original Footage".
    std::string const& getName() const { return _name; }
    // Its place in the order the versions were made, from 1; 0 when null.
    int getNumber() const { return _number; }
    // Empty while the composition is in no folder.
    OsFilePath getPath() const;
    RCShdPtr<OmComposition> const& getComposition() const { return _composition; }

    // The same version of the same composition object.
    friend bool operator==(OmVersion const& a, OmVersion const& b);

private:
    friend class OmComposition;
    OmVersion(RCShdPtr<OmComposition> composition, std::string name, int number);

    RCShdPtr<OmComposition> _composition;
    std::string _name;
    int _number = 0;
};

} // namespace Qv
