// SPDX-License-Identifier: MIT
#include "controls/fountain_control.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <span>

#include "materials/shipped.h"
#include "materials/tile.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/run_state.h"
#include "platform/shell_ui.h"
#include "resources/strings.h"

namespace glyphmotion {
namespace {

constexpr int kWidth = 197, kHeight = 50;
constexpr int kPullOff = 24;  // pixels above or below the control at which a dragged marker is removed

enum MenuId { kDeleteMarker = 100, kChangeColour, kAdjustPosition, kAddToLibrary, kManageLibrary };

FountainWindows& Windows() { return CurrentRun().Member<FountainWindows>(); }

// There is one mouse and one keyboard.
struct FountainInput {
  int draggedMarker = -1;           // the marker being dragged
  int chosenHandle = kStartHandle;  // the handle that keys act on
};
FountainInput& Input() { return CurrentRun().Member<FountainInput>(); }

struct Extent {
  int width, height;
};
Extent ExtentOf(const Dialog& dialog, int id) {
  const ControlRectangle place = RectangleOf(dialog, id);
  return {place.right - place.left, place.bottom - place.top};
}

void FreePreview(FountainSpec& fountain) {
  FreeBlock(HandleOf(fountain.Preview));
  fountain.Preview = 0;
}

void RenderPreview(Dialog& dialog, int id, FountainSpec& fountain) {
  const Extent extent = ExtentOf(dialog, id);
  const Rect bar = FountainBar(extent.width, extent.height);
  PackedDib preview = FountainToBitmap(fountain, bar.Width(), bar.Height());
  if (!preview) return;
  FreePreview(fountain);
  fountain.Preview = WordOf(preview.Release());
}

void Changed(Dialog& dialog, int id, FountainSpec& fountain) {
  RenderPreview(dialog, id, fountain);
  Invalidate(dialog, id);
  Post(dialog, {kMessageFillChanged, 0, id});
}

void SaveLine(Dialog& dialog, int id, std::string& line) {
  const auto held = LockFountain(dialog, id);
  if (!held) return;
  FountainSpec fountain = *held;
  fountain.Preview = 0;  // a handle is meaningless in a stored form
  line += HexEncode(&fountain, sizeof fountain);
}

void LoadLine(Dialog& dialog, int id, const std::string& value) {
  MovableBlock block = HexDecode(value, sizeof(FountainSpec));
  if (!block) return;
  if (const auto old = LockFountain(dialog, id); old) FreePreview(*old);
  FreeBlock(HandleOf(GetData(dialog, id)));
  SetData(dialog, id, WordOf(block.Release()));
  const auto fountain = LockFountain(dialog, id);
  fountain->Preview = 0;
  RenderPreview(dialog, id, *fountain);
  Invalidate(dialog, id);
}

// The control's private messages ------------------------------------------------------------------------------------
// While a question or a message is open, the windows below may be destroyed, and the record with them: nothing stays
// locked, and the record is looked up again for every change.

std::optional<FountainSpec> CopyOf(const Dialog& dialog, int id) {
  const auto fountain = LockFountain(dialog, id);
  return fountain ? std::optional(*fountain) : std::nullopt;
}

// Nothing if there is no such handle. The plus copies a packed field, to which no reference may be bound.
std::optional<std::uint32_t> EntryOf(const FountainSpec& fountain, int index) {
  if (index == kStartHandle) return +fountain.StartColour;
  if (index == kEndHandle) return +fountain.EndColour;
  if (index < 0 || index >= MarkerCountOf(fountain)) return std::nullopt;
  return +fountain.Markers[index];
}

void SetEntry(FountainSpec& fountain, int index, std::uint32_t entry) {
  if (index == kStartHandle) {
    fountain.StartColour = entry;
  } else if (index == kEndHandle) {
    fountain.EndColour = entry;
  } else {
    fountain.Markers[index] = entry;
  }
}

void ChangeColour(Dialog& dialog, int id, int index) {
  const auto before = CopyOf(dialog, id);
  if (!before || (index == kEndHandle && before->Flags & kFountainLooped)) return;
  const auto old = EntryOf(*before, index);
  if (!old) {
    ShowMessage(&dialog, LoadText(kTextInternalError));
    return;
  }
  const auto colour = AskColour(&dialog, *old & 0xFFFFFF);
  if (!colour) return;
  const auto fountain = LockFountain(dialog, id);
  const auto entry = fountain ? EntryOf(*fountain, index) : std::nullopt;
  if (!entry) return;
  SetEntry(*fountain, index, (*entry & 0xFF000000) | (*colour & 0xFFFFFF));
  Changed(dialog, id, *fountain);
}

void AddMarker(Dialog& dialog, int id, int wanted) {
  const auto before = CopyOf(dialog, id);
  if (!before) return;
  const int position = FreePosition(*before, wanted);
  if (position < 0) {
    ShowMessage(&dialog, LoadText(kTextNoMarkerSpace));
    return;
  }
  const auto colour = AskColour(&dialog, 0x808080);
  if (!colour) return;
  const auto fountain = LockFountain(dialog, id);
  if (!fountain || MarkerCountOf(*fountain) == kMaxMarkers) return;
  fountain->Markers[fountain->MarkerCount++] = MakeMarker(position, *colour);
  SortMarkers(*fountain);
  Changed(dialog, id, *fountain);
}

void DeleteMarker(Dialog& dialog, int id, int index) {
  int trouble = 0;
  if (const auto fountain = LockFountain(dialog, id); !fountain) {
    return;
  } else if (fountain->MarkerCount == 0) {
    trouble = kTextMarkerNotDeleted;
  } else if (!RemoveMarker(*fountain, index)) {
    trouble = kTextInternalError;
  } else {
    Changed(dialog, id, *fountain);
  }
  if (trouble) ShowMessage(&dialog, LoadText(trouble));
}

void AdjustMarkerPosition(Dialog& dialog, int id, int index) {
  const auto copy = CopyOf(dialog, id);
  if (!copy || index < 0 || index >= MarkerCountOf(*copy)) return;
  const FountainSpec& before = *copy;
  const auto place = [&](std::optional<int> wanted) {
    const auto fountain = LockFountain(dialog, id);
    if (!fountain) return;
    std::memcpy(fountain->Markers, before.Markers, sizeof before.Markers);
    if (wanted) {
      fountain->Markers[index] = MakeMarker(std::clamp(*wanted, 0, 255), before.Markers[index]);
      SortMarkers(*fountain);
    }
    Changed(dialog, id, *fountain);
  };
  const int old = MarkerPosition(before.Markers[index]);
  std::optional<int> position;
  if (Windows().askPosition) {
    bool moved = false;
    const auto show = [&](int wanted) {
      moved = true;
      place(wanted);
    };
    position = Windows().askPosition(dialog, old, show);
    if (!position && moved) place({});
  } else if (const auto text = AskName(&dialog, LoadText(kTextAdjustPosition), std::to_string(old)); text) {
    position = std::atoi(text->c_str());
  }
  if (position) place(position);
}

// The position of a menu: in the control, or at the pointer.
struct MenuPlace {
  bool atPointer = true;
  int x = 0, y = 0;
};
int ChooseFrom(Dialog& dialog, int id, MenuPlace place, std::span<const MenuItem> items) {
  return PopupMenu(&dialog, place.atPointer ? 0 : id, place.x, place.y, items);
}

void MarkerMenu(Dialog& dialog, int id, int index, MenuPlace place = {}) {
  const MenuItem items[] = {{kDeleteMarker, LoadText(kTextDeleteMarker), false},
                            {kChangeColour, LoadText(kTextChangeColour), false},
                            {kAdjustPosition, LoadText(kTextAdjustPosition), false}};
  switch (ChooseFrom(dialog, id, place, items)) {
    case kDeleteMarker:
      return DeleteMarker(dialog, id, index);
    case kChangeColour:
      return ChangeColour(dialog, id, index);
    case kAdjustPosition:
      return AdjustMarkerPosition(dialog, id, index);
  }
}

// The control keeps its own flags and name.
void ManageLibrary(Dialog& dialog, int id) {
  auto chosen = CopyOf(dialog, id);
  if (!chosen || !Windows().manageLibrary || !Windows().manageLibrary(dialog, *chosen)) return;
  const auto fountain = LockFountain(dialog, id);
  if (!fountain) return;
  fountain->MarkerCount = chosen->MarkerCount;
  fountain->StartColour = chosen->StartColour;
  fountain->EndColour = chosen->EndColour;
  std::memcpy(fountain->Markers, chosen->Markers, sizeof chosen->Markers);
  Changed(dialog, id, *fountain);
}

void BarMenu(Dialog& dialog, int id, MenuPlace place = {}) {
  const MenuItem items[] = {{kAddToLibrary, LoadText(kTextAddToLibrary), false},
                            {kManageLibrary, LoadText(kTextManageLibrary), false}};
  const int chosen = ChooseFrom(dialog, id, place, items);
  if (chosen == kManageLibrary) return ManageLibrary(dialog, id);
  if (chosen != kAddToLibrary) return;
  const auto fountain = CopyOf(dialog, id);
  if (!fountain ||
      !AddToFountainLibrary(FountainLibraryPath(), FountainLibraryPathToWrite(), *fountain, CurrentTime())) {
    ShowMessage(&dialog, LoadText(kTextFountainNotAdded));
  }
}

// The mouse -----------------------------------------------------------------------------------------------------------

FountainHit HitAt(const Dialog& dialog, int id, const FountainSpec& fountain, const Message& message) {
  const Extent extent = ExtentOf(dialog, id);
  return HitFountain(fountain, extent.width, extent.height, static_cast<int>(message.a), static_cast<int>(message.b));
}

// Moves a marker to a free position other than 0, which would sort it to the end of the table, and updates `index`.
bool MoveMarker(Dialog& dialog, int id, FountainSpec& fountain, int& index, int wanted) {
  if (index < 0 || index >= MarkerCountOf(fountain)) return false;
  const int position = std::clamp(wanted, 1, 255);
  for (int i = 0; i < MarkerCountOf(fountain); ++i) {
    if (MarkerPosition(fountain.Markers[i]) == position) return false;
  }
  const std::uint32_t marker = MakeMarker(position, fountain.Markers[index]);
  fountain.Markers[index] = marker;
  SortMarkers(fountain);
  for (int i = 0; i < MarkerCountOf(fountain); ++i) {
    if (fountain.Markers[i] == marker) index = i;
  }
  Changed(dialog, id, fountain);
  return true;
}

void Drag(Dialog& dialog, int id, int x) {
  const auto fountain = LockFountain(dialog, id);
  if (!fountain) return;
  const Extent extent = ExtentOf(dialog, id);
  const Rect bar = FountainBar(extent.width, extent.height);
  const int position = (x - bar.left) * 255 / std::max(bar.Width(), 1);
  if (MoveMarker(dialog, id, *fountain, Input().draggedMarker, position)) Input().chosenHandle = Input().draggedMarker;
}

void LeftUp(Dialog& dialog, int id, const Message& message) {
  if (!HasCapture(dialog, id)) return;
  ReleaseMouse(dialog);
  const int marker = Input().draggedMarker, y = static_cast<int>(message.b);
  Input().draggedMarker = -1;
  // The dialog has been notified at each step of the drag.
  if (marker >= 0 && (y < -kPullOff || y >= ExtentOf(dialog, id).height + kPullOff)) DeleteMarker(dialog, id, marker);
}

// The keyboard --------------------------------------------------------------------------------------------------------

// Handles from left to right: the start, the markers, the end.
int PlaceOfHandle(const FountainSpec& fountain, int handle) {
  return handle == kStartHandle ? 0 : handle == kEndHandle ? MarkerCountOf(fountain) + 1 : handle + 1;
}
int HandleAtPlace(const FountainSpec& fountain, int place) {
  return place <= 0 ? kStartHandle : place > MarkerCountOf(fountain) ? kEndHandle : place - 1;
}
int PositionOfHandle(const FountainSpec& fountain, int handle) {
  return handle == kStartHandle ? 0 : handle == kEndHandle ? 255 : MarkerPosition(fountain.Markers[handle]);
}

// Markers may have been deleted since.
int ChosenHandle(const FountainSpec& fountain) {
  return Input().chosenHandle < MarkerCountOf(fountain) ? Input().chosenHandle : kEndHandle;
}

// Skips other markers to the next free position.
void StepMarker(Dialog& dialog, int id, int step) {
  const auto fountain = LockFountain(dialog, id);
  if (!fountain) return;
  const int from = PositionOfHandle(*fountain, Input().chosenHandle);
  for (int position = from + step; position >= 1 && position <= 255; position += step) {
    if (MoveMarker(dialog, id, *fountain, Input().chosenHandle, position)) return;
  }
}

// Halfway between the chosen handle and its neighbour.
void AddBeside(Dialog& dialog, int id, const FountainSpec& fountain) {
  const int place = std::min(PlaceOfHandle(fountain, Input().chosenHandle), MarkerCountOf(fountain));
  const int from = PositionOfHandle(fountain, HandleAtPlace(fountain, place));
  const int to = PositionOfHandle(fountain, HandleAtPlace(fountain, place + 1));
  AddMarker(dialog, id, (from + to) / 2);
}

// Left and right choose a handle; up and down move it.
bool PressFountainKey(Dialog& dialog, int id, const FountainSpec& fountain, int key) {
  Input().chosenHandle = ChosenHandle(fountain);
  const int place = PlaceOfHandle(fountain, Input().chosenHandle);
  const Extent extent = ExtentOf(dialog, id);
  const Rect bar = FountainBar(extent.width, extent.height);
  const MenuPlace menu{false, bar.left + PositionOfHandle(fountain, Input().chosenHandle) * bar.Width() / 255,
                       bar.bottom};
  switch (key) {
    case kKeyLeft:
    case kKeyRight:
      Input().chosenHandle = HandleAtPlace(fountain, place + (key == kKeyLeft ? -1 : 1));
      Invalidate(dialog, id);
      return true;
    case kKeyUp:
    case kKeyDown:
      StepMarker(dialog, id, key == kKeyUp ? 1 : -1);
      return true;
    case kKeySpace:
      return ChangeColour(dialog, id, Input().chosenHandle), true;
    case kKeyInsert:
      return AddBeside(dialog, id, fountain), true;
    case kKeyDelete:
      if (Input().chosenHandle >= 0) DeleteMarker(dialog, id, Input().chosenHandle);
      return true;
    case kKeyF2:
      Input().chosenHandle >= 0 ? AdjustMarkerPosition(dialog, id, Input().chosenHandle)
                                : ChangeColour(dialog, id, Input().chosenHandle);
      return true;
    case kKeyMenu:
      Input().chosenHandle >= 0 ? MarkerMenu(dialog, id, Input().chosenHandle, menu) : BarMenu(dialog, id, menu);
      return true;
    default:
      return false;
  }
}

std::int64_t InputFountain(Dialog& dialog, int id, const Message& message) {
  if (message.number == kMessageInitialiseFountain) {
    InitialiseFountain(dialog, id, message.a == kFountainOfOwnFile, PointerOf<const FountainSpec>(message.b));
    return Invalidate(dialog, id), true;
  }
  const auto fountain = CopyOf(dialog, id);
  if (!fountain) return false;
  const FountainHit hit = HitAt(dialog, id, *fountain, message);
  const auto argument = static_cast<int>(static_cast<std::int64_t>(message.a));
  // During a drag a key or the right button could delete the dragged marker.
  const bool dragging = HasCapture(dialog, id);
  if (dragging && (message.number == kMessageKeyDown || message.number == kMessageRightUp)) return true;
  switch (message.number) {
    case kMessageLeftDown:
      Input().draggedMarker = hit.part == FountainHit::Handle ? hit.index : -1;
      if (hit.part == FountainHit::Handle) Input().chosenHandle = hit.index;
      if (Input().draggedMarker >= 0) CaptureMouse(dialog, id);
      return true;
    case kMessageMouseMove:
      if (dragging) Drag(dialog, id, argument);
      return true;
    case kMessageLeftUp:
      return LeftUp(dialog, id, message), true;
    case kMessageKeyDown:
      return PressFountainKey(dialog, id, *fountain, argument);
    case kMessageCaptureLost:  // the marker stays where it was dragged; the dialog has been notified at each step
      Input().draggedMarker = -1;
      return true;
    case kMessageDoubleClick:
      if (hit.part == FountainHit::Handle) ChangeColour(dialog, id, hit.index);
      if (hit.part == FountainHit::Bar) AddMarker(dialog, id, hit.position);
      return true;
    case kMessageRightUp:
      if (hit.part != FountainHit::Handle) {
        BarMenu(dialog, id);
      } else if (hit.index < 0) {
        ChangeColour(dialog, id, hit.index);
      } else if (IsShiftDown()) {
        DeleteMarker(dialog, id, hit.index);
      } else {
        MarkerMenu(dialog, id, hit.index);
      }
      return true;
    case kMessageFountainColour:
      return ChangeColour(dialog, id, argument), true;
    case kMessageFountainAdd:
      return AddMarker(dialog, id, argument), true;
    case kMessageFountainDelete:
      return DeleteMarker(dialog, id, argument), true;
    case kMessageFountainPosition:
      return AdjustMarkerPosition(dialog, id, argument), true;
    case kMessageMarkerMenu:
      return MarkerMenu(dialog, id, argument), true;
    case kMessageBarMenu:
      return BarMenu(dialog, id), true;
    default:
      return false;
  }
}

void PaintFountain(Dialog& dialog, int id, const DrawRequest& request) {
  const auto fountain = LockFountain(dialog, id);
  if (!fountain) return;
  FountainLook look{IsEnabled(dialog, id), std::nullopt};
  if (look.enabled && FocusOf(dialog) == id) look.chosen = ChosenHandle(*fountain);
  PaintFountainFace(request, *fountain, look);
}

}  // namespace

const ControlFamily kFountainFamily = {"FOUNTB", SaveLine,      LoadLine,      nullptr,
                                       nullptr,  PaintFountain, InputFountain, DestroyFountain};

void SetFountainWindows(const FountainWindows& windows) { Windows() = windows; }

LockedBlock<FountainSpec> LockFountain(const Dialog& dialog, int id) noexcept {
  return LockedBlock<FountainSpec>(HandleOf(GetData(dialog, id)));
}

std::string FountainPath(int id) {
  char name[32];
  std::snprintf(name, sizeof(name), "Fountain%.5d.mtrl", id);
  return JoinPath(PerControlFolder(), name);
}

std::string FountainLibraryPath() { return LibraryPath(kFountainLibraryName); }
std::string FountainLibraryPathToWrite() { return LibraryPathToWrite(kFountainLibraryName); }

void InitialiseFountain(Dialog& dialog, int id, bool ownFile, const FountainSpec* initial) {
  Input().chosenHandle = kStartHandle;
  ResizeControl(dialog, id, kWidth, kHeight);
  MovableBlock block(AllocateBlock(sizeof(FountainSpec)));
  if (!block) return;
  {
    const LockedBlock<FountainSpec> fountain(block.Handle());
    std::string why;
    const auto bytes = ownFile && !IsShiftDown() ? ReadWholeFile(FountainPath(id), kLargestFile, &why) : std::nullopt;
    if (why == kNoMemoryReason) return;  // a default fountain would be saved over the file
    if (bytes && bytes->size() >= sizeof(FountainSpec) && bytes->starts_with("TESSFOUN")) {
      std::memcpy(fountain.get(), bytes->data(), sizeof(FountainSpec));
    } else if (initial) {
      *fountain = *initial;
    } else {
      DefaultFountain(*fountain, 2);
    }
    fountain->Preview = 0;
    if (GetText(dialog, id).find("FountainButtonLooped") != std::string::npos) fountain->Flags |= kFountainLooped;
    if (ownFile) fountain->Flags |= kFountainKeepsFile;
    RenderPreview(dialog, id, *fountain);
  }
  if (const auto before = LockFountain(dialog, id)) FreePreview(*before);
  FreeBlock(HandleOf(GetData(dialog, id)));
  SetData(dialog, id, WordOf(block.Release()));
}

void DestroyFountain(Dialog& dialog, int id) {
  if (const auto fountain = LockFountain(dialog, id); fountain) {
    FreePreview(*fountain);
    if (fountain->Flags & kFountainKeepsFile) {
      EnsureFolder(PerControlFolder());
      AtomicWriteFile(FountainPath(id), {reinterpret_cast<const char*>(fountain.get()), sizeof(FountainSpec)});
    }
  }
  FreeBlock(HandleOf(GetData(dialog, id)));
  SetData(dialog, id, 0);
}

}  // namespace glyphmotion
