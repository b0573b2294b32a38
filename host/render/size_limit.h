// SPDX-License-Identifier: MIT
// Files of a limited size: tries what can be given up until a GIF fits.
#pragma once

#include <glyphmotion/render.h>

#include <string>
#include <vector>

#include "host/encoders/encoders.h"

namespace glyphmotion {

struct FittedPictures {
  RenderResult result;  ///< of the run that `bytes` come from; its notes say what was given up
  std::string trouble;  ///< one sentence; empty: `bytes` is the file
  std::vector<std::uint8_t> bytes;
  int width = 0, height = 0;  ///< pixels
  int frames = 0;
};

/// Renders the job as a GIF of at most `mostBytes`: as it is, or at the cost of loss, then of colours, then of every
/// second frame, in at most six runs. lossy  at least this, as in EncoderSettings. The sink gets the calls of all runs.
FittedPictures RenderWithin(const Job& job, double lossy, std::size_t mostBytes, const Sink& sink);

}  // namespace glyphmotion
