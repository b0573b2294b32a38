// SPDX-License-Identifier: MIT
// Ids of the tile dialog (9981).
#pragma once

namespace glyphmotion::TileControl {

constexpr int Ok = 1, Cancel = 2, Help = 9;
constexpr int Preview = 101, List = 102, Add = 103, Delete = 104, Size = 105, Group = 108;

/// Width and height of an item of the list, in pixels.
constexpr int Cell = 48;
constexpr int Rows = 5;

}  // namespace glyphmotion::TileControl
