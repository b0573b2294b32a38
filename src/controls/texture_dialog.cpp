// SPDX-License-Identifier: MIT
// The window of the texture editor. Every change goes into the editor's copy at once. The picture is redrawn when the
// user pauses for as long as the last redraw took, so that typing and dragging stay smooth. A change also goes into the
// selected entry, unless the group is protected. In a protected group a changed texture deselects its entry; selecting
// the entry again restores it.
#include "controls/texture_dialog.h"

#include <algorithm>
#include <chrono>
#include <vector>

#include "controls/colour_curve.h"
#include "controls/editor_services.h"
#include "controls/face_painting.h"
#include "controls/families.h"
#include "controls/library_editor.h"
#include "controls/read_controls.h"
#include "controls/skin.h"
#include "controls/texture_preview.h"
#include "platform/shell_ui.h"
#include "resources/strings.h"
#include "resources/templates.h"
#include "resources/texture_controls.h"

namespace glyphmotion {
namespace {

using namespace TextureControl;

constexpr int kPreviewTimer = 1, kShortestPause = 10, kLongestPause = 400;  // milliseconds
constexpr int kNumberLimit = 11;                                            // characters, for 32-bit numbers
constexpr int kEdge = 2;
constexpr int kMenuRename = 100;
constexpr const char* kHelpTopic = "TEXTURE";
constexpr float kFineStep = 0.01f, kCoarseStep = 0.1f;

struct TextureDialog {
  TextureEditor editor;
  PackedDib picture;
  int pause = kShortestPause;
  bool filling = false;             // the program, not the user, is changing the controls
  int currentPoint[3] = {1, 1, 1};  // of the curves
};

/// The dialog's state, stored as the user data of its picture; null before the dialog is initialised.
TextureDialog* StateOf(const Dialog& dialog) {
  return PointerOf<TextureDialog>(static_cast<std::int64_t>(GetData(dialog, Preview)));
}

bool IsParameter(int id) { return id >= FirstParameter && id <= LastParameter; }
bool IsCurve(int id) { return id >= RedCurve && id <= BlueCurve; }

// --- The picture ---

void RenderPicture(Dialog& dialog, TextureDialog& state) {
  using Clock = std::chrono::steady_clock;
  const ControlRectangle place = RectangleOf(dialog, Preview);
  const auto start = Clock::now();
  state.picture = TextureToBitmap(state.editor.parameters, place.right - place.left - 2 * kEdge,
                                  place.bottom - place.top - 2 * kEdge);
  const auto taken = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
  state.pause = static_cast<int>(std::clamp<std::int64_t>(taken, kShortestPause, kLongestPause));
  Invalidate(dialog, Preview);
}

void RenderPictureSoon(Dialog& dialog, const TextureDialog& state) { SetTimer(dialog, kPreviewTimer, state.pause); }

void PaintPicture(const TextureDialog& state, const DrawRequest& request) {
  const Rect whole = WholeOf(request);
  PaintButtonFace(request, whole, true, GetSystemColour(SystemColour::ButtonFace));
  PaintBitmap(request, Shrunk(whole, kEdge), DibView(state.picture));
}

// --- From the texture to the controls ---

void SetTextIfOther(Dialog& dialog, int id, const std::string& text) {
  if (GetText(dialog, id) != text) SetText(dialog, id, text);
}

void ShowParameter(Dialog& dialog, const TextureSpec& parameters, int id) {
  const auto value = TextureControlValue(parameters, id);
  if (value && id == BubbleShape) {
    SetSelection(dialog, id, static_cast<int>(std::min<std::int64_t>(*value, ItemCount(dialog, id))));
  } else if (value) {
    SetTextIfOther(dialog, id, std::to_string(*value));
  }
  if (!value || KindOf(dialog, id) == ControlKind::ColourButton) Invalidate(dialog, id);
}

void ShowControlsOfType(Dialog& dialog, std::uint32_t type) {
  const auto shown = TextureControls(type);
  for (int id = FirstParameter; id <= LastParameter; ++id) {
    const bool visible = std::find(shown.begin(), shown.end(), id) != shown.end();
    for (const int part : {id, id + LabelOffset, id + kUpDownOffset}) Show(dialog, part, visible);
  }
}

void ShowTexture(Dialog& dialog, TextureDialog& state) {
  const TextureSpec& parameters = state.editor.parameters;
  state.filling = true;
  for (int id = FirstParameter; id <= LastParameter; ++id) ShowParameter(dialog, parameters, id);
  state.filling = false;
  SetSelection(dialog, Types, parameters.TextureType < kTextureTypes ? static_cast<int>(parameters.TextureType) : -1);
  ShowControlsOfType(dialog, parameters.TextureType);
  RenderPictureSoon(dialog, state);
}

void ShowGroup(Dialog& dialog, const TextureDialog& state, int selected) {
  ClearItems(dialog, List);
  std::vector<std::string> names;
  for (const NamedTexture& texture : state.editor.group.textures) names.push_back(texture.name);
  AddItems(dialog, List, names);
  SetSelection(dialog, List, selected);
}

void ShowGroups(Dialog& dialog, const TextureDialog& state) {
  ClearItems(dialog, Group);
  AddItems(dialog, Group, TextureGroups());
  SelectText(dialog, Group, TextureGroup(state.editor));
}

// --- Changes ---

void Changed(Dialog& dialog, TextureDialog& state) {
  if (!KeepTexture(state.editor, GetSelection(dialog, List))) SetSelection(dialog, List, -1);
  RenderPictureSoon(dialog, state);
}

void OnColour(Dialog& dialog, TextureDialog& state, int id) {
  const auto colour = AskColour(&dialog, ReadColour(dialog, id) & 0xFFFFFF);
  if (!colour) return;
  SetTextureControl(state.editor.parameters, id, *colour & 0xFFFFFF);
  ShowParameter(dialog, state.editor.parameters, id);
  Changed(dialog, state);
}

void OnParameter(Dialog& dialog, TextureDialog& state, int id, int code) {
  switch (KindOf(dialog, id)) {
    case ControlKind::ColourButton:
      return OnColour(dialog, state, id);
    case ControlKind::NumberEdit:
      if (code == kEditLeft) return ShowParameter(dialog, state.editor.parameters, id);
      if (code != kEditChanged) return;
      SetTextureControl(state.editor.parameters, id, ReadNumber(dialog, id));
      return Changed(dialog, state);
    case ControlKind::Combo:
      if (code != kSelectionChanged) return;
      SetTextureControl(state.editor.parameters, id, std::max(GetSelection(dialog, id), 0));
      return Changed(dialog, state);
    default:
      return;
  }
}

void OnType(Dialog& dialog, TextureDialog& state) {
  const auto type = static_cast<std::uint32_t>(std::max(GetSelection(dialog, Types), 0));
  if (type == state.editor.parameters.TextureType) return;
  state.editor.parameters.TextureType = type;
  ShowControlsOfType(dialog, type);
  Changed(dialog, state);
}

// --- The curves ---

void MovePoint(Dialog& dialog, TextureDialog& state, int id, int point, float value) {
  SetTextureCurveValue(state.editor.parameters, id, point, std::clamp(value, 0.0f, 1.0f));
  Invalidate(dialog, id);
  Changed(dialog, state);
}

void OnCurveKey(Dialog& dialog, TextureDialog& state, int id, int key) {
  if (HasCapture(dialog, id)) return;  // the pointer is dragging the point
  int& point = state.currentPoint[id - RedCurve];
  const float value = TextureCurveValues(state.editor.parameters, id)[static_cast<std::size_t>(point)];
  const float step = IsShiftDown() ? kCoarseStep : kFineStep;
  switch (key) {
    case kKeyLeft:
    case kKeyRight:
      point = std::clamp(point + (key == kKeyLeft ? -1 : 1), 0, kCurvePoints - 1);
      return Invalidate(dialog, id);
    case kKeyUp:
      return MovePoint(dialog, state, id, point, value + step);
    case kKeyDown:
      return MovePoint(dialog, state, id, point, value - step);
  }
}

// A press moves the nearest point to the pointer's height; a double click resets it to the straight line.
void OnCurveMouse(Dialog& dialog, TextureDialog& state, int id, const Message& message) {
  const ControlRectangle place = RectangleOf(dialog, id);
  int& point = state.currentPoint[id - RedCurve];
  const float value = CurveValueAt(place.bottom - place.top, static_cast<int>(message.b));
  switch (message.number) {
    case kMessageLeftDown:
      CaptureMouse(dialog, id);
      point = CurvePointAt(place.right - place.left, static_cast<int>(message.a));
      return MovePoint(dialog, state, id, point, value);
    case kMessageMouseMove:
      if (HasCapture(dialog, id)) MovePoint(dialog, state, id, point, value);
      return;
    case kMessageLeftUp:
      if (HasCapture(dialog, id)) ReleaseMouse(dialog);
      return;
    case kMessageDoubleClick: {
      TextureSpec defaults;
      DefaultTextureSpec(defaults);
      return MovePoint(dialog, state, id, point, TextureCurveValues(defaults, id)[static_cast<std::size_t>(point)]);
    }
  }
}

void PaintCurve(const TextureDialog& state, int id, const DrawRequest& request) {
  static constexpr Colour colours[] = {MakeColour(208, 0, 0), MakeColour(0, 144, 0), MakeColour(0, 0, 208)};
  const auto values = TextureCurveValues(state.editor.parameters, id);
  const float points[kCurvePoints] = {values[0], values[1], values[2], values[3]};
  PaintColourCurve(request, points, colours[id - RedCurve], state.currentPoint[id - RedCurve]);
}

std::int64_t CurveProcedure(Dialog& dialog, int id, const Message& message) {
  TextureDialog* state = StateOf(dialog);
  if (!state || !IsCurve(id)) return 0;
  switch (message.number) {
    case kMessagePaint:
      PaintCurve(*state, id, *PointerOf<const DrawRequest>(message.b));
      return 0;
    case kMessageKeyDown:
      OnCurveKey(dialog, *state, id, static_cast<int>(message.a));
      return 1;
    default:
      OnCurveMouse(dialog, *state, id, message);
      return 0;
  }
}

// --- The group ---

void OnSelect(Dialog& dialog, TextureDialog& state) {
  if (SelectTexture(state.editor, GetSelection(dialog, List))) ShowTexture(dialog, state);
}

void OnRename(Dialog& dialog, TextureDialog& state) {
  const int selected = GetSelection(dialog, List);
  if (RenameTexture(&dialog, state.editor, selected)) ShowGroup(dialog, state, selected);
}

void OnGroup(Dialog& dialog, TextureDialog& state) {
  const std::string name = GetText(dialog, Group);
  if (ChooseTextureGroup(&dialog, state.editor, name)) {
    ShowGroup(dialog, state, FindTexture(state.editor));
  } else {
    SelectText(dialog, Group, TextureGroup(state.editor));
  }
}

void OnAdd(Dialog& dialog, TextureDialog& state, bool shift) {
  if (!AddTexture(&dialog, state.editor, shift)) return;
  if (shift) return ShowGroups(dialog, state);
  ShowGroup(dialog, state, static_cast<int>(state.editor.group.textures.size()) - 1);
}

void OnDelete(Dialog& dialog, TextureDialog& state, bool shift) {
  const int selected = GetSelection(dialog, List);
  if (!DeleteTexture(&dialog, state.editor, selected, shift)) return;
  if (shift) {
    ShowGroups(dialog, state);
    return ShowGroup(dialog, state, FindTexture(state.editor));
  }
  ShowGroup(dialog, state, std::min(selected, static_cast<int>(state.editor.group.textures.size()) - 1));
  OnSelect(dialog, state);
}

void OnItemMenu(Dialog& dialog, bool byKey) {
  const MenuItem items[] = {{kMenuRename, LoadText(kTextMenuRename), false},
                            {Delete, LoadText(kTextMenuDelete), false}};
  if (const int chosen = PopupItemMenu(dialog, List, byKey, items)) PostCommand(dialog, chosen);
}

void OnList(Dialog& dialog, TextureDialog& state, int code) {
  switch (code) {
    case kSelectionChanged:
      return OnSelect(dialog, state);
    case kDoubleClicked:
    case kRenamePressed:
      return OnRename(dialog, state);
    case kItemMenu:
    case kItemMenuByKey:
      return OnItemMenu(dialog, code == kItemMenuByKey);
    case kDeletePressed:
      return OnDelete(dialog, state, false);
  }
}

// --- The dialog ---

void Initialise(Dialog& dialog, TextureDialog& state) {
  SetData(dialog, Preview, static_cast<std::uint64_t>(PointerArgument(&state)));
  for (const ControlTemplate& control : kTextureDialogTemplate.controls) {
    if (control.kind == ControlKind::ColourButton) InstallFamily(dialog, control.id, kColourFamily, nullptr);
    if (control.kind == ControlKind::Drawn) {
      SetControlProcedure(dialog, control.id, CurveProcedure, nullptr);
      PaintInScreenPixels(dialog, control.id);
    }
    if (control.kind == ControlKind::NumberEdit) LimitText(dialog, control.id, kNumberLimit);
  }
  for (int type = 0; type < kTextureTypes; ++type) AddItem(dialog, Types, LoadText(kTextFirstTextureType + type));
  TextureSpec parameters = state.editor.parameters;
  OpenTextureEditor(&dialog, state.editor, parameters);
  ShowGroups(dialog, state);
  ShowGroup(dialog, state, FindTexture(state.editor));
  ShowTexture(dialog, state);
  RenderPicture(dialog, state);
  SetFocus(dialog, List);
}

void OnOk(Dialog& dialog, TextureDialog& state) {
  if (!SaveTextureGroups(state.editor)) ShowMessage(&dialog, LoadText(kTextDocumentNotCreated));
  EndDialog(dialog, 1);
}

void OnCommand(Dialog& dialog, TextureDialog& state, int id, int code) {
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
    case Types:
      if (code == kSelectionChanged) OnType(dialog, state);
      return;
    case Add:
      return OnAdd(dialog, state, IsShiftDown());
    case Delete:
      return OnDelete(dialog, state, IsShiftDown());
    case ShowPreview:
      return ShowTexturePreview(state.editor.parameters);
    case kMenuRename:
      return OnRename(dialog, state);
    default:
      if (IsParameter(id) && !state.filling) OnParameter(dialog, state, id, code);
  }
}

std::int64_t TextureProcedure(Dialog& dialog, const Message& message) {
  if (HandleSkin(dialog, message)) return 1;
  if (message.number == kMessageInitialise) return Initialise(dialog, *PointerOf<TextureDialog>(message.b)), 0;
  TextureDialog* state = StateOf(dialog);
  if (!state) return 0;
  switch (message.number) {
    case kMessageCommand:
      OnCommand(dialog, *state, static_cast<int>(message.a), static_cast<int>(message.b));
      return 1;
    case kMessageHelp:
      ShowHelpTopic(dialog, kHelpTopic);
      return 1;
    case kMessageDrawItem:
      if (message.a == Preview) PaintPicture(*state, *PointerOf<const DrawRequest>(message.b));
      return 1;
    case kMessageTimer:
      if (message.a != kPreviewTimer) return 0;
      KillTimer(dialog, kPreviewTimer);
      RenderPicture(dialog, *state);
      return 1;
    default:
      return 0;
  }
}

}  // namespace

bool EditTexture(Dialog& owner, TextureSpec& texture) {
  TextureDialog state;
  state.editor.parameters = texture;
  if (!RunEditor(owner, kTextureDialogTemplate, TextureProcedure, &state)) return false;
  texture = state.editor.parameters;
  return true;
}

}  // namespace glyphmotion
