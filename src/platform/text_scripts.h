// SPDX-License-Identifier: MIT
// Which characters can be drawn one by one, and which need the shaper.
#pragma once

#include <string_view>

namespace glyphmotion {

/// True when a text has a character that cannot be placed by itself: written from right to left, joining, combining,
/// of an Indic or South-East Asian script, a conjoining jamo, an emoji or part of one, or a direction control.
bool NeedsShaping(std::u32string_view text) noexcept;

/// Shown as a coloured picture unless a variation selector says otherwise.
bool IsEmojiByDefault(char32_t c) noexcept;

/// Continues the grapheme of the character before it whatever that is: marks are not among these.
bool IsEmojiTail(char32_t c) noexcept;

constexpr bool IsRegionalIndicator(char32_t c) { return c >= 0x1F1E6 && c <= 0x1F1FF; }
constexpr char32_t kJoiner = 0x200D, kTextSelector = 0xFE0E, kEmojiSelector = 0xFE0F, kKeycap = 0x20E3;

/// The one grapheme `text` (a base and what continues it) is to be drawn as an emoji.
bool IsEmojiSequence(std::u32string_view grapheme) noexcept;

}  // namespace glyphmotion
