// SPDX-License-Identifier: MIT
// The group logic of the texture dialog (9998) and the tile dialog (9981), without their windows: choosing, adding,
// deleting and writing, protection, and the texts of all messages. Messages and questions use ShowMessage and AskName
// over `owner`, which may be null.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "materials/texture_library.h"
#include "materials/tile.h"
#include "platform/dialog.h"

namespace glyphmotion {

/// The texture dialog's state beside its controls.
struct TextureEditor {
  TextureSpec parameters;  ///< the working copy
  std::string fileName;    ///< of the current group, in the data folder
  TextureLibrary group;
  bool changed = false;                            ///< the group differs from its file
  std::map<std::string, TextureLibrary> setAside;  ///< by file name: changed groups that are not current
};

/// Names of the groups in the data folder, the primary one first, the others sorted.
std::vector<std::string> TextureGroups();
/// The name of the current group.
std::string TextureGroup(const TextureEditor& editor);

/// Opens the last current group of this run, initially the primary one. False after the message about importing.
bool OpenTextureEditor(Dialog* owner, TextureEditor& editor, const TextureSpec& parameters);
/// Switches to another group by its name without extension; changes to the previous one are kept until OK. False after
/// a message, with the group unchanged.
bool ChooseTextureGroup(Dialog* owner, TextureEditor& editor, const std::string& name);
/// Copies entry i to the current texture.
bool SelectTexture(TextureEditor& editor, int i);
/// The first entry that equals the current texture, or -1.
int FindTexture(const TextureEditor& editor);
/// Stores the current texture in entry i. False, and the entry unchanged, in a protected group.
bool KeepTexture(TextureEditor& editor, int i);
/// The + button: adds the current texture as an entry, or with Shift a new group. True when the list changed.
bool AddTexture(Dialog* owner, TextureEditor& editor, bool shift);
/// The - button: deletes the selected entry, or with Shift the group, after which the primary one is current.
bool DeleteTexture(Dialog* owner, TextureEditor& editor, int selected, bool shift);
/// Prompts for a new name for an entry, unless the group is protected.
bool RenameTexture(Dialog* owner, TextureEditor& editor, int i);
/// OK: writes the changed groups that are not protected. False when one of them could not be written.
bool SaveTextureGroups(TextureEditor& editor);

/// The parameter controls, 501 to 532, that a texture type shows; all others are hidden.
std::span<const int> TextureControls(std::uint32_t type);
/// The field of a parameter control (a colour, a number or a float), and its value as the edit shows it: floats as
/// trunc(value * 100). Nothing for the curves 525 to 527 and other controls.
std::optional<std::int64_t> TextureControlValue(const TextureSpec& parameters, int control);
/// Sets the field so that it shows the same value again, even after a round trip through a file with six decimals.
bool SetTextureControl(TextureSpec& parameters, int control, std::int64_t value);

/// The four values, 0 to 1, of one of the curves 525 to 527.
std::array<float, 4> TextureCurveValues(const TextureSpec& parameters, int control);
void SetTextureCurveValue(TextureSpec& parameters, int control, int point, float value);

/// The tile dialog's state beside its controls. `tile.TileBitmap` is the editor's own copy.
struct TileEditor {
  TileSpec tile;
  std::string fileName;
  TileLibrary group;
  int selected = -1;
  bool changed = false;
  std::map<std::string, TileLibrary> setAside;
};

/// Loads a picture that the user chooses; empty when cancelled.
using TileChooser = std::function<PackedDib()>;

std::vector<std::string> TileGroups();
std::string TileGroup(const TileEditor& editor);

/// As for textures. False after a message; the dialog then stays open.
bool OpenTileEditor(Dialog* owner, TileEditor& editor, const TileSpec& tile);
/// Likewise; a damaged group becomes current all the same, with its readable tiles.
bool ChooseTileGroup(Dialog* owner, TileEditor& editor, const std::string& name);
/// Selects the entry that the current tile came from, if it is in this group. False otherwise.
bool FindTile(TileEditor& editor);
/// Makes entry i the current tile, with a duplicate of the entry's bitmap. False after a message when out of memory.
bool SelectTile(Dialog* owner, TileEditor& editor, int i);
bool AddTile(Dialog* owner, TileEditor& editor, bool shift, const TileChooser& choose);
/// With Shift the primary group is current afterwards, but the entries stay until a group is chosen.
bool DeleteTile(Dialog* owner, TileEditor& editor, bool shift);
/// OK: writes the changed groups.
bool SaveTileGroups(TileEditor& editor);
/// "%d x %d" of the tile, empty without one.
std::string TileSizeText(const TileEditor& editor);

}  // namespace glyphmotion
