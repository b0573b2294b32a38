// SPDX-License-Identifier: MIT
// Separate from the families, so that a program that needs some of them does not link them all.
#include "controls/direction_pickers.h"
#include "controls/families.h"
#include "controls/fountain_control.h"
#include "controls/material_control.h"

namespace glyphmotion {

const ControlFamily* FamilyOfKind(ControlKind kind) noexcept {
  switch (kind) {
    case ControlKind::Check:
      return &kCheckFamily;
    case ControlKind::Edit:
      return &kTextFamily;
    case ControlKind::NumberEdit:
      return &kNumberFamily;
    case ControlKind::UpDown:
      return &kUpDownFamily;
    case ControlKind::Combo:
    case ControlKind::SortedCombo:
    case ControlKind::List:
    case ControlKind::PictureList:
    case ControlKind::PictureGrid:
      return &kSelectionFamily;
    case ControlKind::ColourButton:
      return &kColourFamily;
    case ControlKind::MaterialButton:
      return &kMaterialFamily;
    case ControlKind::FountainButton:
      return &kFountainFamily;
    case ControlKind::ShadowDirection:
      return &kShadowDirectionFamily;
    case ControlKind::ScrollFour:
      return &kScrollFourFamily;
    case ControlKind::ScrollTwo:
      return &kScrollTwoFamily;
    case ControlKind::ScrollAxis:
      return &kScrollAxisFamily;
    default:
      return nullptr;
  }
}

}  // namespace glyphmotion
