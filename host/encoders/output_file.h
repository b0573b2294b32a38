// SPDX-License-Identifier: MIT
// What the program writes for its user, a file or a folder of pictures, which appears whole or not at all.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "platform/atomic_folder.h"
#include "platform/files.h"

namespace glyphmotion {

/// One file, or one folder of files, under way. Until it is kept, whatever has the name stays as it is.
class Output {
 public:
  /// Begins a file or a folder. `error` gets one sentence when that cannot be done (no such folder, no permission, a
  /// target that is something else, a folder that holds files other than numbered pictures).
  static Output File(const std::string& target, std::string& error);
  static Output Folder(const std::string& target, std::string& error);

  explicit operator bool() const noexcept { return file_ || folder_; }
  /// Appends to the file. False when the disk refuses.
  bool Write(std::span<const std::uint8_t> bytes);
  /// Writes a whole file of this name into the folder.
  bool WriteMember(const std::string& name, std::span<const std::uint8_t> bytes);
  /// The sentence for a Write or WriteMember that failed.
  std::string Refusal() const;
  /// Gives the result its name. An empty text when done, otherwise one sentence.
  std::string Keep();

 private:
  std::string target_;
  AtomicFile file_;
  AtomicFolder folder_;
};

}  // namespace glyphmotion
