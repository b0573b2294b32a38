// SPDX-License-Identifier: MIT
// The function behind the Build and Test buttons.
#pragma once

#include "glyphmotion/host_contract.h"
#include "image/remap.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// What a host can ask of a run's palette beyond the dialog's controls; a member of the run's state. Set before the
/// dialog opens.
struct PaletteRun {
  enum class Kind { Dialog, Best, Automatic } kind = Kind::Dialog;  ///< what it is made by: see Job::Palette
  int colours = 256;  ///< most entries of a custom or best palette, 2 to 256, a reserved one included
  Dithering dithering = Dithering::Diffuse;  ///< where Dither is on
};
PaletteRun& CurrentPaletteRun();

/// Reads the output options, runs the chosen effect, reduces the colours, hands the frames to the host and frees
/// everything. Every failure is reported in a message box; the dialog then stays open. `test` unchecks Alpha
/// transparency for the run and opens a test task. Returns true when the host got the finished task; ending the dialog
/// after a Build is up to the caller.
bool BuildDriver(Dialog& dialog, const HostCallTable& hostCalls, bool test);

}  // namespace glyphmotion
