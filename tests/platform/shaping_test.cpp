// SPDX-License-Identifier: MIT
// Shaped text against HarfBuzz's own program: the same glyphs, in the same order, at the same places.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <tuple>

#include "platform/encoding.h"
#include "platform/font_files.h"
#include "platform/portable/clusters.h"
#include "platform/text_scripts.h"
#include "text_run_fixture.h"

namespace glyphmotion {
namespace {

constexpr int kCell = 48;  // pixels

std::string FileOf(const std::string& family) {
  for (const FontFaceInfo& face : FontFaces()) {
    if (face.family == family && (face.style == "Regular" || face.style == "Book")) return face.file;
  }
  return {};
}

struct Glyph {
  int code = 0;
  double x = 0, y = 0;  // font units
};

// What hb-shape says of one run, laid on from `pen` on. Its directions: "ltr", "rtl".
void Reference(const std::string& font, const std::string& text, const std::string& direction, double& pen,
               std::vector<Glyph>& glyphs) {
  setenv("SHAPED_TEXT", text.c_str(), 1);
  const std::string command =
      "LC_ALL=C.UTF-8 hb-shape --no-glyph-names --no-clusters --bot --eot --direction=" + direction + " --font-file='" +
      font + "' --text=\"$SHAPED_TEXT\" --output-format=json";
  std::FILE* pipe = popen(command.c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  std::string json;
  for (int c; (c = std::fgetc(pipe)) != EOF;) json += static_cast<char>(c);
  ASSERT_EQ(pclose(pipe), 0) << command;
  const auto number = [&](const char* name, std::size_t from, std::size_t to) {
    const std::size_t at = json.find(name, from);
    return at < to ? std::atof(json.c_str() + at + std::string(name).size()) : 0.0;
  };
  for (std::size_t at = json.find('{'); at != json.npos;) {
    const std::size_t end = json.find('}', at);
    glyphs.push_back(
        {static_cast<int>(number("\"g\":", at, end)), pen + number("\"dx\":", at, end), number("\"dy\":", at, end)});
    pen += number("\"ax\":", at, end);
    at = json.find('{', end);
  }
}

struct Row {
  const char* family;
  const char* text;
  // Runs from left to right, where there are several; '<' before one that is read from right to left.
  std::vector<const char*> runs = {};
};

const std::vector<Row>& Table() {
  static const std::vector<Row> table = {
      {"DejaVu Sans", "مرحبا"},
      {"DejaVu Sans", "بسم الله"},
      {"DejaVu Sans", "لا إله"},
      {"Amiri", "مُحَمَّد"},
      {"Amiri", "السَّلَامُ عَلَيْكُمْ"},
      {"Amiri", "پاکستان"},
      {"Amiri", "ڤڨڠ"},
      {"Amiri", "بـــب"},
      {"Amiri", "ب\u200dب\u200cب"},
      {"DejaVu Sans", "שלום"},
      {"DejaVu Sans", "שָׁלוֹם"},
      {"DejaVu Sans", "abc שלום def", {"abc ", "<שלום", " def"}},
      {"DejaVu Sans", "שלום abc", {"abc", "< ", "<שלום"}},
      {"DejaVu Sans", "שנת 1984 כאן", {"< כאן", "1984", "<שנת "}},
      {"DejaVu Sans", "(שלום)", {"<(שלום)"}},
      {"DejaVu Sans", "سعر 123 ريال", {"< ريال", "123", "<سعر "}},
      {"DejaVu Sans", "\u202eabc\u202c", {"<abc"}},
      {"Noto Sans Devanagari", "नमस्ते"},
      {"Noto Sans Devanagari", "क्षत्रिय"},
      {"Noto Sans Devanagari", "हिन्दी"},
      {"Noto Sans Devanagari", "र्क कर्म"},
      {"Noto Sans Devanagari", "श्री"},
      {"Noto Sans Bengali", "বাংলা"},
      {"Noto Sans Bengali", "ক্ষেত্র"},
      {"Noto Sans Bengali", "কোন"},
      {"Noto Sans Tamil", "தமிழ்"},
      {"Noto Sans Tamil", "கொண்டு"},
      {"Noto Sans Thai", "สวัสดี"},
      {"Noto Sans Thai", "น้ำที่"},
      {"Noto Sans Thai", "ปู่ญูฐู"},
      {"Noto Sans Khmer", "ខ្មែរ"},
      {"Noto Sans Khmer", "ស្រ្តី"},
      {"Noto Sans Myanmar", "မြန်မာ"},
      {"Noto Sans Sinhala", "ශ්‍රී"},
      {"WenQuanYi Zen Hei", "\u1112\u1161\u11ab\u1100\u1173\u11af"},
      {"WenQuanYi Zen Hei", "か\u3099き\u3099"},
      {"WenQuanYi Zen Hei", "漢字\ufe00"},
      {"DejaVu Sans", "e\u0301a\u0308o\u0302"},
      {"DejaVu Sans", "a\u0323\u0302\u0301z\u0335"},
      {"DejaVu Sans", "AVo\u0302To"},
      {"DejaVu Sans", "\u0301e"},
      {"DejaVu Sans", "\u064eب"},
      {"Noto Color Emoji", "👩‍👩‍👧"},
      {"Noto Color Emoji", "👨‍👩‍👧‍👦❤️"},
      {"Noto Color Emoji", "🇩🇪🇫🇷"},
      {"Noto Color Emoji", "1️⃣#️⃣"},
      {"Noto Color Emoji", "👍🏽👋🏿"},
      {"Noto Color Emoji", "🏴󠁧󠁢󠁳󠁣󠁴󠁿"},
      {"Noto Color Emoji", "🏳️‍🌈😀"},
  };
  return table;
}

using Shaping = TextRunTest;

TEST_F(Shaping, GlyphsOrderAndPlacesAreThoseOfHarfBuzz) {
  ASSERT_GE(Table().size(), 40u);
  for (const Row& row : Table()) {
    SCOPED_TRACE(std::string(row.family) + ": " + row.text);
    const std::string file = FileOf(row.family);
    ASSERT_FALSE(file.empty()) << "not installed";
    CurrentTextRun().fontFile = {file, row.family, 0};
    std::vector<Glyph> wanted;
    double pen = 0;
    if (row.runs.empty()) {
      const bool rightToLeft = std::string(row.text) >= "\u0590" && std::string(row.text) < "\u0900";
      Reference(file, row.text, rightToLeft ? "rtl" : "ltr", pen, wanted);
    }
    for (const std::string run : row.runs) {
      const bool rightToLeft = run[0] == '<';
      Reference(file, run.substr(rightToLeft), rightToLeft ? "rtl" : "ltr", pen, wanted);
    }
    const FontRequest font{row.family, kCell};
    Face& face = *Select(font).face;
    const double scale = EmOf(face, kCell) / face.unitsPerEm;
    std::vector<Glyph> got;
    int place = 0;
    const int baseline = AscentOf(face, kCell);
    for (const char32_t code : ShapeText(font, DecodeText(row.text)).codes) {
      const auto cluster = FindCluster(code);
      ASSERT_TRUE(cluster);
      EXPECT_EQ(cluster->start, place);
      place += cluster->advance;
      for (const ClusterGlyph& glyph : cluster->glyphs) {
        EXPECT_EQ(glyph.face->file, file);
        got.push_back({static_cast<int>(glyph.code), glyph.x, baseline - glyph.y});
      }
    }
    EXPECT_NEAR(place, pen * scale, 0.5);
    // Blanks have no glyphs here, and what cannot be seen takes no room.
    int blank = 0;
    if (const FT_UInt code = FT_Get_Char_Index(face.face.get(), ' ')) blank = static_cast<int>(code);
    std::erase_if(wanted, [&](const Glyph& glyph) { return glyph.code == blank; });
    std::erase_if(got, [&](const Glyph& glyph) { return glyph.code == blank; });
    ASSERT_EQ(got.size(), wanted.size());
    for (std::size_t i = 0; i < got.size(); ++i) {
      EXPECT_EQ(got[i].code, wanted[i].code) << i;
      EXPECT_NEAR(got[i].x, wanted[i].x * scale, 0.5) << i;
      EXPECT_NEAR(got[i].y, wanted[i].y * scale, 0.5) << i;
    }
  }
}

TEST_F(Shaping, TextOfSimpleScriptsStaysAsItIs) {
  for (const char32_t* text : {U"Hello, World!", U"\u00C0\u00E9\u00DF\u0178", U"\u0395\u03BB\u03BB\u03AC\u03B4\u03B1",
                               U"\u041F\u0440\u0438\u0432\u0435\u0442", U"\u65E5\u672C\u8A9E\uD55C\uAD6D\u3042",
                               U"\u2603\u00A9\u2122\u263A\u2764", U"a\u00ADb\u200Bc", U"two\u2028lines"}) {
    EXPECT_FALSE(NeedsShaping(text));
    EXPECT_EQ(ShapeText({"Arial", 30}, text).codes, text);
  }
  for (const char32_t* text : {U"\u05D0", U"e\u0301", U"\u0915", U"\u0E01", U"\u1100", U"\U0001F600", U"\u2764\uFE0F",
                               U"1\u20E3", U"\u202Ea", U"\uFDFA"}) {
    EXPECT_TRUE(NeedsShaping(text));
  }
}

TEST_F(Shaping, FacesAreListedByFamilyAndStyle) {
  const std::vector<FontFaceInfo> faces = FontFaces();
  EXPECT_TRUE(std::is_sorted(faces.begin(), faces.end(), [](const FontFaceInfo& a, const FontFaceInfo& b) {
    return std::tie(a.family, a.style) < std::tie(b.family, b.style);
  }));
  EXPECT_GT(faces.size(), 1u);
}

TEST_F(Shaping, CodesStandForTheSameInAllOfARun) {
  const FontRequest font{"DejaVu Sans", 30};
  const std::u32string text = U"\u0633\u0644\u0627\u0645", first = ShapeText(font, text).codes;
  for (char32_t c = 0; c < 100; ++c) ShapeText(font, std::u32string{U'\u0628', U'a' + c});
  EXPECT_EQ(FindCluster(first[0]), nullptr) << "bounded";
  const std::u32string again = ShapeText(font, text).codes;
  EXPECT_NE(again, first) << "an old code never means something else";
  EXPECT_EQ(ShapeText(font, text).codes, again);
}

TEST_F(Shaping, LinesHaveTheirOwnDirection) {
  const FontRequest font{"DejaVu Sans", 30};
  const std::u32string text = U"abc\u2028\u05D0\u05D1 1\u2028";
  EXPECT_EQ(ShapeText(font, text).rightToLeft, (std::vector<bool>{false, true, false}));
  CurrentTextRun().options.direction = TextDirection::LeftToRight;
  EXPECT_EQ(ShapeText(font, text).rightToLeft, (std::vector<bool>{false, false, false}));
  CurrentTextRun().options.direction = TextDirection::RightToLeft;
  EXPECT_TRUE(IsCluster(ShapeText(font, U"plain!").codes[0])) << "the mark goes to the left";
}

TEST_F(Shaping, JoinedLettersLeaveNoSeam) {
  const FontRequest font{"DejaVu Sans", 61};
  const std::u32string codes = ShapeText(font, U"\u0640\u0640\u0640\u0640\u0640").codes;  // strokes that only join
  ASSERT_EQ(codes.size(), 5u);
  std::vector<int> row(400);
  int left = 20;
  for (const char32_t code : codes) {
    GlyphBitmap glyph;
    GlyphBox box;
    ASSERT_TRUE(RenderGlyph(font, code, true, glyph) && MeasureGlyph(font, code, box));
    EXPECT_EQ(box.joined, code != codes.back());
    const int middle = glyph.height / 2;
    for (int x = 0; x < glyph.width; ++x) {
      int& at = row[static_cast<std::size_t>(left + glyph.left + x)];
      at = std::max<int>(at, glyph.coverage[static_cast<std::size_t>(middle * glyph.width + x)]);
    }
    left += box.advance;
  }
  const auto first = std::find(row.begin(), row.end(), 255);
  const auto last = std::find(row.rbegin(), row.rend(), 255).base();
  ASSERT_GT(last - first, 60);
  EXPECT_EQ(std::count(first, last, 255), last - first);
}

TEST_F(Shaping, NamesStylesAndFilesOfFonts) {
  for (const char* name : {"sans-serif", "serif", "monospace", "DejaVu Sans Condensed Oblique", "dejavu sans bold"})
    EXPECT_TRUE(HasFontFamily(name)) << name;
  EXPECT_FALSE(HasFontFamily("DejaVu Sans Wobbly"));
  EXPECT_NE(Select({"DejaVu Sans Condensed Oblique", 30}).face->key.file.find("SansCondensed-Oblique"),
            std::string::npos);
  EXPECT_NE(Select({"DejaVu Sans Condensed Oblique", 30, true}).face->key.file.find("SansCondensed-BoldOblique"),
            std::string::npos);
  const std::string squares = GLYPHMOTION_SOURCE_DIR "/tests/fonts/two_squares.ttf";
  FontFile file;
  std::string error;
  ASSERT_TRUE(OpenFontFile(squares + "#0", file, error)) << error;
  EXPECT_EQ(file.family, "Two Squares");
  const struct {
    std::string name;
    const char* says;
  } wrong[] = {{squares + "#1", "one face"},
               {"/no/such.ttf", "no font file"},
               {GLYPHMOTION_SOURCE_DIR "/CMakeLists.txt", "not a font"}};
  for (const auto& row : wrong) {
    EXPECT_FALSE(OpenFontFile(row.name, file, error));
    EXPECT_NE(error.find(row.says), std::string::npos) << error;
  }
}

TEST_F(Shaping, AxesOfAVariableFontStretchItsLetters) {
  TextRun& run = CurrentTextRun();
  const std::string squares = GLYPHMOTION_SOURCE_DIR "/tests/fonts/two_squares.ttf";
  std::string error;
  const FontRequest font{"Two Squares", 100};
  const auto inkOf = [&](std::vector<AxisValue> axes) {
    run.axes = std::move(axes);
    GlyphBitmap glyph;
    EXPECT_TRUE(OpenFontFile(squares, run.fontFile, error) && RenderGlyph(font, U'A', true, glyph));
    return static_cast<double>(std::count(glyph.coverage.begin(), glyph.coverage.end(), 255));
  };
  const double plain = inkOf({});
  EXPECT_NEAR(inkOf({{"wght", 650}}) / plain, 1.4, 0.1);
  EXPECT_EQ(AxesTrouble(font), "");
  run.axes = {{"wdth", 80}};
  EXPECT_NE(AxesTrouble(font).find("no axis 'wdth'; it has wght 100 to 900"), std::string::npos);
  run.axes = {{"wght", 950}};
  EXPECT_NE(AxesTrouble(font).find("no wght of 950"), std::string::npos);
  EXPECT_NE(AxesTrouble({"Liberation Sans", 20}).find("not variable"), std::string::npos);
}

TEST_F(Shaping, WhatNoFontHasIsNoted) {
  GlyphBitmap glyph;
  EXPECT_TRUE(RenderGlyph({"DejaVu Sans", 30}, U'A', true, glyph));
  ShapeText({"DejaVu Sans", 30}, U"\u1112\u1161\u11ab");
  EXPECT_EQ(MissingNote(), "") << "another font has the syllable of these jamo";
  EXPECT_TRUE(RenderGlyph({"DejaVu Sans", 30}, 0xF8FFE, true, glyph));
  ShapeText({"DejaVu Sans", 30}, U"\u05D0\U0010FFF0");
  EXPECT_EQ(MissingNote(), "no font has the characters '\U000F8FFE' (U+F8FFE), '\U0010FFF0' (U+10FFF0)");
  NoteMissing(0x4E00);
  EXPECT_NE(MissingNote().find("Debian's fonts-noto-cjk would"), std::string::npos);
}

}  // namespace
}  // namespace glyphmotion
