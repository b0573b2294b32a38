// SPDX-License-Identifier: MIT
#include "shell/effect_panels.h"

#include <algorithm>

#include "controls/direction_pickers.h"
#include "controls/families.h"
#include "controls/material_control.h"
#include "controls/variables.h"
#include "effects/effect_table.h"
#include "text/compositing.h"

namespace glyphmotion {
namespace {

void ShowControls(Dialog& dialog, const DialogTemplate& panel, bool visible) {
  for (const ControlTemplate& control : panel.controls) Show(dialog, control.id, visible);
}

}  // namespace

void InstallControl(Dialog& dialog, const ControlTemplate& control) {
  const ControlFamily* family = control.id == ControlId::Font ? &kFontFamily : FamilyOfKind(control.kind);
  if (!family) return;
  Variable* variable = control.key ? FindVariable(control.key) : nullptr;
  switch (control.kind) {
    case ControlKind::MaterialButton:
      // Its user data is its material, which has a file of its own; a key only sets the initial colour.
      InstallFamily(dialog, control.id, *family, nullptr);
      InitialiseMaterial(dialog, control.id, variable ? variable->number : control.initial);
      return;
    case ControlKind::UpDown:
      InstallFamily(dialog, control.id, *family, nullptr);
      return;
    case ControlKind::NumberEdit:
      InstallFamily(dialog, control.id, *family, variable ? variable : &UnsavedVariable(control.id, control.initial));
      return;
    default:
      InstallFamily(dialog, control.id, *family, variable);
  }
}

// A fill or a direction without its block would read as another value.
bool InstallPanel(Dialog& dialog, const DialogTemplate& panel) {
  if (!AddControls(dialog, panel, ControlId::Effect)) return false;
  for (const ControlTemplate& control : panel.controls) {
    InstallControl(dialog, control);
    const bool keepsBlock = IsPicker(control.kind) || control.kind == ControlKind::MaterialButton;
    if (keepsBlock && !GetData(dialog, control.id)) return false;
  }
  return true;
}

int ChosenEffect(const Dialog& dialog) {
  return std::clamp(GetSelection(dialog, ControlId::Effect), 0, kEffectCount - 1);
}

void ShowPanel(Dialog& dialog, int effect) {
  for (int i = 0; i < kEffectCount; ++i) {
    if (i != effect) ShowControls(dialog, *EffectRow(i).panel, false);
  }
  ShowControls(dialog, *EffectRow(effect).panel, true);
}

void DestroyPanels(Dialog& dialog) {
  for (const EffectDescriptor* effect : Effects()) {
    for (const ControlTemplate& control : effect->panel->controls) {
      if (control.kind == ControlKind::MaterialButton) DestroyMaterial(dialog, control.id);
    }
  }
}

}  // namespace glyphmotion
