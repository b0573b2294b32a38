// SPDX-License-Identifier: MIT
// Each item of the list has a block with its fountain, whose Preview is the displayed picture.
#include "controls/fountain_library_dialog.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "controls/editor_services.h"
#include "controls/face_painting.h"
#include "controls/fountain_control.h"
#include "controls/skin.h"
#include "materials/fountain.h"
#include "platform/clock.h"
#include "resources/strings.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

enum LibraryControl { kOk = 1, kCancel = 2, kHelp = 9, kList = 101, kUse, kMoveUp, kMoveDown, kDelete };

constexpr int kPreviewHeight = 26, kItemMargin = 3;
constexpr int kListEdge = 2;  // the sunken edge around a list's items

struct LibrarySession {
  FountainSpec& fountain;  // in: the control's; out: the one chosen
  bool changed = false;
};

LibrarySession& SessionOf(const Dialog& dialog) {
  return *static_cast<LibrarySession*>(HandleOf(GetData(dialog, kList)));
}

LockedBlock<FountainSpec> LockItem(const Dialog& dialog, int index) {
  return LockedBlock<FountainSpec>(HandleOf(ItemData(dialog, kList, index)));
}

bool AreAlike(const FountainSpec& a, const FountainSpec& b) {
  return a.MarkerCount == b.MarkerCount && ((a.StartColour ^ b.StartColour) & 0xFFFFFF) == 0 &&
         ((a.EndColour ^ b.EndColour) & 0xFFFFFF) == 0 &&
         std::memcmp(a.Markers, b.Markers, sizeof(std::uint32_t) * static_cast<std::size_t>(MarkerCountOf(a))) == 0;
}

// --- Items ---

void FreeItem(Dialog& dialog, int index) {
  const BlockHandle handle = HandleOf(ItemData(dialog, kList, index));
  if (const auto fountain = LockItem(dialog, index)) FreeBlock(HandleOf(fountain->Preview));
  FreeBlock(handle);
  SetItemData(dialog, kList, index, 0);
}

bool AppendFountain(Dialog& dialog, const FountainSpec& fountain, int previewWidth) {
  PackedDib preview = FountainToBitmap(fountain, previewWidth, kPreviewHeight);
  MovableBlock block(AllocateBlock(sizeof(FountainSpec)));
  if (!preview || !block) return false;
  const int index = AddItem(dialog, kList, "");
  if (index < 0) return false;
  const LockedBlock<FountainSpec> held(block.Handle());
  *held = fountain;
  held->Preview = WordOf(preview.Release());
  SetItemData(dialog, kList, index, WordOf(block.Release()));
  return true;
}

bool ReadLibrary(Dialog& dialog, int previewWidth) {
  std::vector<FountainSpec> fountains;
  bool complete = ReadFountainLibrary(FountainLibraryPath(), fountains);
  for (const FountainSpec& fountain : fountains) {
    if (AppendFountain(dialog, fountain, previewWidth)) continue;
    complete = false;
    break;
  }
  return complete;
}

bool WriteLibrary(const Dialog& dialog) {
  std::vector<FountainSpec> fountains;
  for (int i = 0; i < ItemCount(dialog, kList); ++i) {
    const auto fountain = LockItem(dialog, i);
    if (!fountain) return false;
    fountains.push_back(*fountain);
  }
  return WriteFountainLibrary(FountainLibraryPathToWrite(), fountains, CurrentTime());
}

// When out of memory the old preview stays.
void FitPreview(FountainSpec& fountain, int width) {
  if (DibView(HandleOf(fountain.Preview)).Width() == width) return;
  PackedDib preview = FountainToBitmap(fountain, width, kPreviewHeight);
  if (!preview) return;
  FreeBlock(HandleOf(fountain.Preview));
  fountain.Preview = WordOf(preview.Release());
}

void PaintItem(const Dialog& dialog, const DrawRequest& request) {
  const Rect whole = WholeOf(request);
  FillFace(request, whole, GetSystemColour(request.selected ? SystemColour::Selection : SystemColour::Window));
  if (request.focused) DottedFrame(request, whole);
  const auto fountain = LockItem(dialog, request.item);
  if (!fountain) return;
  // As wide as the item, which a scroll bar makes narrower.
  const Rect picture = Shrunk(whole, kItemMargin);
  FitPreview(*fountain, picture.Width());
  PaintBitmap(request, picture, DibView(HandleOf(fountain->Preview)));
}

// --- User actions ---

void EnableButtons(Dialog& dialog) {
  const int selected = GetSelection(dialog, kList), count = ItemCount(dialog, kList);
  Enable(dialog, kUse, selected >= 0);
  Enable(dialog, kDelete, selected >= 0);
  Enable(dialog, kMoveUp, selected > 0);
  Enable(dialog, kMoveDown, selected >= 0 && selected + 1 < count);
}

void Select(Dialog& dialog, int index) {
  SetSelection(dialog, kList, index);
  EnableButtons(dialog);
}

void DeleteSelected(Dialog& dialog) {
  const int index = GetSelection(dialog, kList);
  if (index < 0) return;
  FreeItem(dialog, index);
  DeleteItem(dialog, kList, index);
  SessionOf(dialog).changed = true;
  Select(dialog, std::min(index, ItemCount(dialog, kList) - 1));
}

void MoveSelected(Dialog& dialog, int step) {
  const int from = GetSelection(dialog, kList), to = from + step;
  if (from < 0 || to < 0 || to >= ItemCount(dialog, kList)) return;
  const std::uint64_t moved = ItemData(dialog, kList, from);
  SetItemData(dialog, kList, from, ItemData(dialog, kList, to));
  SetItemData(dialog, kList, to, moved);
  SessionOf(dialog).changed = true;
  Select(dialog, to);
  Invalidate(dialog, kList);
}

// If the library cannot be written, the dialog stays open, so that no changes are lost.
void Accept(Dialog& dialog, int result) {
  if (!SessionOf(dialog).changed || WriteLibrary(dialog)) return EndDialog(dialog, result);
  ShowMessage(&dialog, LoadText(kTextFountainsNotUpdated));
}

void UseSelected(Dialog& dialog) {
  const auto chosen = LockItem(dialog, GetSelection(dialog, kList));
  if (!chosen) return;
  Accept(dialog, kUse);
  if (!HasEnded(dialog)) return;
  SessionOf(dialog).fountain = *chosen;
  SessionOf(dialog).fountain.Preview = 0;
}

void ItemMenu(Dialog& dialog, bool byKey) {
  const int selected = GetSelection(dialog, kList);
  if (selected < 0) return;
  std::vector<MenuItem> items = {{kUse, LoadText(kTextMenuUse), false}};
  if (selected > 0) items.push_back({kMoveUp, LoadText(kTextMenuMoveUp), false});
  if (selected + 1 < ItemCount(dialog, kList)) items.push_back({kMoveDown, LoadText(kTextMenuMoveDown), false});
  items.push_back({kDelete, LoadText(kTextMenuDelete), false});
  const int chosen = PopupItemMenu(dialog, kList, byKey, items);
  if (chosen) PostCommand(dialog, chosen);
}

void OnList(Dialog& dialog, int code) {
  switch (code) {
    case kSelectionChanged:
      return EnableButtons(dialog);
    case kDoubleClicked:
      return UseSelected(dialog);
    case kItemMenu:
    case kItemMenuByKey:
      return ItemMenu(dialog, code == kItemMenuByKey);
    case kDeletePressed:
      return DeleteSelected(dialog);
  }
}

void OnCommand(Dialog& dialog, int id, int code) {
  switch (id) {
    case kOk:
      return GetSelection(dialog, kList) < 0 ? Accept(dialog, kOk) : UseSelected(dialog);
    case kCancel:
      return EndDialog(dialog, 0);
    case kHelp:
      return ShowHelpTopic(dialog, "FOUNTAIN");
    case kList:
      return OnList(dialog, code);
    case kUse:
      return UseSelected(dialog);
    case kMoveUp:
      return MoveSelected(dialog, -1);
    case kMoveDown:
      return MoveSelected(dialog, 1);
    case kDelete:
      return DeleteSelected(dialog);
  }
}

// --- The dialog ---

void Initialise(Dialog& dialog, LibrarySession& session) {
  SetData(dialog, kList, WordOf(&session));
  const ControlRectangle place = RectangleOf(dialog, kList);
  const int width = place.right - place.left - 2 * kListEdge;
  SetItemSize(dialog, kList, width, kPreviewHeight + 2 * kItemMargin);
  if (!ReadLibrary(dialog, width - 2 * kItemMargin)) ShowMessage(&dialog, LoadText(kTextFountainsNotLoaded));
  // None if the control's is not in the library, because OK takes the selected item.
  int selected = -1;
  for (int i = 0; i < ItemCount(dialog, kList); ++i) {
    const auto fountain = LockItem(dialog, i);
    if (!fountain || !AreAlike(*fountain, session.fountain)) continue;
    selected = i;
    break;
  }
  Select(dialog, selected);
  SetFocus(dialog, kList);
}

std::int64_t LibraryProcedure(Dialog& dialog, const Message& message) {
  if (HandleSkin(dialog, message)) return 1;
  switch (message.number) {
    case kMessageInitialise:
      Initialise(dialog, *PointerOf<LibrarySession>(message.b));
      return 1;
    case kMessageCommand:
      OnCommand(dialog, static_cast<int>(message.a), static_cast<int>(message.b));
      return 1;
    case kMessageHelp:
      ShowHelpTopic(dialog, "FOUNTAIN");
      return 1;
    case kMessageDrawItem:
      PaintItem(dialog, *PointerOf<const DrawRequest>(message.b));
      return 1;
    case kMessageDestroy:
      for (int i = 0; i < ItemCount(dialog, kList); ++i) FreeItem(dialog, i);
      return 1;
    default:
      return 0;
  }
}

}  // namespace

bool ManageFountainLibrary(Dialog& owner, FountainSpec& fountain) {
  LibrarySession session{fountain};
  return RunModal(kFountainLibraryDialogTemplate, owner, LibraryProcedure, &session) == kUse;
}

}  // namespace glyphmotion
