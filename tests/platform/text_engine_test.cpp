// SPDX-License-Identifier: MIT
// The engine against the font files' own numbers, read here by FreeType straight from the files.
#include "platform/text_engine.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H

namespace glyphmotion {
namespace {

struct FontFile {
  FT_Library library = nullptr;
  FT_Face face = nullptr;
  explicit FontFile(const char* description) {
    FcPattern* query = FcNameParse(reinterpret_cast<const FcChar8*>(description));
    FcConfigSubstitute(nullptr, query, FcMatchPattern);
    FcDefaultSubstitute(query);
    FcResult result;
    FcPattern* match = FcFontMatch(nullptr, query, &result);
    FcChar8* file = nullptr;
    FT_Init_FreeType(&library);
    if (match && FcPatternGetString(match, FC_FILE, 0, &file) == FcResultMatch) {
      FT_New_Face(library, reinterpret_cast<const char*>(file), 0, &face);
    }
    if (match) FcPatternDestroy(match);
    FcPatternDestroy(query);
  }
  ~FontFile() { FT_Done_FreeType(library); }
  double CellUnits() const {
    const auto* os2 = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face, FT_SFNT_OS2));
    return os2->usWinAscent + os2->usWinDescent;
  }
  double Units(char32_t character) const {
    FT_Load_Char(face, character, FT_LOAD_NO_SCALE);
    return static_cast<double>(face->glyph->metrics.horiAdvance);
  }
};

double WidthOf(const FontRequest& font, char32_t character) {
  GlyphBox box;
  EXPECT_TRUE(MeasureGlyph(font, character, box));
  return box.width;
}

GlyphBitmap Draw(const FontRequest& font, char32_t character, bool antialias = true) {
  GlyphBitmap glyph;
  EXPECT_TRUE(RenderGlyph(font, character, antialias, glyph));
  EXPECT_EQ(glyph.coverage.size(), static_cast<std::size_t>(glyph.width * glyph.height));
  return glyph;
}

struct Ink {
  int left = 1 << 20, right = -1, top = 1 << 20, bottom = -1;
  long sum = 0;
};
Ink InkOf(const GlyphBitmap& glyph) {
  Ink ink;
  for (int y = 0; y < glyph.height; ++y) {
    for (int x = 0; x < glyph.width; ++x) {
      const int v = glyph.coverage[static_cast<std::size_t>(y * glyph.width + x)];
      if (!v) continue;
      ink.left = std::min(ink.left, x);
      ink.right = std::max(ink.right, x);
      ink.top = std::min(ink.top, y);
      ink.bottom = std::max(ink.bottom, y);
      ink.sum += v;
    }
  }
  return ink;
}

class TextEngine : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(StartTextEngine()); }
  void TearDown() override { StopTextEngine(); }
};

TEST_F(TextEngine, BoxesFollowTheFontsOwnUnits) {
  const FontFile file("Liberation Sans:bold");
  ASSERT_NE(file.face, nullptr);
  for (const int cell : {4, 24, 56, 144}) {
    const FontRequest font{"Liberation Sans", cell, true, false};
    const double em = cell * file.face->units_per_EM / file.CellUnits();
    EXPECT_NEAR(WidthOf(font, U' '), em / 3, 1e-9);
    for (const char32_t c : {U'A', U'i', U'W', char32_t{0xC9}}) {
      EXPECT_NEAR(WidthOf(font, c), file.Units(c) * em / file.face->units_per_EM + em / 3, 1e-9);
    }
    EXPECT_EQ(MeasureFont(font).height, cell);
  }
}

TEST_F(TextEngine, GlyphStandsASixthOfAnEmInAndOnTheAscent) {
  const FontFile file("Liberation Sans");
  ASSERT_NE(file.face, nullptr);
  const FontRequest font{"Liberation Sans", 120, false, false};
  const double scale = 120 / file.CellUnits();
  FT_Load_Char(file.face, 'H', FT_LOAD_NO_SCALE);
  const auto& metrics = file.face->glyph->metrics;
  const GlyphBitmap glyph = Draw(font, U'H');
  const Ink ink = InkOf(glyph);
  const double left = (file.face->units_per_EM / 6.0 + static_cast<double>(metrics.horiBearingX)) * scale;
  const double right = left + static_cast<double>(metrics.width) * scale;
  EXPECT_NEAR(ink.left, left, 1.0);
  EXPECT_NEAR(ink.right + 1, right, 1.0);
  EXPECT_EQ(ink.bottom + 1, MeasureFont(font).ascent);
  EXPECT_NEAR(ink.top, MeasureFont(font).ascent - static_cast<double>(metrics.horiBearingY) * scale, 1.0);
  // The left stem's edge falls inside a pixel, whose coverage is the part that is covered.
  const int edge = glyph.coverage[static_cast<std::size_t>((glyph.height / 3) * glyph.width + ink.left)];
  EXPECT_NEAR(edge, 255 * (ink.left + 1 - left), 6);
}

TEST_F(TextEngine, OneBitIsAllOrNothingAndMayTouchTheBoxOnly) {
  for (const char32_t c : {U'g', U'W', U'/', char32_t{0x416}}) {
    for (const int cell : {1, 4, 15, 57}) {
      const GlyphBitmap glyph = Draw({"Liberation Serif", cell, true, true}, c, false);
      EXPECT_TRUE(std::all_of(glyph.coverage.begin(), glyph.coverage.end(), [](int v) { return v == 0 || v == 255; }));
    }
  }
  const Ink grey = InkOf(Draw({"Arial", 56}, U'a')), bits = InkOf(Draw({"Arial", 56}, U'a', false));
  EXPECT_NEAR(static_cast<double>(bits.sum) / static_cast<double>(grey.sum), 1.0, 0.05);
}

TEST_F(TextEngine, MissingFamilyAndMissingGlyphFallBack) {
  const FontRequest missing{"No Such Family 4711", 40};
  EXPECT_GT(InkOf(Draw(missing, U'A')).sum, 0);
  EXPECT_FALSE(HasFontFamily("No Such Family 4711"));
  EXPECT_FALSE(HasFontFamily(""));
  // DejaVu Sans has the Georgian letters that Liberation Mono lacks; the lent glyph differs from the box for "missing".
  const FontRequest mono{"Liberation Mono", 40};
  const GlyphBitmap lent = Draw(mono, 0x10D0), noneHasIt = Draw(mono, 0xE123);
  EXPECT_GT(InkOf(lent).sum, 0);
  EXPECT_NE(lent.coverage, noneHasIt.coverage);
  EXPECT_EQ(lent.height, 40);
  for (const char32_t c : {char32_t{0}, U'\t', char32_t{0x1F600}, char32_t{0xFE0F}, char32_t{0xD800},
                           char32_t{0x110000}, char32_t{0xFFFFFFFF}}) {
    GlyphBitmap glyph;
    EXPECT_TRUE(RenderGlyph(mono, c, true, glyph)) << static_cast<unsigned>(c);
  }
}

TEST_F(TextEngine, ArialIsLiberationSans) {
  EXPECT_TRUE(HasFontFamily("arial"));
  EXPECT_TRUE(HasFontFamily("LIBERATION sans"));
  EXPECT_EQ(Draw({"Arial", 48}, U'R').coverage, Draw({"Liberation Sans", 48}, U'R').coverage);
}

TEST_F(TextEngine, StylesWithoutAFaceAreMade) {
  // The family has one upright regular face only.
  const std::string family = "DejaVu Math TeX Gyre";
  if (!HasFontFamily(family)) GTEST_SKIP() << family << " is not installed";
  const Ink plain = InkOf(Draw({family, 80}, U'H')), bold = InkOf(Draw({family, 80, true}, U'H'));
  const Ink slanted = InkOf(Draw({family, 80, false, true}, U'H'));
  EXPECT_GT(bold.sum, plain.sum * 11 / 10);
  EXPECT_GT(slanted.right, plain.right + 1);
  EXPECT_EQ(slanted.bottom, plain.bottom);
  EXPECT_GT(WidthOf({family, 80, true}, U'H'), WidthOf({family, 80}, U'H'));
  // Where the face exists nothing is added.
  const FontFile file("Liberation Sans:bold");
  const double em = 80 * file.face->units_per_EM / file.CellUnits();
  EXPECT_NEAR(WidthOf({"Liberation Sans", 80, true}, U'H'), em / 3 + file.Units(U'H') * em / file.face->units_per_EM,
              1e-9);
}

TEST_F(TextEngine, OutlineFillIsTheGlyphAndAPenGoesRoundItsEdge) {
  const FontRequest font{"Arial", 90};
  GlyphBitmap fill, thin, wide;
  ASSERT_TRUE(RenderGlyphOutline(font, U'O', true, 0, fill));
  EXPECT_EQ(fill.coverage, Draw(font, U'O').coverage);
  ASSERT_TRUE(RenderGlyphOutline(font, U'O', true, 2, thin));
  ASSERT_TRUE(RenderGlyphOutline(font, U'O', true, 4, wide));
  const Ink inner = InkOf(fill), outer = InkOf(wide);
  EXPECT_NEAR(inner.left - outer.left, 2, 1);
  EXPECT_NEAR(static_cast<double>(outer.sum) / static_cast<double>(InkOf(thin).sum), 2.0, 0.1);
  const auto centreOfStroke = static_cast<std::size_t>(fill.height / 2 * fill.width + inner.left + 5);
  EXPECT_EQ(fill.coverage[centreOfStroke], 255);
  EXPECT_EQ(thin.coverage[centreOfStroke], 0);
}

TEST_F(TextEngine, HugeSizesAreRefusedNotDrawn) {
  GlyphBitmap glyph;
  GlyphBox box;
  EXPECT_TRUE(MeasureGlyph({"Arial", 2000000000}, U'A', box));
  EXPECT_FALSE(RenderGlyph({"Arial", 2000000000}, U'A', true, glyph));
  EXPECT_TRUE(RenderGlyph({"Arial", -5}, U'A', true, glyph));
}

TEST_F(TextEngine, FamiliesAreSortedAndUnique) {
  const auto families = FontFamilies();
  ASSERT_GE(families.size(), 2u);
  std::set<std::string> folded;
  std::string last;
  for (const auto& family : families) {
    std::string name = family;
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::tolower(c); });
    EXPECT_TRUE(folded.insert(name).second) << family;
    EXPECT_LT(last, name);
    last = name;
    EXPECT_TRUE(HasFontFamily(family));
  }
}

TEST(TextEngineRuns, NestedStartsEndOnceAndTheNextRunDrawsTheSame) {
  ASSERT_TRUE(StartTextEngine());
  ASSERT_TRUE(StartTextEngine());
  const GlyphBitmap first = Draw({"Arial", 30}, U'Q');
  StopTextEngine();
  EXPECT_EQ(Draw({"Arial", 30}, U'Q').coverage, first.coverage);
  StopTextEngine();
  StopTextEngine();
  ASSERT_TRUE(StartTextEngine());
  EXPECT_EQ(Draw({"Arial", 30}, U'Q').coverage, first.coverage);
  StopTextEngine();
}

}  // namespace
}  // namespace glyphmotion
