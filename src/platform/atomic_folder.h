// SPDX-License-Identifier: MIT
// A folder of files that appears whole or not at all. Not on Windows, where the product writes no folders.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace glyphmotion {

/// Keep gathers the files in a hidden folder beside the target and renames it to the target; it replaces the old folder
/// as a whole. Without Keep nothing is left. Should the process be killed while there is a hidden folder, the next
/// write to the same place removes it. For `why` see platform/files.h.
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
