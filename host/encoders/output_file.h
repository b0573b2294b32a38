// SPDX-License-Identifier: MIT
// Output that appears whole or not at all: everything is written under a temporary name beside the target, and takes
// the target's name at the end. Until then, and after any failure, whatever had that name stays as it was.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <span>
#include <string>

namespace glyphmotion {

/// One file, or one folder of files, under way. Removes what is unfinished when it dies.
class Output {
 public:
  /// Begins a file or a folder. `error` gets one sentence when that cannot be done (no such folder, no permission, a
  /// target that is something else, a folder that holds files other than numbered pictures).
  static Output File(const std::string& target, std::string& error);
  static Output Folder(const std::string& target, std::string& error);

  Output() = default;
  Output(Output&& other) noexcept;
  Output& operator=(Output&& other) noexcept;
  ~Output();

  explicit operator bool() const noexcept { return !temporary_.empty(); }
  /// Appends to the file. False when the disk refuses.
  bool Write(std::span<const std::uint8_t> bytes);
  /// Writes a whole file of this name into the folder.
  bool WriteMember(const std::string& name, std::span<const std::uint8_t> bytes);
  /// The sentence for a Write or WriteMember that failed.
  std::string Refusal() const;
  /// Gives the result its name. An empty text when done, otherwise one sentence.
  std::string Keep();

 private:
  void Discard() noexcept;

  std::filesystem::path target_, temporary_;
  std::FILE* file_ = nullptr;
  bool folder_ = false, failed_ = false;
};

}  // namespace glyphmotion
