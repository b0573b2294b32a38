// SPDX-License-Identifier: MIT
// Lines of a text in their block, against the same lines measured one by one.
#include <numeric>

#include "text/text_raster.h"
#include "text_run_fixture.h"

namespace glyphmotion {
namespace {

class Layout : public TextRunTest {
 protected:
  // As the composer asks for it.
  TextLine Block(const std::u32string& text, TextAlign align = TextAlign::Start, int lineSpace = 100, int space = 100) {
    TextLine line{{"DejaVu Sans", 30, false, false}, true, {}, space, align, lineSpace};
    ShapedText shaped = ShapeText(line.font, text);
    line.text = shaped.codes + U' ';
    line.rightToLeft = shaped.rightToLeft;
    return line;
  }
  TextMeasure Measure(const TextLine& line) { return MeasureText(line, true, cache_); }
  GlyphCache cache_;
};

constexpr char32_t kText[] = U"wide line\u2028a b\u2028middle";

TEST_F(Layout, LinesStandUnderOneAnotherWhereTheyAreAligned) {
  const int wide = Measure(Block(U"wide line")).width, narrow = Measure(Block(U"a b")).width;
  const struct {
    TextAlign align;
    int lineSpace, x, pitch;
  } rows[] = {{TextAlign::Start, 100, 0, 30},
              {TextAlign::Left, 150, 0, 45},
              {TextAlign::Centre, 80, (wide - narrow) / 2, 24},
              {TextAlign::Right, 100, wide - narrow, 30},
              {TextAlign::Justify, 100, 0, 30}};
  for (const auto& row : rows) {
    const TextLine line = Block(kText, row.align, row.lineSpace);
    const TextMeasure measure = Measure(line);
    ASSERT_EQ(measure.rows.size(), 3u);
    EXPECT_EQ(measure.advances.size(), line.text.size());
    EXPECT_EQ(measure.width, wide);
    EXPECT_EQ(measure.height, 30 + 2 * row.pitch);
    EXPECT_EQ(measure.rows[1].x, row.x);
    EXPECT_EQ(measure.rows[2].y, 2 * row.pitch);
    EXPECT_EQ(measure.rows[0].x, 0);
  }
}

TEST_F(Layout, JustifiedLinesButTheLastAreAsWideAsTheWidest) {
  const TextLine line = Block(kText, TextAlign::Justify);
  const TextMeasure measure = Measure(line), plain = Measure(Block(kText));
  const auto widthOf = [&](const TextMeasure& m, int row) {
    const auto begin = m.advances.begin();
    return std::accumulate(begin + static_cast<long>(m.rows[static_cast<std::size_t>(row)].begin),
                           begin + static_cast<long>(m.rows[static_cast<std::size_t>(row)].end), 0);
  };
  EXPECT_EQ(widthOf(measure, 1), widthOf(measure, 0));
  EXPECT_EQ(widthOf(measure, 2), widthOf(plain, 2));
  const std::size_t blank = line.text.find(U'a') + 1;
  EXPECT_EQ(measure.advances[blank] - plain.advances[blank], widthOf(plain, 0) - widthOf(plain, 1))
      << "the blank alone";
}

TEST_F(Layout, ABlockIsItsLines) {
  const TextLine block = Block(kText, TextAlign::Right), first = Block(U"wide line"), second = Block(U"a b");
  const TextMeasure measure = Measure(block);
  const PackedDib whole = RasteriseText(block, measure, 0, 0, measure.width, measure.height, 255, cache_);
  const PackedDib upper = RasteriseText(first, Measure(first), 0, 0, measure.width, 30, 255, cache_);
  const PackedDib lower = RasteriseText(second, Measure(second), measure.rows[1].x, 0, measure.width, 30, 255, cache_);
  const DibView all(whole), top(upper), middle(lower);
  ASSERT_TRUE(all && top && middle);
  for (int y = 0; y < 30; ++y) {
    for (int x = 0; x < measure.width; ++x) {
      ASSERT_EQ(all.GetPixel(x, y), top.GetPixel(x, y)) << x << ", " << y;
      ASSERT_EQ(all.GetPixel(x, y + 30), middle.GetPixel(x, y)) << x << ", " << y;
    }
  }
}

TEST_F(Layout, LinesReadFromRightToLeftStandOnTheRight) {
  const TextMeasure measure = Measure(Block(U"a wide line\u2028\u05E9\u05DC\u05D5\u05DD\u2028left"));
  EXPECT_GT(measure.rows[1].x, 30);
  EXPECT_EQ(measure.rows[0].x, 0);
  EXPECT_EQ(measure.rows[2].x, 0);
}

TEST_F(Layout, SpacingPartsWordsButNotJoinedLetters) {
  const std::u32string joined = U"\u0633\u0644\u0645", two = U"\u0633\u0644\u0645 \u0633\u0644\u0645";
  const auto widthOf = [&](const std::u32string& text, int space) {
    return Measure(Block(text, TextAlign::Start, 100, space)).width;
  };
  for (const int space : {50, 150}) {
    const TextMeasure plain = Measure(Block(joined)), spaced = Measure(Block(joined, TextAlign::Start, 100, space));
    for (std::size_t i = 0; i + 2 < plain.advances.size(); ++i) EXPECT_EQ(spaced.advances[i], plain.advances[i]) << i;
  }
  EXPECT_GT(widthOf(two, 150) - widthOf(two, 100), widthOf(joined, 150) - widthOf(joined, 100) + 3);
}

TEST_F(Layout, MarksAboveTheCellMakeTheBlockHigher) {
  const TextMeasure plain = Measure(Block(U"a\u0301")), high = Measure(Block(U"A\u0302\u0302\u0302\u0302"));
  EXPECT_EQ(plain.height, 30);
  EXPECT_GT(high.height, 36);
  EXPECT_EQ(high.rows[0].y, high.height - 30);
}

}  // namespace
}  // namespace glyphmotion
