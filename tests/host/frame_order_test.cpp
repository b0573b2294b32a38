// SPDX-License-Identifier: MIT
// Loops that begin elsewhere, the number of times they play, and raw video.
#include "host/encoders/frame_order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "host/encoders/encoders.h"
#include "host/encoders/screen.h"
#include "host/host_helpers.h"

namespace glyphmotion {
namespace {

using testing::Bytes;

struct Frame {
  Bytes dib;
  Image image;
};

// Frames of 7 x 5 pixels, of which all but the first may look through to the one before.
std::vector<Frame> RandomFrames(std::mt19937& random, int bits, int count) {
  const Bytes palette = {0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255};
  std::vector<Frame> frames;
  for (int i = 0; i < count; ++i) {
    const bool through = i > 0 && random() % 3;
    const auto pixel = [&](int, int) { return random() % (through ? 4 : 3); };
    frames.push_back({testing::MakeDib(7, 5, bits, palette, pixel), {}});
    Image& image = frames.back().image;
    image = testing::ImageOf({}, 7, 5, bits, i, 1 + static_cast<int>(random() % 9));
    image.transparentIndex = 3;
    image.standAlone = !through;
  }
  return frames;
}

std::vector<std::pair<Bytes, int>> Shown(const std::vector<Frame>& frames) {
  Screen screen(7, 5);
  std::vector<std::pair<Bytes, int>> shown;
  for (const Frame& frame : frames) {
    screen.Show(ReadDib(frame.dib), frame.image.transparentIndex, frame.image.standAlone);
    shown.emplace_back(screen.pixels, frame.image.delay);
  }
  return shown;
}

std::string Turn(const std::vector<Frame>& frames, int start, std::vector<Frame>& turned) {
  FrameOrder order(start, [&](const Image& image) {
    EXPECT_EQ(image.number, static_cast<int>(turned.size()));
    turned.push_back({{image.dib.begin(), image.dib.end()}, image});
    return std::string();
  });
  for (const Frame& frame : frames) {
    Image image = frame.image;
    image.dib = frame.dib;
    EXPECT_EQ(order.Add(image), "");
  }
  return order.Finish();
}

TEST(FrameOrder, ATurnedLoopShowsTheSamePictures) {
  std::mt19937 random(7);
  for (int round = 0; round < 60; ++round) {
    const int count = 1 + round % 6, bits = round % 2 ? 8 : 4;
    const std::vector<Frame> frames = RandomFrames(random, bits, count);
    for (int start = FrameOrder::kRest; start < count; ++start) {
      std::vector<Frame> turned;
      ASSERT_EQ(Turn(frames, start, turned), "");
      auto expected = Shown(frames);
      auto first = expected.begin() + std::max(start, 0);
      if (start == FrameOrder::kRest)
        first = std::max_element(expected.begin(), expected.end(),
                                 [](const auto& a, const auto& b) { return a.second < b.second; });
      std::rotate(expected.begin(), first, expected.end());
      EXPECT_EQ(Shown(turned), expected) << "start " << start << " of " << count << " frames, " << bits << " bits";
    }
    std::vector<Frame> none;
    EXPECT_NE(Turn(frames, count, none).find("has " + std::to_string(count) + " frames"), std::string::npos);
  }
}

// What an encoder makes of frames of one colour each.
std::string Encoded(const char* extension, const std::vector<std::pair<std::uint32_t, int>>& frames, int loops) {
  const testing::TemporaryFolder folder;
  std::string error;
  Output output = Output::File(folder / "out", error);
  const int count = static_cast<int>(frames.size());
  const bool palette = FindFormat(extension)->paletteFormat;
  Encoder encoder = FindFormat(extension)->open(output, {4, 2, count, palette ? 10 : 1, -1, loops});
  for (int i = 0; i < count; ++i) {
    const auto [colour, delay] = frames[static_cast<std::size_t>(i)];
    const Bytes dib = testing::MakeDib(4, 2, palette ? 8 : 24, {0, 0, 0, 9, 9, 9},
                                       [&](int, int) { return palette ? static_cast<std::uint32_t>(i) : colour; });
    EXPECT_EQ(encoder.add(testing::ImageOf(dib, 4, 2, palette ? 8 : 24, i, delay)), "");
  }
  EXPECT_EQ(encoder.finish(), "");
  EXPECT_EQ(output.Keep(), "");
  return testing::ReadText(folder / "out");
}

TEST(Encoders, AnAnimationPlaysAsOftenAsAsked) {
  const struct {
    const char *extension, *chunk;
    std::size_t offset;    // of the count from the chunk's name
    std::string bytes[3];  // for ever, three times, once; empty: no such chunk
  } rows[] = {{".gif", "NETSCAPE2.0", 13, {{"\0\0", 2}, {"\2\0", 2}, ""}},
              {".png", "acTL", 8, {{"\0\0\0\0", 4}, {"\0\0\0\3", 4}, {"\0\0\0\1", 4}}},
              {".webp", "ANIM", 12, {{"\0\0", 2}, {"\3\0", 2}, {"\1\0", 2}}}};
  const int loops[] = {0, 3, 1};
  for (const auto& row : rows) {
    for (std::size_t i = 0; i < 3; ++i) {
      const std::string file = Encoded(row.extension, {{0x0000FF, 4}, {0x00FF00, 4}}, loops[i]);
      const std::size_t at = file.find(row.chunk);
      ASSERT_EQ(at == std::string::npos, row.bytes[i].empty()) << row.extension << " " << loops[i];
      if (at != std::string::npos) {
        EXPECT_EQ(file.substr(at + row.offset, row.bytes[i].size()), row.bytes[i]) << row.extension << " " << loops[i];
      }
    }
  }
}

TEST(Encoders, RawVideoHasOneRateAndHoldsPausesByRepeatedFrames) {
  const std::vector<std::pair<std::uint32_t, int>> frames = {{0x0000FF, 40}, {0xFFFFFF, 120}, {0x000000, 80}};
  const std::string y4m = Encoded(".y4m", frames, 0), head = "YUV4MPEG2 W4 H2 F25:1 Ip A1:1 C444 XCOLORRANGE=LIMITED\n";
  std::string expected = head;
  const unsigned char levels[][3] = {{81, 90, 240},   {235, 128, 128}, {235, 128, 128},
                                     {235, 128, 128}, {16, 128, 128},  {16, 128, 128}};
  for (const auto& frame : levels) {
    expected += "FRAME\n";
    for (const unsigned char level : frame) expected.append(8, static_cast<char>(level));
  }
  EXPECT_EQ(y4m, expected);
  const std::string rgba = Encoded(".rgba", frames, 0);
  ASSERT_EQ(rgba.size(), 6u * 32);
  EXPECT_EQ(rgba.substr(0, 4), std::string("\xFF\0\0\xFF", 4));
}

}  // namespace
}  // namespace glyphmotion
