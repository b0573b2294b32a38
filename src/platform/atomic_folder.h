// SPDX-License-Identifier: MIT
// A folder of files that appears whole or not at all. Not on Windows, where the product writes no folders.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace glyphmotion {

/// Files are collected in a hidden folder beside the target, which is finally renamed to the target and replaces the
/// old folder as a whole. Without Keep the hidden folder is removed; that of a killed process is removed by the next
/// write to the same place. For `why` see platform/files.h.
class AtomicFolder {
 public:
  AtomicFolder() noexcept;
  AtomicFolder(AtomicFolder&&) noexcept;
  AtomicFolder& operator=(AtomicFolder&&) noexcept;
  ~AtomicFolder();

  static AtomicFolder Begin(const std::string& path, std::string& why) noexcept;
  explicit operator bool() const noexcept { return state_ != nullptr; }
  /// Writes a whole file of this name into the folder. After a failure Keep fails too.
  bool WriteMember(const std::string& name, std::string_view bytes) noexcept;
  /// Why a write failed, as in `why`; empty if none failed.
  std::string Trouble() const;
  bool Keep(std::string& why) noexcept;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace glyphmotion
