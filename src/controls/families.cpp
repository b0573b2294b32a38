// SPDX-License-Identifier: MIT
#include "controls/families.h"

#include <string_view>

#include "controls/direction_pickers.h"
#include "controls/face_painting.h"
#include "controls/line_values.h"
#include "controls/read_controls.h"
#include "platform/ascii.h"
#include "platform/encoding.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kTextInLine = 4096, kTextInVariable = 260;  // characters

/// The value of a line for this family and control, after the first run of "=" and blanks; false for another's line.
bool TakeApart(const ControlFamily& family, int id, const std::string& line, std::string& value) {
  const std::string_view stem = family.stem;
  if (stem.empty() || line.size() <= kStemLength ||
      !EqualsIgnoringCase(std::string_view(line).substr(0, stem.size()), stem))
    return false;
  const std::size_t equals = line.find('=');
  if (equals == std::string::npos || LeadingNumber(std::string_view(line).substr(kStemLength)) != id) return false;
  const std::size_t start = line.find_first_not_of("= ", equals);
  value = start == std::string::npos ? std::string() : line.substr(start);
  return true;
}

/// Whatever a value holds, it stays within its line.
void SaveLine(Dialog& dialog, int id, const ControlFamily& family, std::string& document) {
  if (!family.save) return;
  std::string value;
  family.save(dialog, id, value);
  BlankLineEnds(value);
  document += family.stem + std::to_string(id) + "=" + value + "\n";
}

bool LoadLine(Dialog& dialog, int id, const ControlFamily& family, const std::string& line) {
  std::string value;
  if (!family.load || !TakeApart(family, id, line, value)) return false;
  family.load(dialog, id, value);
  return true;
}

/// The up-down of an edit stores what the edit holds.
void StoreControl(Dialog& dialog, int id, const ControlFamily& family) {
  if (&family == &kUpDownFamily) {
    SendToControl(dialog, id - kUpDownOffset, {kMessageStoreControl, 0, 0});
  } else if (Variable* variable = VariableOfControl(dialog, id); variable && family.store) {
    family.store(dialog, id, *variable);
  }
}

std::int64_t FamilyProcedure(Dialog& dialog, int id, const Message& message) {
  const auto* family = static_cast<const ControlFamily*>(FamilyOf(dialog, id));
  if (!family) return 0;
  switch (message.number) {
    case kMessageSaveControl:
      SaveLine(dialog, id, *family, *PointerOf<std::string>(message.b));
      return 0;
    case kMessageLoadControl:
      return LoadLine(dialog, id, *family, *PointerOf<const std::string>(message.b));
    case kMessageStoreControl:
      StoreControl(dialog, id, *family);
      return 0;
    case kMessagePaint:
      if (family->paint) family->paint(dialog, id, *PointerOf<const DrawRequest>(message.b));
      return 0;
    case kMessageDestroy:
      if (family->destroy) family->destroy(dialog, id);
      return 0;
    default:
      return family->input ? family->input(dialog, id, message) : 0;
  }
}

bool KeepsBlock(ControlKind kind) {
  return IsPicker(kind) || kind == ControlKind::MaterialButton || kind == ControlKind::FountainButton;
}

std::uint32_t SelectionOrFirst(const Dialog& dialog, int id) {
  const int selection = GetSelection(dialog, id);
  return selection < 0 ? 0 : static_cast<std::uint32_t>(selection);
}

// The rows' functions, a family at a time. A load sets the control, then its variable.

void SaveColour(Dialog& dialog, int id, std::string& line) { line += std::to_string(ReadColour(dialog, id)); }
void LoadColour(Dialog& dialog, int id, const std::string& value) {
  const auto colour = static_cast<std::uint32_t>(LeadingNumber(value));
  SetNumber(dialog, id, colour);
  Invalidate(dialog, id);
  if (Variable* variable = VariableOfControl(dialog, id)) variable->number = colour;
}
void StoreColour(Dialog& dialog, int id, Variable& variable) { variable.number = ReadColour(dialog, id); }
void ShowUnsigned(Dialog& dialog, int id, const Variable& variable) { SetNumber(dialog, id, variable.number); }

/// The colour in a frame of one light and one dark line, so that it parts from any face; greyed when disabled.
void PaintColour(Dialog& dialog, int id, const DrawRequest& request) {
  const bool enabled = IsEnabled(dialog, id);
  const Colour face = GetSystemColour(SystemColour::ButtonFace);
  Rect rect = WholeOf(request);
  const Colour edge = GetSystemColour(enabled ? SystemColour::DarkShadow : SystemColour::ButtonShadow);
  FrameFace(request, rect, edge, edge);
  rect = Shrunk(rect, 1);
  const Colour light = enabled ? GetSystemColour(SystemColour::Highlight) : face;
  FrameFace(request, rect, light, light);
  rect = Shrunk(rect, 1);
  const Colour colour = ReadColour(dialog, id) & 0xFFFFFF;
  FillFace(request, rect, enabled ? colour : Blend(face, colour, 96));
  if (enabled && FocusOf(dialog) == id) DottedFrame(request, Shrunk(rect, 1));
}

void SaveNumber(Dialog& dialog, int id, std::string& line) { line += std::to_string(ReadNumber(dialog, id)); }
void LoadNumber(Dialog& dialog, int id, const std::string& value) {
  const auto number = static_cast<std::uint32_t>(LeadingNumber(value));
  SetNumber(dialog, id, number);
  if (Variable* variable = VariableOfControl(dialog, id)) variable->number = number;
}
void StoreNumber(Dialog& dialog, int id, Variable& variable) {
  variable.number = static_cast<std::uint32_t>(ReadNumber(dialog, id));
}

void LoadSignedNumber(Dialog& dialog, int id, const std::string& value) {
  const std::int32_t number = LeadingNumber(value);
  SetNumber(dialog, id, number);
  if (Variable* variable = VariableOfControl(dialog, id)) variable->text = std::to_string(number);
}
void StoreSignedNumber(Dialog& dialog, int id, Variable& variable) {
  variable.text = std::to_string(ReadNumber(dialog, id));
}
void ShowSignedNumber(Dialog& dialog, int id, const Variable& variable) {
  SetNumber(dialog, id, LeadingNumber(variable.text));
}

void SaveCheck(Dialog& dialog, int id, std::string& line) { line += ReadCheck(dialog, id) ? "1" : "0"; }
void StoreCheck(Dialog& dialog, int id, Variable& variable) { variable.number = GetCheck(dialog, id); }
void LoadCheck(Dialog& dialog, int id, const std::string& value) {
  SetCheck(dialog, id, LeadingNumber(value) != 0);
  if (Variable* variable = VariableOfControl(dialog, id)) StoreCheck(dialog, id, *variable);
}
void ShowCheck(Dialog& dialog, int id, const Variable& variable) { SetCheck(dialog, id, variable.number != 0); }

void SaveText(Dialog& dialog, int id, std::string& line) { line += CutCharacters(GetText(dialog, id), kTextInLine); }
void StoreText(Dialog& dialog, int id, Variable& variable) {
  variable.text = CutCharacters(GetText(dialog, id), kTextInVariable);
}
void LoadText(Dialog& dialog, int id, const std::string& value) {
  SetText(dialog, id, value);
  if (Variable* variable = VariableOfControl(dialog, id)) StoreText(dialog, id, *variable);
}
void ShowText(Dialog& dialog, int id, const Variable& variable) { SetText(dialog, id, variable.text); }

void SaveSelection(Dialog& dialog, int id, std::string& line) { line += std::to_string(GetSelection(dialog, id)); }
void StoreSelection(Dialog& dialog, int id, Variable& variable) { variable.number = SelectionOrFirst(dialog, id); }
void LoadSelection(Dialog& dialog, int id, const std::string& value) {
  SetSelection(dialog, id, LeadingNumber(value));
  if (Variable* variable = VariableOfControl(dialog, id)) StoreSelection(dialog, id, *variable);
}
void ShowSelection(Dialog& dialog, int id, const Variable& variable) {
  SetSelection(dialog, id, static_cast<int>(variable.number));
}

/// A document's font is not applied: the font stays what it was, and its variable follows it.
void LoadFont(Dialog& dialog, int id, const std::string&) {
  if (Variable* variable = VariableOfControl(dialog, id)) StoreText(dialog, id, *variable);
}
void ShowFont(Dialog& dialog, int id, const Variable& variable) { SelectText(dialog, id, variable.text); }

}  // namespace

const ControlFamily kColourFamily = {"CLRBTN", SaveColour, LoadColour, StoreColour, ShowUnsigned, PaintColour, nullptr};
const ControlFamily kNumberFamily = {"SPNBTN", SaveNumber, LoadNumber, StoreNumber, ShowUnsigned, nullptr, nullptr};
const ControlFamily kSignedNumberFamily = {"SPNSGN",         SaveNumber, LoadSignedNumber, StoreSignedNumber,
                                           ShowSignedNumber, nullptr,    nullptr};
const ControlFamily kUpDownFamily = {"", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};
const ControlFamily kCheckFamily = {"CHKBOX", SaveCheck, LoadCheck, StoreCheck, ShowCheck, nullptr, nullptr};
const ControlFamily kTextFamily = {"TXTFLD", SaveText, LoadText, StoreText, ShowText, nullptr, nullptr};
const ControlFamily kSelectionFamily = {"CMBBOX",      SaveSelection, LoadSelection, StoreSelection,
                                        ShowSelection, nullptr,       nullptr};
const ControlFamily kFontFamily = {"FNTBOX", SaveText, LoadFont, StoreText, ShowFont, nullptr, nullptr};

void InstallFamily(Dialog& dialog, int id, const ControlFamily& family, Variable* variable) {
  SetControlProcedure(dialog, id, FamilyProcedure, &family);
  const ControlKind kind = KindOf(dialog, id);
  if (IsPicker(kind)) {
    AttachPicker(dialog, id, variable);
  } else if (!KeepsBlock(kind)) {
    SetData(dialog, id, reinterpret_cast<std::uintptr_t>(variable));
  }
  if (variable && family.show) family.show(dialog, id, *variable);
}

Variable* VariableOfControl(const Dialog& dialog, int id) noexcept {
  if (!FamilyOf(dialog, id)) return nullptr;
  const ControlKind kind = KindOf(dialog, id);
  if (IsPicker(kind)) return VariableOfPicker(dialog, id);
  return KeepsBlock(kind) ? nullptr : reinterpret_cast<Variable*>(GetData(dialog, id));
}

}  // namespace glyphmotion
