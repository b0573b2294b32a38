// SPDX-License-Identifier: MIT
// The window of the tile editor. Thumbnails are rendered when first drawn, so that a group of any size opens at once.
#include "controls/tile_dialog.h"

#include <algorithm>
#include <vector>

#include "controls/editor_services.h"
#include "controls/face_painting.h"
#include "controls/library_editor.h"
#include "controls/skin.h"
#include "image/filters.h"
#include "platform/shell_ui.h"
#include "resources/strings.h"
#include "resources/templates.h"
#include "resources/tile_controls.h"

namespace glyphmotion {
namespace {

using namespace TileControl;

/// Private message that the dialog posts to itself. a = 0: adjusts the list's height; a = 1: opens the menu of an item,
/// b is 1 when a key asked for it.
constexpr std::uint32_t kMessageList = 0x4C8;
constexpr const char* kHelpTopic = "TILE";
constexpr int kItemInset = 4, kChosenInset = 2, kPreviewInset = 2;
constexpr Colour kChosenColour = 0x000000, kItemColour = 0xFFFFFF;  // independent of the desktop's colours

struct TileDialog {
  TileEditor editor;
  std::vector<PackedDib> thumbnails;  ///< of the group's tiles drawn so far
};

/// The dialog's state, stored as the user data of its preview; null before the dialog is initialised.
TileDialog* StateOf(const Dialog& dialog) {
  return PointerOf<TileDialog>(static_cast<std::int64_t>(GetData(dialog, Preview)));
}

// --- Drawing ---

// Scaled to fit the box, by a whole percentage for both sides.
PackedDib Thumbnail(const PackedDib& tile, int width, int height) {
  const DibView view(tile);
  if (!view || width < 1 || height < 1) return {};
  const int percent = std::min(height * 100 / view.Height(), width * 100 / view.Width());
  const int scaledWidth = static_cast<int>(std::int64_t{view.Width()} * percent / 100);
  const int scaledHeight = static_cast<int>(std::int64_t{view.Height()} * percent / 100);
  const PackedDib colours = view.Bits() == 24 ? PackedDib() : TileTo24Bit(tile);
  return ResampleToSize(colours ? colours : tile, std::max(scaledWidth, 1), std::max(scaledHeight, 1));
}

void PaintItem(TileDialog& state, const DrawRequest& request) {
  const Rect cell = WholeOf(request);
  PaintButtonFace(request, cell, request.selected, kItemColour);
  // Marks in the white beside the thumbnail: the selection and the focus.
  if (request.selected) FrameFace(request, Shrunk(cell, kChosenInset), kChosenColour, kChosenColour);
  if (request.focused) DottedFrame(request, Shrunk(cell, kChosenInset));
  const auto item = static_cast<std::size_t>(std::max(request.item, 0));
  if (item >= state.editor.group.tiles.size()) return;
  const Rect box = Shrunk(cell, kItemInset);
  state.thumbnails.resize(state.editor.group.tiles.size());
  PackedDib& thumbnail = state.thumbnails[item];
  if (!thumbnail) thumbnail = Thumbnail(state.editor.group.tiles[item], box.Width(), box.Height());
  const DibView view(thumbnail);
  if (!view) return;
  const int offset = request.selected ? 1 : 0;
  const int left = box.left + (box.Width() - view.Width()) / 2 + offset;
  const int top = box.top + (box.Height() - view.Height()) / 2 + offset;
  PaintBitmap(request, {left, top, left + view.Width(), top + view.Height()}, view);
}

void PaintPreview(TileDialog& state, const DrawRequest& request) {
  const Rect whole = WholeOf(request), inner = Shrunk(whole, kPreviewInset);
  PaintButtonFace(request, whole, true, GetSystemColour(SystemColour::ButtonFace));
  TileSpec tile = state.editor.tile;
  tile.Left = tile.Top = 0;
  tile.Right = inner.Width();
  tile.Bottom = inner.Height();
  const PackedDib picture = RenderTile(tile);
  PaintBitmap(request, inner, DibView(picture));
}

// --- From the editor to the controls ---

void ShowTile(Dialog& dialog, const TileDialog& state) {
  SetText(dialog, Size, TileSizeText(state.editor));
  Enable(dialog, Delete, state.editor.selected >= 0);
  Invalidate(dialog, Preview);
}

void ShowGroup(Dialog& dialog, TileDialog& state) {
  state.thumbnails.clear();
  ClearItems(dialog, List);
  AddItems(dialog, List, std::vector<std::string>(state.editor.group.tiles.size()));
  SetSelection(dialog, List, state.editor.selected);
  ShowTile(dialog, state);
}

void ShowGroups(Dialog& dialog, const TileDialog& state) {
  ClearItems(dialog, Group);
  AddItems(dialog, Group, TileGroups());
  SelectText(dialog, Group, TileGroup(state.editor));
}

// --- User actions ---

// If a tile cannot be copied, the previous one stays.
void Select(Dialog& dialog, TileDialog& state, int index) {
  SelectTile(&dialog, state.editor, index);
  SetSelection(dialog, List, state.editor.selected);
  ShowTile(dialog, state);
}

void OnGroup(Dialog& dialog, TileDialog& state) {
  ChooseTileGroup(&dialog, state.editor, GetText(dialog, Group));
  FindTile(state.editor);
  ShowGroup(dialog, state);
}

void OnAdd(Dialog& dialog, TileDialog& state, bool shift) {
  if (!AddTile(&dialog, state.editor, shift, [&] { return ChoosePicture(dialog); })) return;
  if (shift) return ShowGroups(dialog, state);
  AddItem(dialog, List, "");
  Select(dialog, state, static_cast<int>(state.editor.group.tiles.size()) - 1);
}

void OnDelete(Dialog& dialog, TileDialog& state, bool shift) {
  const int before = state.editor.selected;
  if (!DeleteTile(&dialog, state.editor, shift)) return;
  if (shift) return ShowGroups(dialog, state);
  if (static_cast<std::size_t>(before) < state.thumbnails.size()) {
    state.thumbnails.erase(state.thumbnails.begin() + before);
  }
  DeleteItem(dialog, List, before);
  Select(dialog, state, state.editor.selected);
}

void OnItemMenu(Dialog& dialog, bool byKey) {
  const MenuItem items[] = {{Delete, LoadText(kTextMenuDelete), false}};
  if (const int chosen = PopupItemMenu(dialog, List, byKey, items)) PostCommand(dialog, chosen);
}

void OnOk(Dialog& dialog, TileDialog& state) {
  SaveTileGroups(state.editor);
  EndDialog(dialog, 1);
}

void OnList(Dialog& dialog, TileDialog& state, int code) {
  switch (code) {
    case kSelectionChanged:
      return Select(dialog, state, GetSelection(dialog, List));
    case kDoubleClicked:
      return OnOk(dialog, state);
    case kItemMenu:
    case kItemMenuByKey:
      return Post(dialog, {kMessageList, 1, code == kItemMenuByKey});
    case kDeletePressed:
      if (state.editor.selected >= 0) OnDelete(dialog, state, false);
      return;
  }
}

void OnCommand(Dialog& dialog, TileDialog& state, int id, int code) {
  switch (id) {
    case Ok:
      return OnOk(dialog, state);
    case Cancel:
      return EndDialog(dialog, 0);
    case Help:
      return ShowHelpTopic(dialog, kHelpTopic);
    case List:
      return OnList(dialog, state, code);
    case Group:
      if (code == kSelectionChanged) OnGroup(dialog, state);
      return;
    case Add:
      return OnAdd(dialog, state, IsShiftDown());
    case Delete:
      return OnDelete(dialog, state, IsShiftDown());
  }
}

// --- The dialog ---

void Initialise(Dialog& dialog, TileDialog& state) {
  SetData(dialog, Preview, static_cast<std::uint64_t>(PointerArgument(&state)));
  SetItemSize(dialog, List, Cell, Cell);
  const TileSpec tile = state.editor.tile;
  OpenTileEditor(&dialog, state.editor, tile);
  FindTile(state.editor);
  ShowGroups(dialog, state);
  ShowGroup(dialog, state);
  SetFocus(dialog, List);
  Post(dialog, {kMessageList, 0, 0});
}

// A whole number of rows, whatever the dialog units are.
void SetListHeight(Dialog& dialog) {
  const ControlRectangle place = RectangleOf(dialog, List);
  const int height = Rows * Cell + 2 * GetSystemSize(dialog, SystemSize::DialogFrame) +
                     GetSystemSize(dialog, SystemSize::HorizontalScrollBar);
  ResizeControl(dialog, List, place.right - place.left, height);
}

std::int64_t TileProcedure(Dialog& dialog, const Message& message) {
  if (HandleSkin(dialog, message)) return 1;
  if (message.number == kMessageInitialise) return Initialise(dialog, *PointerOf<TileDialog>(message.b)), 0;
  TileDialog* state = StateOf(dialog);
  if (!state) return 0;
  switch (message.number) {
    case kMessageList:
      message.a ? OnItemMenu(dialog, message.b != 0) : SetListHeight(dialog);
      return 1;
    case kMessageCommand:
      OnCommand(dialog, *state, static_cast<int>(message.a), static_cast<int>(message.b));
      return 1;
    case kMessageHelp:
      ShowHelpTopic(dialog, kHelpTopic);
      return 1;
    case kMessageDrawItem:
      if (message.a == List) PaintItem(*state, *PointerOf<const DrawRequest>(message.b));
      if (message.a == Preview) PaintPreview(*state, *PointerOf<const DrawRequest>(message.b));
      return 1;
    default:
      return 0;
  }
}

// Frees a remaining copy when the dialog is destroyed, for whatever reason.
struct OwnedTile {
  TileSpec& tile;
  ~OwnedTile() { FreeBlock(HandleOf(tile.TileBitmap)); }
};

}  // namespace

bool RunTileDialog(Dialog& owner, TileSpec& tile) {
  TileDialog state;
  state.editor.tile = tile;
  state.editor.tile.TileBitmap = WordOf(DuplicateBlock(HandleOf(tile.TileBitmap)));
  const OwnedTile copy{state.editor.tile};
  if (HandleOf(tile.TileBitmap) && !HandleOf(state.editor.tile.TileBitmap)) {
    ShowMessage(&owner, LoadText(kTextMemoryError));
    return false;
  }
  if (!RunEditor(owner, kTileDialogTemplate, TileProcedure, &state)) return false;
  tile = state.editor.tile;
  state.editor.tile.TileBitmap = 0;
  return true;
}

}  // namespace glyphmotion
