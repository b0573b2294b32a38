// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>

#include "effects/option_ends.h"
#include "effects/text_levels.h"
#include "image/filters.h"
#include "image/surface.h"

namespace glyphmotion::test {
namespace {

constexpr const char* kIncrement = "Style011Increment";
constexpr const char* kFill = "gradient:linear,#ff0000-#0000ff,rotation=30";
const Settings kBare = {
    {"MainPadding", "2"}, {"Style011Soft", "0"}, {"Style011ShadowEnable", "0"},    {"Style011OutlineEnable", "0"},
    {"538", kFill},       {"542", "#102030"},    {"Style011TraceColor", "1899264"}};
constexpr Colour kBackground = MakeColour(0x10, 0x20, 0x30), kTrace = 1899264;

// Every wedge, the empty ones too, on a surface of three channels, which is reduced as it is.
PackedDib PlainFill(int width, int height, int angle, int increment, int traceAngle, bool maskCentre) {
  PackedDib fill = FillOf(kFill, width, height);
  DrawingSurface surface(4 * width, 4 * height);
  const int cx = width / 2, cy = height / 2, left = 4 * cx, top = 4 * cy;
  const int radius = static_cast<int>(std::sqrt(static_cast<double>(top * top + left * left)) + 0.5);
  const int n = static_cast<int>(2 * radius * 3.141592653589793 * (traceAngle / 360.0));
  const int base = increment < 1 ? angle : traceAngle - angle;
  for (int i = 0; i <= n - 2; ++i) {
    const double t = static_cast<double>(i) / n, t2 = static_cast<double>(i + 1) / n;
    const auto rim = [&](double at) {
      const double a = static_cast<int>(at * traceAngle + base) * 0.017453292519943295;
      return Point{static_cast<int>(radius * std::sin(a)) + left, static_cast<int>(-radius * std::cos(a)) + top};
    };
    const int g = increment < 1 ? 255 - static_cast<int>(t * 255) : static_cast<int>(t * 255);
    const Point wedge[] = {rim(t), {left, top}, rim(t2), rim(t)};
    surface.FillPolygon(wedge, MakeColour(g, g, g));
  }
  const int d = height / 10;
  if (maskCentre) surface.FillEllipse({left - 4 * d, top - 4 * d, left + 4 * d, (d + cy) * 4}, 0);
  const PackedDib reduced = ResampleByPercent(surface.End(), 25, 25);
  const DibView to(fill), sweep(reduced);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x)
      to.SetPixel(x, y, Blend(to.GetPixel(x, y), kTrace, static_cast<int>(sweep.GetPixel(x, y) & 0xFF)));
  }
  return fill;
}

TEST(Radar, FramesAreThePlainSweepsOfTheirAngles) {
  const struct {
    int position, increment, traceAngle;
    bool maskCentre;
    const char *text, *size;
  } rows[] = {{0, -60, 180, true, "Ab", "16"},  {33, 60, 320, false, "Ab", "16"}, {32, 45, 30, true, "MWM", "40"},
              {7, -12, 319, true, "MWM", "40"}, {21, 5, 180, true, "Ab", "16"},   {13, -4, 77, true, "i", "4"}};
  for (const auto& row : rows) {
    const Levels letters = LevelsOf({{"MainPadding", "2"}, {"52", row.text}, {"MainFontSize", row.size}}, false);
    Settings settings = kBare;
    settings.emplace_back("52", row.text);
    settings.emplace_back("MainFontSize", row.size);
    settings.emplace_back(kIncrement, std::to_string(row.position));
    settings.emplace_back("Style011Angle", std::to_string(row.traceAngle));
    settings.emplace_back("Style011MaskCenter", row.maskCentre ? "1" : "0");
    const Built built = BuildWith("radar", settings);
    const int step = std::abs(row.increment);
    ASSERT_EQ(built.frames.size(), static_cast<std::size_t>(360 / step)) << built.result.message;
    for (int i = 0; i < 360 / step; ++i) {
      EXPECT_EQ(FirstDifference(
                    built.frames[static_cast<std::size_t>(i)], letters,
                    PlainFill(letters.width, letters.height, -i * step, row.increment, row.traceAngle, row.maskCentre),
                    kBackground),
                "")
          << "increment " << row.increment << " frame " << i;
    }
    const Built sample = SampleWith("radar", settings);
    ASSERT_EQ(sample.frames.size(), 1u);
    EXPECT_EQ(sample.frames[0], built.frames[0]) << "the sample stands at angle 0";
  }
}

TEST(Radar, OneLoopWithoutAPause) {
  const struct {
    int position;
    std::size_t frames;
  } rows[] = {{0, 6}, {7, 30}, {16, 360}, {17, 360}, {21, 72}, {33, 6}};
  for (const auto& row : rows) {
    const Built built = BuildWith("radar", {{kIncrement, std::to_string(row.position)}});
    EXPECT_EQ(BadSchedule(built, row.frames, {}, row.frames, static_cast<std::int64_t>(row.frames)), "")
        << row.position;
  }
  EXPECT_EQ(BuildWith("radar").frames.size(), 72u) << "the default increment is 5";
}

}  // namespace
}  // namespace glyphmotion::test
