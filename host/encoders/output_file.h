// SPDX-License-Identifier: MIT
// The program's output, a file or a folder of pictures, which appears whole or not at all.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/atomic_folder.h"
#include "platform/files.h"

namespace glyphmotion {

/// Files of a folder of pictures besides its pictures, which are replaced with them.
constexpr const char* kTimingFile = "timing.json";
constexpr const char* kConcatFile = "frames.ffconcat";

/// One file, or one folder of files, being written. Whatever has the name stays untouched until Keep.
class Output {
 public:
  /// Begins a file or a folder. On failure `error` gets one sentence (no such folder, no permission, a target of
  /// another kind, a folder that contains files other than numbered pictures).
  static Output File(const std::string& target, std::string& error);
  static Output Folder(const std::string& target, std::string& error);
  /// The process's standard output: bytes that are written cannot be taken back.
  static Output Stream();
  /// Appends to `bytes`, which must outlive the output.
  static Output Memory(std::vector<std::uint8_t>& bytes);

  explicit operator bool() const noexcept { return file_ || folder_ || stream_ || memory_; }
  /// Appends to the file. False on a write error.
  bool Write(std::span<const std::uint8_t> bytes);
  /// Writes a whole file of this name into the folder.
  bool WriteMember(const std::string& name, std::span<const std::uint8_t> bytes);
  /// How many bytes have been written.
  std::uint64_t Bytes() const { return bytes_; }
  /// The sentence for a Write or WriteMember that failed.
  std::string Refusal() const;
  /// Gives the result its name. Returns an empty text, or one sentence on failure.
  std::string Keep();

 private:
  std::string target_;
  AtomicFile file_;
  AtomicFolder folder_;
  bool stream_ = false;
  std::vector<std::uint8_t>* memory_ = nullptr;
  std::uint64_t bytes_ = 0;
  std::string streamTrouble_;
};

}  // namespace glyphmotion
