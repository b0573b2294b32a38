// SPDX-License-Identifier: MIT
// The fountain button: a bar that shows a gradient of up to 64 markers, with a handle for each colour above it. Its
// user data is the FountainSpec. Keys: left and right choose a handle, up and down move it, Space changes its colour,
// Insert adds a marker beside it, Delete removes it, F2 prompts for its position, the menu key opens the menu.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "controls/families.h"
#include "controls/fountain_face.h"
#include "image/packed_dib.h"
#include "materials/fountain.h"

namespace glyphmotion {

/// The family of fountain buttons, stem FOUNTB.
extern const ControlFamily kFountainFamily;

/// Private messages of the control; `a` is a marker's index, or one of the two handles.
enum FountainMessage : std::uint32_t {
  kMessageInitialiseFountain = 0x52C,  ///< InitialiseFountain; a: kFountainOfOwnFile or 0, b: the initial one or 0
  kMessageFountainColour = 0x59A,      ///< changes a colour
  kMessageFountainAdd = 0x59B,         ///< adds a marker; a: its position
  kMessageFountainDelete = 0x59C,      ///< deletes a marker
  kMessageFountainPosition = 0x59D,    ///< changes a marker's position
  kMessageMarkerMenu = 0x59E,
  kMessageBarMenu = 0x59F
};
constexpr std::uint64_t kFountainOfOwnFile = 0x1000;
/// Posted to the dialog after each change; b: the control's id.
constexpr std::uint32_t kMessageFillChanged = 0x52F;

/// The control's fountain, locked; empty when the control has none.
LockedBlock<FountainSpec> LockFountain(const Dialog& dialog, int id) noexcept;

/// Sizes the control and loads its fountain: with `ownFile`, unless Shift is down, from its file, otherwise a copy of
/// `initial`, otherwise the spectrum. A control whose text contains "FountainButtonLooped" is looped.
void InitialiseFountain(Dialog& dialog, int id, bool ownFile, const FountainSpec* initial);

/// Writes the control's own file, if it has one, and frees the fountain.
void DestroyFountain(Dialog& dialog, int id);

/// Fountain%05.5d.mtrl in the folder of per-control files; empty when there is none. The file has the memory form, 585
/// bytes.
std::string FountainPath(int id);

/// The user's own FountainLibrary.fll, or the shipped one.
std::string FountainLibraryPath();
/// The path of the user's own copy, whose folder is created; empty on failure.
std::string FountainLibraryPathToWrite();

/// The windows that the control opens; without them, positions are typed into a prompt and the library is not managed.
struct FountainWindows {
  /// A marker's new position, or nothing when cancelled. `show` updates the control while the user chooses.
  std::optional<int> (*askPosition)(Dialog& dialog, int position, const std::function<void(int)>& show) = nullptr;
  /// True when a fountain of the library was chosen; its colours are then in `fountain`.
  bool (*manageLibrary)(Dialog& dialog, FountainSpec& fountain) = nullptr;
};
void SetFountainWindows(const FountainWindows& windows);

}  // namespace glyphmotion
