// SPDX-License-Identifier: MIT
// What a person and a host meet when Build or Test is pressed.
#include <cstdlib>
#include <new>
#include <utility>

#include "image/packed_dib.h"
#include "main_dialog_fixture.h"
#include "text/compositing.h"

namespace glyphmotion {
namespace {

using namespace MainControl;

class BuildingTest : public MainDialogTest {};

TEST_F(BuildingTest, ATestKeepsTheDialogABuildEndsItAndARefusalLeavesItOpen) {
  AtomicWriteFile(Path("settings.ini"), "MainText = I\nMainFontSize = 12\nMainRolling = 0\nMainPalette = 0\n");
  std::uint64_t accept = 1;
  host.answer = [&](std::uint32_t operation, std::uint64_t, std::uint64_t) -> std::uint64_t {
    return operation == HostOpNewTask || operation == HostOpNewTestTask ? accept : 1;
  };
  const std::int64_t result = RunDialog(kBothHost, [&](Dialog& dialog) {
    host.calls.clear();
    Click(dialog, MainControl::Test);
    EXPECT_FALSE(HasEnded(dialog));
    ASSERT_FALSE(host.calls.empty());
    EXPECT_EQ(host.calls[0].operation, std::uint32_t{HostOpBeforeWork});
    EXPECT_EQ(host.Count(HostOpNewTestTask), 1);
    EXPECT_EQ(host.Count(HostOpAddImage), 1);
    accept = 0;
    Click(dialog, Build);
    EXPECT_FALSE(HasEnded(dialog));
    EXPECT_EQ(messages_, std::vector<std::string>{"Error creating new task."});
    accept = 1;
    Click(dialog, Build);
    EXPECT_TRUE(HasEnded(dialog));
  });
  EXPECT_EQ(result, 1);
  EXPECT_EQ(host.Count(HostOpNewTask), 2);
}

// The check is off for a Test and on again after it, also after a refusal, by the time the host is notified of the end.
// The host is notified even when memory runs out while a message is shown.
TEST_F(BuildingTest, ARefusedImageEndsItsTaskAndRestoresAlpha) {
  AtomicWriteFile(Path("settings.ini"),
                  "MainText = I\nMainFontSize = 12\nMainRolling = 0\nTruecolour = 1\nMainAlphaTrans = 1\n");
  Dialog* main = nullptr;
  bool accept = false, outOfMemory = false;
  std::vector<std::uint64_t> ends;
  host.answer = [&](std::uint32_t operation, std::uint64_t a, std::uint64_t) -> std::uint64_t {
    const int alpha = main ? GetCheck(*main, ControlId::AlphaTransparency) : 0;
    if (operation == HostOpAddImage) {
      EXPECT_EQ(alpha, 0);
      return accept;
    }
    if (operation == HostOpEndTask) {
      EXPECT_EQ(alpha, accept ? 0 : 1) << "a finished task ends before the clean-up, an abandoned one after it";
      ends.push_back(a);
    }
    return 1;
  };
  responder_.message = [&](Dialog*, const std::string& text, MessageButtons) {
    messages_.push_back(text);
    if (std::exchange(outOfMemory, false)) throw std::bad_alloc();
    return true;
  };
  RunDialog(kColourHost, [&](Dialog& dialog) {
    main = &dialog;
    for (const bool out : {false, true}) {
      outOfMemory = out;
      Click(dialog, MainControl::Test);
      EXPECT_EQ(GetCheck(dialog, ControlId::AlphaTransparency), 1);
      EXPECT_FALSE(HasEnded(dialog));
    }
    accept = true;
    Click(dialog, MainControl::Test);
    EXPECT_EQ(GetCheck(dialog, ControlId::AlphaTransparency), 1);
    host.answer = nullptr;
  });
  EXPECT_EQ(ends, (std::vector<std::uint64_t>{0, 0, 1}));
  const std::string refused = "There has been an error adding an image to the current file object.";
  EXPECT_EQ(messages_, (std::vector<std::string>{refused, refused, "Memory error"}));
}

// A host is asked only about a whole registration, and only its no is stamped into the picture's middle.
TEST_F(BuildingTest, AHostThatIsNotRegisteredGetsStampedFrames) {
  AtomicWriteFile(Path("settings.ini"),
                  "MainText = Stamped\nMainFontSize = 40\nMainRolling = 0\nTruecolour = 1\nMainAlphaTrans = 0\n");
  std::uint64_t registered = 1;
  PackedDib image;
  host.answer = [&](std::uint32_t operation, std::uint64_t, std::uint64_t b) -> std::uint64_t {
    if (operation == HostOpAddImage) image = PackedDib(DuplicateBlock(HandleOf(At<HostImageRecord>(b)->image)));
    return operation == HostOpIsRegistered ? registered : 1;
  };
  RunDialog(kColourHost, [&](Dialog& dialog) {
    const auto test = [&](const char* name, const char* code, std::uint64_t answer) {
      FindVariable("RegistrationName")->text = name;
      FindVariable("RegistrationCode")->text = code;
      registered = answer;
      host.calls.clear();
      Click(dialog, MainControl::Test);
      EXPECT_EQ(host.Count(HostOpIsRegistered), *name && *code ? 1 : 0);
      return std::move(image);
    };
    const PackedDib plainDib = test("", "", 0), halfDib = test("Me", "", 0), paidDib = test("Me", "7", 1),
                    stampedDib = test("Me", "7", 0);
    const DibView plain(plainDib), half(halfDib), paid(paidDib), stamped(stampedDib);
    ASSERT_TRUE(plain && half && paid && stamped);
    int marked = 0, offCentre = 0;
    for (int y = 0; y < plain.Height(); ++y) {
      for (int x = 0; x < plain.Width(); ++x) {
        const Colour colour = plain.GetPixel(x, y);
        ASSERT_TRUE(half.GetPixel(x, y) == colour && paid.GetPixel(x, y) == colour);
        if (stamped.GetPixel(x, y) == colour) continue;
        ASSERT_EQ(stamped.GetPixel(x, y), colour ^ 0xFFFFFF);
        ++marked;
        offCentre += 2 * x - plain.Width() + 1;
        EXPECT_LE(std::abs(2 * y - plain.Height() + 1), 8);
      }
    }
    ASSERT_GT(marked, 100);
    EXPECT_LT(std::abs(offCentre / marked), 8);
  });
}

}  // namespace
}  // namespace glyphmotion
