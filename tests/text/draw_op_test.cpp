// SPDX-License-Identifier: MIT
#include "text/draw_op.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace glyphmotion {
namespace {

DrawOpRecord TextRecord(TextMode mode, char32_t character) {
  DrawOpRecord record;
  record.op = DrawOperation::Text;
  record.textMode = mode;
  record.font = {"Arial", 48, false, false};
  record.text = character;
  record.antialias = true;
  record.colour = MakeColour(200, 100, 50);
  return record;
}

int Inked(const DibView& view) {
  int count = 0;
  for (int y = 0; y < view.Height(); ++y) {
    for (int x = 0; x < view.Width(); ++x) count += view.GetPixel(x, y) != 0;
  }
  return count;
}

TEST(DrawOp, UnknownOperationsAndNoCharacterDoNothing) {
  DrawOpRecord record;
  for (const int op : {0, 9, -1}) {
    record.op = static_cast<DrawOperation>(op);
    const DrawOpResult result = DrawOp(record);
    EXPECT_FALSE(result.done || result.bitmap);
  }
  DrawOpRecord none = TextRecord(TextMode::Measure, 0);
  none.width = 7;
  EXPECT_TRUE(DrawOp(none).done);
  EXPECT_EQ(none.width, 0);
  none.textMode = TextMode::Glyph;
  EXPECT_FALSE(DrawOp(none).bitmap);
}

TEST(DrawOp, GlyphIsTheBrushByCoverageInTheWholeBox) {
  DrawOpRecord measure = TextRecord(TextMode::Measure, U'R'), glyph = TextRecord(TextMode::Glyph, U'R');
  DrawOpRecord blank = TextRecord(TextMode::Measure, U' ');
  ASSERT_TRUE(DrawOp(measure).done && DrawOp(blank).done);
  const PackedDib bitmap = DrawOp(glyph).bitmap;
  const DibView view(bitmap);
  ASSERT_TRUE(view);
  EXPECT_EQ(view.Bits(), 24);
  EXPECT_EQ(view.Width(), measure.width + blank.width) << "the bitmap keeps the margin that the measure takes off";
  GlyphBitmap coverage;
  ASSERT_TRUE(RenderGlyph(glyph.font, U'R', true, coverage));
  for (int y = 0; y < view.Height(); ++y) {
    for (int x = 0; x < view.Width(); ++x) {
      const int c = coverage.coverage[static_cast<std::size_t>(y * coverage.width + x)];
      ASSERT_EQ(view.GetPixel(x, y), MakeColour((200 * c + 127) / 255, (100 * c + 127) / 255, (50 * c + 127) / 255));
    }
  }
}

TEST(DrawOp, DirectDrawBlendsOneBitAndIsClipped) {
  const PackedDib canvas = SolidDib(30, 30, MakeColour(10, 20, 30));
  DibView view(canvas);
  DrawOpRecord record = TextRecord(TextMode::Direct, U'H');
  record.target = &view;
  record.x = -6;
  record.y = -12;
  record.level = 128;
  ASSERT_TRUE(DrawOp(record).done);
  const Colour under = MakeColour(10, 20, 30), over = Blend(under, record.colour, 128);
  int drawn = 0;
  for (int y = 0; y < 30; ++y) {
    for (int x = 0; x < 30; ++x) {
      const Colour pixel = view.GetPixel(x, y);
      ASSERT_TRUE(pixel == under || pixel == over);
      drawn += pixel == over;
    }
  }
  EXPECT_GT(drawn, 100);
}

TEST(DrawOp, PathsAreTheSameLetterFilledOrStroked) {
  DrawOpRecord fill = TextRecord(TextMode::PathFill, U'O'), pen = TextRecord(TextMode::PathOutline, U'O');
  pen.penWidth = 1;
  const PackedDib filled = DrawOp(fill).bitmap, stroked = DrawOp(pen).bitmap;
  const DibView f(filled), s(stroked);
  ASSERT_TRUE(f && s);
  EXPECT_EQ(f.Width(), s.Width());
  EXPECT_GT(Inked(f), 100);
  // In the middle of the left stroke the fill is full and the pen absent.
  int x = 0;
  const int middle = 24;
  while (x < f.Width() && f.GetPixel(x, middle) != fill.colour) ++x;
  EXPECT_EQ(f.GetPixel(x + 1, middle), fill.colour);
  EXPECT_EQ(s.GetPixel(x + 1, middle), 0u);
}

TEST(DrawOp, ShapesStandInAMarginOfFour) {
  DrawOpRecord record;
  record.bounds = {100, 200, 120, 210};
  record.fill = 0x0000FF;
  record.colour = 0x000000;
  record.secondColour = 0xFFFFFF;
  const Point points[] = {{100, 200}, {120, 200}, {120, 210}, {100, 210}};
  record.points = points;
  for (const auto op : {DrawOperation::Ellipse, DrawOperation::RoundedRectangle, DrawOperation::Polygon,
                        DrawOperation::Line, DrawOperation::GradientRectangle}) {
    for (const bool antialias : {false, true}) {
      record.op = op;
      record.antialias = antialias;
      record.outline = op == DrawOperation::Line ? 0x00FF00 : kNoColour;
      const PackedDib bitmap = DrawOp(record).bitmap;
      const DibView view(bitmap);
      ASSERT_TRUE(view) << static_cast<int>(op);
      EXPECT_EQ(view.Width(), 28);
      EXPECT_EQ(view.Height(), 18);
      EXPECT_GT(Inked(view), 20) << static_cast<int>(op);
      EXPECT_EQ(view.GetPixel(1, 1), 0u);
      EXPECT_EQ(view.GetPixel(26, 16), 0u);
      if (op == DrawOperation::Ellipse) {
        EXPECT_EQ(view.GetPixel(14, 9), 0x0000FFu);
      }
    }
  }
  record.op = DrawOperation::RoundedRectangle;
  record.antialias = false;
  record.outline = 0x00FF00;
  record.penWidth = 2;
  record.fill = kNoColour;
  const PackedDib bitmap = DrawOp(record).bitmap;
  const DibView frame(bitmap);
  EXPECT_EQ(frame.GetPixel(14, 9), 0u) << "an absent fill leaves the inside black";
  EXPECT_EQ(frame.GetPixel(14, 4), 0x00FF00u);
  record.outline = kNoColour;
  record.fill = 0x0000FF;
  record.cornerRadius = 1;
  const PackedDib rounded = DrawOp(record).bitmap;
  EXPECT_EQ(DibView(rounded).GetPixel(4, 4), 0x0000FFu) << "a circle of two pixels fills its first one";
  record.bounds = {0, 0, 1 << 30, 1 << 30};
  EXPECT_FALSE(DrawOp(record).bitmap);
}

}  // namespace
}  // namespace glyphmotion
