// SPDX-License-Identifier: MIT
// Converts Delay, Pause and the program's defaults between a job's files and its run. Files count hundredths of a
// second unless they say milliseconds; a run counts in the unit of its output; conversions keep the duration. Values
// that neither a file nor an option set affect the run only: the files keep what they had.
#pragma once

#include <glyphmotion/render.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/dialog.h"
#include "shell/documents.h"
#include "shell/settings.h"

namespace glyphmotion {

/// A line of a document loses the blanks and equals signs that its value begins with. A zero-width space before them,
/// which no picture shows, keeps them.
std::string GuardedText(const std::string& text);
/// The text as it was typed.
std::string UnguardedText(const std::string& text);

class FileValues {
 public:
  FileValues(const Job& job, SettingsSummary settings) : job_(job), settings_(std::move(settings)) {}

  /// Call once the dialog is open, with the values of the settings file in its variables.
  void TakeSettings();
  /// Call once the document's values are in the controls.
  void TakeDocument(DocumentSummary document);

  /// Values that replace what the controls show: the files' times in the output's unit, limited to the ranges of the
  /// controls, and the job's defaults where no file sets a value. Adds a sentence to `notes` for each time that was
  /// limited.
  std::vector<Job::Setting> RunValues(const Dialog& dialog, std::vector<std::string>& notes);
  /// The job sets this key or id: the files get the control's value from here on.
  void TakeOption(const std::string& key);

  /// The changes to write into the document.
  DocumentChanges ForDocument(const Dialog& dialog) const;
  /// Gives the variables the values that the settings file gets. Returns the remark to write, or empty.
  std::string_view ForSettings() const;

 private:
  struct Kept {
    const char* key;
    int control;
    bool isTime = true;
    bool said = false;  // set by a file
    bool milliseconds = false;
    bool byOption = false;
    std::uint32_t number = 0;
  };
  struct Saved {
    const Kept* kept;
    std::uint32_t number;
  };

  bool IsSaid(const char* key, int control) const;
  bool SavesMilliseconds() const;
  std::vector<Saved> SavedNumbers() const;
  std::int64_t InOutputUnit(const Kept& time) const;

  const Job& job_;
  SettingsSummary settings_;
  DocumentSummary document_;
  std::vector<Kept> kept_;
};

}  // namespace glyphmotion
