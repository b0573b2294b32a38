// SPDX-License-Identifier: MIT
// The container of a WebM file with one video track: the subset of EBML and Matroska that players need.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace glyphmotion {

struct WebmFrame {
  std::vector<std::uint8_t> picture, alpha;  ///< coded; alpha is empty without an alpha plane
  int time = 0;                              ///< milliseconds that it is shown
  bool key = false;
};

/// A whole file with the codec "V_VP9".
std::vector<std::uint8_t> WebmFileOf(int width, int height, const std::vector<WebmFrame>& frames);

}  // namespace glyphmotion
