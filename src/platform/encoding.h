// SPDX-License-Identifier: MIT
// Text is UTF-8 inside the program. Older files are Windows-1252.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace glyphmotion {

/// Whether all of it is well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool IsUtf8(std::string_view bytes) noexcept;

/// A piece of text as UTF-8: as it is when it is UTF-8, otherwise each byte is a Windows-1252 character. The five bytes
/// that Windows-1252 leaves undefined become the control characters of the same number.
std::string ToUtf8(std::string_view bytes);

/// The bytes of a text file as UTF-8, without a byte order mark.
std::string TextFromBytes(std::string_view bytes);

/// Converts UTF-8 to code points; bytes that are not UTF-8 are read as Windows-1252.
std::u32string DecodeText(std::string_view text);

/// The longest prefix of at most `limit` bytes that does not end inside a character.
std::string_view CutText(std::string_view text, std::size_t limit) noexcept;

/// The number of characters, that is code points; in a text that is not UTF-8 each byte is one.
std::size_t CountCharacters(std::string_view text) noexcept;

/// The longest prefix of at most `limit` characters.
std::string_view CutCharacters(std::string_view text, std::size_t limit) noexcept;

}  // namespace glyphmotion
