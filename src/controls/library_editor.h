// SPDX-License-Identifier: MIT
// What the texture dialog (9998) and the tile dialog (9981) do with groups, apart from their windows: choosing, adding,
// deleting and writing, what is protected, and the words of every message. Messages and questions go through
// ShowMessage and AskName over `owner`, which may be null.
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
  TextureSpec parameters;  ///< the copy under work
  std::string fileName;    ///< of the current group, in the data folder
  TextureLibrary group;
  bool changed = false;                            ///< the group differs from its file
  std::map<std::string, TextureLibrary> setAside;  ///< by file name: changed groups over which another was chosen
};

/// Names of the groups in the data folder, the primary one first, the others sorted.
std::vector<std::string> TextureGroups();
/// The name of the current group.
std::string TextureGroup(const TextureEditor& editor);

/// Opens the group that was current last in this run, at first the primary one. False after the message about
/// importing.
bool OpenTextureEditor(Dialog* owner, TextureEditor& editor, const TextureSpec& parameters);
/// Another group by its name without extension; what was changed in the one before waits for OK. False after the
/// message, with the group as it was.
bool ChooseTextureGroup(Dialog* owner, TextureEditor& editor, const std::string& name);
/// Takes entry i over as the texture under work.
bool SelectTexture(TextureEditor& editor, int i);
/// The first entry that is the texture under work, or -1.
int FindTexture(const TextureEditor& editor);
/// The texture under work becomes that of entry i. False, and the entry as it was, in a group that may not be changed.
bool KeepTexture(TextureEditor& editor, int i);
/// The + button: an entry of the texture under work, or with Shift a new group. True when the list changed.
bool AddTexture(Dialog* owner, TextureEditor& editor, bool shift);
/// The - button: the selected entry, or with Shift the group, after which the primary one is current.
bool DeleteTexture(Dialog* owner, TextureEditor& editor, int selected, bool shift);
/// Asks for a new name for an entry, in a group that may be changed.
bool RenameTexture(Dialog* owner, TextureEditor& editor, int i);
/// OK: writes the groups that changed and may be. False when one of them could not be written.
bool SaveTextureGroups(TextureEditor& editor);

/// The parameter controls, 501 to 532, that a texture type shows; all others are hidden.
std::span<const int> TextureControls(std::uint32_t type);
/// The field of a parameter control (a colour, a number or a float), and its value as the edit shows it: floats as
/// trunc(value * 100). Nothing for the curves 525 to 527 and other controls.
std::optional<std::int64_t> TextureControlValue(const TextureSpec& parameters, int control);
/// Sets it, so that the same value shows again, also after a file has kept it with its six decimals.
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

/// Reads a picture that a person chose; empty when cancelled.
using TileChooser = std::function<PackedDib()>;

std::vector<std::string> TileGroups();
std::string TileGroup(const TileEditor& editor);

/// As for textures. False after the message; the dialog stays open then.
bool OpenTileEditor(Dialog* owner, TileEditor& editor, const TileSpec& tile);
/// Likewise; a group that cannot be read is current all the same, with the tiles before the break.
bool ChooseTileGroup(Dialog* owner, TileEditor& editor, const std::string& name);
/// Marks the entry that the tile under work came from, if that is one of this group. False for none.
bool FindTile(TileEditor& editor);
/// Makes entry i the tile; its bitmap becomes a duplicate of the entry's. False after a message when memory is out.
bool SelectTile(Dialog* owner, TileEditor& editor, int i);
bool AddTile(Dialog* owner, TileEditor& editor, bool shift, const TileChooser& choose);
/// With Shift the primary group is current afterwards, but the entries stay until a group is chosen.
bool DeleteTile(Dialog* owner, TileEditor& editor, bool shift);
/// OK: writes the groups that changed.
bool SaveTileGroups(TileEditor& editor);
/// "%d x %d" of the tile, empty without one.
std::string TileSizeText(const TileEditor& editor);

}  // namespace glyphmotion
