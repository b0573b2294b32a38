// SPDX-License-Identifier: MIT
// The main dialog as a person and a host meet it.
#include <algorithm>
#include <cctype>

#include "controls/read_controls.h"
#include "effects/effect_table.h"
#include "main_dialog_fixture.h"
#include "resources/box_templates.h"
#include "resources/strings.h"
#include "shell/documents.h"
#include "text/compositing.h"

namespace glyphmotion {
namespace {

using namespace MainControl;

// --- The start ---

TEST_F(MainDialogTest, APaletteHostGetsItsDelaysAndNeverAlpha) {
  AtomicWriteFile(Path("settings.ini"), "MainAlphaTrans = 1\nTruecolour = 1\nMainSupercompress = 1\n");
  RunDialog(kPaletteHost, [&](Dialog& dialog) {
    EXPECT_EQ(GetText(dialog, 10011), "1,25,4");
    for (int id : {int{TrueColour}, int{ControlId::AlphaTransparency}}) {
      EXPECT_EQ(GetCheck(dialog, id), 0) << id;
      EXPECT_FALSE(IsEnabled(dialog, id)) << id;
    }
    EXPECT_FALSE(IsEnabled(dialog, ControlId::AlphaBackground));
    EXPECT_TRUE(IsEnabled(dialog, Transparent));
    EXPECT_EQ(GetCheck(dialog, Supercompress), 1);
    EXPECT_EQ(NumberVariable("Truecolour") + NumberVariable("MainAlphaTrans"), 0u);
    EXPECT_EQ(FocusOf(dialog), int{Build});
    EXPECT_EQ(DialogTitle(dialog), "Glyphmotion #4 [UNREGISTERED COPY]");
    EXPECT_EQ(ItemCount(dialog, ControlId::Effect), kEffectCount);
    EXPECT_EQ(ItemText(dialog, MainControl::Palette, 7), "256-color with gray");
    EXPECT_EQ(GetSelection(dialog, MainControl::Palette), 6);
    EXPECT_FALSE(GetText(dialog, ControlId::Font).empty());
    ASSERT_EQ(host.calls.size(), 1u);
    EXPECT_EQ(host.calls[0].operation, std::uint32_t{HostOpGetFileDialogSize});
  });
  EXPECT_TRUE(messages_.empty());
}

TEST_F(MainDialogTest, ATrueColourHostGetsAlphaAndNoSupercompress) {
  AtomicWriteFile(Path("settings.ini"), "MainAlphaTrans = 1\nMainSupercompress = 1\nMainTransparent = 1\n");
  RunDialog(kColourHost, [&](Dialog& dialog) {
    EXPECT_EQ(GetText(dialog, 10011), "1,250,40");
    EXPECT_FALSE(IsEnabled(dialog, Transparent));
    EXPECT_FALSE(IsEnabled(dialog, Supercompress));
    EXPECT_EQ(GetCheck(dialog, Supercompress), 0);
    EXPECT_TRUE(IsEnabled(dialog, ControlId::AlphaTransparency));
    EXPECT_EQ(GetCheck(dialog, ControlId::AlphaTransparency), 1);
  });
}

TEST_F(MainDialogTest, ShiftAtTheStartResetsPathsAndDelays) {
  AtomicWriteFile(Path("settings.ini"), "CurrentFileName = /elsewhere/a.gm4\nMainDelay = 7\nMainText = old\n");
  responder_.shiftDown = true;
  RunDialog(kPaletteHost, [&](Dialog& dialog) {
    EXPECT_EQ(TextVariable("CurrentFileName"), JoinPath(DocumentsFolder(), "untitled.gm4"));
    EXPECT_EQ(GetNumber(dialog, ControlId::Delay, false), 4);
    EXPECT_EQ(GetNumber(dialog, ControlId::Pause, false), 100);
    EXPECT_NE(GetText(dialog, ControlId::Text), "old");
  });
  RunDialog(kColourHost, [&](Dialog& dialog) {
    EXPECT_EQ(GetNumber(dialog, ControlId::Delay, false), 40);
    EXPECT_EQ(GetNumber(dialog, ControlId::Pause, false), 1000);
    EXPECT_EQ(GetCheck(dialog, TrueColour), 1);
  });
}

TEST_F(MainDialogTest, AHostWithoutItsFunctionGetsAMessageAndIsRefused) {
  withoutHostCall_ = true;
  bool driven = false;
  EXPECT_EQ(RunDialog(kBothHost, [&](Dialog&) { driven = true; }), 0);
  EXPECT_FALSE(driven);
  EXPECT_EQ(messages_, std::vector<std::string>{"Internal error"});
}

// --- Panels and effects ---

std::vector<int> VisiblePanels(const Dialog& dialog) {
  std::vector<int> visible;
  for (int i = 0; i < kEffectCount; ++i) {
    std::size_t shown = 0;
    for (const ControlTemplate& control : EffectRow(i).panel->controls) {
      EXPECT_TRUE(HasControl(dialog, control.id)) << control.id;
      shown += IsVisible(dialog, control.id);
    }
    EXPECT_TRUE(shown == 0 || shown == EffectRow(i).panel->controls.size()) << EffectRow(i).name;
    if (shown) visible.push_back(i);
  }
  return visible;
}

TEST_F(MainDialogTest, OnePanelShowsAndItIsThatOfTheChosenEffect) {
  RunDialog(kBothHost, [&](Dialog& dialog) {
    EXPECT_EQ(VisiblePanels(dialog), std::vector<int>{17});
    for (int i : {0, 15, 20}) {
      ASSERT_TRUE(Choose(dialog, ControlId::Effect, i));
      EXPECT_EQ(VisiblePanels(dialog), std::vector<int>{i});
      EXPECT_EQ(NumberVariable("MainEffect"), static_cast<std::uint32_t>(i));
      EXPECT_TRUE(IsVisible(dialog, ControlId::Text) && IsVisible(dialog, Build));
    }
  });
  const std::pair<const char*, int> stored[] = {{"99", kEffectCount - 1}, {"-5", 0}, {"16", 16}};
  for (const auto& [number, shown] : stored) {
    AtomicWriteFile(Path("settings.ini"), std::string("MainEffect = ") + number + "\n");
    RunDialog(kBothHost, [&](Dialog& dialog) { EXPECT_EQ(VisiblePanels(dialog), std::vector<int>{shown}); });
  }
}

// --- Options ---

TEST_F(MainDialogTest, OptionsKeepEachOtherInBounds) {
  RunDialog(kColourHost, [&](Dialog& dialog) {
    ASSERT_EQ(GetCheck(dialog, TrueColour), 1);
    Click(dialog, TrueColour);
    Click(dialog, ControlId::AlphaTransparency);
    EXPECT_EQ(GetCheck(dialog, TrueColour), 1);
    EXPECT_EQ(NumberVariable("Truecolour") + NumberVariable("MainAlphaTrans"), 2u);
    Click(dialog, TrueColour);
    EXPECT_EQ(GetCheck(dialog, ControlId::AlphaTransparency), 0);
    EXPECT_EQ(NumberVariable("Truecolour") + NumberVariable("MainAlphaTrans"), 0u);
    EXPECT_TRUE(IsEnabled(dialog, MainControl::Palette));
    Click(dialog, CustomPalette);
    EXPECT_FALSE(IsEnabled(dialog, MainControl::Palette));
    Click(dialog, CustomPalette);
    Choose(dialog, MainControl::Palette, 3);
    EXPECT_EQ(NumberVariable("MainPalette"), 3u);
    ASSERT_EQ(ItemText(dialog, MainControl::Palette, 9), "Best colors");
    Choose(dialog, MainControl::Palette, 9);
    EXPECT_EQ(NumberVariable("MainPalette") + 10 * NumberVariable("BestPalette"), 13u) << "a key of its own";
    // A document that has it, one of old, and one with a number that no item has.
    const std::string document = DocumentText(dialog, {});
    ASSERT_NE(document.find("CMBBOX13=9"), std::string::npos);
    for (const auto& [line, stored] : {std::pair("CMBBOX13=5", 5u), {"CMBBOX13=9", 15u}, {"CMBBOX13=44", 0u}}) {
      std::string other = document;
      ASSERT_TRUE(TakeDocumentText(dialog, other.replace(other.find("CMBBOX13=9"), 10, line)));
      EXPECT_EQ(NumberVariable("MainPalette") + 10 * NumberVariable("BestPalette"), stored) << line;
    }
  });
}

TEST_F(MainDialogTest, AnEmptyTextDisablesBuildButNotTest) {
  RunDialog(kBothHost, [&](Dialog& dialog) {
    Type(dialog, ControlId::Text, "");
    EXPECT_FALSE(IsEnabled(dialog, Build));
    EXPECT_TRUE(IsEnabled(dialog, MainControl::Test));
    Type(dialog, ControlId::Text, std::string(300, 'x'));
    EXPECT_TRUE(IsEnabled(dialog, Build));
    EXPECT_EQ(TextVariable("MainText"), std::string(260, 'x'));
  });
  AtomicWriteFile(Path("settings.ini"), "MainText = \n");
  RunDialog(kBothHost, [&](Dialog& dialog) { EXPECT_FALSE(IsEnabled(dialog, Build)); });
}

TEST_F(MainDialogTest, ChangesAreStoredAndOnlyThoseThatShowRepaintTheSample) {
  int repaints = 0;
  SetDialogObserver([&](Dialog&, const DialogChange& change) {
    repaints += change.what == DialogChange::Repaint && change.id == Sample;
  });
  RunDialog(kBothHost, [&](Dialog& dialog) {
    const auto repaintsOf = [&](const std::function<void()>& change) {
      repaints = 0;
      change();
      Pump(dialog);
      return repaints;
    };
    EXPECT_EQ(repaintsOf([&] { Type(dialog, ControlId::Delay, "9"); }), 0);
    EXPECT_EQ(repaintsOf([&] { Click(dialog, Dither); }), 0);
    EXPECT_EQ(NumberVariable("MainDelay") + NumberVariable("MainDither"), 10u);
    EXPECT_EQ(repaintsOf([&] { Click(dialog, ControlId::Bold); }), 1);
    EXPECT_EQ(NumberVariable("MainFontBold"), 0u);
    EXPECT_EQ(repaintsOf([&] { Type(dialog, 114, "7"); }), 1);
    EXPECT_EQ(NumberVariable("Style000Soft"), 7u);
    SetFocus(dialog, 114);
    EXPECT_EQ(repaintsOf([&] { Type(dialog, 114, "abc-9999"); }), 1);
    EXPECT_EQ(repaintsOf([&] { Type(dialog, 114, "9999"); }), 1);
    EXPECT_EQ(ReadNumber(dialog, 114), 40);
    EXPECT_EQ(repaintsOf([&] { SetFocus(dialog, Build); }), 1);
    EXPECT_EQ(GetText(dialog, 114), "40") << "a field that is left shows what is used";
    EXPECT_EQ(repaintsOf([&] {
                for (int i = 0; i < 5; ++i) Send(dialog, {kMessageCommand, ControlId::Italic, kClicked});
              }),
              1);
    SetText(dialog, 116, "200");
    Send(dialog, {kMessageCommand, 10116, kClicked});
    EXPECT_EQ(NumberVariable("Style000ShadowOffset"), 200u);
  });
  SetDialogObserver({});
}

TEST_F(MainDialogTest, AColourButtonTakesTheHostsColour) {
  std::uint64_t accept = 1;
  host.answer = [&](std::uint32_t operation, std::uint64_t, std::uint64_t b) -> std::uint64_t {
    if (operation != HostOpPickColor) return 0;
    auto& record = *At<HostColorPickRecord>(b);
    EXPECT_EQ(record.size, 40u);
    EXPECT_EQ(record.version, 0x1000u);
    EXPECT_EQ(record.depth, 24u);
    EXPECT_EQ(record.color, 0x333333u);
    EXPECT_NE(record.ownerWindow, 0u);
    const std::uint8_t* entry = record.palette + 3 * (6 * 32 + 1 * 4 + 2);
    EXPECT_TRUE(entry[0] == 216 && entry[1] == 36 && entry[2] == 170);
    record.color = 0x123456;
    return accept;
  };
  RunDialog(kBothHost, [&](Dialog& dialog) {
    accept = 0;
    Click(dialog, 106);
    EXPECT_EQ(GetText(dialog, 106), "3355443");
    accept = 1;
    Click(dialog, 106);
    EXPECT_EQ(GetText(dialog, 106), "1193046");
    EXPECT_EQ(NumberVariable("Style000OutlineColor"), 0x123456u);
  });
}

// --- Documents, registration, help ---

TEST_F(MainDialogTest, TheMenuSavesUnderTheNameItHas) {
  std::vector<FileQuestion> questions;
  int choice = Save;
  host.answer = [](std::uint32_t operation, std::uint64_t, std::uint64_t b) -> std::uint64_t {
    if (operation == HostOpGetFileDialogSize) {
      At<std::int32_t>(b)[0] = 1 << 20;
      At<std::int32_t>(b)[1] = 300;
    }
    return 1;
  };
  responder_.menu = [&](Dialog*, std::span<const MenuItem> items) {
    EXPECT_EQ(items.size(), 3u);
    EXPECT_EQ(items[2].text, "Save as...");
    return choice;
  };
  responder_.file = [&](Dialog*, FileQuestion& question) -> std::optional<std::string> {
    questions.push_back(question);
    question.width = questions.size() == 1 ? 640 : 100;
    question.height = 480;
    return Path("a.gm4");
  };
  RunDialog(kBothHost, [&](Dialog& dialog) {
    Type(dialog, ControlId::Text, "one");
    Click(dialog, OpenSave);
    ASSERT_EQ(questions.size(), 1u);
    EXPECT_TRUE(questions[0].save);
    EXPECT_EQ(questions[0].fileName, "untitled.gm4");
    EXPECT_EQ(questions[0].filterName, "GM4 files");
    int screenWidth = 0, screenHeight = 0;
    ScreenSize(screenWidth, screenHeight);
    EXPECT_EQ(questions[0].width, screenWidth);
    EXPECT_EQ(questions[0].height, 300);
    EXPECT_EQ(TextVariable("CurrentFileName"), Path("a.gm4"));
    Type(dialog, ControlId::Text, "two");
    Click(dialog, OpenSave);
    EXPECT_EQ(questions.size(), 1u);
    Type(dialog, ControlId::Text, "three");
    choice = Open;
    Click(dialog, OpenSave);
    ASSERT_EQ(questions.size(), 2u);
    EXPECT_FALSE(questions[1].save);
    EXPECT_EQ(questions[1].width, 640);
    EXPECT_EQ(GetText(dialog, ControlId::Text), "two");
    choice = SaveAs;
    Click(dialog, OpenSave);
    ASSERT_EQ(questions.size(), 3u);
    EXPECT_EQ(questions[2].width, 640);  // the 100 of the dialog before was too small to be remembered
  });
  EXPECT_TRUE(messages_.empty());
}

TEST_F(MainDialogTest, OnlyADocumentThatWasReadOrWrittenBecomesCurrent) {
  AtomicWriteFile(Path("letter.txt"), "Dear all");
  const std::string folder = Path("");
  int choice = SaveAs;
  std::string chosen = Path("a.gm4");
  responder_.menu = [&](Dialog*, std::span<const MenuItem>) { return choice; };
  responder_.file = [&](Dialog*, FileQuestion&) { return std::optional<std::string>(chosen); };
  const struct {
    int choice;
    std::string path;
    bool accepted;
  } rows[] = {{SaveAs, Path("a.gm4"), true},     {Open, Path("letter.txt"), false}, {Open, Path("none.gm4"), false},
              {SaveAs, Path("no/b.gm4"), false}, {SaveAs, Path("b.gm4"), true},     {Open, Path("a.gm4"), true}};
  RunDialog(kBothHost, [&](Dialog& dialog) {
    std::string current = "untitled.gm4";
    for (const auto& row : rows) {
      choice = row.choice;
      chosen = row.path;
      const std::size_t said = messages_.size();
      Click(dialog, OpenSave);
      EXPECT_EQ(messages_.size() - said, row.accepted ? 0u : 1u) << row.path;
      if (row.accepted) current = row.path;
      EXPECT_EQ(TextVariable("CurrentFileName"), current) << row.path;
      EXPECT_EQ(TextVariable("OpenPath"), folder) << row.path;
      choice = Save;
      Click(dialog, OpenSave);
    }
  });
  EXPECT_EQ(ReadWholeFile(Path("letter.txt")), "Dear all");
}

TEST_F(MainDialogTest, APathThatTheSettingsCannotHoldIsNotRemembered) {
  std::string deep = folder_.string();
  for (int i = 0; i < 3; ++i) deep += "/" + std::string(90, 'd');
  std::filesystem::create_directories(deep);
  std::string chosen = deep + "/a.gm4";
  responder_.menu = [](Dialog*, std::span<const MenuItem>) { return SaveAs; };
  responder_.file = [&](Dialog*, FileQuestion&) { return std::optional<std::string>(chosen); };
  RunDialog(kBothHost, [&](Dialog& dialog) {
    Click(dialog, OpenSave);
    EXPECT_EQ(TextVariable("CurrentFileName"), chosen) << "within the dialog it is the current document";
  });
  const std::string settings = ReadWholeFile(Path("settings.ini")).value_or("");
  EXPECT_NE(settings.find("CurrentFileName = untitled.gm4\n"), std::string::npos);
  EXPECT_NE(settings.find("OpenPath = \n"), std::string::npos);
  AtomicWriteFile(Path("settings.ini"), "CurrentFileName = " + chosen + "\n");
  RunDialog(kBothHost, [&](Dialog&) { EXPECT_EQ(TextVariable("CurrentFileName"), "untitled.gm4"); });
}

TEST_F(MainDialogTest, RegistrationNeedsARegisteredHostAndBothHalves) {
  AtomicWriteFile(Path("settings.ini"), "RegistrationName = half of it\n");
  std::uint64_t registered = 0;
  host.answer = [&](std::uint32_t operation, std::uint64_t, std::uint64_t) {
    return operation == HostOpIsRegistered ? registered : 0;
  };
  int asked = 0;
  inner_ = [&](Dialog& dialog, int templateId) {
    ++asked;
    ASSERT_EQ(templateId, kRegistrationDialog.id);
    if (asked > 2) {
      EXPECT_EQ(GetText(dialog, BoxControl::Field) + GetText(dialog, BoxControl::SecondField), "Annx2");
      return;
    }
    EXPECT_FALSE(Click(dialog, BoxControl::Ok)) << "nothing is typed yet";
    Type(dialog, BoxControl::Field, " Ann ");
    Type(dialog, BoxControl::SecondField, "  ");
    EXPECT_FALSE(IsEnabled(dialog, BoxControl::Ok)) << "blanks are not a code";
    Type(dialog, BoxControl::SecondField, "x2");
    Click(dialog, asked == 1 ? BoxControl::Cancel : BoxControl::Ok);
  };
  RunDialog(kBothHost, [&](Dialog& dialog) {
    EXPECT_EQ(TextVariable("RegistrationName"), "");
    Click(dialog, Register);
    EXPECT_EQ(messages_, std::vector<std::string>{LoadText(kTextRegisterHostFirst)});
    EXPECT_EQ(asked, 0);
    registered = 1;
    Click(dialog, Register);
    EXPECT_EQ(DialogTitle(dialog), "Glyphmotion #4 [UNREGISTERED COPY]");
    Click(dialog, Register);
    EXPECT_EQ(DialogTitle(dialog), "Glyphmotion #4");
    Click(dialog, Register);
    EXPECT_EQ(asked, 3);
  });
  RunDialog(kBothHost, [&](Dialog& dialog) {
    EXPECT_EQ(TextVariable("RegistrationName") + TextVariable("RegistrationCode"), "Annx2");
    EXPECT_EQ(DialogTitle(dialog), "Glyphmotion #4");
  });
}

TEST_F(MainDialogTest, HelpIsTheHostsAndItsFailureIsReported) {
  std::uint64_t shown = 1;
  std::string topic = "PREFACE";
  host.answer = [&](std::uint32_t operation, std::uint64_t, std::uint64_t b) -> std::uint64_t {
    if (operation != HostOpShowHelp) return 0;
    EXPECT_EQ(At<const char>(b), "TLMPLGM4.HTML#" + topic);
    return shown;
  };
  RunDialog(kBothHost, [&](Dialog& dialog) {
    Click(dialog, Help);
    EXPECT_TRUE(messages_.empty());
    shown = 0;
    Click(dialog, Help);
    EXPECT_EQ(messages_.size(), 1u);
    EXPECT_FALSE(HasEnded(dialog));
    // F1: the part with the keyboard. Every topic is in the page.
    shown = 1;
    const std::string page =
        ReadWholeFile(GLYPHMOTION_SOURCE_DIR "/share/glyphmotion/TLMPLGM4.HTML").value_or(std::string());
    const auto ask = [&](int control, const std::string& expected) {
      topic = expected;
      const int before = host.Count(HostOpShowHelp);
      PressKey(dialog, control, kKeyF1);
      EXPECT_EQ(host.Count(HostOpShowHelp), before + 1) << control;
      EXPECT_NE(page.find(" id=\"" + topic + "\""), std::string::npos) << topic;
    };
    const std::pair<int, const char*> parts[] = {
        {Help, "PREFACE"},   {ControlId::Text, "TEXT"},    {ControlId::Size, "TEXT"},
        {Build, "OUTPUT"},   {ControlId::Delay, "OUTPUT"}, {MainControl::Palette, "OUTPUT"},
        {OpenSave, "FILES"}, {100, "MATERIALS"},           {110, "COMMON"},
        {120, "COMMON"}};
    Choose(dialog, ControlId::Effect, 17);
    for (const auto& [control, expected] : parts) ask(control, expected);
    for (int effect = 0; effect < kEffectCount; ++effect) {
      Choose(dialog, ControlId::Effect, effect);
      std::string name = EffectRow(effect).name;
      std::transform(name.begin(), name.end(), name.begin(),
                     [](unsigned char c) { return static_cast<char>(c == ' ' ? '-' : std::toupper(c)); });
      ask(ControlId::Effect, name);
    }
  });
}

TEST_F(MainDialogTest, AnyAllocationOfTheStartMayFail) {
  AtomicWriteFile(Path("settings.ini"), "MainText = I\n");
  FailAllocation(0);
  RunDialog(kBothHost, [](Dialog&) {});
  const std::uint64_t asked = AllocationsAsked();
  ASSERT_GT(asked, 50u);
  for (std::uint64_t n = 1; n <= asked; n += 7) {
    messages_.clear();
    FailAllocation(n);
    RunDialog(kBothHost, [&](Dialog& dialog) {
      // A dialog that opens has all its fills and directions: none of them may silently be another.
      for (const EffectDescriptor* effect : Effects()) {
        for (const ControlTemplate& control : effect->panel->controls) {
          if (control.kind >= ControlKind::ShadowDirection || control.kind == ControlKind::MaterialButton) {
            ASSERT_NE(GetData(dialog, control.id), 0u) << control.id << " of allocation " << n;
          }
        }
      }
      EXPECT_TRUE(messages_.empty());
      std::vector<std::uint8_t> pixels(40 * 20 * 3);
      PaintControl(dialog, Sample, {pixels.data(), 40, 20, 40 * 3});
    });
  }
  FailAllocation(1);
  messages_.clear();
  EXPECT_EQ(RunDialog(kBothHost, [](Dialog&) { ADD_FAILURE() << "the dialog opened"; }), 0);
  EXPECT_EQ(messages_, std::vector<std::string>{"This plugin could not be initialized"});
  FailAllocation(0);
}

}  // namespace
}  // namespace glyphmotion
