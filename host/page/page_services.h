// SPDX-License-Identifier: MIT
// What a session asks of the program around it: its command line is the one place that knows what a document becomes.
#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "glyphmotion/render.h"
#include "image/packed_dib.h"

namespace glyphmotion {

/// Any thread may call them, several at once.
struct PageServices {
  /// The job that these words of a command line stand for; nothing, with one sentence, when they are wrong.
  std::function<std::optional<Job>(const std::vector<std::string>& words, std::string& error)> job;
  /// Runs these words as the program would, without a word on its standard error, and without a file once `stop` is
  /// true. Empty when done, else one sentence.
  std::function<std::string(const std::vector<std::string>& words, const std::atomic<bool>& stop)> run;
  /// A picture file as a bitmap; nothing, with one sentence, when it cannot be read.
  std::function<PackedDib(const std::string& path, std::string& error)> picture;
};

}  // namespace glyphmotion
