// SPDX-License-Identifier: MIT
// A private folder for unfinished files, removed with its owner.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace glyphmotion {

class ScratchFolder {
 public:
  /// In the system's folder for temporary files, for this user alone. Path() is empty when it cannot be made. Removes
  /// the folders of processes that were killed.
  ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder();
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
  int lock_ = -1;  ///< a file in it, locked while this process lives
};

/// Nobody waits for the disk. False when it refuses.
inline bool WriteScratchFile(const std::string& path, std::string_view bytes) {
  std::FILE* file = std::fopen(path.c_str(), "wbe");
  if (!file) return false;
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  return std::fclose(file) == 0 && written;
}

}  // namespace glyphmotion
