// SPDX-License-Identifier: MIT
#include "controls/library_editor.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstring>

#include "controls/variables.h"
#include "materials/library_file.h"
#include "materials/shipped.h"
#include "platform/folders.h"
#include "platform/shell_ui.h"
#include "resources/strings.h"

namespace glyphmotion {
namespace {

constexpr int kLargestTileSide = 512;

LibraryStamp Stamp() { return CurrentStamp(TextVariable("RegistrationName")); }

// The name of a group is that of its file in the data folder: what would lead elsewhere is left out.
std::string FileNameOf(const std::string& name, const char* extension) {
  std::string plain;
  for (const char c : name) {
    if (c != '/' && c != '\\' && c != ':' && static_cast<unsigned char>(c) >= 0x20) plain += c;
  }
  return plain + "." + extension;
}

// The file of a group that may stand: one that came from elsewhere can have its extension in small letters, which on
// some disks makes another name.
std::string FileOfGroup(const std::string& name, const char* extension) {
  const std::string made = FileNameOf(name, extension);
  std::string small = made;
  for (std::size_t i = small.rfind('.'); i < small.size(); ++i) {
    small[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(small[i])));
  }
  const std::string folder = DataFolder();
  return !FileExists(JoinPath(folder, made)) && FileExists(JoinPath(folder, small)) ? small : made;
}

// Where letters' cases are one, a new group of the primary's name would be the primary itself.
bool IsNameOf(const std::string& fileName, const char* primary) {
  const std::string_view other = primary;
  return std::equal(fileName.begin(), fileName.end(), other.begin(), other.end(),
                    [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; });
}

std::string GroupOf(const std::string& fileName) { return fileName.substr(0, fileName.rfind('.')); }

bool AskToDelete(Dialog* owner, int question, const std::string& fileName) {
  return ShowMessage(owner, FormatText(question, GroupOf(fileName)), MessageButtons::YesNo);
}

bool Refuse(Dialog* owner, int message) {
  ShowMessage(owner, LoadText(message));
  return false;
}

bool WriteTextures(TextureEditor& editor) {
  if (!EnsureFolder(DataFolder())) return false;
  const bool written = WriteTextureLibrary(JoinPath(DataFolder(), editor.fileName), editor.group, Stamp());
  if (written) editor.changed = false;
  return written;
}

bool WriteTiles(TileEditor& editor) {
  if (!EnsureFolder(DataFolder())) return false;
  TileLibrary& group = editor.group;
  group.writeable = true;
  const bool written = WriteTileLibrary(JoinPath(DataFolder(), editor.fileName), group, Stamp());
  if (written) editor.changed = false;
  return written;
}

bool IsEntry(int i, std::size_t count) { return i >= 0 && static_cast<std::size_t>(i) < count; }

}  // namespace

// Textures ------------------------------------------------------------------------------------------------------------

bool OpenTextureEditor(Dialog* owner, TextureEditor& editor, const TextureSpec& parameters) {
  editor.parameters = parameters;
  return ChooseTextureGroup(owner, editor, GroupOf(kTextureLibraryName));
}

bool ChooseTextureGroup(Dialog* owner, TextureEditor& editor, const std::string& name) {
  const std::string fileName = name == GroupOf(kTextureLibraryName) ? kTextureLibraryName : FileOfGroup(name, "FFT");
  TextureLibrary group;
  if (!ReadTextureLibrary(LibraryPath(fileName), group)) {
    ShowMessage(owner, LoadText(kTextTexturesNotLoaded));
    return false;
  }
  // A primary group is known by its silence; whatever a copy says, the shipped name stays protected.
  if (fileName == kTextureLibraryName) group.writeable = false;
  editor.fileName = fileName;
  editor.group = std::move(group);
  editor.changed = false;
  return true;
}

bool SelectTexture(TextureEditor& editor, int i) {
  if (!IsEntry(i, editor.group.textures.size())) return false;
  editor.parameters = editor.group.textures[static_cast<std::size_t>(i)].parameters;
  return true;
}

bool AddTexture(Dialog* owner, TextureEditor& editor, bool shift) {
  if (shift) {
    const auto name = AskName(owner, "New texture group", LoadText(kTextNewGroup));
    if (!name || name->empty()) return false;
    const std::string fileName = FileNameOf(*name, "FFT");
    if (IsNameOf(fileName, kTextureLibraryName)) return Refuse(owner, kTextTexturesProtected);
    editor.fileName = fileName;
    editor.group.writeable = true;
    if (WriteTextures(editor)) return true;
    ShowMessage(owner, LoadText(kTextDocumentNotCreated));
    return false;
  }
  if (!editor.group.writeable) return Refuse(owner, kTextTexturesProtected);
  try {
    editor.group.textures.push_back({LoadText(kTextNewTexture), editor.parameters});
  } catch (const std::bad_alloc&) {
    ShowMessage(owner, LoadText(kTextTextureNotAdded));
    return false;
  }
  editor.changed = true;
  return true;
}

bool DeleteTexture(Dialog* owner, TextureEditor& editor, int selected, bool shift) {
  if (shift) {
    if (!editor.group.writeable) {
      ShowMessage(owner, LoadText(kTextPrimaryTexturesKept));
      return false;
    }
    if (!AskToDelete(owner, kTextAskDeleteTextures, editor.fileName) ||
        !RemoveFile(JoinPath(DataFolder(), editor.fileName)))
      return false;
    return ChooseTextureGroup(owner, editor, GroupOf(kTextureLibraryName));
  }
  if (!editor.group.writeable) return Refuse(owner, kTextTexturesProtected);
  if (!IsEntry(selected, editor.group.textures.size())) return false;
  editor.group.textures.erase(editor.group.textures.begin() + selected);
  editor.changed = true;
  return true;
}

bool RenameTexture(Dialog* owner, TextureEditor& editor, int i, const std::string& name) {
  if (!editor.group.writeable) return Refuse(owner, kTextTexturesProtected);
  if (!IsEntry(i, editor.group.textures.size())) return false;
  editor.group.textures[static_cast<std::size_t>(i)].name = name.substr(0, 260);
  editor.changed = true;
  return true;
}

bool SaveTextureGroup(TextureEditor& editor) {
  return !editor.changed || !editor.group.writeable || WriteTextures(editor);
}

std::span<const int> TextureControls(std::uint32_t type) {
  static constexpr int two[] = {501, 502, 507, 512, 517, 518};
  static constexpr int three[] = {501, 502, 507, 512, 517, 518, 503, 508, 513, 519};
  static constexpr int four[] = {501, 502, 507, 512, 517, 518, 503, 508, 513, 519, 504, 509, 514, 520};
  static constexpr int five[] = {501, 502, 507, 512, 517, 518, 503, 508, 513,
                                 519, 504, 509, 514, 520, 505, 510, 515, 521};
  static constexpr int craters[] = {501, 502, 512, 523, 524};
  static constexpr int perturbation[] = {512, 517, 525, 526, 527, 528, 529, 530, 531, 532};
  switch (type) {
    case 0:
      return two;
    case 1:
      return three;
    case 2:
      return four;
    case 3:
      return five;
    case 4:
      return craters;
    case 5:
      return perturbation;
    default:
      return {};
  }
}

namespace {

struct ControlField {
  int first, last;  // control ids
  std::size_t offset;
  bool isFloat;
};
constexpr ControlField kControlFields[] = {{501, 501, offsetof(TextureSpec, BackColour), false},
                                           {502, 506, offsetof(TextureSpec, ForeColour), false},
                                           {507, 511, offsetof(TextureSpec, Power), true},
                                           {512, 516, offsetof(TextureSpec, SeedValue), false},
                                           {517, 517, offsetof(TextureSpec, MatrixSize), false},
                                           {518, 522, offsetof(TextureSpec, Dimension), true},
                                           {523, 523, offsetof(TextureSpec, CreaterCount), false},
                                           {524, 524, offsetof(TextureSpec, CreaterDepth), true},
                                           {528, 528, offsetof(TextureSpec, BubbleCount), false},
                                           {529, 529, offsetof(TextureSpec, BubbleSize), false},
                                           {530, 530, offsetof(TextureSpec, BubblePower), true},
                                           {531, 531, offsetof(TextureSpec, BubbleShape), false},
                                           {532, 532, offsetof(TextureSpec, PerturbationPower), true}};

const ControlField* ControlFieldOf(int control) {
  for (const ControlField& field : kControlFields) {
    if (control >= field.first && control <= field.last) return &field;
  }
  return nullptr;
}

std::size_t PlaceOf(const ControlField& field, int control) {
  return field.offset + 4 * static_cast<std::size_t>(control - field.first);
}

}  // namespace

std::optional<std::int64_t> TextureControlValue(const TextureSpec& parameters, int control) {
  const ControlField* field = ControlFieldOf(control);
  if (!field) return std::nullopt;
  const char* place = reinterpret_cast<const char*>(&parameters) + PlaceOf(*field, control);
  if (field->isFloat) {
    float value;
    std::memcpy(&value, place, sizeof(value));
    const double shown = static_cast<double>(value * 100.0f);
    return std::isfinite(shown) ? static_cast<std::int64_t>(std::clamp(shown, -2147483648.0, 2147483647.0)) : 0;
  }
  std::uint32_t value;
  std::memcpy(&value, place, sizeof(value));
  return value;
}

bool SetTextureControl(TextureSpec& parameters, int control, std::int64_t value) {
  const ControlField* field = ControlFieldOf(control);
  if (!field) return false;
  char* place = reinterpret_cast<char*>(&parameters) + PlaceOf(*field, control);
  if (field->isFloat) {
    const float number = static_cast<float>(value) / 100.0f;
    std::memcpy(place, &number, sizeof(number));
  } else {
    const auto number = static_cast<std::uint32_t>(value);
    std::memcpy(place, &number, sizeof(number));
  }
  return true;
}

// Tiles ---------------------------------------------------------------------------------------------------------------

bool OpenTileEditor(Dialog* owner, TileEditor& editor, const TileSpec& tile) {
  editor.tile = tile;
  editor.fileName = kTileLibraryName;
  return ChooseTileGroup(owner, editor, GroupOf(kTileLibraryName));
}

bool ChooseTileGroup(Dialog* owner, TileEditor& editor, const std::string& name) {
  editor.fileName = name == GroupOf(kTileLibraryName) ? kTileLibraryName : FileOfGroup(name, "MTX");
  editor.group = {};  // a file that cannot be read says nothing of whether it may be changed
  editor.selected = -1;
  editor.changed = false;
  if (ReadTileLibrary(LibraryPath(editor.fileName), editor.group)) return true;
  ShowMessage(owner, LoadText(kTextTilesNotLoaded));
  return false;
}

bool SelectTile(Dialog* owner, TileEditor& editor, int i) {
  if (!IsEntry(i, editor.group.tiles.size())) return false;
  PackedDib copy = DuplicateDib(editor.group.tiles[static_cast<std::size_t>(i)]);
  if (!copy) {
    ShowMessage(owner, LoadText(kTextMemoryError));
    return false;
  }
  FreeBlock(HandleOf(editor.tile.TileBitmap));
  editor.tile.TileBitmap = WordOf(copy.Release());
  editor.tile.TileIndex = static_cast<std::uint32_t>(i);
  SetTilePath(editor.tile, LibraryPath(editor.fileName));
  editor.selected = i;
  return true;
}

bool AddTile(Dialog* owner, TileEditor& editor, bool shift, const TileChooser& choose) {
  if (shift) {
    const auto name = AskName(owner, "New matrix group", LoadText(kTextNewGroup));
    if (!name || name->empty()) return false;
    const std::string fileName = FileNameOf(*name, "MTX");
    if (IsNameOf(fileName, kTileLibraryName)) return Refuse(owner, kTextTilesProtected);
    editor.fileName = fileName;
    if (WriteTiles(editor)) return true;
    ShowMessage(owner, LoadText(kTextDocumentNotCreated));
    return false;
  }
  if (!editor.group.writeable) return Refuse(owner, kTextTilesProtected);
  PackedDib picture = choose ? choose() : PackedDib();
  int width = 0, height = 0, bits = 0;
  if (const DibView view(picture); view) {
    width = view.Width();
    height = view.Height();
    bits = view.Bits();
  }
  if (!bits) return false;
  if (width > kLargestTileSide && height > kLargestTileSide) {
    ShowMessage(owner, LoadText(kTextTileTooLarge));
    return false;
  }
  if (bits != 24) picture = TileTo24Bit(picture);
  try {
    if (!picture) throw std::bad_alloc();
    editor.group.tiles.push_back(std::move(picture));
  } catch (const std::bad_alloc&) {
    ShowMessage(owner, LoadText(kTextTileNotAdded));
    return false;
  }
  editor.changed = true;
  return true;
}

bool DeleteTile(Dialog* owner, TileEditor& editor, bool shift) {
  if (shift) {
    if (!editor.group.writeable) {
      ShowMessage(owner, LoadText(kTextPrimaryTilesKept));
      return false;
    }
    if (!AskToDelete(owner, kTextAskDeleteTiles, editor.fileName) ||
        !RemoveFile(JoinPath(DataFolder(), editor.fileName)))
      return false;
    // The list keeps its entries until a group is chosen, but they are no longer anybody's to change.
    editor.fileName = kTileLibraryName;
    editor.group.writeable = false;
    editor.changed = false;
    return true;
  }
  if (!editor.group.writeable) return Refuse(owner, kTextTilesProtected);
  const auto count = static_cast<int>(editor.group.tiles.size());
  if (!IsEntry(editor.selected, editor.group.tiles.size())) return false;
  editor.group.tiles.erase(editor.group.tiles.begin() + editor.selected);
  editor.selected = std::min(editor.selected, count - 2);
  editor.changed = true;
  return true;
}

bool SaveTileGroup(TileEditor& editor) { return !editor.changed || !editor.group.writeable || WriteTiles(editor); }

std::string TileSizeText(const TileEditor& editor) {
  const DibView view(HandleOf(editor.tile.TileBitmap));
  return view ? std::to_string(view.Width()) + " x " + std::to_string(view.Height()) : std::string();
}

}  // namespace glyphmotion
