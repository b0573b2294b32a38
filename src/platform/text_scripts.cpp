// SPDX-License-Identifier: MIT
#include "platform/text_scripts.h"

#include <algorithm>
#include <iterator>

namespace glyphmotion {
namespace {

struct Range {
  char32_t first, last;
};

// In ascending order. Marks between simple scripts, whole blocks of the others.
constexpr Range kShaped[] = {
    {0x0300, 0x036F},    // combining marks
    {0x0483, 0x0489},    // Cyrillic marks
    {0x0590, 0x08FF},    // Hebrew, Arabic, Syriac, Thaana, N'Ko, Samaritan, Mandaic
    {0x0900, 0x109F},    // Devanagari to Sinhala, Thai, Lao, Tibetan, Myanmar
    {0x1100, 0x11FF},    // Hangul jamo
    {0x135D, 0x135F},    // Ethiopic marks
    {0x1700, 0x18AF},    // Tagalog to Khmer, Mongolian
    {0x1900, 0x1CFF},    // Limbu to Vedic extensions
    {0x1DC0, 0x1DFF},    // combining marks
    {0x200C, 0x200F},    // joiners, direction marks
    {0x202A, 0x202E},    // embeddings
    {0x2066, 0x2069},    // isolates
    {0x20D0, 0x20FF},    // combining marks for symbols, keycap
    {0x302A, 0x302F},    // tone marks
    {0x3099, 0x309A},    // voicing marks
    {0xA66F, 0xA67D},    // Cyrillic marks
    {0xA69E, 0xA69F},    // Cyrillic marks
    {0xA800, 0xA82F},    // Syloti Nagri
    {0xA840, 0xAAFF},    // Phags-pa to Meetei Mayek extensions, jamo A
    {0xABC0, 0xABFF},    // Meetei Mayek
    {0xD7B0, 0xD7FF},    // jamo B
    {0xFB1D, 0xFDFF},    // Hebrew and Arabic presentation forms
    {0xFE00, 0xFE0F},    // variation selectors
    {0xFE20, 0xFE2F},    // half marks
    {0xFE70, 0xFEFE},    // Arabic presentation forms
    {0x101FD, 0x101FD},  // mark
    {0x10800, 0x10FFF},  // scripts from right to left
    {0x11000, 0x11FFF},  // Brahmi and its kin
    {0x16F00, 0x16F9F},  // Miao
    {0x1D165, 0x1D1AD},  // musical marks
    {0x1E000, 0x1E02F},  // Glagolitic marks
    {0x1E800, 0x1EFFF},  // Mende Kikakui, Adlam, Arabic mathematics
    {0xE0020, 0xE007F},  // tags
    {0xE0100, 0xE01EF},  // variation selectors
};

// Emoji_Presentation of Unicode 15.
constexpr Range kEmoji[] = {
    {0x231A, 0x231B},   {0x23E9, 0x23EC},   {0x23F0, 0x23F0},   {0x23F3, 0x23F3},   {0x25FD, 0x25FE},
    {0x2614, 0x2615},   {0x2648, 0x2653},   {0x267F, 0x267F},   {0x2693, 0x2693},   {0x26A1, 0x26A1},
    {0x26AA, 0x26AB},   {0x26BD, 0x26BE},   {0x26C4, 0x26C5},   {0x26CE, 0x26CE},   {0x26D4, 0x26D4},
    {0x26EA, 0x26EA},   {0x26F2, 0x26F3},   {0x26F5, 0x26F5},   {0x26FA, 0x26FA},   {0x26FD, 0x26FD},
    {0x2705, 0x2705},   {0x270A, 0x270B},   {0x2728, 0x2728},   {0x274C, 0x274C},   {0x274E, 0x274E},
    {0x2753, 0x2755},   {0x2757, 0x2757},   {0x2795, 0x2797},   {0x27B0, 0x27B0},   {0x27BF, 0x27BF},
    {0x2B1B, 0x2B1C},   {0x2B50, 0x2B50},   {0x2B55, 0x2B55},   {0x1F004, 0x1F004}, {0x1F0CF, 0x1F0CF},
    {0x1F18E, 0x1F18E}, {0x1F191, 0x1F19A}, {0x1F1E6, 0x1F1FF}, {0x1F201, 0x1F201}, {0x1F21A, 0x1F21A},
    {0x1F22F, 0x1F22F}, {0x1F232, 0x1F236}, {0x1F238, 0x1F23A}, {0x1F250, 0x1F251}, {0x1F300, 0x1F320},
    {0x1F32D, 0x1F335}, {0x1F337, 0x1F37C}, {0x1F37E, 0x1F393}, {0x1F3A0, 0x1F3CA}, {0x1F3CF, 0x1F3D3},
    {0x1F3E0, 0x1F3F0}, {0x1F3F4, 0x1F3F4}, {0x1F3F8, 0x1F43E}, {0x1F440, 0x1F440}, {0x1F442, 0x1F4FC},
    {0x1F4FF, 0x1F53D}, {0x1F54B, 0x1F54E}, {0x1F550, 0x1F567}, {0x1F57A, 0x1F57A}, {0x1F595, 0x1F596},
    {0x1F5A4, 0x1F5A4}, {0x1F5FB, 0x1F64F}, {0x1F680, 0x1F6C5}, {0x1F6CC, 0x1F6CC}, {0x1F6D0, 0x1F6D2},
    {0x1F6D5, 0x1F6D7}, {0x1F6DC, 0x1F6DF}, {0x1F6EB, 0x1F6EC}, {0x1F6F4, 0x1F6FC}, {0x1F7E0, 0x1F7EB},
    {0x1F7F0, 0x1F7F0}, {0x1F90C, 0x1F93A}, {0x1F93C, 0x1F945}, {0x1F947, 0x1F9FF}, {0x1FA70, 0x1FAFF},
};

template <std::size_t count>
bool IsIn(const Range (&ranges)[count], char32_t c) {
  const Range* next = std::upper_bound(std::begin(ranges), std::end(ranges), c,
                                       [](char32_t value, const Range& range) { return value < range.first; });
  return next != std::begin(ranges) && c <= std::prev(next)->last;
}

}  // namespace

bool IsEmojiByDefault(char32_t c) noexcept { return c >= kEmoji[0].first && IsIn(kEmoji, c); }

bool IsEmojiTail(char32_t c) noexcept {
  return c == kJoiner || c == kTextSelector || c == kEmojiSelector || c == kKeycap || (c >= 0x1F3FB && c <= 0x1F3FF) ||
         (c >= 0xE0020 && c <= 0xE007F);
}

bool NeedsShaping(std::u32string_view text) noexcept {
  return std::any_of(text.begin(), text.end(),
                     [](char32_t c) { return c >= kShaped[0].first && (IsIn(kShaped, c) || IsEmojiByDefault(c)); });
}

bool IsEmojiSequence(std::u32string_view grapheme) noexcept {
  const auto has = [&](char32_t c) { return grapheme.find(c) != grapheme.npos; };
  if (grapheme.empty() || has(kTextSelector)) return false;
  return has(kEmojiSelector) || (has(kKeycap) && grapheme.front() < 0x80) ||
         std::any_of(grapheme.begin(), grapheme.end(), IsEmojiByDefault);
}

}  // namespace glyphmotion
