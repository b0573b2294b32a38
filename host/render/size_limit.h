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
  int colours = -1;  ///< distinct ones, as in ColourCount; -1: not counted
};

/// Renders the job as a GIF of at most `maxBytes`: as it is, or at the cost of loss, then of colours, then of every
/// second frame, in at most six runs. The sink gets the calls of all runs.
FittedPictures RenderWithin(const Job& job, const Sink& sink, bool countColours = false);

}  // namespace glyphmotion
