#pragma once
// A drop of files as a plain list of paths.
#include "piFileDndInterface.h"

#include <utility>

namespace Qv {

class PiFileDndImp : public PiFileDndInterface {
public:
    PiFileDndImp() = default;
    explicit PiFileDndImp(std::vector<std::string> files) : _files(std::move(files)) {}

    void addFile(std::string file) { _files.push_back(std::move(file)); }
    std::vector<std::string> const& getFiles() const override { return _files; }

private:
    std::vector<std::string> _files;
};

} // namespace Qv
