// SPDX-License-Identifier: MIT
// The controls and the private messages of dialog 1000.
#pragma once

#include <cstdint>

namespace glyphmotion {

/// Private messages of the main dialog.
enum MainDialogMessage : std::uint32_t {
  kMessageRefresh = 1224,       ///< after a load or at the start: shows the panel, enables Build
  kMessageRepaintSample = 1327  ///< repaints the sample window
};

/// Ids of the main dialog's controls, except those that renderers read (text/compositing.h).
namespace MainControl {
constexpr int Build = 1, Cancel = 2, Help = 9, TrueColour = 10, SizeText = 12, Palette = 13, CustomPalette = 14,
              Dither = 15;
constexpr int Register = 16, AboutAnimation = 17, About = 18, Supercompress = 19, AddComment = 20, MaskBackground = 21,
              Test = 24;
constexpr int Sample = 25, Transparent = 35, OpenSave = 36, Open = 37, Save = 38, SaveAs = 39, RunBuild = 40,
              RunTest = 41;
}  // namespace MainControl

}  // namespace glyphmotion
