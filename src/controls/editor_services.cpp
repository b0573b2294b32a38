// SPDX-License-Identifier: MIT
#include "controls/editor_services.h"

#include <new>

#include "resources/strings.h"

namespace glyphmotion {
namespace {

EditorServices editorServices;

}  // namespace

void SetEditorServices(const EditorServices& services) noexcept { editorServices = services; }

void ShowHelpTopic(Dialog& owner, const char* topic) {
  if (editorServices.showHelp) editorServices.showHelp(owner, topic);
}

PackedDib ChoosePicture(Dialog& owner) {
  return editorServices.choosePicture ? editorServices.choosePicture(owner) : PackedDib();
}

int PopupItemMenu(Dialog& dialog, int list, bool byKey, std::span<const MenuItem> items) {
  const ControlRectangle place = RectangleOfItem(dialog, list, GetSelection(dialog, list));
  return PopupMenu(&dialog, byKey ? list : 0, place.left, place.bottom, items);
}

bool RunEditor(Dialog& owner, const DialogTemplate& editor, DialogProcedure procedure, void* parameter) {
  std::int64_t result = -1;
  try {
    result = RunModal(editor, nullptr, procedure, parameter);
  } catch (const std::bad_alloc&) {
  }
  if (result < 0) ShowMessage(&owner, LoadText(kTextMemoryError));
  return result == 1;
}

}  // namespace glyphmotion
