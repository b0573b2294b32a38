// SPDX-License-Identifier: MIT
// The copy being edited is a block in the preview's user data. Every number reaches its field only through its edit's
// text; the trackbar and the preview set edits.
#include "controls/gradient_dialog.h"

#include <algorithm>

#include "controls/editor_services.h"
#include "controls/face_painting.h"
#include "controls/fountain_control.h"
#include "controls/gradient_editor.h"
#include "controls/read_controls.h"
#include "controls/skin.h"
#include "materials/gradient.h"
#include "resources/strings.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

using namespace GradientControl;

// Two rows of two.
constexpr int kTypeButtons[] = {Linear, Conical, Elliptical, Rectangular};
constexpr int kTypeCount = 4, kTypesInRow = 2;
constexpr int kEdits[] = {Midpoint, Rotation, EdgePad, CenterX, CenterY};
constexpr int kDependent[] = {Midpoint, MidpointTrack, Rotation, CenterX, CenterY, StartColour, EndColour, Fountain};
constexpr int kMidpointTicks = 10;
constexpr int kNumberLimit = 5;  // characters
constexpr int kIconMargin = 7;
constexpr Colour kIconStart = 0x404040, kIconEnd = 0xFFFFFF;

LockedBlock<GradientBlock> LockGradient(const Dialog& dialog) {
  return LockedBlock<GradientBlock>(HandleOf(GetData(dialog, Preview)));
}

// --- Showing changes ---

void EnableField(Dialog& dialog, int id, bool enabled) {
  Enable(dialog, id, enabled);
  Enable(dialog, id + kUpDownOffset, enabled);
  Enable(dialog, id + LabelOffset, enabled);
}

void ShowChange(Dialog& dialog, const GradientSpec& gradient) {
  for (const int id : kDependent) EnableField(dialog, id, IsGradientControlUsed(gradient, id));
  Invalidate(dialog, Preview);
}

void ShowType(Dialog& dialog, const GradientSpec& gradient) {
  const int current = TypeButtonOf(gradient);
  for (const int id : kTypeButtons) {
    SetTabStop(dialog, id, id == current);
    Invalidate(dialog, id);
  }
  SetText(dialog, Hint, LoadText(current == Linear ? kTextDragTurns : kTextDragMovesCenter));
  ShowChange(dialog, gradient);
}

void ShowColour(Dialog& dialog, int id, Colour colour) {
  SetNumber(dialog, id, colour & 0xFFFFFF);
  Invalidate(dialog, id);
}

// --- Numbers ---

// The user may be about to type digits: an empty field or a lone minus is kept.
bool IsBeginning(const std::string& text) { return text.empty() || text == "-"; }

void OnEdit(Dialog& dialog, int id) {
  const auto block = LockGradient(dialog);
  const auto number = LimitGradientNumber(id, GetNumber(dialog, id, true));
  if (!block || !number) return;
  const std::string text = GetText(dialog, id);
  if (!IsBeginning(text) && text != std::to_string(*number)) return SetNumber(dialog, id, *number);  // recurses once
  if (number == GradientNumber(block->gradient, id)) return;
  if (id == Midpoint) return Post(dialog, {kMessageSetMidpoint, 0, *number});
  SetGradientNumber(block->gradient, id, *number);
  ShowChange(dialog, block->gradient);
}

void SetEdit(Dialog& dialog, int id, std::optional<std::int32_t> number) {
  if (number && GetText(dialog, id) != std::to_string(*number)) SetNumber(dialog, id, *number);
}

/// A field that loses the focus while incomplete shows the value in use.
void OnEditLeft(Dialog& dialog, int id) {
  if (const auto block = LockGradient(dialog)) SetEdit(dialog, id, GradientNumber(block->gradient, id));
}

void OnMidpoint(Dialog& dialog, std::int64_t value) {
  const auto block = LockGradient(dialog);
  if (!block) return;
  SetGradientNumber(block->gradient, Midpoint, value);
  const auto midpoint = GradientNumber(block->gradient, Midpoint);
  if (!IsBeginning(GetText(dialog, Midpoint))) SetEdit(dialog, Midpoint, midpoint);
  SetEdit(dialog, MidpointTrack, midpoint);
  ShowChange(dialog, block->gradient);
}

void OnTrack(Dialog& dialog) {
  SetEdit(dialog, Midpoint, LimitGradientNumber(MidpointTrack, GetNumber(dialog, MidpointTrack, false)));
}

// --- Buttons ---

void OnPress(Dialog& dialog, int id) {
  const auto block = LockGradient(dialog);
  if (block && PressGradientButton(block->gradient, id)) ShowType(dialog, block->gradient);
}

void OnColour(Dialog& dialog, int id) {
  const auto block = LockGradient(dialog);
  if (!block) return;
  const auto colour = AskColour(&dialog, id == StartColour ? block->gradient.StartColour : block->gradient.EndColour);
  if (!colour) return;
  if (id == StartColour) {
    block->gradient.StartColour = *colour;
  } else {
    block->gradient.EndColour = *colour;
  }
  ShowColour(dialog, id, *colour);
  ShowChange(dialog, block->gradient);
}

void OnFountain(Dialog& dialog) {
  const auto block = LockGradient(dialog);
  const auto fountain = LockFountain(dialog, Fountain);
  if (!block || !fountain) return;
  block->fountain = *fountain;
  block->fountain.Preview = 0;  // belongs to the control
  ShowChange(dialog, block->gradient);
}

// --- The type buttons: a small gradient of the shape, and its name ---

void PaintTypeButton(Dialog& dialog, int id, const DrawRequest& request) {
  const auto block = LockGradient(dialog);
  const bool pressed = block && TypeButtonOf(block->gradient) == id;
  const Rect whole = WholeOf(request);
  PaintButtonFace(request, whole, pressed, GetSystemColour(pressed ? SystemColour::Light3D : SystemColour::ButtonFace));
  const int shift = pressed ? 1 : 0, side = request.height - 2 * kIconMargin;
  const Rect icon{kIconMargin + shift, kIconMargin + shift, kIconMargin + shift + side, kIconMargin + shift + side};
  GradientSpec gradient{};
  PressGradientButton(gradient, id);
  gradient.StartColour = kIconStart;
  gradient.EndColour = kIconEnd;
  gradient.Midpoint = 50;
  gradient.TwoColor = 1;
  const Colour edge = GetSystemColour(SystemColour::DarkShadow);
  FrameFace(request, icon, edge, edge);
  PaintBitmap(request, Shrunk(icon, 1), DibView(RenderGradient(side - 2, side - 2, gradient, {})));
  const Rect text{icon.right + kIconMargin, shift, request.width - 2, request.height + shift};
  PaintText(request, text, GetText(dialog, id), GetSystemColour(SystemColour::ButtonText));
}

// Arrow keys move through the two rows and select the button they reach.
void OnTypeKey(Dialog& dialog, int id, int key) {
  const auto at = static_cast<int>(std::find(std::begin(kTypeButtons), std::end(kTypeButtons), id) - kTypeButtons);
  const int step = key == kKeyLeft    ? -1
                   : key == kKeyRight ? 1
                   : key == kKeyUp    ? -kTypesInRow
                   : key == kKeyDown  ? kTypesInRow
                                      : 0;
  if (!step && key != kKeySpace) return;
  const int to = kTypeButtons[(at + step + kTypeCount) % kTypeCount];
  OnPress(dialog, to);
  SetFocus(dialog, to);
}

std::int64_t TypeButtonProcedure(Dialog& dialog, int id, const Message& message) {
  switch (message.number) {
    case kMessagePaint:
      PaintTypeButton(dialog, id, *PointerOf<const DrawRequest>(message.b));
      return 1;
    case kMessageLeftDown:
    case kMessageDoubleClick:
      OnPress(dialog, id);
      return 1;
    case kMessageKeyDown:
      OnTypeKey(dialog, id, static_cast<int>(message.a));
      return 1;
    default:
      return 0;
  }
}

// --- The preview ---

constexpr int kPreviewFrame = 1, kHandleHalf = 4;

struct Extent {
  int width, height;
};
Extent PictureExtent(const Dialog& dialog) {
  const ControlRectangle place = RectangleOf(dialog, Preview);
  return {place.right - place.left - 2 * kPreviewFrame, place.bottom - place.top - 2 * kPreviewFrame};
}

void PaintPreview(Dialog& dialog, const DrawRequest& request) {
  const Rect whole = WholeOf(request), inner = Shrunk(whole, kPreviewFrame);
  FillFace(request, inner, GetSystemColour(SystemColour::ButtonFace));
  FrameFace(request, whole, GetSystemColour(SystemColour::ButtonShadow), GetSystemColour(SystemColour::Highlight));
  const auto block = LockGradient(dialog);
  if (!block) return;
  const int width = inner.Width(), height = inner.Height();
  PaintBitmap(request, inner, DibView(RenderGradient(width, height, block->gradient, block->fountain)));
  // The handle is visible on any colour and stays inside the picture.
  const PicturePlace place = HandleOfGradient(block->gradient, width, height);
  const int x = inner.left + std::clamp(place.x, kHandleHalf, std::max(width - 1 - kHandleHalf, kHandleHalf));
  const int y = inner.top + std::clamp(place.y, kHandleHalf, std::max(height - 1 - kHandleHalf, kHandleHalf));
  const Rect handle{x - kHandleHalf, y - kHandleHalf, x + kHandleHalf + 1, y + kHandleHalf + 1};
  FrameFace(request, handle, 0, 0);
  FrameFace(request, Shrunk(handle, 1), 0xFFFFFF, 0xFFFFFF);
  FrameFace(request, Shrunk(handle, 2), 0, 0);
}

// The centre, or the start of a linear gradient, follows the pointer.
void DragTo(Dialog& dialog, const Message& message) {
  const auto block = LockGradient(dialog);
  if (!block) return;
  const Extent extent = PictureExtent(dialog);
  const PicturePlace place{static_cast<int>(message.a) - kPreviewFrame, static_cast<int>(message.b) - kPreviewFrame};
  const GradientSpec before = block->gradient;
  const auto set = [&](int id) {
    SetEdit(dialog, id, GradientNumberAt(before, id, extent.width, extent.height, place));
  };
  if (TypeButtonOf(before) == Linear) return set(Rotation);
  set(CenterX);
  set(CenterY);
}

// The handle moves in the direction of the arrow; a linear gradient rotates clockwise or counterclockwise.
void OnPreviewKey(Dialog& dialog, int key) {
  const auto block = LockGradient(dialog);
  if (!block) return;
  const bool back = key == kKeyLeft || key == kKeyUp, across = key == kKeyLeft || key == kKeyRight;
  if (!back && key != kKeyRight && key != kKeyDown) return;
  const int type = TypeButtonOf(block->gradient);
  const int id = type == Linear ? Rotation : across ? CenterX : CenterY;
  const int step = back != (type == Conical && !across) ? -1 : 1;
  SetEdit(dialog, id, LimitGradientNumber(id, *GradientNumber(block->gradient, id) + step));
}

std::int64_t PreviewProcedure(Dialog& dialog, int id, const Message& message) {
  switch (message.number) {
    case kMessagePaint:
      PaintPreview(dialog, *PointerOf<const DrawRequest>(message.b));
      return 1;
    case kMessageLeftDown:
    case kMessageDoubleClick:
      CaptureMouse(dialog, id);
      DragTo(dialog, message);
      return 1;
    case kMessageMouseMove:
      if (HasCapture(dialog, id)) DragTo(dialog, message);
      return 1;
    case kMessageLeftUp:
      if (HasCapture(dialog, id)) ReleaseMouse(dialog);
      return 1;
    case kMessageKeyDown:
      OnPreviewKey(dialog, static_cast<int>(message.a));
      return 1;
    default:
      return 0;
  }
}

// --- The dialog ---

void Initialise(Dialog& dialog, BlockHandle handle) {
  SetData(dialog, Preview, WordOf(handle));
  const auto block = LockGradient(dialog);
  SetControlProcedure(dialog, Preview, PreviewProcedure, nullptr);
  for (const int id : kTypeButtons) SetControlProcedure(dialog, id, TypeButtonProcedure, nullptr);
  for (const int id : {StartColour, EndColour}) InstallFamily(dialog, id, kColourFamily, nullptr);
  InstallFamily(dialog, Fountain, kFountainFamily, nullptr);
  InitialiseFountain(dialog, Fountain, false, &block->fountain);
  if (!GetData(dialog, Fountain)) {
    ShowMessage(&dialog, LoadText(kTextMemoryError));
    return EndDialog(dialog, 0);
  }
  SetRange(dialog, MidpointTrack, *LimitGradientNumber(Midpoint, 0), *LimitGradientNumber(Midpoint, 100));
  SetTicks(dialog, MidpointTrack, kMidpointTicks);
  SetEdit(dialog, MidpointTrack, GradientNumber(block->gradient, MidpointTrack));
  for (const int id : kEdits) {
    LimitText(dialog, id, kNumberLimit);
    SetEdit(dialog, id, GradientNumber(block->gradient, id));
  }
  ShowColour(dialog, StartColour, block->gradient.StartColour);
  ShowColour(dialog, EndColour, block->gradient.EndColour);
  SetCheck(dialog, block->gradient.TwoColor ? TwoColor : MultiColor, true);
  ShowType(dialog, block->gradient);
  SetFocus(dialog, TypeButtonOf(block->gradient));
}

void OnCommand(Dialog& dialog, int id, int code) {
  switch (id) {
    case Ok:
      return EndDialog(dialog, 1);
    case Cancel:
      return EndDialog(dialog, 0);
    case Help:
      return ShowHelpTopic(dialog, "GRADIENT");
    case StartColour:
    case EndColour:
      return OnColour(dialog, id);
    case MidpointTrack:
      return OnTrack(dialog);
    case Midpoint:
    case Rotation:
    case EdgePad:
    case CenterX:
    case CenterY:
      return code == kEditLeft ? OnEditLeft(dialog, id) : OnEdit(dialog, id);
    default:
      return OnPress(dialog, id);
  }
}

std::int64_t GradientProcedure(Dialog& dialog, const Message& message) {
  if (HandleSkin(dialog, message)) return 1;
  switch (message.number) {
    case kMessageInitialise:
      Initialise(dialog, PointerOf<void>(message.b));
      return 1;
    case kMessageCommand:
      OnCommand(dialog, static_cast<int>(message.a), static_cast<int>(message.b));
      return 1;
    case kMessageHelp:
      ShowHelpTopic(dialog, message.a == Fountain ? "FOUNTAIN" : "GRADIENT");
      return 1;
    case kMessageSetMidpoint:
      OnMidpoint(dialog, message.b);
      return 1;
    case kMessageFillChanged:
      OnFountain(dialog);
      return 1;
    default:
      return 0;
  }
}

// --- A marker's position ---

namespace Position {
constexpr int Ok = 1, Cancel = 2, Edit = 100, Track = 101;
constexpr int Most = 255, Ticks = 32;
}  // namespace Position

struct PositionQuestion {
  int position;
  const std::function<void(int)>& show;
};

int PositionIn(const Dialog& dialog, int id) {
  return static_cast<int>(std::clamp<std::int64_t>(GetNumber(dialog, id, true), 0, Position::Most));
}

void InitialisePosition(Dialog& dialog, PositionQuestion& question) {
  SetData(dialog, Position::Track, WordOf(&question));
  LimitText(dialog, Position::Edit, kNumberLimit);
  SetRange(dialog, Position::Track, 0, Position::Most);
  SetTicks(dialog, Position::Track, Position::Ticks);
  SetEdit(dialog, Position::Track, question.position);
  SetEdit(dialog, Position::Edit, question.position);
  SetFocus(dialog, Position::Edit);
}

void OnPosition(Dialog& dialog) {
  auto* question = static_cast<PositionQuestion*>(HandleOf(GetData(dialog, Position::Track)));
  const int position = PositionIn(dialog, Position::Edit);
  const std::string text = GetText(dialog, Position::Edit);
  if (!text.empty() && text != std::to_string(position)) return SetNumber(dialog, Position::Edit, position);
  if (!question || text.empty() || position == question->position) return;
  question->position = position;
  SetEdit(dialog, Position::Track, position);
  if (question->show) question->show(position);
}

void OnPositionLeft(Dialog& dialog) {
  const auto* question = static_cast<PositionQuestion*>(HandleOf(GetData(dialog, Position::Track)));
  if (question) SetEdit(dialog, Position::Edit, question->position);
}

std::int64_t PositionProcedure(Dialog& dialog, const Message& message) {
  if (HandleSkin(dialog, message)) return 1;
  if (message.number == kMessageInitialise) {
    InitialisePosition(dialog, *PointerOf<PositionQuestion>(message.b));
    return 1;
  }
  if (message.number == kMessageHelp) return ShowHelpTopic(dialog, "FOUNTAIN"), 1;
  if (message.number != kMessageCommand) return 0;
  switch (message.a) {
    case Position::Ok:
      EndDialog(dialog, 1);
      return 1;
    case Position::Cancel:
      EndDialog(dialog, 0);
      return 1;
    case Position::Track:
      SetEdit(dialog, Position::Edit, PositionIn(dialog, Position::Track));
      return 1;
    case Position::Edit:
      message.b == kEditLeft ? OnPositionLeft(dialog) : OnPosition(dialog);
      return 1;
    default:
      return 0;
  }
}

}  // namespace

bool EditGradient(Dialog& owner, GradientSpec& gradient, FountainSpec& fountain) {
  const MovableBlock copy(AllocateBlock(sizeof(GradientBlock)));
  if (!copy) {
    ShowMessage(&owner, LoadText(kTextMemoryError));
    return false;
  }
  *LockedBlock<GradientBlock>(copy.Handle()) = {gradient, fountain};
  if (RunModal(kGradientDialogTemplate, owner, GradientProcedure, copy.Handle()) != 1) return false;
  const LockedBlock<GradientBlock> edited(copy.Handle());
  gradient = edited->gradient;
  fountain = edited->fountain;
  return true;
}

std::optional<int> AskMarkerPosition(Dialog& owner, int position, const std::function<void(int)>& show) {
  PositionQuestion question{std::clamp(position, 0, Position::Most), show};
  if (RunModal(kMarkerPositionDialogTemplate, owner, PositionProcedure, &question) != 1) {
    return std::nullopt;
  }
  return question.position;
}

}  // namespace glyphmotion
