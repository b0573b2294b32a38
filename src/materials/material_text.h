// SPDX-License-Identifier: MIT
// The textual form of materials, as used on the command line.
//
//   #RRGGBB, #RGB, the name of a colour in CSS (red, steelblue); a name may replace each # below
//   gradient:[linear|conical|elliptical|rectangular,]#first-...-#last[,rotation=-360..360][,pad=0..45][,mid=1..99]
//            [,cx=-50..50][,cy=-50..50]
//            more than two colours are spread evenly
//   fountain:NAME                        a shipped fountain: fountain:Sunrise
//   fountain:#first,#c@position,...,#last   positions 0 to 255; colours between that name none are spread evenly
//            both forms take the shape, the options of gradients and loop=1 as further parts
//   texture:NAME                         an entry of the shipped texture library, or else of the user's own, in any
//            case, "-" for blanks
//   texture:fractal2|fractal3|fractal4|fractal5|craters|perturbation
//            both forms take fields as further parts: seed (of all layers, each one higher) and seed1 to seed5,
//            size (of the matrix), back, fore1 to fore5 (colours), power and power1 to power5, density and density1 to
//            density5, craters, depth, red, green and blue (four numbers 0 to 1 by slashes), bubbles, bubblesize,
//            bubblepower, shape (ellipse, fuzzy, luminous, sphere), noise
//   tile:NAME                            a shipped tile: tile:Bricks
//   tile:FILE#N                          tile N, from 1, of a .mtx file; "tile:#N" of the shipped library, and where
//            that has fewer, of the user's own
//   mtrl:FILE                            a material file
//   image:FILE                           a picture as a one-off tile
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "materials/colour_text.h"
#include "materials/material.h"

namespace glyphmotion {

/// Reads a text of one of the forms above into `material`, which holds a valid record (defaults); values that the text
/// does not mention are unchanged. False, with one sentence in `error` that names the value and what is allowed, when
/// the text is malformed or a file cannot be read. Only image:... leaves a bitmap in the record (Tile.TileBitmap),
/// which the caller then owns; a tile of a library is identified by path and index, and the receiver of the record
/// loads it.
bool ParseMaterial(const std::string& text, Material& material, std::string& error);

/// Reads a picture file for image:..., or returns nothing and an error sentence. Applications that link a decoder set
/// it for the current run; without it image:... is refused.
using ImageLoader = std::function<PackedDib(const std::string& path, std::string& error)>;
void SetImageLoader(ImageLoader loader);

/// The valid numbers in tile:#N, a line each with the tile's size and, if any, name.
std::vector<std::string> TileNames();

}  // namespace glyphmotion
