// SPDX-License-Identifier: MIT
// Runs that climb and fall back show most of their pictures twice. A frame that depends on one number alone is rendered
// once for each value; afterwards the list holds its copy already.
#pragma once

#include <unordered_map>

#include "effects/protocol.h"

namespace glyphmotion {

class RepeatedFrames {
 public:
  explicit RepeatedFrames(EffectContext& context) : context_(context) {}

  /// The next frame to append, whose picture depends on nothing but `key`: rendered, or a copy of the one that the list
  /// has for the key. Empty on failure.
  PackedDib Next(int key, Renderer render) {
    const auto [known, isNew] = indices_.emplace(key, context_.frames->count);
    if (isNew) return render(context_);
    const LockedFrame frame(*context_.frames, known->second);
    return frame ? PackedDib(DuplicateBlock(frame->image)) : PackedDib();
  }

 private:
  EffectContext& context_;
  std::unordered_map<int, int> indices_;  // places in the list
};

}  // namespace glyphmotion
