// SPDX-License-Identifier: MIT
#include "shell/document_menu.h"

#include <algorithm>
#include <optional>
#include <string>

#include "controls/variables.h"
#include "platform/folders.h"
#include "platform/run_state.h"
#include "platform/shell_ui.h"
#include "resources/strings.h"
#include "shell/documents.h"
#include "shell/main_controls.h"

namespace glyphmotion {
namespace {

constexpr int kSmallestFileDialog = 128;  // pixels; a smaller size is not remembered
constexpr const char* kUntitled = "untitled.gm4";

// Of the file dialogs, in pixels.
struct FileDialogSize {
  int width = 0, height = 0;
};
FileDialogSize& Size() { return CurrentRun().Member<FileDialogSize>(); }

std::size_t FilePartOf(const std::string& path) {
  const std::size_t separator = path.find_last_of("/\\");
  return separator == std::string::npos ? 0 : separator + 1;
}

std::optional<std::string> AskDocument(Dialog& dialog, bool save) {
  std::string& current = VariableOf("CurrentFileName").text;
  FileQuestion question;
  question.save = save;
  question.filterName = LoadText(kTextDocumentFilter);
  question.extension = "GM4";
  question.folder = VariableOf("OpenPath").text;
  question.fileName = current.substr(FilePartOf(current));
  question.width = Size().width;
  question.height = Size().height;
  const std::optional<std::string> path = AskFile(&dialog, question);
  if (question.width >= kSmallestFileDialog && question.height >= kSmallestFileDialog) {
    Size().width = question.width;
    Size().height = question.height;
  }
  return path;
}

// Only a document that was loaded or saved becomes current: Save overwrites the current document without asking.
void RememberDocument(const std::string& path) {
  VariableOf("CurrentFileName").text = path;
  VariableOf("OpenPath").text = path.substr(0, FilePartOf(path));
}

}  // namespace

void SetFileDialogSize(int width, int height) {
  int screenWidth = 0, screenHeight = 0;
  ScreenSize(screenWidth, screenHeight);
  Size() = {std::min(width, screenWidth), std::min(height, screenHeight)};
}

void ForgetDocument() {
  VariableOf("CurrentFileName").text = JoinPath(DocumentsFolder(), kUntitled);
  VariableOf("OpenPath").text = DocumentsFolder();
}

void OpenDocument(Dialog& dialog) {
  const auto path = AskDocument(dialog, false);
  if (!path) return;
  if (LoadDocument(dialog, *path)) RememberDocument(*path);
}

void SaveDocumentAs(Dialog& dialog) {
  const auto path = AskDocument(dialog, true);
  if (!path) return;
  if (SaveDocument(dialog, *path)) RememberDocument(*path);
}

void SaveCurrentDocument(Dialog& dialog) {
  const std::string path = VariableOf("CurrentFileName").text;
  if (path.substr(FilePartOf(path)) == kUntitled) return SaveDocumentAs(dialog);
  SaveDocument(dialog, path);
}

void ShowDocumentMenu(Dialog& dialog) {
  using namespace MainControl;
  const MenuItem items[] = {{Open, LoadText(kTextMenuOpen), false},
                            {Save, LoadText(kTextMenuSave), false},
                            {SaveAs, LoadText(kTextMenuSaveAs), false}};
  // If the button is pressed by key, with the pointer elsewhere, the menu opens below it.
  const ControlRectangle place = RectangleOf(dialog, OpenSave);
  const int below = IsPointerOver(dialog, OpenSave) ? 0 : int{OpenSave};
  const int chosen = PopupMenu(&dialog, below, 0, place.bottom - place.top, items);
  if (chosen) PostCommand(dialog, chosen);
}

}  // namespace glyphmotion
