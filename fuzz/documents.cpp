// SPDX-License-Identifier: MIT
// Documents, settings and pictures.
#include <cstdlib>
#include <functional>
#include <string>

#include "controls/families.h"
#include "controls/line_values.h"
#include "controls/variables.h"
#include "fuzz/open_dialog.h"
#include "fuzz/readers.h"
#include "host/render/image_loader.h"
#include "platform/encoding.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "shell/documents.h"
#include "shell/settings.h"

namespace glyphmotion::fuzz {
namespace {

std::string LineOf(Dialog& dialog, int id) {
  std::string line;
  SendToControl(dialog, id, {kMessageSaveControl, 0, PointerArgument(&line)});
  return line.substr(0, line.find('\n'));
}

}  // namespace

// Opening a dialog takes longer than reading a document: each input finds the dialog as the one before it left it.
void ReadDocuments(std::string_view input) {
  static OpenDialog& dialog = *new OpenDialog;  // as long as the process
  dialog.Do([&](Dialog& main) {
    const std::string text = TextFromBytes(input);
    const DocumentSummary summary = SummariseDocumentText(text);
    const std::size_t hash = std::hash<std::string_view>{}(input);
    if (hash % 4 == 0) {
      const std::string path = input.empty() ? "/none" : FileOf(input, ".gm4");
      Require(SummariseDocument(path).controls == summary.controls);
      if (!LoadDocument(main, path)) return;
    } else if (!TakeDocumentText(main, text)) {
      return;
    }
    // What a dialog has taken it writes and takes again: some controls, and for one input in sixteen all of them.
    int some = 4;
    for (const std::string& control : summary.controls) {
      const int id = std::atoi(control.c_str() + kStemLength);
      if (!HasControl(main, id) || some-- <= 0) continue;
      const std::string line = LineOf(main, id);
      SendToControl(main, id, {kMessageLoadControl, 0, PointerArgument(&line)});
      Require(LineOf(main, id) == line);
    }
    if (hash / 4 % 16) return;
    const std::string written = DocumentText(main);
    Require(TakeDocumentText(main, written) && DocumentText(main) == written);
  });
}

void ReadPictures(std::string_view input) {
  std::string error;
  const PackedDib dib = LoadPicture(input.empty() ? "/" : FileOf(input), error);
  Require(static_cast<bool>(dib) == error.empty());
}

void ReadSettings(std::string_view input) {
  FolderOverrides folders;
  folders.settingsFile = FileOf(input);
  SetFolderOverrides(folders);
  LoadSettings();
  SaveSettings();
  const auto written = ReadWholeFile(*folders.settingsFile);
  LoadSettings();
  SaveSettings();
  Require(ReadWholeFile(*folders.settingsFile) == written);
  ResetVariables();
  SummariseSettings(std::string(input));
}

}  // namespace glyphmotion::fuzz
