// SPDX-License-Identifier: MIT
// The controls of an in-memory dialog: their contents and how they change.
#include "platform/dialog.h"
#include "platform/ascii.h"

#include <algorithm>
#include <new>
#include <utility>

#include "platform/dialog_number.h"
#include "platform/portable/dialog_state.h"

namespace glyphmotion {
namespace {

// The average character of the dialogs' 8-point font, in pixels: four dialog units across, eight down.
constexpr int kBaseWidth = 6, kBaseHeight = 13;

/// Converts dialog units to pixels, rounding to the nearest as the native dialog manager does.
int PixelsOf(int units, int base, int divisor) {
  const int scaled = units * base * 2;
  return (scaled + (scaled < 0 ? -divisor : divisor)) / (divisor * 2);
}

bool LessWithoutCase(const std::string& a, const std::string& b) {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return static_cast<unsigned char>(ToLower(x)) < static_cast<unsigned char>(ToLower(y));
  });
}

/// Returns the item's index. The selected item stays selected.
int InsertItem(Control& control, const std::string& text) {
  auto place = control.items.end();
  if (control.kind == ControlKind::SortedCombo) {
    place = std::upper_bound(control.items.begin(), control.items.end(), text,
                             [](const std::string& a, const ListItem& b) { return LessWithoutCase(a, b.text); });
  }
  const auto index = static_cast<int>(place - control.items.begin());
  control.items.insert(place, ListItem{text, 0});
  if (control.selection >= index) ++control.selection;
  return index;
}

void ShowText(Control& control, const std::string& text) {
  control.text = text;
  if (control.kind != ControlKind::UpDown) return;
  const NumberRange range = ParseRange(text);
  control.range = {range.minimum, range.maximum};
}

/// A combo's and a list's caption is its items, separated by semicolons.
void FillFromCaption(Control& control, const std::string& caption) {
  for (std::size_t start = 0; start < caption.size();) {
    const std::size_t end = std::min(caption.find(';', start), caption.size());
    if (end > start) InsertItem(control, caption.substr(start, end - start));
    start = end + 1;
  }
}

Control MakeControl(const ControlTemplate& source, bool visible) {
  Control control;
  control.kind = source.kind;
  control.id = source.id;
  control.visible = visible;
  control.place.left = PixelsOf(source.x, kBaseWidth, 4);
  control.place.top = PixelsOf(source.y, kBaseHeight, 8);
  control.place.right = control.place.left + PixelsOf(source.width, kBaseWidth, 4);
  control.place.bottom = control.place.top + PixelsOf(source.height, kBaseHeight, 8);
  const std::string caption = source.caption ? source.caption : "";
  if (HasItems(source.kind)) {
    FillFromCaption(control, caption);
  } else {
    ShowText(control, caption);
  }
  return control;
}

ListItem* FindItem(Control* control, int index) {
  if (!control || index < 0 || index >= static_cast<int>(control->items.size())) return nullptr;
  return &control->items[static_cast<std::size_t>(index)];
}
const ListItem* FindItem(const Control* control, int index) { return FindItem(const_cast<Control*>(control), index); }

}  // namespace

void AppendControls(Dialog& dialog, const DialogTemplate& dialogTemplate, bool visible) {
  const std::size_t before = dialog.controls.size();
  try {
    for (const ControlTemplate& source : dialogTemplate.controls) {
      dialog.controls.push_back(MakeControl(source, visible));
    }
    dialog.byId.reserve(dialog.controls.size());
    for (std::size_t i = before; i < dialog.controls.size(); ++i) {
      Control& control = dialog.controls[i];
      if (control.id != -1) dialog.byId.emplace(control.id, &control);
    }
  } catch (const std::bad_alloc&) {
    while (dialog.controls.size() > before) {
      const auto found = dialog.byId.find(dialog.controls.back().id);
      if (found != dialog.byId.end() && found->second == &dialog.controls.back()) dialog.byId.erase(found);
      dialog.controls.pop_back();
    }
    throw;
  }
}

bool AddControls(Dialog& dialog, const DialogTemplate& panel, int) {
  try {
    AppendControls(dialog, panel, false);
  } catch (const std::bad_alloc&) {
    return false;
  }
  for (const ControlTemplate& control : panel.controls) NotifyObserver(dialog, DialogChange::Created, control.id);
  return true;
}

std::string DialogTitle(const Dialog& dialog) { return dialog.title; }

void SetDialogTitle(Dialog& dialog, const std::string& title) {
  dialog.title = title;
  NotifyObserver(dialog, DialogChange::Text, 0);
}

std::uint64_t WindowOf(Dialog& dialog) { return reinterpret_cast<std::uintptr_t>(&dialog); }

std::vector<int> Children(const Dialog& dialog) {
  std::vector<int> ids;
  ids.reserve(dialog.controls.size());
  for (const Control& control : dialog.controls) ids.push_back(control.id);
  return ids;
}

int ControlCount(const Dialog& dialog) { return static_cast<int>(dialog.controls.size()); }

ControlView ControlAt(const Dialog& dialog, int index) {
  const Control& c = dialog.controls[static_cast<std::size_t>(index)];
  return {c.kind, c.id, c.visible, c.enabled, c.check, c.selection, c.limit, c.place, c.text};
}

bool HasControl(const Dialog& dialog, int id) { return FindControl(dialog, id) != nullptr; }

ControlKind KindOf(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  return control ? control->kind : ControlKind::Label;
}

bool ReadableOnAnyThread() noexcept { return true; }

std::string GetText(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  if (!control) return {};
  if (!HasItems(control->kind)) return control->text;
  const ListItem* item = FindItem(control, control->selection);
  return item ? item->text : std::string();
}

void SetText(Dialog& dialog, int id, const std::string& text) {
  Control* control = FindControl(dialog, id);
  if (!control || HasItems(control->kind)) return;
  ShowText(*control, text);
  NotifyObserver(dialog, DialogChange::Text, id);
  if (IsEdit(control->kind)) Send(dialog, {kMessageCommand, static_cast<std::uint64_t>(id), kEditChanged});
}

std::int64_t GetNumber(const Dialog& dialog, int id, bool isSigned) {
  const Control* control = FindControl(dialog, id);
  if (!control) return 0;
  if (HasItems(control->kind)) return NumberOfText(GetText(dialog, id), isSigned);
  return NumberOfText(control->text, isSigned);
}

void SetNumber(Dialog& dialog, int id, std::int64_t value) { SetText(dialog, id, std::to_string(value)); }

void LimitText(Dialog& dialog, int id, int characters) {
  if (Control* control = FindControl(dialog, id)) control->limit = std::max(characters, 0);
}

bool GetCheck(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  return control && control->check;
}

void SetCheck(Dialog& dialog, int id, bool checked) {
  Control* control = FindControl(dialog, id);
  if (!control) return;
  control->check = checked;
  NotifyObserver(dialog, DialogChange::Check, id);
}

int AddItem(Dialog& dialog, int id, const std::string& text) {
  Control* control = FindControl(dialog, id);
  if (!control || !HasItems(control->kind)) return -1;
  const int index = InsertItem(*control, text);
  NotifyObserver(dialog, DialogChange::Items, id);
  return index;
}

void AddItems(Dialog& dialog, int id, std::span<const std::string> texts) {
  for (const std::string& text : texts) AddItem(dialog, id, text);
}

void ClearItems(Dialog& dialog, int id) {
  Control* control = FindControl(dialog, id);
  if (!control) return;
  control->items.clear();
  control->selection = -1;
  NotifyObserver(dialog, DialogChange::Items, id);
}

int ItemCount(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  return control ? static_cast<int>(control->items.size()) : 0;
}

std::string ItemText(const Dialog& dialog, int id, int index) {
  const ListItem* item = FindItem(FindControl(dialog, id), index);
  return item ? item->text : std::string();
}

void DeleteItem(Dialog& dialog, int id, int index) {
  Control* control = FindControl(dialog, id);
  if (!FindItem(control, index)) return;
  control->items.erase(control->items.begin() + index);
  if (control->selection == index) {
    control->selection = -1;
  } else if (control->selection > index) {
    --control->selection;
  }
  NotifyObserver(dialog, DialogChange::Items, id);
}

std::uint64_t ItemData(const Dialog& dialog, int id, int index) {
  const ListItem* item = FindItem(FindControl(dialog, id), index);
  return item ? item->data : 0;
}

void SetItemData(Dialog& dialog, int id, int index, std::uint64_t data) {
  if (ListItem* item = FindItem(FindControl(dialog, id), index)) item->data = data;
}

void SetItemSize(Dialog& dialog, int id, int width, int height) {
  Control* control = FindControl(dialog, id);
  if (!control || !IsPictureList(control->kind)) return;
  control->itemWidth = width;
  control->itemHeight = height;
}

ControlRectangle RectangleOfItem(const Dialog& dialog, int id, int index) {
  const Control* control = FindControl(dialog, id);
  if (!FindItem(control, index)) return {};
  const int height = control->itemHeight > 0 ? control->itemHeight : kBaseHeight;
  const int width = control->itemWidth > 0 ? control->itemWidth : control->place.right - control->place.left;
  return {0, index * height, width, (index + 1) * height};
}

int GetSelection(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  return control ? control->selection : -1;
}

void SetSelection(Dialog& dialog, int id, int index) {
  Control* control = FindControl(dialog, id);
  if (!control) return;
  control->selection = FindItem(control, index) ? index : -1;
  NotifyObserver(dialog, DialogChange::Selection, id);
}

int SelectText(Dialog& dialog, int id, const std::string& text) {
  const Control* control = FindControl(dialog, id);
  if (!control) return -1;
  const auto found = std::find_if(control->items.begin(), control->items.end(),
                                  [&](const ListItem& item) { return EqualsIgnoringCase(item.text, text); });
  if (found == control->items.end()) return -1;
  const auto index = static_cast<int>(found - control->items.begin());
  SetSelection(dialog, id, index);
  return index;
}

std::uint64_t GetData(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  return control ? control->data : 0;
}

void SetData(Dialog& dialog, int id, std::uint64_t data) {
  if (Control* control = FindControl(dialog, id)) control->data = data;
}

bool IsEnabled(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  return control && control->enabled;
}

void Enable(Dialog& dialog, int id, bool enabled) {
  Control* control = FindControl(dialog, id);
  if (!control || control->enabled == enabled) return;
  control->enabled = enabled;
  NotifyObserver(dialog, DialogChange::Enabled, id);
}

bool IsVisible(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  return control && control->visible;
}

void Show(Dialog& dialog, int id, bool visible) {
  Control* control = FindControl(dialog, id);
  if (!control || control->visible == visible) return;
  control->visible = visible;
  NotifyObserver(dialog, DialogChange::Visible, id);
}

bool IsDialogVisible(const Dialog& dialog) { return dialog.visible; }

void SetFocus(Dialog& dialog, int id) {
  if (!FindControl(dialog, id)) return;
  const int before = std::exchange(dialog.focus, id);
  NotifyObserver(dialog, DialogChange::Focus, id);
  if (before == id || !IsEdit(KindOf(dialog, before))) return;
  Send(dialog, {kMessageCommand, static_cast<std::uint64_t>(before), kEditLeft});
}

int FocusOf(const Dialog& dialog) { return dialog.focus; }

ControlRectangle RectangleOf(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  return control ? control->place : ControlRectangle{};
}

void ResizeControl(Dialog& dialog, int id, int width, int height) {
  Control* control = FindControl(dialog, id);
  if (!control) return;
  control->place.right = control->place.left + std::max(width, 0);
  control->place.bottom = control->place.top + std::max(height, 0);
  NotifyObserver(dialog, DialogChange::Repaint, id);
}

void MoveControl(Dialog& dialog, int id, int left, int top) {
  Control* control = FindControl(dialog, id);
  if (!control) return;
  const int width = control->place.right - control->place.left, height = control->place.bottom - control->place.top;
  control->place = {left, top, left + width, top + height};
  NotifyObserver(dialog, DialogChange::Repaint, id);
}

void GrowDialog(Dialog& dialog, int, int) { NotifyObserver(dialog, DialogChange::Repaint, 0); }

// In memory every character is as wide as the average one.
TextExtent MeasureText(const Dialog&, const std::string& text, int width) {
  const int limit = std::max(width / kBaseWidth, 1);
  int lines = 1, column = 0, longest = 0;
  for (std::size_t at = 0; at < text.size();) {
    if (text[at] == '\n') {
      ++lines;
      column = 0;
      ++at;
      continue;
    }
    const std::size_t end = std::min(text.find_first_of(" \n", at + 1), text.size());
    const auto word = static_cast<int>(end - at);
    if (column && column + word > limit) {
      ++lines;
      column = -1;  // the space before the word
    }
    column += word;
    longest = std::max(longest, column);
    at = end;
  }
  return {std::min(longest * kBaseWidth, width), lines * kBaseHeight};
}

void PaintInScreenPixels(Dialog&, int) {}  // there is no screen

void SetRange(Dialog& dialog, int id, int minimum, int maximum) {
  Control* control = FindControl(dialog, id);
  if (!control) return;
  control->range = {std::min(minimum, maximum), std::max(minimum, maximum)};
}

ControlRange RangeOf(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  return control ? control->range : ControlRange{};
}

// In memory the system draws nothing and there is no Tab key.
void SetTicks(Dialog&, int, int) {}
void SetTabStop(Dialog&, int, bool) {}

void SetControlProcedure(Dialog& dialog, int id, ControlProcedure procedure, const void* family) {
  Control* control = FindControl(dialog, id);
  if (!control) return;
  control->procedure = procedure;
  control->family = family;
}

const void* FamilyOf(const Dialog& dialog, int id) {
  const Control* control = FindControl(dialog, id);
  return control ? control->family : nullptr;
}

}  // namespace glyphmotion
