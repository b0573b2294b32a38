// SPDX-License-Identifier: MIT
// What the dialogs of all platforms have in common.
#pragma once

#include <type_traits>

#include "platform/dialog.h"

namespace glyphmotion {

struct Control;

/// The first control of an id, or null.
template <typename AnyDialog>
std::conditional_t<std::is_const_v<AnyDialog>, const Control, Control>* FindControl(AnyDialog& dialog, int id) {
  const auto found = dialog.byId.find(id);
  return found == dialog.byId.end() ? nullptr : found->second;
}

inline bool IsCombo(ControlKind kind) { return kind == ControlKind::Combo || kind == ControlKind::SortedCombo; }
inline bool IsPictureList(ControlKind kind) {
  return kind == ControlKind::PictureList || kind == ControlKind::PictureGrid;
}
inline bool IsList(ControlKind kind) { return kind == ControlKind::List || IsPictureList(kind); }
inline bool HasItems(ControlKind kind) { return IsCombo(kind) || IsList(kind); }

}  // namespace glyphmotion
