// SPDX-License-Identifier: MIT
#pragma once

namespace glyphmotion {

/// The message of a run that ran out of memory, in every place that can report it.
inline constexpr char kOutOfMemory[] = "out of memory: try a smaller size or fewer frames, or close other programs";

}  // namespace glyphmotion
