// SPDX-License-Identifier: MIT
// Every persistent key of the program, once: the dialog, the settings file, the program's --set and --list keys and the
// tests all read this table.
#pragma once

#include <cstdint>
#include <span>

namespace glyphmotion {

enum SettingsFlags : std::uint32_t {
  kSettingSwitch = 1u << 0,         ///< a 32-bit variable, 0 or 1
  kSettingText = 1u << 1,           ///< a text of at most 260 characters
  kSettingNumber = 1u << 2,         ///< a 32-bit variable, saved as unsigned decimal
  kSettingNeverRead = 1u << 8,      ///< written, but never taken from a file
  kSettingRegistration = 1u << 12,  ///< survives the Shift reset; its form passes through the registration routine
};

struct SettingsRow {
  const char* key;
  std::uint32_t flags;
  std::uint32_t defaultNumber;  ///< of switches and numbers
  const char* defaultText;      ///< of texts
};

/// All rows, in the order in which they are saved and searched.
std::span<const SettingsRow> SettingsTable() noexcept;

}  // namespace glyphmotion
