// SPDX-License-Identifier: MIT
// Pictures that several threads encode at once: they are collected until every thread has some to do, then encoded,
// then passed on in their order. With one thread each is encoded as it comes.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "platform/workers.h"

namespace glyphmotion {

/// `Picture` is what is to be encoded and has room for the result; its memory is used again for later pictures.
template <typename Picture>
class PictureBatch {
 public:
  using Encode = std::function<void(Picture&)>;       ///< on any thread
  using Keep = std::function<std::string(Picture&)>;  ///< on the caller's; an empty text, or why it failed

  /// Once `stop` is true no picture is encoded or passed on; null: not used.
  PictureBatch(int threads, const std::atomic<bool>* stop, Encode encode, Keep keep)
      : stop_(stop),
        workers_(threads),
        pictures_(workers_.Lanes() == 1 ? 1 : static_cast<std::size_t>(workers_.Lanes()) * kForEach),
        encode_(std::move(encode)),
        keep_(std::move(keep)) {}

  /// The picture to fill in next; holds what an earlier one has left.
  Picture& Next() { return pictures_[count_]; }

  /// Adds the picture that Next gave; `bytes` is about what it takes. An empty text, or why some picture failed.
  std::string Add(std::size_t bytes) {
    ++count_;
    bytes_ += bytes;
    return count_ == pictures_.size() || bytes_ >= kMostBytes ? Flush() : std::string();
  }

  /// Encodes and passes on all that were added.
  std::string Flush() {
    std::string error;
    const auto encode = [&](int, int i) {
      if (!Stopped()) encode_(pictures_[static_cast<std::size_t>(i)]);
    };
    const auto keep = [&](int i) {
      if (Stopped()) return false;
      error = keep_(pictures_[static_cast<std::size_t>(i)]);
      return error.empty();
    };
    workers_.InOrder(static_cast<int>(count_), encode, keep);
    count_ = bytes_ = 0;
    return error;
  }

 private:
  static constexpr std::size_t kForEach = 4, kMostBytes = std::size_t{32} << 20;

  bool Stopped() const { return stop_ && *stop_; }

  const std::atomic<bool>* stop_;
  Workers workers_;
  std::vector<Picture> pictures_;
  std::size_t count_ = 0, bytes_ = 0;
  Encode encode_;
  Keep keep_;
};

}  // namespace glyphmotion
