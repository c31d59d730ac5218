#pragma once
// What the reader benchmarks share: shell commands that must succeed, the 24
// frames they read, and runs in fresh child processes.
#include "inInitMgr.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fmt/format.h>
#include <functional>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace QvBench {

inline constexpr int READER_FRAMES = 24;

inline void runCommand(std::string const& command) {
    if (std::system(command.c_str()) != 0) {
        std::fprintf(stderr, "bench: failed: %s\n", command.c_str());
        std::exit(1);
    }
}

// in.0001.exr to in.0024.exr in `dir`: 1920 x 1080 RGBA half, ZIP, gaussian
// noise (which compresses badly, as grain does), made by oiiotool.
inline void writeNoiseFrames(std::filesystem::path const& dir) {
    for (int frame = 1; frame <= READER_FRAMES; ++frame)
        runCommand(fmt::format(
            "oiiotool --pattern noise:type=gaussian:mean=0.5:stddev=0.2:seed={} 1920x1080 4 -d half "
            "--compression zip -o {}/in.{:04}.exr",
            frame, dir.string(), frame));
}

// Runs `work` in a child process, so that every run starts with empty caches
// and a budget of its own; the child's initialisation is timed with it, as a
// command's start is. Exits when the child fails.
inline void inChild(std::function<void()> const& work) {
    std::fflush(stdout); // or the child prints the parent's pending lines again
    pid_t const child = fork();
    if (child == 0) {
        try {
            Qv::InInitMgr::getInstance().initializeAll();
            work();
        } catch (std::exception const& e) {
            std::fprintf(stderr, "bench: %s\n", e.what());
            _exit(1);
        }
        std::fflush(stdout);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "bench: a run failed\n");
        std::exit(1);
    }
}

} // namespace QvBench
