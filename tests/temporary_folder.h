// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <iterator>
#include <random>
#include <string>

namespace glyphmotion {

/// An empty folder of its own, removed at the end.
struct TemporaryFolder {
  std::filesystem::path path;
  TemporaryFolder() {
    std::random_device random;
    path = std::filesystem::temp_directory_path() / ("glyphmotion-test-" + std::to_string(random()));
    std::filesystem::create_directories(path);
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  std::string operator/(const std::string& name) const { return (path / name).string(); }
  std::size_t Entries() const {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path), {}));
  }
};

}  // namespace glyphmotion
