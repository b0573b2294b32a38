// SPDX-License-Identifier: MIT
#include "platform/encoding.h"

#include <gtest/gtest.h>

namespace glyphmotion {
namespace {

TEST(Encoding, OnlyWellFormedTextIsUtf8) {
  for (const char* good : {"", "plain", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF", "\xEE\x80\x80",
                           "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF", "\xE2\x82\xAC!"}) {
    EXPECT_TRUE(IsUtf8(good)) << good;
  }
  for (const char* bad : {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC3", "\xC3(", "\xE0\x9F\xBF", "\xED\xA0\x80",
                          "\xE2\x82", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF", "a\xE9z"}) {
    EXPECT_FALSE(IsUtf8(bad)) << bad;
  }
}

TEST(Encoding, LegacyBytesBecomeTheirCharacters) {
  EXPECT_EQ(TextFromBytes("na\xEFve \x80 \x93quoted\x94"), "na\xC3\xAFve \xE2\x82\xAC \xE2\x80\x9Cquoted\xE2\x80\x9D");
  EXPECT_EQ(TextFromBytes("\x81\x9F\xA0\xFF"), "\xC2\x81\xC5\xB8\xC2\xA0\xC3\xBF");
  EXPECT_EQ(TextFromBytes("\xEF\xBB\xBFna\xC3\xAFve"), "na\xC3\xAFve");
  std::string every;
  for (int byte = 0; byte < 256; ++byte) every += static_cast<char>(byte);
  EXPECT_TRUE(IsUtf8(TextFromBytes(every)));
}

TEST(Encoding, DecodesUtf8AndReadsOtherBytesAsWindows1252) {
  EXPECT_EQ(DecodeText("A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"), std::u32string(U"A\u00E9\u20AC\U0001F600"));
  EXPECT_EQ(DecodeText("A\xC3\xA9\x80"), std::u32string(U"A\u00C3\u00A9\u20AC"));
  EXPECT_EQ(DecodeText("\xED\xA0\x80"), std::u32string(U"\u00ED\u00A0\u20AC")) << "a surrogate is not UTF-8";
  EXPECT_EQ(DecodeText("\xC0\xAF"), std::u32string(U"\u00C0\u00AF")) << "an overlong form is not UTF-8";
  EXPECT_EQ(DecodeText(""), U"");
}

TEST(Encoding, CutsFallBetweenCharacters) {
  const std::string text = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";  // 1, 2, 3 and 4 bytes
  const std::size_t lengths[] = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 10};
  for (std::size_t limit = 0; limit < std::size(lengths); ++limit) {
    EXPECT_EQ(CutText(text, limit).size(), lengths[limit]) << limit;
  }
  const std::size_t characters[] = {0, 1, 3, 6, 10, 10};
  for (std::size_t limit = 0; limit < std::size(characters); ++limit) {
    EXPECT_EQ(CutCharacters(text, limit).size(), characters[limit]) << limit;
  }
  const std::string bytes = "\x80\x80\x80\x80\x80\x80";
  EXPECT_EQ(CutText(bytes, 4).size(), 4u) << "text that is not UTF-8 is cut at any byte";
  EXPECT_EQ(CutCharacters(bytes, 4).size(), 4u) << "its bytes are its characters";
}

}  // namespace
}  // namespace glyphmotion
