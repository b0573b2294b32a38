// SPDX-License-Identifier: MIT
// What the texts of all materials have in common: parts between separators, colours, numbers within a range, names.
// A function with an `error` returns false with one sentence in it, and leaves the result as it was.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "image/colour.h"

namespace glyphmotion {

std::string Quote(std::string_view text);

/// Puts the sentence into `error` and returns false.
bool Fail(std::string& error, std::string sentence);

/// A name reduced for comparison: lower case, without blanks, dashes and underscores.
std::string Plain(std::string_view name);

/// The text between separators, with blanks trimmed from each part; at least one part.
std::vector<std::string> Split(std::string_view text, std::string_view separators);

/// Reads a number from `least` to `most`; a whole number if `whole`. `key` names it in the sentence.
bool NumberWithin(const std::string& key, const std::string& text, double least, double most, bool whole, double& value,
                  std::string& error);

/// Reads an opaque colour: #RRGGBB or a name.
bool ColourPart(const std::string& text, Colour& colour, std::string& error);

/// True for a part that must be a colour, if it is anything: #..., a name, either with a position.
bool LooksLikeColour(const std::string& part);

/// Where a name of a library is looked up: first the shipped library, so that its names mean the same everywhere, then
/// the user's own.
std::vector<std::string> LibraryPathsOf(const char* library);

}  // namespace glyphmotion
