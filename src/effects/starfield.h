// SPDX-License-Identifier: MIT
// Streaking stars in three sizes that rush sideways through a picture and come back on the other side. The thickest are
// the slowest. Every star makes a whole number of laps in a run, so that the animation loops without a seam.
#pragma once

#include <cstdint>
#include <vector>

#include "effects/protocol.h"

namespace glyphmotion {

struct StarRecord {
  double x = 0.0, y = 0.0;  ///< the streak's head: column, 0 to the picture's width, and row
  double speed = 0.0;       ///< width / frames
  int size = 0;             ///< thickness: 4, 2 or 1; the streak is size * 20 pixels long
  int speedFactor = 0;      ///< pixels of travel a frame are speedFactor * speed
  int opacity = 0;          ///< alpha at the head
  bool reverse = false;     ///< to the right
};

/// The parameter block of an effect of stars: made by the first render, moved on to the frame by each.
struct StarfieldState {
  int frame = 0;  ///< to paint
  int at = 0;     ///< the frame that the stars' places belong to
  bool ready = false;
  std::vector<StarRecord> stars;
  int width = 0, height = 0;  ///< the canvas of the first render
  int bigSize = 4, midSize = 2, smallSize = 1;
  int frames = 1;
};

/// The controls of a panel that has stars.
struct StarfieldControls {
  int frames, seed, density, scroll, colour;
};

constexpr StarfieldControls StarsOf(const Panel& panel) {
  return {panel.Option("Frames"), panel.Option("Seed"), panel.Option("Density"), panel.Option("Scroll"),
          panel.Option("SparkColor")};
}

/// Creates the stars of a canvas, unless they are there and have not gone too far. Seeds the random generator and draws
/// four values a star.
void CreateStars(StarfieldState& field, const Dialog& dialog, const StarfieldControls& controls, int width, int height);

/// Moves the stars on to the frame and paints them on a 24-bit picture.
void PaintStars(StarfieldState& field, const DibView& picture, Colour colour) noexcept;

/// Test and build functions of an effect of stars. A build begins one frame on, so that the last one shows the places
/// that they started from.
int TestStarfield(EffectContext& context, Renderer render) noexcept;
int BuildStarfield(EffectContext& context, const StarfieldControls& controls, Renderer render) noexcept;

}  // namespace glyphmotion
