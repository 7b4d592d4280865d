/// A folder that lives as long as a test.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace lumo {

class TempFolder {
 public:
    TempFolder()
        : path(std::filesystem::path(::testing::TempDir()) / ("velmora-test-" + std::to_string(::getpid()))) {
        clear();
    }
    ~TempFolder() { std::filesystem::remove_all(path); }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return path / name; }
    std::string contents(const std::string& name) const {
        std::ifstream file(path / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    /// Makes the folders above the file where needed.
    void write(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories((path / name).parent_path());
        std::ofstream(path / name, std::ios::binary) << text;
    }
    std::ptrdiff_t files() const { return std::distance(std::filesystem::directory_iterator(path), {}); }
    std::vector<std::string> names() const {
        std::vector<std::string> list;
        for (const auto& entry : std::filesystem::directory_iterator(path))
            list.push_back(entry.path().filename());
        std::sort(list.begin(), list.end());
        return list;
    }
    void clear() const {
        std::filesystem::remove_all(path);
        std::filesystem::create_directories(path);
    }

    const std::filesystem::path path;
};

}  // namespace lumo
