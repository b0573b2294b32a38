// SPDX-License-Identifier: MIT
// Persistent settings: the variables of the SettingsTable, stored in one text file of "key = value" lines
// (docs/formats/settings.md). A file that is missing, damaged or not writable is not an error: the values are defaults,
// or nothing is saved.
#pragma once

#include <set>
#include <string>
#include <string_view>

#include "controls/variables.h"

namespace glyphmotion {

/// Call before any control is set: gives every variable its default (except OpenPath, which is set at the start of a
/// run), then reads the settings file. With Shift down only the registration is read, so that holding Shift resets
/// everything else. Values are not range-checked here; the controls do that. Throws std::bad_alloc: a dialog
/// with half of the settings would save them over the whole.
void LoadSettings();

/// A comment of settings files and documents: Delay and Pause are milliseconds. Without it they are hundredths of a
/// second, or whatever unit the reader's host counts in.
inline constexpr std::string_view kMillisecondsRemark = ";Times are in milliseconds";

/// Writes all variables when the dialog closes, unless the host does that. The file is replaced atomically. Creates the
/// settings folder.
void SaveSettings() noexcept;

/// The contents of the settings file for the current variables. Control characters in texts become blanks, and texts
/// are limited to 260 characters; a longer document path is replaced by its default. `remark` is an additional comment
/// line after the header; empty: none.
std::string SettingsText(std::string_view remark = {});

/// A summary of a settings file, without applying it.
struct SettingsSummary {
  std::set<std::string> keys;  ///< the keys that have a line
  bool milliseconds = false;   ///< the unit of its times
};
SettingsSummary SummariseSettings(std::string_view bytes);

/// Applies the values of a settings file, whose bytes are UTF-8 or otherwise Windows-1252.
void ApplySettings(std::string_view bytes, bool registrationOnly);

/// Sets a variable from the text after the "=" in the file: leading digits, modulo 2^32, for numbers; up to 260
/// characters of texts. A longer document path is ignored.
void TakeValue(Variable& variable, std::string_view value);

/// The stored form of the registration's texts, which is not plain text: pairs of hexadecimal digits, the first a
/// checksum. Empty stays empty. Decoding text that was not encoded here gives an empty text.
std::string EncodeRegistration(std::string_view text);
std::string DecodeRegistration(std::string_view stored);

}  // namespace glyphmotion
