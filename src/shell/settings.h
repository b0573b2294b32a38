// SPDX-License-Identifier: MIT
// What the program remembers from one run to the next: the variables of the SettingsTable, kept in one text file of
// "key = value" lines (docs/formats/settings.md). A file that is missing, damaged or not writable is no error: it means
// defaults, or nothing saved.
#pragma once

#include <set>
#include <string>
#include <string_view>

#include "controls/variables.h"

namespace glyphmotion {

/// Before any control is set: gives every variable its default (but for OpenPath, which the start of a run has filled),
/// then takes the values of the settings file. With Shift down only the registration's rows are taken, so that holding
/// Shift resets everything else. Values are taken as they are; ranges are the controls' affair.
void LoadSettings() noexcept;

/// A comment of settings files and documents: Delay and Pause are milliseconds. Without it they are hundredths of a
/// second, or whatever unit the reader's host counts in.
inline constexpr std::string_view kMillisecondsRemark = ";Times are in milliseconds";

/// When the dialog goes and the host has not kept the writing to itself: writes all variables. The file is replaced
/// whole or not at all. Makes the settings folder.
void SaveSettings() noexcept;

/// The contents of the settings file for the variables as they are. A text is written without its control characters
/// (each becomes a blank) and at most 260 characters long; a document's path that is longer gives way to its default.
/// `remark` is a comment line of its own after the head; empty: none.
std::string SettingsText(std::string_view remark = {});

/// What a settings file's bytes say, without taking it.
struct SettingsSummary {
  std::set<std::string> keys;  ///< of the rows that have a line
  bool milliseconds = false;   ///< the unit of its times
};
SettingsSummary SummariseSettings(std::string_view bytes);

/// Takes the values of a settings file's bytes, UTF-8 or, if they are not that, Windows-1252.
void ApplySettings(std::string_view bytes, bool registrationOnly);

/// Gives a variable a value as the file has it after the "=": numbers as far as there are digits, wrapped to 32 bits;
/// texts up to 260 characters. The path of a document that is longer is not taken at all.
void TakeValue(Variable& variable, std::string_view value);

/// The stored form of the registration's texts, which is no plain text: pairs of hexadecimal digits, the first a check
/// of the rest. Empty stays empty. Decoding what was not encoded here gives an empty text.
std::string EncodeRegistration(std::string_view text);
std::string DecodeRegistration(std::string_view stored);

}  // namespace glyphmotion
