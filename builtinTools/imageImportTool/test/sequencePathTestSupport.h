#pragma once
// What the sequence path tests share: the package's messages subscribed once
// for the whole test program, and real scratch directories of numbered files.
#include "../../../base/test/baseTestHelpers.h"

#include <filesystem>
#include <initializer_list>
#include <string>

namespace Qv::TestHelpers {

// A scratch folder with empty files of the given names.
class SequenceDirTest : public TempDirTest {
protected:
    void touch(std::initializer_list<std::string> names) const {
        for (std::string const& name : names)
            writeFile(name, "");
    }
    // The path of a name in the scratch folder, as a user would write it.
    std::string at(std::string const& name) const { return (_root / name).string(); }
    // What the folder's own prefix adds to a resolved path.
    std::string strip(std::string const& resolved) const {
        std::string const root = _root.string() + "/";
        return resolved.rfind(root, 0) == 0 ? resolved.substr(root.size()) : resolved;
    }
};

} // namespace Qv::TestHelpers
