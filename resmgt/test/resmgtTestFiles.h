#pragma once
// Scratch files and environment values for the tests, removed or restored at
// the end of the scope.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <string>

namespace Qv::TestFiles {

class TempDir {
public:
    TempDir() {
        std::random_device random;
        _path = std::filesystem::temp_directory_path() / ("qvResmgtTest-" + std::to_string(random()));
        std::filesystem::create_directories(_path);
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(_path, ignored);
    }
    TempDir(TempDir const&) = delete;
    TempDir& operator=(TempDir const&) = delete;

    std::filesystem::path const& getPath() const { return _path; }
    std::filesystem::path write(std::string const& name, std::string const& content) const {
        auto const file = _path / name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << content;
        return file;
    }

private:
    std::filesystem::path _path;
};

class EnvGuard {
public:
    EnvGuard(char const* name, std::optional<std::string> const& value) : _name(name) {
        if (char const* old = std::getenv(name))
            _previous = old;
        set(value);
    }
    ~EnvGuard() { set(_previous); }
    EnvGuard(EnvGuard const&) = delete;
    EnvGuard& operator=(EnvGuard const&) = delete;

private:
    void set(std::optional<std::string> const& value) {
        if (value)
            ::setenv(_name.c_str(), value->c_str(), 1);
        else
            ::unsetenv(_name.c_str());
    }

    std::string _name;
    std::optional<std::string> _previous;
};

} // namespace Qv::TestFiles
