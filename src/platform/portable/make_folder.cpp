// SPDX-License-Identifier: MIT
#include <filesystem>

#include "platform/folders.h"

namespace glyphmotion {
namespace fs = std::filesystem;

bool EnsureFolder(const std::string& folder) noexcept try {
  if (folder.empty()) return false;
  std::error_code error;
  const fs::path path = fs::path(folder) / "";  // with or without a trailing separator
  fs::create_directories(path.parent_path(), error);
  return fs::is_directory(path, error);
} catch (...) {
  return false;
}

}  // namespace glyphmotion
