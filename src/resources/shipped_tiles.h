// SPDX-License-Identifier: MIT
// What people call the tiles of the shipped library, whose file has no place for names.
#pragma once

namespace glyphmotion {

/// In the order of the library.
inline constexpr const char* kShippedTileNames[] = {
    "Bricks", "Planks",   "Honeycomb", "Scales", "Carbon", "Tartan",  "Argyle", "Dots",    "Waves",  "Chevron",
    "Marble", "Terrazzo", "Cobbles",   "Knit",   "Starry", "Circuit", "Mosaic", "Bubbles", "Rivets", "Leaves"};

}  // namespace glyphmotion
