// SPDX-License-Identifier: MIT
#include "controls/boxes.h"

#include <algorithm>
#include <utility>

#include "controls/editor_services.h"
#include "controls/skin.h"
#include "controls/soft_shapes.h"
#include "platform/run_state.h"
#include "resources/box_templates.h"

namespace glyphmotion {
namespace {

using namespace BoxControl;

constexpr int kReadableWidth = 400, kWidest = 640, kManyLines = 260;  // pixels

std::int64_t RunBox(const DialogTemplate& box, Dialog* owner, void* window, DialogProcedure procedure,
                    void* parameter) {
  return owner ? RunModal(box, *owner, procedure, parameter) : RunModal(box, window, procedure, parameter);
}

// --- Messages ---

struct NameQuestion {
  const std::string* title;
  std::string name;
};

/// One message and one prompt at a time has the focus, but its timers and repaints may open another.
struct OpenBoxes {
  const MessageQuestion* shown = nullptr;
  NameQuestion* asked = nullptr;
};
OpenBoxes& Boxes() { return CurrentRun().Member<OpenBoxes>(); }

void Shift(Dialog& dialog, int id, int across, int down) {
  const ControlRectangle place = RectangleOf(dialog, id);
  MoveControl(dialog, id, place.left + across, place.top + down);
}

/// Resizes the box for the text and moves the buttons. A text of one line is centred on the picture.
void FitText(Dialog& dialog, const std::string& text) {
  const ControlRectangle place = RectangleOf(dialog, MessageText);
  TextExtent extent = MeasureText(dialog, text, kReadableWidth);
  if (extent.height > kManyLines) extent = MeasureText(dialog, text, kWidest);
  const int roomWidth = place.right - place.left, roomHeight = place.bottom - place.top;
  const int across = std::max(extent.width - roomWidth, 0), down = std::max(extent.height - roomHeight, 0);
  ResizeControl(dialog, MessageText, roomWidth + across, extent.height);
  MoveControl(dialog, MessageText, place.left, place.top + std::max(roomHeight - extent.height, 0) / 2);
  for (const int id : {Ok, Yes, No}) Shift(dialog, id, across, down);
  GrowDialog(dialog, across, down);
}

/// The default button.
int FirstButton(MessageButtons buttons) {
  return buttons == MessageButtons::Ok ? Ok : buttons == MessageButtons::YesNo ? Yes : No;
}

std::int64_t MessageProcedure(Dialog& dialog, const Message& message) {
  if (HandleSkin(dialog, message)) return 1;
  const MessageQuestion*& shown = Boxes().shown;
  switch (message.number) {
    case kMessageInitialise:
      shown = PointerOf<const MessageQuestion>(message.b);
      SetDialogTitle(dialog, shown->title);
      SetText(dialog, MessageText, shown->text);
      FitText(dialog, shown->text);
      PaintInScreenPixels(dialog, Picture);
      SetFocus(dialog, FirstButton(shown->buttons));
      Beep(shown->icon);
      return 0;
    case kMessageDrawItem:
      if (shown) PaintMessagePicture(*PointerOf<const DrawRequest>(message.b), shown->icon);
      return 1;
    case kMessageHelp:
      ShowHelpTopic(dialog, "TROUBLE");
      return 1;
    case kMessageCopy:
      if (shown) CopyToClipboard(dialog, shown->title + "\n\n" + shown->text);
      return 1;
    case kMessageCommand:
      if (message.a == Ok || message.a == Yes) EndDialog(dialog, 1);
      if (message.a == No || message.a == Cancel) EndDialog(dialog, HasControl(dialog, No) ? 0 : 1);
      return 1;
    default:
      return 0;
  }
}

// --- The name prompt ---

std::int64_t NameProcedure(Dialog& dialog, const Message& message) {
  if (HandleSkin(dialog, message)) return 1;
  NameQuestion*& asked = Boxes().asked;
  if (message.number == kMessageInitialise) {
    asked = PointerOf<NameQuestion>(message.b);
    SetDialogTitle(dialog, *asked->title);
    SetText(dialog, Field, asked->name);
    SetFocus(dialog, Field);
    return 0;
  }
  if (message.number == kMessageHelp) return ShowHelpTopic(dialog, "MATERIALS"), 1;
  if (message.number != kMessageCommand || (message.a != Ok && message.a != Cancel)) return 0;
  asked->name = GetText(dialog, Field);
  EndDialog(dialog, message.a == Ok);
  return 1;
}

// --- The picture, in a unit square ---

struct Sketch {
  const DrawRequest& request;
  double size = std::min(request.width, request.height);
  double left = (request.width - size) / 2, top = (request.height - size) / 2;

  SoftRect Place(SoftRect r) const {
    return {left + r.left * size, top + r.top * size, left + r.right * size, top + r.bottom * size};
  }
  void Disc(Colour light, Colour dark) const {
    FillRounded(request, Place({0.02, 0.02, 0.98, 0.98}), size, Plain(dark));
    FillRounded(request, Place({0.05, 0.05, 0.95, 0.95}), size, {light, dark});
  }
  void Stroke(double x1, double y1, double x2, double y2, double width, Colour colour) const {
    FillStroke(request, left + x1 * size, top + y1 * size, left + x2 * size, top + y2 * size, width * size,
               Plain(colour));
  }
};

constexpr Colour kWhite = 0xFFFFFF, kBlue = MakeColour(0x5A, 0x9B, 0xDA), kDeepBlue = MakeColour(0x2A, 0x62, 0xA0);
constexpr Colour kAmber = MakeColour(0xFF, 0xD2, 0x4A), kDeepAmber = MakeColour(0xE0, 0x94, 0x12), kInk = 0x202830;

void PaintQuestionMark(const Sketch& sketch) {
  constexpr double kBow[][2] = {{0.35, 0.40},  {0.355, 0.33}, {0.40, 0.27}, {0.47, 0.24}, {0.54, 0.24}, {0.61, 0.28},
                                {0.645, 0.35}, {0.63, 0.43},  {0.56, 0.50}, {0.50, 0.56}, {0.50, 0.63}};
  for (std::size_t i = 1; i < std::size(kBow); ++i) {
    sketch.Stroke(kBow[i - 1][0], kBow[i - 1][1], kBow[i][0], kBow[i][1], 0.11, kWhite);
  }
  sketch.Stroke(0.50, 0.78, 0.50, 0.78, 0.13, kWhite);
}

}  // namespace

void PaintMessagePicture(const DrawRequest& request, MessageIcon icon) {
  const Sketch sketch{request};
  switch (icon) {
    case MessageIcon::Warning:
      FillTriangle(request, sketch.Place({0, 0.04, 1, 0.96}), 0.08 * sketch.size, Plain(kDeepAmber));
      FillTriangle(request, sketch.Place({0.05, 0.10, 0.95, 0.925}), 0.06 * sketch.size, {kAmber, kDeepAmber});
      sketch.Stroke(0.5, 0.40, 0.5, 0.62, 0.11, kInk);
      sketch.Stroke(0.5, 0.79, 0.5, 0.79, 0.13, kInk);
      return;
    case MessageIcon::Question:
      sketch.Disc(kBlue, kDeepBlue);
      return PaintQuestionMark(sketch);
    case MessageIcon::Information:
      sketch.Disc(kBlue, kDeepBlue);
      sketch.Stroke(0.5, 0.45, 0.5, 0.74, 0.12, kWhite);
      sketch.Stroke(0.5, 0.26, 0.5, 0.26, 0.14, kWhite);
      return;
  }
}

std::optional<bool> RunMessageBox(Dialog* owner, void* window, const MessageQuestion& question) {
  const DialogTemplate& box = question.buttons == MessageButtons::Ok ? kMessageBox : kQuestionBox;
  const MessageQuestion* const outer = Boxes().shown;
  std::int64_t answer = -1;
  try {
    answer = RunBox(box, owner, window, MessageProcedure, const_cast<MessageQuestion*>(&question));
  } catch (...) {  // out of memory
  }
  Boxes().shown = outer;
  return answer < 0 ? std::nullopt : std::optional(answer == 1);
}

std::optional<std::string> RunNamePrompt(Dialog* owner, const std::string& title, const std::string& start) {
  NameQuestion question{&title, start};
  NameQuestion* const outer = std::exchange(Boxes().asked, nullptr);
  const bool accepted = RunBox(kNamePrompt, owner, nullptr, NameProcedure, &question) == 1;
  Boxes().asked = outer;
  if (!accepted) return std::nullopt;
  return question.name;
}

void UseOwnBoxes() { SetDesktopBoxes({RunMessageBox, RunNamePrompt}); }

}  // namespace glyphmotion
