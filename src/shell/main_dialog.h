// SPDX-License-Identifier: MIT
// Dialog 1000: the plug-in's whole user interface.
#pragma once

#include <string>

#include "glyphmotion/host_contract.h"
#include "platform/dialog.h"

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

/// The dialog's procedure; the parameter of its kMessageInitialise is the const HostCallTable*.
std::int64_t MainDialogProcedure(Dialog& dialog, const Message& message);

/// Implements PLUGIN16DoBuild within the current run, which must be new; Render() prepares its run first. Returns 1
/// once the dialog has ended, 0 if the host is refused. May throw.
int RunMainDialog(void* ownerWindow, const HostCallTable* table);

}  // namespace glyphmotion
