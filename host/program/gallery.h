// SPDX-License-Identifier: MIT
// glyphmotion gallery FOLDER [--text T] [--look L]: a page of every effect, look, texture, tile and fountain, with the
// words that make each.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace glyphmotion {

/// True when the words after the program's name ask for the gallery: "gallery" alone, or with a folder after it.
bool IsGallery(const std::vector<std::string>& words);

/// Renders each picture, on all cores, and writes index.html beside them. `run` runs the program with the given words
/// on any thread and returns one sentence on failure; once `stop` says true no more pictures begin. Returns an empty
/// text, or one sentence on failure. `badUsage` is set when the words are wrong.
std::string WriteGallery(const std::vector<std::string>& words,
                         const std::function<std::string(const std::vector<std::string>&)>& run,
                         const std::function<bool()>& stop, bool& badUsage);

}  // namespace glyphmotion
