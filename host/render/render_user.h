// SPDX-License-Identifier: MIT
// The scripted user of a rendering job: operates the main dialog as a person would to get the job done.
#pragma once

#include <glyphmotion/render.h>

#include <functional>
#include <string>

#include "host/render/file_values.h"
#include "image/packed_dib.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// The controls of the chosen effect for one of the job's materials; 0 where its panel has no such control.
struct RoleControls {
  const char* name;
  int material, opacity, enable;
};

class ScriptedUser {
 public:
  /// `messages` collects the texts of the dialog's message boxes; `settings` summarises the job's settings file.
  ScriptedUser(const Job& job, const std::vector<std::string>& messages, SettingsSummary settings);
  ScriptedUser(const ScriptedUser&) = delete;
  ScriptedUser& operator=(const ScriptedUser&) = delete;

  /// Sets the controls in ascending order of precedence and presses the button of the job's action; a sample goes to
  /// `sample`. If a value is wrong, no button is pressed and Error() says why.
  void Play(Dialog& dialog, const std::function<void(const PackedDib&)>& sample);

  /// One sentence, or empty.
  const std::string& Error() const { return error_; }
  /// The job is fine but the run failed: a file could not be written, or there was no picture.
  bool RunFailed() const { return runFailed_; }
  /// The script ran to its end and, for a sample or a saved document, succeeded.
  bool Played() const { return played_; }
  /// Null until the dialog has opened; before that its values are not those of the settings file.
  const FileValues* Values() const { return started_ ? &values_ : nullptr; }
  /// Where the run differs from what was requested, one sentence each.
  const std::vector<std::string>& Notes() const { return notes_; }

 private:
  /// The control that a setting is for, and what its user calls it.
  struct Target {
    int id;
    std::string key;
    bool reachable;  ///< its panel is visible
  };

  bool LoadDocumentFirst(Dialog& dialog);
  bool ApplyAll(Dialog& dialog, const std::vector<Job::Setting>& settings);
  bool ApplyOptions(Dialog& dialog);
  void TakeFontOfFile(const std::string& family);
  void TakeNotes(const Dialog& dialog);
  bool ChooseEffect(Dialog& dialog);
  bool SetFontFile(Dialog& dialog);
  bool CheckAxes(Dialog& dialog);
  bool SetMaterials(Dialog& dialog);
  bool SetRole(Dialog& dialog, const std::string& value, const RoleControls& role);
  bool SetOutline(Dialog& dialog);
  bool Apply(Dialog& dialog, const Job::Setting& setting);
  bool ApplyToControl(Dialog& dialog, const ControlTemplate& control, const Job::Setting& setting);
  bool Refused(const Target& to);
  bool ApplyNumber(Dialog& dialog, const Target& to, const std::string& value);
  bool ApplyText(Dialog& dialog, const Target& to, const std::string& value);
  bool ApplyChoice(Dialog& dialog, const Target& to, const std::string& value);
  bool FillWith(Dialog& dialog, int id, const std::string& text);
  bool SetColour(Dialog& dialog, int id, const std::string& text);
  bool SetFont(Dialog& dialog, const std::string& family);
  bool SetByLine(Dialog& dialog, int id, const std::string& value);
  bool Finish(Dialog& dialog, const std::function<void(const PackedDib&)>& sample);
  bool Fail(std::string sentence);
  bool FailRun(std::string sentence);

  const Job job_;  // its fields are settings by now
  const std::vector<std::string>& messages_;
  bool fontOfSettings_;
  FileValues values_;
  std::vector<std::string> notes_;
  std::string fontAsked_;  // from an option, the document or the settings file; empty: none
  std::string error_;
  bool started_ = false;
  bool runFailed_ = false;
  bool played_ = false;
};

}  // namespace glyphmotion
