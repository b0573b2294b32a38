// SPDX-License-Identifier: MIT
// The host with a window, as far as it needs none: what it takes from a plug-in, how it plays it, what it writes.
#include "host/recording/animation.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "host/host_helpers.h"
#include "host/recording/player.h"
#include "platform/memory.h"

namespace glyphmotion {
namespace {

using testing::Bytes;
using testing::MakeDib;

HostTaskRecord TaskOf(int width, int height, std::uint32_t images) {
  HostTaskRecord task{};
  task.size = sizeof task;
  task.version = HostInterfaceVersion;
  task.width = static_cast<std::uint32_t>(width);
  task.height = static_cast<std::uint32_t>(height);
  task.imageCount = images;
  task.palette[3 * 2] = 0x11;
  task.palette[3 * 2 + 2] = 0x33;
  return task;
}

HostImageRecord ImageRecord(std::uint32_t number, std::uint32_t delay, int transparentIndex = -1) {
  HostImageRecord image{};
  image.size = sizeof image;
  image.version = HostInterfaceVersion;
  image.number = number;
  image.delay = delay;
  image.transparentIndex = transparentIndex;
  return image;
}

Bytes Plain(int width, int height, int bits, std::uint32_t value) {
  return MakeDib(width, height, bits, {0, 0, 0, 255, 255, 255}, [value](int, int) { return value; });
}

TEST(TaskReceiver, GivesWhatCameInOrder) {
  TaskReceiver receiver(10);
  const HostTaskRecord task = TaskOf(4, 3, 2);
  ASSERT_TRUE(receiver.Open(&task, true));
  const HostImageRecord first = ImageRecord(0, 4), second = ImageRecord(1, 0xFFFFFFFF, 1);
  EXPECT_TRUE(receiver.AddImage(&task, &first, Plain(4, 3, 8, 1)));
  EXPECT_TRUE(receiver.AddImage(&task, &second, Plain(2, 2, 1, 0)));
  EXPECT_TRUE(receiver.SetBackground(&task, 101, 2));
  EXPECT_TRUE(receiver.AddComment(&task, "caf\xE9"));
  const auto animation = receiver.End(&task, true);
  ASSERT_TRUE(animation);
  EXPECT_TRUE(animation->test);
  EXPECT_EQ(animation->frames.size(), 2u);
  EXPECT_EQ(animation->frames[0].delay, 40);
  EXPECT_EQ(animation->frames[1].delay, 655350) << "the longest that a file can say";
  EXPECT_EQ(animation->frames[1].transparentIndex, 1);
  EXPECT_EQ(animation->background, 0x330011u);
  EXPECT_EQ(animation->comment, "caf\xC3\xA9");
  EXPECT_FALSE(receiver.IsOpen());
}

TEST(TaskReceiver, RefusesWhatIsOutOfOrderOrForm) {
  const HostTaskRecord good = TaskOf(4, 3, 2);
  const std::pair<const char*, std::function<void(HostTaskRecord&)>> badTasks[] = {
      {"small", [](HostTaskRecord& task) { task.size = 24; }},
      {"old", [](HostTaskRecord& task) { task.version = 0x0FFF; }},
      {"flat", [](HostTaskRecord& task) { task.height = 0; }},
      {"huge", [](HostTaskRecord& task) { task.width = 65536; }},
      {"empty", [](HostTaskRecord& task) { task.imageCount = 0; }},
  };
  for (const auto& [name, spoil] : badTasks) {
    TaskReceiver receiver(10);
    HostTaskRecord task = good;
    spoil(task);
    EXPECT_FALSE(receiver.Open(&task, false)) << name;
  }
  TaskReceiver receiver(10);
  const HostImageRecord image = ImageRecord(0, 4), later = ImageRecord(1, 4), third = ImageRecord(2, 4);
  const Bytes dib = Plain(4, 3, 8, 1);
  EXPECT_FALSE(receiver.Open(nullptr, false));
  EXPECT_FALSE(receiver.AddImage(&good, &image, dib)) << "before the task";
  EXPECT_FALSE(receiver.End(&good, true)) << "before the task";
  ASSERT_TRUE(receiver.Open(&good, false));
  EXPECT_FALSE(receiver.Open(&good, false)) << "within a task";
  EXPECT_FALSE(receiver.AddImage(&later, &image, dib)) << "another task";
  EXPECT_FALSE(receiver.AddImage(&good, nullptr, dib));
  EXPECT_FALSE(receiver.AddImage(&good, &later, dib)) << "out of turn";
  EXPECT_FALSE(receiver.AddImage(&good, &image, std::span(dib).first(dib.size() - 1))) << "cut short";
  EXPECT_FALSE(receiver.AddImage(&good, &image, {}));
  EXPECT_FALSE(receiver.AddImage(&good, &image, Plain(5, 3, 8, 1))) << "wider than the task says";
  Bytes huge = dib;
  std::memset(huge.data() + 4, 0x7F, 8);
  EXPECT_FALSE(receiver.AddImage(&good, &image, huge));
  EXPECT_FALSE(receiver.SetBackground(&good, 101, 256));
  EXPECT_FALSE(receiver.SetBackground(&good, 7, 0));
  EXPECT_FALSE(receiver.AddComment(&good, nullptr));
  EXPECT_TRUE(receiver.AddImage(&good, &image, dib));
  EXPECT_TRUE(receiver.AddImage(&good, &later, dib));
  EXPECT_FALSE(receiver.AddImage(&good, &third, dib)) << "more than the task says";
  EXPECT_FALSE(receiver.End(&good, false)) << "abandoned";
  EXPECT_FALSE(receiver.IsOpen());
}

std::shared_ptr<Animation> AnimationOf(int width, int height, const std::vector<AnimationFrame>& frames) {
  auto animation = std::make_shared<Animation>();
  animation->width = width;
  animation->height = height;
  animation->frames = frames;
  return animation;
}

// Three frames of one pixel column each: the second and third show through to those before them.
std::shared_ptr<Animation> Overlay() {
  const auto column = [](int at) {
    return MakeDib(3, 1, 8, {9, 9, 9, 10, 0, 0}, [at](int x, int) { return x == at ? 1u : 0u; });
  };
  return AnimationOf(3, 1, {{column(0), 40, 0, false}, {column(1), 0, 0, false}, {column(2), 60, 0, false}});
}

std::string Columns(const Player& player) {
  std::string seen;
  for (std::size_t x = 0; x < 3; ++x) seen += player.Picture().pixels[x * 4 + 3] ? '#' : '.';
  return seen;
}

TEST(Player, ShowsEachFrameForItsDelayAndBeginsAgain) {
  Player player(Overlay(), 1000);
  EXPECT_EQ(Columns(player), "#..");
  EXPECT_FALSE(player.Advance(1039));
  EXPECT_TRUE(player.Advance(1040));
  EXPECT_EQ(Columns(player), "##.");
  EXPECT_FALSE(player.Advance(1139)) << "no delay is 100 ms";
  EXPECT_TRUE(player.Advance(1145));
  EXPECT_EQ(Columns(player), "###");
  EXPECT_TRUE(player.Advance(1200)) << "the 5 ms of being late are not added";
  EXPECT_EQ(Columns(player), "#..");
  EXPECT_TRUE(player.Advance(900000));
  EXPECT_EQ(player.Frame(), 1) << "after a long gap it goes on from where it was";
}

TEST(Player, PausesAndSteps) {
  Player player(Overlay(), 0);
  player.Pause(true, 30);
  EXPECT_FALSE(player.Advance(5000));
  player.Pause(false, 5000);
  EXPECT_FALSE(player.Advance(5009));
  EXPECT_TRUE(player.Advance(5010));
  player.Step(-1);
  EXPECT_EQ(Columns(player), "#..");
  player.Step(-1);
  EXPECT_EQ(Columns(player), "###") << "wraps around, with everything that the last frame depends on";
  EXPECT_FALSE(player.Advance(9000));
  player.Step(1);
  EXPECT_EQ(player.Frame(), 0);
}

Bytes Decode(const Animation& animation, const std::string& arguments) {
  const testing::TemporaryFolder folder;
  std::string error;
  testing::WriteBytes(folder / "a.gif", GifOf(animation, error));
  EXPECT_EQ(error, "");
  const std::string command =
      "gifsicle " + arguments + " '" + (folder / "a.gif") + "' > '" + (folder / "out") + "' 2>&1";
  EXPECT_EQ(std::system(command.c_str()), 0);
  return testing::ReadBytes(folder / "out");
}

TEST(Gif, FramesWithAllColoursGetOnePaletteAndKeepTheirHoles) {
  // 40 x 40: 1600 colours, the left half of the second frame clear.
  const auto picture = [](bool holes) {
    return MakeDib(40, 40, 32, {}, [holes](int x, int y) {
      const std::uint32_t alpha = holes && x < 20 ? 127 : 128;
      return alpha << 24 | 0x40u << 16 | static_cast<std::uint32_t>(y * 6) << 8 | static_cast<std::uint32_t>(x * 6);
    });
  };
  const auto animation = AnimationOf(40, 40, {{picture(false), 50, -1, true}, {picture(true), 50, -1, true}});
  const Bytes text = Decode(*animation, "--info");
  const std::string info(text.begin(), text.end());
  EXPECT_NE(info.find("2 images"), std::string::npos) << info;
  EXPECT_NE(info.find("20x40 at 20,0"), std::string::npos) << info;
  EXPECT_NE(info.find("disposal background"), std::string::npos) << "the left half is seen through: " << info;
  EXPECT_NE(info.find("delay 0.05s"), std::string::npos) << info;
  EXPECT_EQ(LiveBlocks().blocks, 0u);
}

TEST(Gif, FewColoursComeBackExactly) {
  const auto dib = MakeDib(8, 8, 24, {}, [](int x, int y) { return (x + y) % 2 ? 0x123456u : 0xFEDCBAu; });
  const auto animation = AnimationOf(8, 8, {{dib, 40, -1, false}});
  const Bytes text = Decode(*animation, "--color-info --info");
  const std::string info(text.begin(), text.end());
  EXPECT_NE(info.find("#563412"), std::string::npos) << info;
  EXPECT_NE(info.find("#BADCFE"), std::string::npos) << info;
}

TEST(Gif, WithoutAFrameThereIsNoFile) {
  std::string error;
  EXPECT_TRUE(GifOf(Animation{}, error).empty());
  EXPECT_NE(error, "");
}

}  // namespace
}  // namespace glyphmotion
