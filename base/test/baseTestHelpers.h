#pragma once
// A fresh scratch folder per test, and checks of the reason an exception gives.
#include "osFilePath.h"

#include <concepts>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <random>
#include <string>

namespace Qv::TestHelpers {

class TempDirTest : public ::testing::Test {
protected:
    void SetUp() override {
        _root = std::filesystem::temp_directory_path() / ("qvTest_" + std::to_string(std::random_device{}()));
        std::filesystem::create_directories(_root);
    }
    void TearDown() override {
        std::error_code ignored;
        std::filesystem::remove_all(_root, ignored);
    }

    OsFilePath path(std::string const& relative) const { return OsFilePath((_root / relative).string()); }
    std::string writeFile(std::string const& relative, std::string const& content) const {
        std::ofstream(_root / relative, std::ios::binary) << content;
        return (_root / relative).string();
    }

    std::filesystem::path _root;
};

// Whether f throws Ex with a reason that holds every fragment.
template <class Ex, class F>
::testing::AssertionResult throwsWith(F&& f, std::convertible_to<std::string_view> auto const&... fragments) {
    try {
        f();
    } catch (Ex const& ex) {
        std::string_view const reason = ex.what();
        if ((... && (reason.find(fragments) != std::string_view::npos)))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << "the reason lacks a fragment: " << reason;
    }
    return ::testing::AssertionFailure() << "no exception";
}

} // namespace Qv::TestHelpers
