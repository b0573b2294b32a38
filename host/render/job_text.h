// SPDX-License-Identifier: MIT
// What a job says about its text and canvas, as members of the current run: for programs that show a dialog beside a
// run.
#pragma once

#include <glyphmotion/render.h>

#include <string>

namespace glyphmotion {

/// Direction, alignment, line space, emoji, font file and axes. One sentence when that is impossible.
std::string PrepareText(const Job& job);
/// The frame's own size. One sentence when there is no such canvas.
std::string PrepareCanvas(const Job& job);

}  // namespace glyphmotion
