// SPDX-License-Identifier: MIT
// A folder of files that appears whole or not at all. Not on Windows, where nothing writes folders.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace glyphmotion {

/// Files are gathered in a hidden folder beside the target, which takes the target's name at the end and replaces the
/// whole folder that had it. Without Keep the hidden folder goes; the one of a killed process goes with the next write
/// to the same place. `why` is that of platform/files.h.
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
  /// Why a write failed, as `why`; empty while none did.
  std::string Trouble() const;
  bool Keep(std::string& why) noexcept;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace glyphmotion
