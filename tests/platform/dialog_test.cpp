// SPDX-License-Identifier: MIT
#include "platform/dialog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <stdexcept>

#include "platform/dialog_driver.h"

namespace glyphmotion {
namespace {

using Kind = ControlKind;

constexpr ControlTemplate kControls[] = {
    {Kind::Label, -1, "Name:", 0, 0, 20, 8},
    {Kind::Edit, 101, "first", 20, 0, 40, 12},
    {Kind::NumberEdit, 102, "7", 20, 14, 30, 12},
    {Kind::UpDown, 10102, "1,9,4", 50, 14, 8, 12},
    {Kind::Combo, 103, "pear;apple;;fig;", 20, 30, 40, 80},
    {Kind::SortedCombo, 104, "pear;Apple;fig", 20, 46, 40, 80},
    {Kind::Label, -1, "", 0, 0, 1, 1},
    {Kind::Check, 105, "On", 20, 60, 40, 12},
    {Kind::Radio, 106, "A", 20, 70, 40, 12},
    {Kind::Radio, 107, "B", 20, 80, 40, 12},
    {Kind::Button, 108, "Go", 20, 90, 40, 12},
    {Kind::Radio, 109, "other group", 20, 100, 40, 12},
    {Kind::ShadowDirection, 110, "", 20, 110, 50, 46},
    {Kind::OwnerDrawn, 111, "", 20, 160, 50, 46},
    {Kind::ShadowDirection, 112, "", 80, 110, 50, 46},
};
constexpr DialogTemplate kTemplate{7, "A dialog", 200, 200, kControls};

/// What the dialogs and controls of one test got: "number a" and "id:number a,b".
std::vector<std::string> messages;
/// What a test wants done on a message before it is answered.
std::function<void(Dialog&, const Message&)> onMessage;

std::int64_t Procedure(Dialog& dialog, const Message& message) {
  messages.push_back(std::to_string(message.number) + " " + std::to_string(message.a));
  if (onMessage) onMessage(dialog, message);
  return 0;
}

std::int64_t ControlLog(Dialog&, int id, const Message& message) {
  messages.push_back(std::to_string(id) + ":" + std::to_string(message.number) + " " +
                     std::to_string(static_cast<std::int64_t>(message.a)) + "," + std::to_string(message.b));
  return 42;
}

/// Runs the template's dialog with a driver, and nothing left behind afterwards.
std::int64_t RunTestDialog(const std::function<void(Dialog&)>& driver,
                           std::function<void(Dialog&, const Message&)> each = {}) {
  messages.clear();
  onMessage = std::move(each);
  const ModalDriver before = SetModalDriver([&](Dialog& dialog, int) { driver(dialog); });
  struct Restore {
    ModalDriver driver;
    ~Restore() {
      SetModalDriver(driver);
      onMessage = {};
    }
  } restore{before};
  return RunModal(kTemplate, nullptr, Procedure, nullptr);
}

TEST(Dialog, ControlsHoldWhatTheTemplateSays) {
  RunTestDialog([](Dialog& dialog) {
    EXPECT_EQ(DialogTitle(dialog), "A dialog");
    EXPECT_EQ(Children(dialog).size(), std::size(kControls));
    EXPECT_FALSE(HasControl(dialog, -1));
    EXPECT_EQ(GetText(dialog, 10102), "1,9,4");
    EXPECT_EQ(ItemCount(dialog, 103), 3);
    EXPECT_EQ(ItemText(dialog, 103, 2), "fig");
    EXPECT_EQ(ItemText(dialog, 104, 0), "Apple");
    const ControlRectangle place = RectangleOf(dialog, 110);
    EXPECT_EQ(place.left, 30);
    EXPECT_EQ(place.right - place.left, 75);
    EXPECT_EQ(place.bottom - place.top, 75);
    EXPECT_TRUE(IsDialogVisible(dialog));
    EXPECT_FALSE(IsEnabled(dialog, 999));
    SetText(dialog, 999, "nowhere");
    EXPECT_EQ(GetText(dialog, 999), "");
  });
}

TEST(Dialog, NumbersReadAsADialogReadsThem) {
  const struct {
    const char* text;
    std::int64_t asUnsigned, asSigned;
  } cases[] = {{"12", 12, 12},        {"  34x9", 34, 34},
               {"-5", 0, -5},         {"", 0, 0},
               {"x", 0, 0},           {"4294967295", 4294967295, 0},
               {"4294967296", 0, 0},  {"-2147483648", 0, -2147483648LL},
               {"-2147483649", 0, 0}, {"99999999999999999999999", 0, 0},
               {"- 5", 0, 0}};
  RunTestDialog([&](Dialog& dialog) {
    for (const auto& each : cases) {
      SetText(dialog, 102, each.text);
      EXPECT_EQ(GetNumber(dialog, 102, false), each.asUnsigned) << each.text;
      EXPECT_EQ(GetNumber(dialog, 102, true), each.asSigned) << each.text;
    }
  });
}

TEST(Dialog, SelectionFollowsItsItem) {
  RunTestDialog([](Dialog& dialog) {
    EXPECT_EQ(SelectText(dialog, 104, "PEAR"), 2);
    EXPECT_EQ(AddItem(dialog, 104, "banana"), 1);
    EXPECT_EQ(GetText(dialog, 104), "pear");
    DeleteItem(dialog, 104, 0);
    EXPECT_EQ(GetSelection(dialog, 104), 2);
    EXPECT_EQ(SelectText(dialog, 104, "plum"), -1);
    EXPECT_EQ(GetText(dialog, 104), "pear") << "a text that is not there changes nothing";
    SetSelection(dialog, 104, 77);
    EXPECT_EQ(GetSelection(dialog, 104), -1);
    SelectText(dialog, 104, "pear");
    DeleteItem(dialog, 104, 2);
    EXPECT_EQ(GetSelection(dialog, 104), -1);
  });
}

TEST(Dialog, PersonNotifiesTheDialogAndIsHeldOffFromWhatCannotBeReached) {
  RunTestDialog([](Dialog& dialog) {
    messages.clear();
    LimitText(dialog, 101, 3);
    EXPECT_TRUE(Type(dialog, 101, "\xC3\xA4\xC3\xB6\xC3\xBCx"));
    EXPECT_EQ(GetText(dialog, 101), "\xC3\xA4\xC3\xB6\xC3\xBC") << "a limit counts characters";
    EXPECT_TRUE(Type(dialog, 101, "a\nb"));
    EXPECT_EQ(GetText(dialog, 101), "a");
    EXPECT_TRUE(Click(dialog, 105));
    EXPECT_EQ(GetCheck(dialog, 105), 1);
    EXPECT_TRUE(Choose(dialog, 103, 1));
    EXPECT_FALSE(Choose(dialog, 103, 3));
    SetCheck(dialog, 106, 1);
    SetCheck(dialog, 109, 1);
    EXPECT_TRUE(Click(dialog, 107));
    EXPECT_EQ(GetCheck(dialog, 106), 0);
    EXPECT_EQ(GetCheck(dialog, 107), 1);
    EXPECT_EQ(GetCheck(dialog, 109), 1) << "a button parts two groups of radios";
    EXPECT_EQ(messages, (std::vector<std::string>{"273 101", "273 101", "273 105", "273 103", "273 107"}));
    SetRange(dialog, 10102, 1, 8);
    PressKey(dialog, 102, kKeyUp);
    PressKey(dialog, 102, kKeyUp);
    EXPECT_EQ(GetText(dialog, 102), "8");
    Enable(dialog, 105, false);
    Show(dialog, 101, false);
    EXPECT_FALSE(Click(dialog, 105));
    EXPECT_FALSE(Type(dialog, 101, "b"));
    EndDialog(dialog, 1);
    EXPECT_FALSE(Click(dialog, 108));
  });
}

TEST(Dialog, PostedMessagesKeepTheirOrderAndEndStopsThem) {
  const std::int64_t result = RunTestDialog(
      [](Dialog& dialog) {
        messages.clear();
        Post(dialog, {2001, 1, 0});
        SetControlProcedure(dialog, 110, ControlLog, nullptr);
        PostToControl(dialog, 110, {2002, 2, 3});
        PostCommand(dialog, 40);
        Post(dialog, {2003, 0, 0});
        SetText(dialog, 101, "now");
        Pump(dialog);
        EXPECT_TRUE(HasEnded(dialog));
        EXPECT_FALSE(IsDialogVisible(dialog));
      },
      [](Dialog& dialog, const Message& message) {
        if (message.number == kMessageCommand && message.a == 40) {
          Post(dialog, {2004, 0, 0});
          EndDialog(dialog, 5);
        }
      });
  EXPECT_EQ(result, 5);
  EXPECT_EQ(messages, (std::vector<std::string>{"273 101", "2001 1", "110:2002 2,3", "273 40", "2 0", "110:2 0,0"}));
}

TEST(Dialog, EndingWhileItInitialisesRunsNoDriver) {
  bool driven = false;
  EXPECT_EQ(RunTestDialog([&](Dialog&) { driven = true; },
                          [](Dialog& dialog, const Message& message) {
                            if (message.number == kMessageInitialise) {
                              Post(dialog, {2001, 0, 0});
                              EndDialog(dialog, 3);
                            }
                          }),
            3);
  EXPECT_FALSE(driven);
  EXPECT_EQ(messages, (std::vector<std::string>{"272 0", "2 0"}));
  EXPECT_EQ(RunTestDialog([](Dialog&) {}), 0);
}

TEST(Dialog, TimersFireOncePerPumpInTheOrderOfTheirTimes) {
  int ticks = 0;
  RunTestDialog(
      [&](Dialog& dialog) {
        messages.clear();
        SetTimer(dialog, 1, 300);
        SetTimer(dialog, 2, 100);
        SetTimer(dialog, 3, 100);
        SetTimer(dialog, 4, 1);
        KillTimer(dialog, 4);
        Post(dialog, {2001, 0, 0});
        Pump(dialog);
        EXPECT_EQ(messages, (std::vector<std::string>{"2001 0", "275 2", "275 3", "275 1"}));
        KillTimer(dialog, 1);
        KillTimer(dialog, 3);
        messages.clear();
        Pump(dialog);
        EXPECT_EQ(messages, (std::vector<std::string>{"275 2"})) << "a timer repeats until it is killed";
        EXPECT_EQ(ticks, 2);
      },
      [&](Dialog& dialog, const Message& message) {
        // An animation that sets its own timer anew must not keep a pump busy for ever.
        if (message.number == kMessageTimer && message.a == 2) {
          ++ticks;
          SetTimer(dialog, 2, 100);
        }
      });
}

TEST(Dialog, InnerDialogRunsInsideAMessageAndTheOuterWaits) {
  Dialog* outer = nullptr;
  const std::int64_t result = RunTestDialog(
      [&](Dialog& dialog) {
        if (!outer) {
          outer = &dialog;
          messages.clear();
          EXPECT_TRUE(Click(dialog, 108));
          EXPECT_FALSE(Click(dialog, 105)) << "the inner dialog has ended the outer one";
          return;
        }
        EXPECT_FALSE(Click(*outer, 105)) << "an owner is disabled";
        EndDialog(*outer, 9);
        EndDialog(dialog, 6);
      },
      [&](Dialog& dialog, const Message& message) {
        if (message.number == kMessageCommand && message.a == 108) {
          Post(dialog, {2001, 0, 0});
          EXPECT_EQ(RunModal(kTemplate, nullptr, Procedure, nullptr), 6);
          EXPECT_TRUE(HasEnded(dialog));
          messages.push_back("back");
        }
      });
  EXPECT_EQ(result, 9);
  // What was posted to the outer dialog arrives while the inner one runs; each is destroyed once, the inner one first.
  EXPECT_EQ(messages, (std::vector<std::string>{"273 108", "272 0", "2001 0", "2 0", "back", "2 0"}));
}

TEST(Dialog, ThrowingProceduresAndDriversLeaveNothingOpen) {
  const auto install = [](Dialog& dialog) {
    SetControlProcedure(
        dialog, 110, [](Dialog&, int, const Message&) -> std::int64_t { throw std::runtime_error("control"); },
        nullptr);
    SetControlProcedure(dialog, 112, ControlLog, nullptr);
    Post(dialog, {2001, 0, 0});
    throw std::logic_error("driver");
  };
  const auto destroyed = [](Dialog& dialog, const Message& message) {
    EXPECT_EQ(HasEnded(dialog) && !Click(dialog, 108), message.number == kMessageDestroy) << message.number;
  };
  EXPECT_THROW(RunTestDialog(install, destroyed), std::logic_error) << "the first of two is what goes on";
  EXPECT_EQ(std::count(messages.begin(), messages.end(), "2 0"), 1);
  EXPECT_EQ(messages.back(), "112:2 0,0");
  RunTestDialog([](Dialog& dialog) {
    EXPECT_TRUE(Click(dialog, 108)) << "no earlier dialog blocks it";
    EXPECT_EQ(std::count(messages.begin(), messages.end(), "2001 0"), 0) << "nor its messages";
  });
}

TEST(Dialog, MouseGoesToItsCaptorAndDrawnControlsPaint) {
  std::uint8_t pixel[4] = {};
  const DrawRequest request{pixel, 1, 1, 4};
  RunTestDialog(
      [&](Dialog& dialog) {
        SetControlProcedure(dialog, 110, ControlLog, nullptr);
        SetControlProcedure(dialog, 112, ControlLog, nullptr);
        messages.clear();
        CaptureMouse(dialog, 110);
        Mouse(dialog, 112, kMessageMouseMove, 5, 6);
        ReleaseMouse(dialog);
        Mouse(dialog, 112, kMessageMouseMove, -5, 6);
        EXPECT_EQ(messages, (std::vector<std::string>{"110:512 95,6", "112:512 -5,6"}));
        messages.clear();
        EXPECT_TRUE(PaintControl(dialog, 111, request));
        EXPECT_FALSE(PaintControl(dialog, 101, request));
        EXPECT_EQ(messages, (std::vector<std::string>{"43 111"}));
        EXPECT_EQ(pixel[0], 200);
      },
      [](Dialog&, const Message& message) {
        if (message.number == kMessageDrawItem) PointerOf<DrawRequest>(message.b)->pixels[0] = 200;
      });
}

TEST(Dialog, PanelsAreCopiedHiddenAndEveryChangeIsObserved) {
  constexpr ControlTemplate controls[] = {{Kind::Check, 301, "Panel", 0, 0, 10, 10},
                                          {Kind::Check, 105, "Twin", 0, 0, 1, 1}};
  const DialogTemplate panel{8, "", 10, 10, controls};
  std::vector<std::pair<int, int>> changes;
  RunTestDialog([&](Dialog& dialog) {
    SetDialogObserver([&](Dialog&, const DialogChange& change) { changes.emplace_back(change.what, change.id); });
    EXPECT_TRUE(AddControls(dialog, panel, 0));
    EXPECT_FALSE(IsVisible(dialog, 301));
    EXPECT_EQ(GetText(dialog, 105), "On") << "an id means its first control";
    Show(dialog, 301, true);
    Show(dialog, 301, true);
    Click(dialog, 301);
    Invalidate(dialog, 0);
    EndDialog(dialog, 0);
    SetDialogObserver({});
  });
  using Change = DialogChange;
  EXPECT_EQ(changes, (std::vector<std::pair<int, int>>{{Change::Created, 301},
                                                       {Change::Created, 105},
                                                       {Change::Visible, 301},
                                                       {Change::Check, 301},
                                                       {Change::Repaint, 0},
                                                       {Change::Ended, 0}}));
}

}  // namespace
}  // namespace glyphmotion
