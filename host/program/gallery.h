// SPDX-License-Identifier: MIT
// glyphmotion gallery FOLDER: a page with a picture of every effect.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace glyphmotion {

/// True when the words after the program's name ask for the gallery: "gallery" alone, or a folder after it and no more.
bool IsGallery(const std::vector<std::string>& words);

/// Renders each effect with options that suit it and writes index.html beside the pictures. `run` runs the program with
/// the given words and returns its exit code. Returns an empty text, or one sentence on failure.
std::string WriteGallery(const std::string& folder, const std::function<int(const std::vector<std::string>&)>& run);

}  // namespace glyphmotion
