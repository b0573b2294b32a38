// SPDX-License-Identifier: MIT
// The grid that all effect panels share, and the rows of which a panel is written. A role has the same place in every
// panel, so that nothing jumps when a person steps through the effects:
//
//   rows 1 to 4   what all effects have: fills and their opacities, shadow, background, outline, frames
//   rows 5 to 9   what an effect has for itself
//
//   kSwatches     a label and a colour or material button     kChecks       check boxes, and the number of frames
//   kNumbers      a label and a number                        kDirections   a label and, below it, a picker
//
// A row's functions give its controls in tab order, each label directly before the control it names. `As` says what a
// row is for, where all effects have something of the kind.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "resources/panel.h"

namespace glyphmotion::panel {

/// Dialog units, like everything here.
struct Column {
  int x, labelWidth;
};
constexpr Column kSwatches{7, 48}, kNumbers{107, 50}, kChecks{207, 30}, kDirections{285, 60};
/// For panels whose own colours have an Enable check in the place of the numbers.
constexpr Column kEnables{107, 42}, kNumbersRight{207, 48};

constexpr int kFieldHeight = 13, kRowPitch = kFieldHeight + 4, kGap = 2;
constexpr int kLabelHeight = 8, kCheckHeight = 10;
constexpr int kNumberWidth = 30, kUpDownWidth = 10, kSwatchWidth = 42;
constexpr int kCommonTop = 177, kOwnTop = 248;  // the first row of each block

struct Cell {
  Column column;
  int row;  ///< 1 to 9
  constexpr int Top() const { return row <= 4 ? kCommonTop + (row - 1) * kRowPitch : kOwnTop + (row - 5) * kRowPitch; }
  constexpr int FieldLeft() const { return column.x + column.labelWidth + kGap; }
};

constexpr ControlTemplate Control(ControlKind kind, int id, const char* caption, int x, int y, int width, int height,
                                  const char* key = nullptr, std::uint32_t initial = 0) {
  const auto units = [](int v) { return static_cast<std::int16_t>(v); };
  return {kind, id, caption, units(x), units(y), units(width), units(height), key, initial};
}

/// The label of a field, its text level with the field's. Panels are shown and hidden by id, so their labels have one:
/// that of the field + 1.
constexpr ControlTemplate LabelOf(Cell cell, const char* caption, int id) {
  return Control(ControlKind::Label, id + 1, caption, cell.column.x, cell.Top() + 2, cell.column.labelWidth,
                 kLabelHeight);
}

constexpr std::array<ControlTemplate, 2> MaterialField(Cell cell, const char* caption, int id, std::uint32_t colour,
                                                       const char* key = nullptr) {
  return {LabelOf(cell, caption, id), Control(ControlKind::MaterialButton, id, "", cell.FieldLeft(), cell.Top(),
                                              kSwatchWidth, kFieldHeight, key, colour)};
}

constexpr std::array<ControlTemplate, 2> ColourField(Cell cell, const char* caption, int id, const char* key) {
  return {LabelOf(cell, caption, id),
          Control(ControlKind::ColourButton, id, "", cell.FieldLeft(), cell.Top(), kSwatchWidth, kFieldHeight, key)};
}

/// `range` is "minimum,maximum,default", the caption of the up-down beside the edit.
constexpr std::array<ControlTemplate, 3> NumberField(Cell cell, const char* caption, int id, const char* range,
                                                     const char* key, std::uint32_t initial = 0) {
  const int x = cell.FieldLeft(), y = cell.Top();
  return {LabelOf(cell, caption, id),
          Control(ControlKind::NumberEdit, id, "", x, y, kNumberWidth, kFieldHeight, key, initial),
          Control(ControlKind::UpDown, id + 10000, range, x + kNumberWidth, y, kUpDownWidth, kFieldHeight)};
}

constexpr std::array<ControlTemplate, 1> CheckBox(Cell cell, const char* caption, int id, const char* key,
                                                  int width = 70) {
  return {Control(ControlKind::Check, id, caption, cell.column.x, cell.Top() + 2, width, kCheckHeight, key)};
}

/// `items` by semicolons; the height is that of the closed combo.
constexpr std::array<ControlTemplate, 2> ComboField(Cell cell, const char* caption, int id, const char* items,
                                                    const char* key, int width) {
  return {LabelOf(cell, caption, id),
          Control(ControlKind::Combo, id, items, cell.FieldLeft(), cell.Top(), width, kFieldHeight, key)};
}

/// A picker below its label: three by three cells of 25 pixels for eight or four directions, two cells for two.
constexpr std::array<ControlTemplate, 2> PickerField(Cell cell, const char* caption, ControlKind kind, int id,
                                                     const char* key) {
  const bool square = kind == ControlKind::ShadowDirection || kind == ControlKind::ScrollFour;
  const int top = cell.Top();
  return {Control(ControlKind::Label, id + 1, caption, cell.column.x, top, cell.column.labelWidth, kLabelHeight),
          Control(kind, id, "", cell.column.x, top + 10, square ? 50 : 34, square ? 46 : 16, key)};
}

/// A field whose label is too long for its column: it wraps.
template <std::size_t Size>
constexpr std::array<ControlTemplate, Size> TwoLineLabel(std::array<ControlTemplate, Size> field) {
  field[0].y = static_cast<std::int16_t>(field[0].y - 3);
  field[0].height = 2 * kLabelHeight;
  return field;
}

template <std::size_t... Sizes>
constexpr auto Join(const std::array<ControlTemplate, Sizes>&... rows) {
  std::array<ControlTemplate, (Sizes + ...)> all{};
  std::size_t at = 0;
  const auto append = [&](const auto& row) {
    for (const ControlTemplate& control : row) all[at++] = control;
  };
  (append(rows), ...);
  return all;
}

namespace Role {
constexpr int PanelRoles::*Fill = &PanelRoles::fill;
constexpr int PanelRoles::*Shadow = &PanelRoles::shadow;
constexpr int PanelRoles::*Background = &PanelRoles::background;
constexpr int PanelRoles::*Outline = &PanelRoles::outline;
constexpr int PanelRoles::*FillOpacity = &PanelRoles::fillOpacity;
constexpr int PanelRoles::*ShadowOpacity = &PanelRoles::shadowOpacity;
constexpr int PanelRoles::*Softness = &PanelRoles::softness;
constexpr int PanelRoles::*ShadowOffset = &PanelRoles::shadowOffset;
constexpr int PanelRoles::*ShadowDirection = &PanelRoles::shadowDirection;
constexpr int PanelRoles::*ShadowEnable = &PanelRoles::shadowEnable;
constexpr int PanelRoles::*OutlineEnable = &PanelRoles::outlineEnable;
constexpr int PanelRoles::*Material2 = &PanelRoles::material2;
constexpr int PanelRoles::*Material3 = &PanelRoles::material3;
constexpr int PanelRoles::*Material4 = &PanelRoles::material4;
constexpr int PanelRoles::*Material5 = &PanelRoles::material5;
}  // namespace Role

/// The controls of a row, and the role of the one that is not a label or an up-down.
template <std::size_t Size>
struct PanelRow {
  std::array<ControlTemplate, Size> controls;
  int PanelRoles::*role = nullptr;
  constexpr int Id() const { return controls[Size > 1 ? 1 : 0].id; }
};

template <std::size_t Size>
constexpr PanelRow<Size> As(int PanelRoles::*role, const std::array<ControlTemplate, Size>& row) {
  return {row, role};
}

template <std::size_t Size>
struct PanelRows {
  std::array<ControlTemplate, Size> controls;
  PanelRoles roles;
};

namespace detail {
template <std::size_t Size>
constexpr PanelRow<Size> RowOf(const PanelRow<Size>& row) {
  return row;
}
template <std::size_t Size>
constexpr PanelRow<Size> RowOf(const std::array<ControlTemplate, Size>& row) {
  return {row};
}
}  // namespace detail

/// The rows of a panel, with and without a role.
template <typename... Rows>
constexpr auto RowsOf(const Rows&... rows) {
  PanelRoles roles;
  const auto take = [&](const auto& row) {
    if (row.role) roles.*row.role = row.Id();
  };
  (take(detail::RowOf(rows)), ...);
  const auto controls = Join(detail::RowOf(rows).controls...);
  return PanelRows<controls.size()>{controls, roles};
}

/// Dialog `id` of an effect; the title is the effect's name. The rows live as long as the panel.
template <std::size_t Size>
constexpr Panel MakePanel(int id, const char* title, const PanelRows<Size>& rows) {
  return {{id, title, 488, 336, rows.controls}, rows.roles};
}

}  // namespace glyphmotion::panel
