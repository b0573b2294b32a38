// SPDX-License-Identifier: MIT
// What the main dialog paints: the sample and its size, skinned buttons, the animation of the about box.
#include <cstdio>
#include <set>

#include "glyphmotion/version.h"
#include "image/packed_dib.h"
#include "main_dialog_fixture.h"
#include "resources/box_templates.h"
#include "text/compositing.h"

namespace glyphmotion {
namespace {

using namespace MainControl;

// --- The sample ---

struct Picture {
  int width, height;
  std::vector<std::uint8_t> bytes;
  Picture(int w, int h) : width(w), height(h), bytes(static_cast<std::size_t>(w * h * 3), 0x55) {}
  DrawRequest Request() { return {bytes.data(), width, height, width * 3}; }
  Colour Pixel(int x, int y) const {
    const std::uint8_t* p = bytes.data() + 3 * (y * width + x);
    return MakeColour(p[2], p[1], p[0]);
  }
  bool IsFramed(Colour colour) const {
    for (int x = 0; x < width; ++x) {
      if (Pixel(x, 0) != colour || Pixel(x, height - 1) != colour) return false;
    }
    for (int y = 0; y < height; ++y) {
      if (Pixel(0, y) != colour || Pixel(width - 1, y) != colour) return false;
    }
    return true;
  }
};

TEST_F(MainDialogTest, WithoutAFrameTheSampleIsAnEmptyField) {
  RunDialog(kBothHost, [&](Dialog& dialog) {
    Type(dialog, ControlId::Text, "");
    Picture picture(60, 30);
    ASSERT_TRUE(PaintControl(dialog, Sample, picture.Request()));
    EXPECT_TRUE(picture.IsFramed(GetSystemColour(SystemColour::ButtonShadow)));
    for (int y = 1; y < 29; ++y) {
      for (int x = 1; x < 59; ++x) ASSERT_EQ(picture.Pixel(x, y), GetSystemColour(SystemColour::Light3D));
    }
  });
}

TEST_F(MainDialogTest, TheSampleIsCentredOnItsColour) {
  AtomicWriteFile(Path("settings.ini"),
                  "MainText = I\nMainFontSize = 20\nSampleWindowKeyLine = 1\nStyle000ShadowEnable = 0\n");
  RunDialog(kBothHost, [&](Dialog& dialog) {
    Picture picture(301, 151);
    ASSERT_TRUE(PaintControl(dialog, Sample, picture.Request()));
    int width = 0, height = 0;
    ASSERT_EQ(std::sscanf(GetText(dialog, SizeText).c_str(), "%d x %d pixels", &width, &height), 2);
    ASSERT_TRUE(width > 4 && width < 100 && height > 19 && height < 60);
    EXPECT_TRUE(picture.IsFramed(GetSystemColour(SystemColour::ButtonShadow)));
    const int left = 1 + (299 - width) / 2, top = 1 + (149 - height) / 2;
    bool hasInk = false;
    for (int y = 1; y < 150; ++y) {
      for (int x = 1; x < 300; ++x) {
        const bool inFrame = x >= left && x < left + width && y >= top && y < top + height;
        const bool onLine = !inFrame && x >= left - 1 && x <= left + width && y >= top - 1 && y <= top + height;
        if (inFrame) {
          hasInk |= picture.Pixel(x, y) != 0xFFFFFF;
        } else {
          ASSERT_EQ(picture.Pixel(x, y), onLine ? 0xC0C0C0u : 0xFFFFFFu) << x << "," << y;
        }
      }
    }
    EXPECT_TRUE(hasInk);
    // A window smaller than the frame shows its middle and nothing outside itself.
    Picture small(5, 4);
    ASSERT_TRUE(PaintControl(dialog, Sample, small.Request()));
    EXPECT_TRUE(small.IsFramed(GetSystemColour(SystemColour::ButtonShadow)));
  });
}

TEST_F(MainDialogTest, TheSizeTextIsOneLineInsideItsFrame) {
  RunDialog(kBothHost, [&](Dialog& dialog) {
    Picture blank(120, 21), text(120, 21);
    SetText(dialog, SizeText, "");
    ASSERT_TRUE(PaintControl(dialog, SizeText, blank.Request()));
    SetText(dialog, SizeText, std::string(80, 'M'));
    ASSERT_TRUE(PaintControl(dialog, SizeText, text.Request()));
    int ink = 0;
    for (int y = 0; y < 21; ++y) {
      for (int x = 0; x < 120; ++x) {
        const bool inside = x >= 5 && x < 115 && y >= 3 && y < 18;
        const bool frame = x == 0 || y == 0 || x == 119 || y == 20;
        ASSERT_EQ(blank.Pixel(x, y), GetSystemColour(frame ? SystemColour::ButtonShadow : SystemColour::ButtonFace));
        ASSERT_TRUE(inside || text.Pixel(x, y) == blank.Pixel(x, y)) << x << "," << y;
        ink += text.Pixel(x, y) != blank.Pixel(x, y);
      }
    }
    EXPECT_GT(ink, 100);
  });
}

// --- The look ---

using Look = std::string;

// A control of the dialog on a background of one colour.
Look LookOf(Dialog& dialog, int id, DrawRequest request = {}, bool* painted = nullptr) {
  Look pixels(62 * 3 * 24, 0x55);
  request.pixels = reinterpret_cast<std::uint8_t*>(pixels.data());
  request.width = 62;
  request.height = 24;
  request.stride = 62 * 3;
  const bool done = PaintControl(dialog, id, request);
  if (painted) *painted = done;
  return pixels;
}

TEST_F(MainDialogTest, ButtonsAreSkinnedWhenTheHostAsksButNotInHighContrastAndThenShowTheirStates) {
  for (const int round : {0, 1, 2}) {
    skinned_ = round != 0;
    responder_.highContrast = round == 1;
    const bool skinned = round == 2;
    RunDialog(kBothHost, [&](Dialog& dialog) {
      for (const int id : {Build, Cancel, Help, Register, About, MainControl::Test, OpenSave}) {
        bool painted = false;
        LookOf(dialog, id, {}, &painted);
        EXPECT_EQ(painted, skinned) << id;
      }
      if (!skinned) return;
      DrawRequest pressed, hot, standard, focused;
      pressed.pressed = hot.hot = standard.isDefault = focused.focused = true;
      std::set<Look> looks = {LookOf(dialog, MainControl::Test), LookOf(dialog, MainControl::Test, pressed),
                              LookOf(dialog, MainControl::Test, hot), LookOf(dialog, MainControl::Test, standard),
                              LookOf(dialog, MainControl::Test, focused)};
      Enable(dialog, MainControl::Test, false);
      looks.insert(LookOf(dialog, MainControl::Test));
      EXPECT_EQ(looks.size(), 6u) << "every state looks its own";
      for (const Look& look : looks) EXPECT_EQ(look.front(), 0x55) << "the corner is what is behind";
      Type(dialog, ControlId::Text, "");
      EXPECT_FALSE(Click(dialog, Build)) << "a skinned button is a button";
    });
  }
}

TEST_F(MainDialogTest, TheAboutAnimationMovesWhileItIsSeen) {
  RunDialog(kBothHost, [&](Dialog& dialog) {
    const Look first = LookOf(dialog, AboutAnimation);
    for (int i = 0; i < 8; ++i) Pump(dialog);
    EXPECT_NE(LookOf(dialog, AboutAnimation), first);
    Show(dialog, AboutAnimation, false);
    for (int i = 0; i < 2; ++i) Pump(dialog);
    const Look last = LookOf(dialog, AboutAnimation);
    for (int i = 0; i < 8; ++i) Pump(dialog);
    EXPECT_EQ(LookOf(dialog, AboutAnimation), last) << "what is not seen does not move";
  });
}

TEST_F(MainDialogTest, TheAboutBoxSaysWhatThisIsAndCloses) {
  int shown = 0;
  inner_ = [&](Dialog& dialog, int templateId) {
    ++shown;
    EXPECT_EQ(templateId, kAboutBox.id);
    EXPECT_NE(GetText(dialog, BoxControl::MessageText).find(GLYPHMOTION_VERSION), std::string::npos);
    const Look first = LookOf(dialog, BoxControl::Picture);
    for (int i = 0; i < 8; ++i) Pump(dialog);
    EXPECT_NE(LookOf(dialog, BoxControl::Picture), first);
    if (shown == 1) {
      Click(dialog, BoxControl::Ok);
    } else {
      PostCommand(dialog, BoxControl::Cancel);  // Escape
      Pump(dialog);
    }
    EXPECT_TRUE(HasEnded(dialog));
  };
  RunDialog(kBothHost, [&](Dialog& dialog) {
    Click(dialog, About);
    Click(dialog, About);
    EXPECT_EQ(shown, 2);
    EXPECT_FALSE(HasEnded(dialog));
  });
}

}  // namespace
}  // namespace glyphmotion
