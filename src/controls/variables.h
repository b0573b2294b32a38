// SPDX-License-Identifier: MIT
// The persistent variables behind the settings' keys. While a dialog runs the controls are the model and write each
// change back here; what has no control (FastRemap, AlphaGreyBack, ...) is read from here. One set for each
// run.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "resources/settings_table.h"

namespace glyphmotion {

/// One variable: `number` for switches and numbers, `text` (at most 260 characters) for texts.
struct Variable {
  const SettingsRow* row = nullptr;
  std::uint32_t number = 0;
  std::string text;
};

/// The variable of a key (case counts), or null. The pointer is valid for the duration of the run.
Variable* FindVariable(std::string_view key) noexcept;
/// That of a key which is known to exist.
inline Variable& VariableOf(std::string_view key) noexcept { return *FindVariable(key); }

/// The variable of row i of the SettingsTable, 0 <= i < its size.
Variable& VariableAt(std::size_t i) noexcept;

/// The run's variable of a number without a key, initially with this value.
Variable& UnsavedVariable(int control, std::uint32_t initial);
/// The plug-in's dialogs pass these numbers on within a process: a run takes those of the last one, and leaves its own.
/// Any thread.
void RecallUnsavedVariables();
void LeaveUnsavedVariables();

/// Gives every variable of the run its default and forgets those without a key. Not while a dialog is open.
void ResetVariables();
/// The variables of the SettingsTable only.
void ResetSavedVariables();

/// Shortcuts for reading a value by key; 0 and empty for unknown keys.
std::uint32_t NumberVariable(std::string_view key) noexcept;
const std::string& TextVariable(std::string_view key) noexcept;

}  // namespace glyphmotion
