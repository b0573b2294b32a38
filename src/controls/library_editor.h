// SPDX-License-Identifier: MIT
// What the texture dialog (9998) and the tile dialog (9981) do with groups, apart from their windows: choosing, adding,
// deleting and writing, what is protected, and the words of every message. Messages and questions go through
// ShowMessage and AskName over `owner`, which may be null.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>

#include "materials/texture_library.h"
#include "materials/tile.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// The texture dialog's state beside its controls.
struct TextureEditor {
  TextureSpec parameters;  ///< the copy under work
  std::string fileName;    ///< of the current group, in the data folder
  TextureLibrary group;
  bool changed = false;  ///< the group differs from its file
};

/// Opens the primary group. False after the message about importing.
bool OpenTextureEditor(Dialog* owner, TextureEditor& editor, const TextureSpec& parameters);
/// Another group by its name without extension.
bool ChooseTextureGroup(Dialog* owner, TextureEditor& editor, const std::string& name);
/// Takes entry i over as the texture under work.
bool SelectTexture(TextureEditor& editor, int i);
/// The + button: an entry of the texture under work, or with Shift a new group. True when the list changed.
bool AddTexture(Dialog* owner, TextureEditor& editor, bool shift);
/// The - button: the selected entry, or with Shift the group.
bool DeleteTexture(Dialog* owner, TextureEditor& editor, int selected, bool shift);
/// A new name for an entry, in a group that may be changed.
bool RenameTexture(Dialog* owner, TextureEditor& editor, int i, const std::string& name);
/// Writes the group if it changed and may be. False when that failed.
bool SaveTextureGroup(TextureEditor& editor);

/// The parameter controls, 501 to 532, that a texture type shows; all others are hidden.
std::span<const int> TextureControls(std::uint32_t type);
/// The field of a parameter control (a colour, a number or a float), and its value as the edit shows it: floats as
/// trunc(value * 100). Nothing for the curves 525 to 527 and other controls.
std::optional<std::int64_t> TextureControlValue(const TextureSpec& parameters, int control);
bool SetTextureControl(TextureSpec& parameters, int control, std::int64_t value);

/// The tile dialog's state beside its controls. `tile.TileBitmap` is the editor's own copy.
struct TileEditor {
  TileSpec tile;
  std::string fileName;
  TileLibrary group;
  int selected = -1;
  bool changed = false;
};

/// Reads a picture that a person chose; empty when cancelled.
using TileChooser = std::function<PackedDib()>;

/// Opens the primary group. False after the message; the dialog stays open then.
bool OpenTileEditor(Dialog* owner, TileEditor& editor, const TileSpec& tile);
bool ChooseTileGroup(Dialog* owner, TileEditor& editor, const std::string& name);
/// Makes entry i the tile; its bitmap becomes a duplicate of the entry's. False after a message when memory is out.
bool SelectTile(Dialog* owner, TileEditor& editor, int i);
bool AddTile(Dialog* owner, TileEditor& editor, bool shift, const TileChooser& choose);
bool DeleteTile(Dialog* owner, TileEditor& editor, bool shift);
/// OK: writes the group if it changed.
bool SaveTileGroup(TileEditor& editor);
/// "%d x %d" of the tile, empty without one.
std::string TileSizeText(const TileEditor& editor);

}  // namespace glyphmotion
