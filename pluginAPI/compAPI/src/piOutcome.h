#pragma once
// What a drop or a tool delivers to a node, in the order it was given. A
// node that takes such deliveries is a PiOutcomeInterface.
#include <string>
#include <utility>
#include <vector>

namespace Qv {

class PiOutcome {
public:
    // A file, or a sequence path standing for several.
    class FileItem {
    public:
        explicit FileItem(std::string file) : _file(std::move(file)) {}
        std::string const& getFile() const { return _file; }

    private:
        std::string _file;
    };

    void addFile(std::string file) { _fileItems.emplace_back(std::move(file)); }
    std::vector<FileItem> const& getFileItems() const { return _fileItems; }
    bool isEmpty() const { return _fileItems.empty(); }

private:
    std::vector<FileItem> _fileItems;
};

} // namespace Qv
