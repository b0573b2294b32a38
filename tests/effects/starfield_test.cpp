// SPDX-License-Identifier: MIT
// Hyperspace and Background Hyperspace.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "effects/plain_fill.h"
#include "platform/random.h"

namespace glyphmotion::test {
namespace {

struct Field {
  const char* effect;
  const char* stem;
  bool behind;  // on the background, not in the letters
};
constexpr Field kFields[] = {{"hyperspace", "Style006", false}, {"background-hyperspace", "Style015", true}};

struct PlainStar {
  double x, y;
  int size, factor, opacity;
};

std::vector<PlainStar> PlainStars(int width, int height, int seed, int density) {
  SeedRandom(static_cast<std::uint32_t>(seed));
  std::vector<PlainStar> stars;
  const auto add = [&](int count, int size, int factor, int opacity) {
    for (int i = 0; i < count; ++i) {
      PlainStar star{0, 0, size, factor, opacity};
      const int draw = NextRandom();
      star.x = size == 4 ? draw % (width - 4) + 2 : size == 2 ? draw % (width - 2) + 1 : draw % (width - 1);
      star.y = NextRandom() % height;
      NextRandom();
      NextRandom();
      stars.push_back(star);
    }
  };
  add(density / 2, 4, 1, 255);
  add(density * 3 / 4, 2, 2, 160);
  add(density, 1, 4, 128);
  return stars;
}

void PaintPlainly(PlainPicture& picture, std::vector<PlainStar>& stars, int frames, bool right, std::uint32_t colour) {
  for (PlainStar& star : stars) {
    const int top = static_cast<int>(star.y) - star.size / 2, length = star.size * 20;
    int column = static_cast<int>(star.x);
    for (int j = 0; j < length; ++j) {
      const double f = static_cast<double>(length - j) / length;
      picture.Blend(column, top, colour, static_cast<int>(f * star.opacity) & 255);
      const int half = static_cast<int>(0.5 * star.opacity * f) & 255;
      const int quarter = j ? static_cast<int>(0.25 * star.opacity * f) & 255 : 0;
      if (star.size == 2) picture.Blend(column, top + 1, colour, j ? half : 0);
      if (star.size == 4) {
        picture.Blend(column, top + 1, colour, half);
        picture.Blend(column, top + 2, colour, quarter);
        picture.Blend(column, top - 1, colour, quarter);
      }
      column += right ? -1 : 1;
      if (column >= picture.width) column = 0;
      if (column < 0) column = picture.width - 1;
    }
    const double step = star.factor * (static_cast<double>(picture.width) / frames);
    star.x += right ? step : -step;
    while (star.x >= picture.width && right) star.x -= picture.width;
    while (star.x < 0) star.x = picture.width - std::abs(star.x);
  }
}

TEST(Starfield, EveryFrameIsThePlainReading) {
  for (const Field& field : kFields) {
    const std::string stem = field.stem;
    for (const auto& [text, size] :
         {std::make_pair("i", "6"), std::make_pair("M8g", "30"), std::make_pair("Wide text", "44")}) {
      for (int frames : {2, 3, 8}) {
        for (int density : {8, 41, 255}) {
          const bool right = (frames + density) % 2;
          Job job = BareJob(field.effect, stem,
                            {{stem + "Frames", std::to_string(frames)},
                             {stem + "Density", std::to_string(density)},
                             {stem + "Scroll", right ? "1" : "0"},
                             {stem + "Seed", "1234"},
                             {stem + "SparkColor", std::to_string(0x40F0FF)},
                             {"MainFontSize", size}});
          job.text = text;
          std::vector<PlainStar> stars;
          EXPECT_EQ(FramesUnlike(job,
                                 [&](PlainPicture& fill, PlainPicture& back) {
                                   PlainPicture& picture = field.behind ? back : fill;
                                   if (stars.empty()) stars = PlainStars(picture.width, picture.height, 1234, density);
                                   PaintPlainly(picture, stars, frames, right, 0x40F0FF);
                                 }),
                    0)
              << field.effect << " " << text << " " << frames << " " << density;
        }
      }
    }
  }
}

TEST(Starfield, LoopsWithoutARestOrASeam) {
  for (const Field& field : kFields) {
    const std::string stem = field.stem;
    ExpectLoops(field.effect, stem);
    // The last frame shows the places of the start, which are those of the sample.
    const Built built = BuildWith(field.effect, {{stem + "Frames", "4"}}), sample = SampleWith(field.effect);
    ASSERT_EQ(built.frames.size(), 4u);
    EXPECT_EQ(built.frames[3], sample.frames.at(0));
    EXPECT_FALSE(built.frames[0] == sample.frames.at(0));
  }
}

TEST(Starfield, AlphaRunsKeepTheBackgroundThatStarsNeed) {
  const Settings alpha = {
      {"62", "1"}, {"63", "1"}, {"Style015Frames", "2"}, {"Style006Frames", "2"}, {"MainPadding", "9"}};
  const Built behind = BuildWith("background-hyperspace", alpha), inside = BuildWith("hyperspace", alpha);
  ASSERT_EQ(behind.frames.size() + inside.frames.size(), 4u);
  EXPECT_EQ(inside.frames[0].bits, 32);
  const auto count = [](const BuiltFrame& frame, std::uint32_t colour) {
    int pixels = 0;
    for (int y = 0; y < frame.height; ++y) {
      for (int x = 0; x < frame.width; ++x) pixels += PixelOf(frame, x, y) == colour;
    }
    return pixels;
  };
  EXPECT_GT(count(inside.frames[0], 0x7F7F7F), 20) << "the key colour";
  EXPECT_GT(count(behind.frames[0], 0), 20) << "the black background";
}

TEST(Starfield, FramesMayBeNarrowerThanAStarIsThick) {
  for (const Field& field : kFields) {
    for (const char* pad : {"1", "2"}) {
      Job narrow = BareJob(field.effect, field.stem, {{"MainFontSize", "4"}, {"MainPadding", pad}});
      narrow.text = ".";
      const Built built = RunJob(narrow);
      EXPECT_EQ(built.frames.size(), 96u) << built.result.message;
      EXPECT_LE(built.frames.at(0).width, 4);
    }
  }
}

}  // namespace
}  // namespace glyphmotion::test
