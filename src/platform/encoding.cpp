// SPDX-License-Identifier: MIT
#include "platform/encoding.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace glyphmotion {
namespace {

// Windows-1252 from 0x80 to 0x9F; all other bytes are their own code points.
constexpr std::uint16_t kHighBytes[32] = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                          0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                          0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                          0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

unsigned At(std::string_view bytes, std::size_t i) { return static_cast<unsigned char>(bytes[i]); }

bool IsTail(unsigned byte) { return (byte & 0xC0) == 0x80; }

/// Length of the well-formed character at `i`, 0 when there is none.
std::size_t CharacterLength(std::string_view bytes, std::size_t i) {
  const unsigned first = At(bytes, i);
  if (first < 0x80) return 1;
  const std::size_t length = first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 0;
  if (length == 0 || bytes.size() - i < length) return 0;
  for (std::size_t k = 1; k < length; ++k) {
    if (!IsTail(At(bytes, i + k))) return 0;
  }
  const unsigned second = At(bytes, i + 1);
  const bool overlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
  const bool surrogate = first == 0xED && second > 0x9F;
  const bool tooHigh = first == 0xF4 && second > 0x8F;
  return overlong || surrogate || tooHigh ? 0 : length;
}

void AppendCodePoint(std::string& text, unsigned point) {
  if (point < 0x80) {
    text += static_cast<char>(point);
  } else if (point < 0x800) {
    text += static_cast<char>(0xC0 | point >> 6);
    text += static_cast<char>(0x80 | (point & 0x3F));
  } else {
    text += static_cast<char>(0xE0 | point >> 12);
    text += static_cast<char>(0x80 | (point >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (point & 0x3F));
  }
}

}  // namespace

bool IsUtf8(std::string_view bytes) noexcept {
  for (std::size_t i = 0; i < bytes.size();) {
    std::uint64_t eight = 0x80;  // most text is ASCII
    if (bytes.size() - i >= sizeof eight) std::memcpy(&eight, bytes.data() + i, sizeof eight);
    if (!(eight & 0x8080808080808080)) {
      i += sizeof eight;
      continue;
    }
    const std::size_t length = CharacterLength(bytes, i);
    if (length == 0) return false;
    i += length;
  }
  return true;
}

std::string ToUtf8(std::string_view bytes) {
  if (IsUtf8(bytes)) return std::string(bytes);
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 4);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const unsigned byte = At(bytes, i);
    AppendCodePoint(text, byte >= 0x80 && byte < 0xA0 ? kHighBytes[byte - 0x80] : byte);
  }
  return text;
}

std::string TextFromBytes(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF") && IsUtf8(bytes)) bytes.remove_prefix(3);
  return ToUtf8(bytes);
}

std::string_view CutText(std::string_view text, std::size_t limit) noexcept {
  if (text.size() <= limit) return text;
  std::size_t end = limit;
  while (end > 0 && limit - end < 3 && IsTail(At(text, end))) --end;
  return text.substr(0, IsTail(At(text, end)) ? limit : end);
}

std::size_t CountCharacters(std::string_view text) noexcept {
  if (!IsUtf8(text)) return text.size();
  return static_cast<std::size_t>(
      std::count_if(text.begin(), text.end(), [](char byte) { return !IsTail(static_cast<unsigned char>(byte)); }));
}

std::string_view CutCharacters(std::string_view text, std::size_t limit) noexcept {
  if (CountCharacters(text) <= limit) return text;
  if (!IsUtf8(text)) return text.substr(0, limit);
  std::size_t end = 0;
  for (; limit > 0; --limit) end += CharacterLength(text, end);
  return text.substr(0, end);
}

std::u32string DecodeText(std::string_view text) {
  const std::string bytes = TextFromBytes(text);  // well-formed from here on
  std::u32string characters;
  characters.reserve(bytes.size());
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    if ((value & 0xC0) == 0x80) {
      characters.back() = characters.back() << 6 | (value & 0x3F);
    } else {
      characters.push_back(value < 0x80   ? value
                           : value < 0xE0 ? value & 0x1F
                           : value < 0xF0 ? value & 0x0F
                                          : value & 7);
    }
  }
  return characters;
}

}  // namespace glyphmotion
