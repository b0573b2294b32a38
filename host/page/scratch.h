// SPDX-License-Identifier: MIT
// A private folder for unfinished files, removed with its owner.
#pragma once

#include <filesystem>
#include <fstream>
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
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  return file.good();
}

}  // namespace glyphmotion
