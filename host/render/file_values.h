// SPDX-License-Identifier: MIT
// Delay, Pause and the program's defaults between a job's files and its run. A time stays a time: files count
// hundredths of a second unless they say milliseconds, a run counts in its output's unit. What nobody asked for acts on
// the run alone; the files get back what they had.
#pragma once

#include <glyphmotion/render.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/dialog.h"
#include "shell/documents.h"
#include "shell/settings.h"

namespace glyphmotion {

class FileValues {
 public:
  FileValues(const Job& job, SettingsSummary settings) : job_(job), settings_(std::move(settings)) {}

  /// Once the dialog stands, with the values of the settings file in its variables.
  void TakeSettings();
  /// Once the document's values are in the controls.
  void TakeDocument(DocumentSummary document);

  /// What the run uses in place of what the controls show: the files' times in the output's unit, within the ranges of
  /// the controls, and the job's defaults where no file says anything. `notes` gets a sentence for each time that had
  /// to be limited.
  std::vector<Job::Setting> RunValues(const Dialog& dialog, std::vector<std::string>& notes);
  /// The job sets this key or id: from here on the file gets what the control holds.
  void TakeOption(const std::string& key);

  /// What the document gets.
  DocumentChanges ForDocument() const;
  /// What the settings file gets: gives the variables their values. Returns the remark to write, or empty.
  std::string_view ForSettings() const;

 private:
  struct Kept {
    const char* key;
    int control;
    bool isTime = true;
    bool said = false;  // by a file
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
