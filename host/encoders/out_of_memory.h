// SPDX-License-Identifier: MIT
#pragma once

namespace glyphmotion {

/// The sentence for a run that memory does not suffice for, wherever that shows.
inline constexpr char kOutOfMemory[] = "out of memory: try a smaller size or fewer frames, or close other programs";

}  // namespace glyphmotion
