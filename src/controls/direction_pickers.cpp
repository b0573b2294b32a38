// SPDX-License-Identifier: MIT
#include "controls/direction_pickers.h"

#include <algorithm>
#include <cstdlib>

#include "controls/face_painting.h"
#include "controls/line_values.h"
#include "controls/read_controls.h"
#include "platform/memory.h"

namespace glyphmotion {
namespace {

/// The block in a picker's user data.
struct PickerBlock {
  std::int32_t index;
  Variable* variable;
};

// Arrows to the right, to the lower right, and in both directions. The others are rotations of these.
constexpr std::string_view kStraightArrow[] = {
    "......#......",  //
    "......##.....",  //
    "......###....",  //
    "......####...",  //
    "......#####..",  //
    "############.",  //
    "#############",  //
    "############.",  //
    "......#####..",  //
    "......####...",  //
    "......###....",  //
    "......##.....",  //
    "......#......",  //
};
constexpr std::string_view kDiagonalArrow[] = {
    "..#........",  //
    ".###.......",  //
    "#####.....#",  //
    ".#####...##",  //
    "..#####.###",  //
    "...########",  //
    "....#######",  //
    ".....######",  //
    "....#######",  //
    "...########",  //
    "..#########",  //
};
constexpr std::string_view kDoubleArrow[] = {
    "....#.....#....",  //
    "...##.....##...",  //
    "..###.....###..",  //
    ".#############.",  //
    "###############",  //
    ".#############.",  //
    "..###.....###..",  //
    "...##.....##...",  //
    "....#.....#....",  //
};

struct Cell {
  int column, row;
  std::span<const std::string_view> arrow;
  MaskTurn turn;
};
constexpr MaskTurn kRight{}, kLeft{false, true, false}, kDown{true, false, false}, kUp{true, false, true};
constexpr MaskTurn kLowerRight{}, kLowerLeft{false, true, false}, kUpperRight{false, false, true},
    kUpperLeft{false, true, true};

constexpr Cell kShadowCells[] = {{0, 0, kDiagonalArrow, kUpperLeft},  {1, 0, kStraightArrow, kUp},
                                 {2, 0, kDiagonalArrow, kUpperRight}, {2, 1, kStraightArrow, kRight},
                                 {0, 1, kStraightArrow, kLeft},       {0, 2, kDiagonalArrow, kLowerLeft},
                                 {1, 2, kStraightArrow, kDown},       {2, 2, kDiagonalArrow, kLowerRight}};
constexpr Cell kFourCells[] = {{1, 0, kStraightArrow, kUp},
                               {2, 1, kStraightArrow, kRight},
                               {0, 1, kStraightArrow, kLeft},
                               {1, 2, kStraightArrow, kDown}};
constexpr Cell kTwoCells[] = {{0, 0, kStraightArrow, kLeft}, {1, 0, kStraightArrow, kRight}};
constexpr Cell kAxisCells[] = {{0, 0, kDoubleArrow, kRight}, {1, 0, kDoubleArrow, kDown}};

std::span<const Cell> CellsOf(ControlKind kind) {
  switch (kind) {
    case ControlKind::ShadowDirection:
      return kShadowCells;
    case ControlKind::ScrollFour:
      return kFourCells;
    case ControlKind::ScrollTwo:
      return kTwoCells;
    case ControlKind::ScrollAxis:
      return kAxisCells;
    default:
      return {};
  }
}

/// The pressed cell. A block may contain any number; invalid ones count as 0.
int PressedCell(const Dialog& dialog, int id) {
  const int index = ReadDirection(dialog, id);
  return index >= 0 && index < static_cast<int>(CellsOf(KindOf(dialog, id)).size()) ? index : 0;
}

/// The cell that an arrow key moves to: among those in its direction the one with the least sideways offset, then the
/// nearest. At an edge, the same cell.
int CellTowards(std::span<const Cell> cells, int from, int columns, int rows) {
  const Cell& start = cells[static_cast<std::size_t>(from)];
  int best = from, bestDistance = 0;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const int across = cells[i].column - start.column, down = cells[i].row - start.row;
    const int along = across * columns + down * rows;
    if (along <= 0) continue;
    const int distance = 8 * std::abs(across * rows + down * columns) + along;
    if (best == from || distance < bestDistance) {
      best = static_cast<int>(i);
      bestDistance = distance;
    }
  }
  return best;
}

/// A user's choice, which notifies the dialog like a button.
void Choose(Dialog& dialog, int id, int index) {
  if (index == PressedCell(dialog, id)) return;
  SetDirection(dialog, id, index);
  Send(dialog, {kMessageCommand, static_cast<std::uint64_t>(id), kClicked});
}

std::int64_t InputPicker(Dialog& dialog, int id, const Message& message) {
  const ControlKind kind = KindOf(dialog, id);
  int columns = 0, rows = 0;
  switch (message.number) {
    case kMessageLeftDown:
    case kMessageDoubleClick: {
      SetFocus(dialog, id);
      const int cell = PickerCellAt(kind, static_cast<int>(message.a), static_cast<int>(message.b));
      if (cell >= 0) Choose(dialog, id, cell);
      return true;
    }
    case kMessageKeyDown:
      if (message.a == kKeyLeft) columns = -1;
      if (message.a == kKeyRight) columns = 1;
      if (message.a == kKeyUp) rows = -1;
      if (message.a == kKeyDown) rows = 1;
      if (!columns && !rows) return false;
      Choose(dialog, id, CellTowards(CellsOf(kind), PressedCell(dialog, id), columns, rows));
      return true;
    default:
      return false;
  }
}

void PaintCell(const DrawRequest& request, const Cell& cell, bool pressed, bool enabled, bool focused) {
  const Rect rect{cell.column * kPickerCell, cell.row * kPickerCell, (cell.column + 1) * kPickerCell,
                  (cell.row + 1) * kPickerCell};
  // The choice is highlighted like a selected item: a pressed edge alone is hard to see among eight buttons.
  const auto colour = GetSystemColour;
  const auto chosen = colour(enabled ? SystemColour::Selection : SystemColour::ButtonShadow);
  PaintButtonFace(request, rect, pressed, pressed ? chosen : colour(SystemColour::ButtonFace));
  int width = static_cast<int>(cell.arrow[0].size()), height = static_cast<int>(cell.arrow.size());
  if (cell.turn.transpose) std::swap(width, height);
  const int x = rect.left + (kPickerCell - width) / 2 + pressed, y = rect.top + (kPickerCell - height) / 2 + pressed;
  if (!enabled && !pressed) PaintMask(request, x + 1, y + 1, cell.arrow, cell.turn, colour(SystemColour::Highlight));
  const SystemColour arrow = pressed   ? enabled ? SystemColour::SelectionText : SystemColour::ButtonFace
                             : enabled ? SystemColour::ButtonText
                                       : SystemColour::ButtonShadow;
  PaintMask(request, x, y, cell.arrow, cell.turn, colour(arrow));
  if (focused && enabled) DottedFrame(request, Shrunk(rect, 3));
}

void PaintPicker(Dialog& dialog, int id, const DrawRequest& request) {
  const auto cells = CellsOf(KindOf(dialog, id));
  const int pressed = PressedCell(dialog, id);
  const bool enabled = IsEnabled(dialog, id), focused = FocusOf(dialog) == id;
  for (int i = 0; i < static_cast<int>(cells.size()); ++i) {
    PaintCell(request, cells[static_cast<std::size_t>(i)], i == pressed, enabled, focused && i == pressed);
  }
}

void SavePicker(Dialog& dialog, int id, std::string& line) { line += std::to_string(PressedCell(dialog, id)); }
void StorePicker(Dialog& dialog, int id, Variable& variable) {
  variable.number = static_cast<std::uint32_t>(PressedCell(dialog, id));
}
void LoadPicker(Dialog& dialog, int id, const std::string& value) {
  SetDirection(dialog, id, LeadingNumber(value));
  if (Variable* variable = VariableOfPicker(dialog, id)) StorePicker(dialog, id, *variable);
}
void ShowPicker(Dialog& dialog, int id, const Variable& variable) {
  SetDirection(dialog, id, static_cast<int>(variable.number));
}
void DestroyPicker(Dialog& dialog, int id) {
  FreeBlock(HandleOf(GetData(dialog, id)));
  SetData(dialog, id, 0);
}

constexpr ControlFamily PickerFamily(const char* stem) {
  return {stem, SavePicker, LoadPicker, StorePicker, ShowPicker, PaintPicker, InputPicker, DestroyPicker};
}

}  // namespace

const ControlFamily kShadowDirectionFamily = PickerFamily("SDWDIR");
const ControlFamily kScrollFourFamily = PickerFamily("SCRL4D");
const ControlFamily kScrollTwoFamily = PickerFamily("SCRL2D");
const ControlFamily kScrollAxisFamily = PickerFamily("SCRLHV");

bool IsPicker(ControlKind kind) noexcept { return !CellsOf(kind).empty(); }

int PickerCellAt(ControlKind kind, int x, int y) noexcept {
  if (x < 0 || y < 0) return -1;
  const auto cells = CellsOf(kind);
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (cells[i].column == x / kPickerCell && cells[i].row == y / kPickerCell) return static_cast<int>(i);
  }
  return -1;
}

void AttachPicker(Dialog& dialog, int id, Variable* variable) {
  auto* handle = HandleOf(GetData(dialog, id));
  if (!handle) SetData(dialog, id, reinterpret_cast<std::uintptr_t>(handle = AllocateBlock(sizeof(PickerBlock))));
  if (const LockedBlock<PickerBlock> block(handle); block) block->variable = variable;
  // The cells have a fixed size, independent of the dialog's font.
  int columns = 0, rows = 0;
  for (const Cell& cell : CellsOf(KindOf(dialog, id))) {
    columns = std::max(columns, cell.column + 1);
    rows = std::max(rows, cell.row + 1);
  }
  ResizeControl(dialog, id, columns * kPickerCell, rows * kPickerCell);
}

Variable* VariableOfPicker(const Dialog& dialog, int id) noexcept {
  const LockedBlock<PickerBlock> block(HandleOf(GetData(dialog, id)));
  return block ? block->variable : nullptr;
}

void SetDirection(Dialog& dialog, int id, int index) {
  const auto count = static_cast<int>(CellsOf(KindOf(dialog, id)).size());
  if (const LockedBlock<PickerBlock> block(HandleOf(GetData(dialog, id))); block) {
    block->index = index >= 0 && index < count ? index : 0;
  }
  Invalidate(dialog, id);
}

}  // namespace glyphmotion
