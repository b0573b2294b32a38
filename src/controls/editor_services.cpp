// SPDX-License-Identifier: MIT
#include "controls/editor_services.h"

#include <new>

#include "platform/run_state.h"
#include "platform/shell_ui.h"
#include "resources/strings.h"

namespace glyphmotion {
namespace {

EditorServices& Services() { return CurrentRun().Member<EditorServices>(); }

}  // namespace

void SetEditorServices(const EditorServices& services) { Services() = services; }

void ShowHelpTopic(Dialog& owner, const char* topic) {
  if (const auto show = Services().showHelp) show(owner, topic);
}

PackedDib ChoosePicture(Dialog& owner) {
  const auto choose = Services().choosePicture;
  return choose ? choose(owner) : PackedDib();
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
