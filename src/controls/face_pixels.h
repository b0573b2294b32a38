// SPDX-License-Identifier: MIT
// Access to the pixels of a face; see DrawRequest for their format. Alphas are 0 to 255.
#pragma once

#include "image/colour.h"
#include "image/packed_dib.h"
#include "platform/dialog.h"

namespace glyphmotion {

constexpr Rect WholeOf(const DrawRequest& request) { return {0, 0, request.width, request.height}; }

constexpr bool IsOnFace(const DrawRequest& request, int x, int y) {
  return x >= 0 && y >= 0 && x < request.width && y < request.height;
}

/// The position must be on the face.
constexpr std::uint8_t* FacePixel(const DrawRequest& request, int x, int y) {
  return request.pixels + request.stride * y + std::ptrdiff_t{3} * x;
}

constexpr void PutColour(std::uint8_t* pixel, Colour colour) {
  pixel[0] = static_cast<std::uint8_t>(BlueOf(colour));
  pixel[1] = static_cast<std::uint8_t>(GreenOf(colour));
  pixel[2] = static_cast<std::uint8_t>(RedOf(colour));
}

constexpr void BlendColour(std::uint8_t* pixel, Colour colour, int alpha) {
  PutColour(pixel, Blend(MakeColour(pixel[2], pixel[1], pixel[0]), colour, alpha));
}

}  // namespace glyphmotion
