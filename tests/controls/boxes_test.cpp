// SPDX-License-Identifier: MIT
// The program's own boxes, which a screen shows in place of the system's.
#include "controls/boxes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>
#include <string>
#include <vector>

#include "controls/soft_shapes.h"
#include "platform/dialog_driver.h"
#include "platform/memory.h"
#include "resources/box_templates.h"

namespace glyphmotion {
namespace {

using namespace BoxControl;

/// Runs `act` with `user` as the one who meets the dialog.
template <typename User, typename Act>
auto With(User user, Act act) {
  const ModalDriver before = SetModalDriver([&](Dialog& dialog, int) { user(dialog); });
  auto result = act();
  SetModalDriver(before);
  return result;
}

void Escape(Dialog& dialog) {
  PostCommand(dialog, Cancel);
  Pump(dialog);
}

TEST(Boxes, EscapeIsNoToAQuestionAndOkToAMessage) {
  const MessageQuestion question{"T", "Sure?", MessageButtons::YesNo, MessageIcon::Question}, message{"T", "So."};
  const auto ask = [](const MessageQuestion& what) { return [&] { return RunMessageBox(nullptr, nullptr, what); }; };
  const auto press = [](int id) { return [id](Dialog& dialog) { EXPECT_TRUE(Click(dialog, id)); }; };
  EXPECT_EQ(With(press(Yes), ask(question)), std::optional(true));
  EXPECT_EQ(With(press(No), ask(question)), std::optional(false));
  EXPECT_EQ(With(Escape, ask(question)), std::optional(false));
  EXPECT_EQ(With(press(Ok), ask(message)), std::optional(true));
  EXPECT_EQ(With(Escape, ask(message)), std::optional(true));
  for (const auto& [buttons, first] : {std::pair{MessageButtons::YesNo, Yes}, {MessageButtons::YesNoKeep, No}}) {
    const MessageQuestion asked{"T", "Sure?", buttons, MessageIcon::Question};
    With(
        [&](Dialog& dialog) {
          EXPECT_EQ(FocusOf(dialog), first) << "what Enter presses";
          EXPECT_EQ(DialogTitle(dialog), "T");
          EXPECT_EQ(GetText(dialog, MessageText), "Sure?");
        },
        ask(asked));
  }
}

TEST(Boxes, GrowWithTheirTextAndKeepEverythingInside) {
  std::string text;
  for (int words : {1, 8, 40, 400}) {
    text.clear();
    for (int i = 0; i < words; ++i) text += "a line of words ";
    const MessageQuestion question{"T", text, MessageButtons::YesNo, MessageIcon::Question};
    With(
        [&](Dialog& dialog) {
          const ControlRectangle words_ = RectangleOf(dialog, MessageText), yes = RectangleOf(dialog, Yes),
                                 no = RectangleOf(dialog, No), picture = RectangleOf(dialog, Picture);
          const int width = words_.right - words_.left, height = words_.bottom - words_.top;
          EXPECT_LE(MeasureText(dialog, text, width).height, height);
          EXPECT_LE(words_.bottom, no.top);
          EXPECT_LE(picture.bottom, no.top);
          EXPECT_LE(words_.right, no.right + 20);
          EXPECT_LT(yes.right, no.left);
          EXPECT_EQ(yes.top, no.top);
          EXPECT_LE(width, 660) << "a line that the eye can follow";
        },
        [&] { return RunMessageBox(nullptr, nullptr, question); });
  }
}

TEST(Boxes, WithoutMemoryThereIsNoAnswerToGive) {
  // What a procedure throws comes out of the box as 'not shown'.
  EXPECT_EQ(With([](Dialog&) { throw std::bad_alloc(); },
                 [] {
                   return RunMessageBox(nullptr, nullptr, MessageQuestion{"T", "So."});
                 }),
            std::nullopt);
}

TEST(Boxes, TheNamePromptStartsWithANameAndGivesWhatWasTyped) {
  const auto ask = [] { return RunNamePrompt(nullptr, "New group", "Untitled"); };
  EXPECT_EQ(With(
                [](Dialog& dialog) {
                  EXPECT_EQ(DialogTitle(dialog), "New group");
                  EXPECT_EQ(GetText(dialog, Field), "Untitled");
                  EXPECT_EQ(FocusOf(dialog), int{Field});
                  Type(dialog, Field, "Mine");
                  Click(dialog, Ok);
                },
                ask),
            std::optional<std::string>("Mine"));
  EXPECT_EQ(With(Escape, ask), std::nullopt);
}

struct Face {
  int width, height;
  std::vector<std::uint8_t> pixels = std::vector<std::uint8_t>(static_cast<std::size_t>(3 * width * height), 0);
  DrawRequest Request() { return {pixels.data(), width, height, std::ptrdiff_t{3} * width}; }
  int At(int x, int y) const { return pixels[static_cast<std::size_t>(3 * (y * width + x))]; }
  double Area() const {
    double sum = 0;
    for (std::size_t i = 0; i < pixels.size(); i += 3) sum += pixels[i] / 255.0;
    return sum;
  }
};

TEST(SoftShapes, CoverTheirAreaAndNothingElse) {
  constexpr Colour kWhite = 0xFFFFFF;
  Face disc{40, 40}, ring{40, 40}, stroke{40, 40}, triangle{60, 60}, square{20, 20};
  FillRounded(disc.Request(), {4.5, 4.5, 35.5, 35.5}, 99, Plain(kWhite));
  EXPECT_NEAR(disc.Area(), M_PI * 15.5 * 15.5, 4);
  StrokeRounded(ring.Request(), {4, 4, 36, 36}, 16, 3, Plain(kWhite));
  EXPECT_NEAR(ring.Area(), M_PI * (16 * 16 - 13 * 13), 4);
  EXPECT_EQ(ring.At(20, 20), 0);
  FillStroke(stroke.Request(), 10, 10, 30, 30, 6, Plain(kWhite));
  EXPECT_NEAR(stroke.Area(), std::hypot(20, 20) * 6 + M_PI * 9, 4);
  FillTriangle(triangle.Request(), {5, 5, 55, 55}, 0.001, Plain(kWhite));
  EXPECT_NEAR(triangle.Area(), 50 * 50 / 2.0, 12);
  EXPECT_TRUE(triangle.At(8, 8) == 0 && triangle.At(51, 8) == 0 && triangle.At(30, 40) == 255);
  FillRounded(square.Request(), {-5, -5, 30, 10}, 0, {0xFFFFFF, 0xFFFFFF, 0.5});
  EXPECT_NEAR(square.At(3, 3), 128, 1);
  EXPECT_EQ(square.At(3, 10), 0);
}

TEST(SoftShapes, MessagePicturesDifferAndScale) {
  std::set<std::string> seen;
  for (const MessageIcon icon : {MessageIcon::Information, MessageIcon::Question, MessageIcon::Warning}) {
    Face small{32, 32}, large{96, 96};
    PaintMessagePicture(small.Request(), icon);
    PaintMessagePicture(large.Request(), icon);
    EXPECT_NEAR(large.Area() / small.Area(), 9, 0.3);
    EXPECT_EQ(small.At(0, 0), 0) << "the corner is what is behind";
    seen.insert(std::string(small.pixels.begin(), small.pixels.end()));
  }
  EXPECT_EQ(seen.size(), 3u);
}

}  // namespace
}  // namespace glyphmotion
