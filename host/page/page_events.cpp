// SPDX-License-Identifier: MIT
// What a person does on the page, as what he would do to the dialog. Whatever a page sends, nothing but the dialog's
// own answer can come of it: controls that a person could not reach are not reached.
#include <algorithm>

#include "controls/direction_pickers.h"
#include "controls/fountain_control.h"
#include "controls/material_control.h"
#include "effects/effect_table.h"
#include "host/options/looks.h"
#include "host/options/typed_words.h"
#include "host/page/carried_lines.h"
#include "host/page/event_fields.h"
#include "host/page/page_session.h"
#include "host/render/file_values.h"
#include "materials/fountain.h"
#include "materials/gradient_text.h"
#include "materials/tile.h"
#include "resources/templates.h"
#include "shell/documents.h"

namespace glyphmotion {
namespace {

template <typename Value>
std::optional<Value> Named(const std::string& name, std::initializer_list<std::pair<const char*, Value>> rows) {
  for (const auto& [each, value] : rows) {
    if (name == each) return value;
  }
  return std::nullopt;
}

std::optional<KeyCode> KeyOf(const std::string& name) {
  return Named<KeyCode>(name, {{"left", kKeyLeft},
                               {"right", kKeyRight},
                               {"up", kKeyUp},
                               {"down", kKeyDown},
                               {"space", kKeySpace},
                               {"insert", kKeyInsert},
                               {"delete", kKeyDelete},
                               {"menu", kKeyMenu}});
}

std::optional<MessageNumber> MouseOf(const std::string& name) {
  return Named<MessageNumber>(name, {{"down", kMessageLeftDown},
                                     {"move", kMessageMouseMove},
                                     {"up", kMessageLeftUp},
                                     {"double", kMessageDoubleClick},
                                     {"right", kMessageRightUp}});
}

bool IsReachable(const Dialog& dialog, int id) { return IsVisible(dialog, id) && IsEnabled(dialog, id); }

}  // namespace

void PageSession::Handle(Dialog& dialog, const Json& event) {
  if (!event.is_object()) return;
  const std::string op = TextIn(event, "op");
  if (op == "snapshot") {
    isSeen_ = true;
    return Snapshot();
  }
  if (NumberIn(event, "level", mirror_.Level()) != mirror_.Level()) return;
  tag_.clear();
  const bool shift = FlagIn(event, "shift");
  if (shift) {
    UiResponder responder = Responder();
    responder.shiftDown = true;
    SetUiResponder(std::move(responder));
  }
  if (HandleControl(dialog, op, event)) {
    touched_ = true;
    if (tag_.empty()) tag_ = op + std::to_string(NumberIn(event, "id"));
  } else if (mirror_.Level() == 1) {
    HandleDocument(dialog, op, event);
  }
  if (const std::string step = TextIn(event, "step"); touched_ && !step.empty()) tag_ = step;
  if (shift) SetUiResponder(Responder());
  colour_.reset();
  position_.reset();
}

bool PageSession::HandleControl(Dialog& dialog, const std::string& op, const Json& event) {
  const int id = NumberIn(event, "id"), index = NumberIn(event, "index");
  if (op == "type") {
    const std::string text = TextIn(event, "text");
    return Type(dialog, id, id == ControlId::Text ? GuardedText(text) : text), true;
  }
  if (op == "click") return Click(dialog, id), true;
  if (op == "choose") return Choose(dialog, id, index), true;
  if (op == "double") return DoubleClick(dialog, id, index), true;
  if (op == "menu") return RightClick(dialog, id, index), true;
  if (op == "capture-lost") return StealMouse(dialog), true;
  if (op == "key") {
    if (const auto key = KeyOf(TextIn(event, "key"))) {
      SetFocus(dialog, id);
      PressKey(dialog, id, *key);
    }
    return true;
  }
  if (op == "mouse") {
    if (const auto what = MouseOf(TextIn(event, "what"))) {
      if (*what == kMessageLeftDown) SetFocus(dialog, id);
      Mouse(dialog, id, *what, NumberIn(event, "x", 0), NumberIn(event, "y", 0));
    }
    return true;
  }
  if (op == "colour") return SetColour(dialog, event), true;
  if (op == "marker") return SetMarker(dialog, event), true;
  if (op == "direction") return SetDirection(dialog, event), true;
  if (op == "effect") return ChooseEffect(dialog, event), true;
  if (op == "kind" || op == "edit") {
    const int kind =
        op == "kind" ? kCommandFirstKind + std::clamp(NumberIn(event, "kind", 0), 0, 3) : kCommandEditMaterial;
    if (!IsReachable(dialog, id) || KindOf(dialog, id) != ControlKind::MaterialButton) return true;
    // A fill of another kind that came from a document or an option has no tile yet; the build of the document will.
    if (const auto material = LockMaterial(dialog, id); material && kind == kCommandFirstKind + int{kTile})
      if (!material->Tile.TileBitmap) LoadTileOf(material->Tile);
    SendToControl(dialog, id, {kMessageCommand, static_cast<std::uint64_t>(kind), 0});
    return true;
  }
  if (op == "face") return SubscribeFace(dialog, event), false;
  return false;
}

void PageSession::SubscribeFace(Dialog& dialog, const Json& event) {
  const int id = NumberIn(event, "id"), item = NumberIn(event, "item");
  const int width = NumberIn(event, "width", 0), height = NumberIn(event, "height", 0);
  if (!HasControl(dialog, id) || width < 1 || height < 1 || width > 4096 || height > 4096) return;
  // What an editor draws is drawn for the place that the page has for it.
  const ControlKind kind = KindOf(dialog, id);
  const ControlRectangle place = RectangleOf(dialog, id);
  const bool drawn =
      kind == ControlKind::Drawn || kind == ControlKind::OwnerDrawn || kind == ControlKind::FountainButton;
  const bool fits = place.right - place.left == width && place.bottom - place.top == height;
  if (drawn && mirror_.Level() > 1 && !fits) ResizeControl(dialog, id, width, height);
  mirror_.Subscribe(id, item, width, height);
}

// The colour is there before the question: the dialog asks, and is answered at once.
void PageSession::SetColour(Dialog& dialog, const Json& event) {
  const int id = NumberIn(event, "id");
  const std::int64_t colour = ColourOfHex(TextIn(event, "value"));
  if (colour < 0 || !IsReachable(dialog, id)) return;
  colour_ = static_cast<std::uint32_t>(colour);
  switch (KindOf(dialog, id)) {
    case ControlKind::ColourButton:
      Click(dialog, id);
      return;
    case ControlKind::MaterialButton: {
      const auto material = LockMaterial(dialog, id);
      if (material && material->Kind == kSolid)
        SendToControl(dialog, id, {kMessageCommand, static_cast<std::uint64_t>(kCommandEditMaterial), 0});
      return;
    }
    case ControlKind::FountainButton:
      SendToControl(dialog, id,
                    {kMessageFountainColour, static_cast<std::uint64_t>(std::int64_t{NumberIn(event, "index")}), 0});
      return;
    default:
      return;
  }
}

void PageSession::SetMarker(Dialog& dialog, const Json& event) {
  const int id = NumberIn(event, "id"), index = NumberIn(event, "index", -100);
  if (KindOf(dialog, id) != ControlKind::FountainButton || !IsReachable(dialog, id)) return;
  const std::string what = TextIn(event, "do");
  const auto send = [&](std::uint32_t message, int argument) {
    SendToControl(dialog, id, {message, static_cast<std::uint64_t>(std::int64_t{argument}), 0});
  };
  if (what == "add") {
    const std::int64_t colour = ColourOfHex(TextIn(event, "value"));
    if (colour >= 0) colour_ = static_cast<std::uint32_t>(colour);
    send(kMessageFountainAdd, std::clamp(NumberIn(event, "position", 128), 0, 255));
  } else if (what == "delete" && index >= 0) {
    send(kMessageFountainDelete, index);
  } else if (what == "move" && index >= 0) {
    position_ = std::clamp(NumberIn(event, "position", 128), 1, 255);
    send(kMessageFountainPosition, index);
  } else if (what == "position" && index >= 0) {
    send(kMessageFountainPosition, index);
  } else if (what == "menu") {
    if (index >= 0) return send(kMessageMarkerMenu, index);
    std::vector<FountainSpec> before, after;
    ReadFountainLibrary(FountainLibraryPath(), before);
    send(kMessageBarMenu, 0);
    ReadFountainLibrary(FountainLibraryPath(), after);
    if (after.size() > before.size()) Notice("the fountain is in the library now", "info");
  }
}

void PageSession::SetDirection(Dialog& dialog, const Json& event) {
  const int id = NumberIn(event, "id"), index = NumberIn(event, "index");
  const ControlKind kind = KindOf(dialog, id);
  if (!IsPicker(kind)) return;
  for (int cell = 0; cell < 9; ++cell) {
    const int x = cell % 3 * kPickerCell + kPickerCell / 2, y = cell / 3 * kPickerCell + kPickerCell / 2;
    if (PickerCellAt(kind, x, y) != index) continue;
    Mouse(dialog, id, kMessageLeftDown, x, y);
    Mouse(dialog, id, kMessageLeftUp, x, y);
    return;
  }
}

void PageSession::ChooseEffect(Dialog& dialog, const Json& event) {
  const int from = GetSelection(dialog, ControlId::Effect), to = NumberIn(event, "index");
  if (mirror_.Level() != 1 || to < 0 || to >= kEffectCount || from == to) return;
  const std::string carried = FlagIn(event, "keep") ? CarriedLines(document_, from, to) : std::string();
  Choose(dialog, ControlId::Effect, to);
  if (!carried.empty()) TakeLines(dialog, carried);
  tag_ = "effect";
}

// Nothing else of the command line is a page's to say: its options name files.
bool PageSession::IsLook(const std::string& name) const {
  return std::any_of(start_.looks.begin(), start_.looks.end(),
                     [&](const Json& look) { return TextIn(look, "name") == name; });
}

// As its picture shows it: nothing of what was chosen before but the text, and options beside the dialog that the look
// leaves open. What an earlier look has set goes with that one.
void PageSession::ApplyLook(Dialog& dialog, const std::string& look) {
  PictureOptions options = options_;
  for (const auto& [name, value] : std::exchange(optionsOfLook_, {})) {
    if (options.Value(name) == value) options.Set(name, {});
  }
  try {
    for (const Look::Entry& entry : ReadLook(look).entries) {
      const std::string name = entry.option.substr(2), &value = entry.values.front();
      if (options.Set(name, value).empty()) optionsOfLook_[name] = value;
    }
  } catch (const UsageError& error) {
    return Notice(error.sentence);
  }
  const std::string text = GetText(dialog, ControlId::Text);
  TakeLines(dialog, LinesThatDiffer(document_, blank_));
  Apply(dialog, {"--look", look, "--set", "MainText=" + text}, false);
  TakeOptions(std::move(options));
  touched_ = true;
}

// What the program would refuse changes nothing, and the page shows the old value again.
void PageSession::SetOption(const Json& event) {
  const std::string name = TextIn(event, "name");
  PictureOptions options = options_;
  const std::string error = options.Set(name, TextIn(event, "value"));
  if (!error.empty()) {
    Notice(error);
    return Send({{"type", "options"}, {"options", options_.Facts()}});
  }
  if (options.Lines() == options_.Lines()) return;
  TakeOptions(std::move(options));
  touched_ = true;
  tag_ = "option " + name;
}

void PageSession::WishPictures(const Json& event) {
  const std::string key = TextIn(event, "key");
  const int width = std::clamp(NumberIn(event, "width", 132), 32, 400);
  const int height = std::clamp(NumberIn(event, "height", 58), 24, 240);
  const int current = std::max(FindEffect(effect_), 0);
  const std::vector<std::string> text = OptionWords(PictureOptions::Use::Thumbnail);
  std::deque<PictureWish> wishes;
  const auto list = event.find("effects");
  if (list != event.end() && list->is_array()) {
    for (const Json& each : *list) {
      const int effect = each.is_number_integer() ? each.get<int>() : -1;
      if (effect < 0 || effect >= kEffectCount) continue;
      std::string document = document_;
      if (FlagIn(event, "keep") && effect != current) document += CarriedLines(document_, current, effect, false);
      wishes.push_back({effect, key, std::move(document), TextIn(event, "text"), width, height, text, {}});
    }
  }
  const auto looks = event.find("looks");
  if (looks != event.end() && looks->is_array()) {
    for (const Json& each : *looks) {
      const std::string look = each.is_string() ? each.get<std::string>() : std::string();
      if (!IsLook(look)) continue;
      wishes.push_back({current, key, blank_, TextIn(event, "text"), width, height, {"--look", look}, look});
    }
  }
  beside_->MakePictures(std::move(wishes));
}

bool PageSession::HandleDocument(Dialog& dialog, const std::string& op, const Json& event) {
  if (op == "thumbs") return WishPictures(event), true;
  if (op == "option") return SetOption(event), true;
  if (op == "font") {
    SetFont(dialog, event);
    tag_ = "font";
    return touched_ = true;
  }
  if (op == "undo" || op == "redo") {
    const bool undo = op == "undo";
    if (undo ? !history_.CanUndo() : !history_.CanRedo()) return true;
    const std::string difference = undo ? history_.Undo() : history_.Redo();
    PictureOptions options = WithoutLostFont(PictureOptions::OfLines(history_.Text()));
    const std::string lines = options.Lines();
    if (lines != options_.Lines()) TakeOptions(std::move(options));
    TakeLines(dialog, difference);
    // A line may move controls that depend on its own; what they were then differs again.
    constexpr int kMostPasses = 3;
    for (int pass = 1; pass < kMostPasses; ++pass) {
      const std::string now = DocumentText(dialog) + lines;
      if (now == history_.Text()) break;
      TakeLines(dialog, LinesThatDiffer(now, history_.Text()));
    }
    touched_ = true;
    tag_ = "history";
    return true;
  }
  if (op == "new") return NewDocument(dialog), true;
  if (op == "open") return OpenText(dialog, TextIn(event, "name"), {}, TextIn(event, "document")), true;
  if (op == "recent") return OpenKept(dialog, TextIn(event, "key")), true;
  if (op == "rescue") {
    if (FlagIn(event, "keep")) OpenKept(dialog, TextIn(event, "key"));
    store_.Forget(TextIn(event, "key"));
    return SendLists(), true;
  }
  if (op == "apply") {
    const std::string look = TextIn(event, "look");
    if (IsLook(look)) ApplyLook(dialog, look);
    return true;
  }
  if (op == "fill") {
    const std::string role = TextIn(event, "role"), name = TextIn(event, "name");
    const std::vector<std::string> names = FountainNames();
    const bool known = std::find(names.begin(), names.end(), name) != names.end();
    if (known && (role == "fill" || role == "background")) Apply(dialog, {"--" + role, "fountain:" + name}, false);
    touched_ = true;
    return true;
  }
  if (op == "rename") {
    const std::string name = TextIn(event, "name");
    if (!name.empty() && name.find('/') == std::string::npos && name.size() < 200) name_ = name;
    return SendDocument(dialog), true;
  }
  if (op == "save") return Save(dialog, event), true;
  if (op == "export") return Export(event), true;
  return false;
}

}  // namespace glyphmotion
