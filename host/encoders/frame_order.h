// SPDX-License-Identifier: MIT
// Turns a loop so that another frame comes first: what shows nothing but the first frame then shows the text.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "glyphmotion/render.h"

namespace glyphmotion {

class FrameOrder {
 public:
  /// `start`: the number of the frame that comes first, from 0, or kRest for the first of those that are shown longest.
  /// `next` gets the images in their new order, numbered afresh; its sentence ends everything.
  static constexpr int kRest = Job::kRest;
  FrameOrder(int start, std::function<std::string(const Image&)> next) : start_(start), next_(std::move(next)) {}

  /// Keeps a copy of the image. An empty text, or one sentence.
  std::string Add(const Image& image);
  /// Hands all images on. An image that looks through to those before it becomes a whole one when it comes first.
  std::string Finish();

 private:
  struct Kept {
    std::vector<std::uint8_t> dib;
    Image about;
  };
  bool Complete(std::size_t first);

  int start_;
  std::function<std::string(const Image&)> next_;
  std::vector<Kept> images_;
};

}  // namespace glyphmotion
