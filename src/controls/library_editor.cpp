// SPDX-License-Identifier: MIT
#include "controls/library_editor.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "controls/variables.h"
#include "materials/library_file.h"
#include "materials/shipped.h"
#include "platform/ascii.h"
#include "platform/encoding.h"
#include "platform/folders.h"
#include "platform/run_state.h"
#include "platform/shell_ui.h"
#include "resources/strings.h"

namespace glyphmotion {
namespace {

constexpr int kLargestTileSide = 512;
constexpr std::size_t kLongestName = 260;  // bytes

LibraryStamp Stamp() { return CurrentStamp(TextVariable("RegistrationName")); }

// A group is named after its file in the data folder; characters that would lead elsewhere are removed.
std::string FileNameOf(const std::string& name, const char* extension) {
  std::string plain;
  for (const char c : name) {
    if (c != '/' && c != '\\' && c != ':' && static_cast<unsigned char>(c) >= 0x20) plain += c;
  }
  return plain + "." + extension;
}

// The file of a group, which may exist already: one from elsewhere can have a lower-case extension, a different name on
// some file systems.
std::string FileOfGroup(const std::string& name, const char* extension) {
  const std::string made = FileNameOf(name, extension);
  std::string small = made;
  for (std::size_t i = small.rfind('.'); i < small.size(); ++i) {
    small[i] = ToLower(small[i]);
  }
  const std::string folder = DataFolder();
  return !FileExists(JoinPath(folder, made)) && FileExists(JoinPath(folder, small)) ? small : made;
}

// On a case-insensitive file system, a new group with the primary's name would be the primary itself.
bool IsNameOf(const std::string& fileName, const char* primary) { return EqualsIgnoringCase(fileName, primary); }

std::string GroupOf(const std::string& fileName) { return fileName.substr(0, fileName.rfind('.')); }

std::vector<std::string> GroupsWithPrimaryFirst(const char* extension, const char* primary) {
  std::vector<std::string> names = {GroupOf(primary)};
  for (std::string& name : LibraryGroups(extension)) {
    if (!IsNameOf(name + extension, primary) && name != names.back()) names.push_back(std::move(name));
  }
  return names;
}

// The current groups, for the duration of the run.
struct CurrentGroups {
  std::string textures = kTextureLibraryName, tiles = kTileLibraryName;
};
CurrentGroups& Current() { return CurrentRun().Member<CurrentGroups>(); }

// The last current group, if its file still exists.
std::string GroupToOpen(const std::string& current, const char* primary) {
  return FileExists(JoinPath(DataFolder(), current)) ? GroupOf(current) : GroupOf(primary);
}

std::string FileToChoose(const std::string& name, const char* extension, const char* primary) {
  return IsNameOf(FileNameOf(name, extension), primary) ? primary : FileOfGroup(name, extension);
}

bool AskToDelete(Dialog* owner, int question, const std::string& fileName) {
  return ShowMessage(owner, FormatText(question, GroupOf(fileName)), MessageButtons::YesNoKeep);
}

bool Refuse(Dialog* owner, int message) {
  ShowMessage(owner, LoadText(message));
  return false;
}

// The differences between the two kinds of groups, for their common code.
struct GroupKind {
  const char* extension;
  const char* primary;
  int newGroup, isProtected, primaryKept, askDelete;
};
constexpr GroupKind kTextures = {"FFT",
                                 kTextureLibraryName,
                                 kTextNewTextureGroup,
                                 kTextTexturesProtected,
                                 kTextPrimaryTexturesKept,
                                 kTextAskDeleteTextures};
constexpr GroupKind kTiles = {
    "MTX", kTileLibraryName, kTextNewTileGroup, kTextTilesProtected, kTextPrimaryTilesKept, kTextAskDeleteTiles};

// Prompts for a name and returns the file of a new group.
std::optional<std::string> AskNewGroup(Dialog* owner, const GroupKind& kind) {
  const auto name = AskName(owner, LoadText(kind.newGroup), LoadText(kTextNewGroup));
  if (!name) return std::nullopt;
  const std::string fileName = FileNameOf(*name, kind.extension);
  if (GroupOf(fileName).empty()) return std::nullopt;
  if (IsNameOf(fileName, kind.primary)) {
    Refuse(owner, kind.isProtected);
    return std::nullopt;
  }
  const std::string file = FileOfGroup(*name, kind.extension);
  if (FileExists(JoinPath(DataFolder(), file)) &&
      !ShowMessage(owner, FormatText(kTextAskReplaceGroup, GroupOf(file)), MessageButtons::YesNoKeep)) {
    return std::nullopt;
  }
  return file;
}

bool DeleteGroup(Dialog* owner, const GroupKind& kind, bool writeable, const std::string& fileName) {
  if (!writeable) return Refuse(owner, kind.primaryKept);
  if (!AskToDelete(owner, kind.askDelete, fileName)) return false;
  return RemoveFile(JoinPath(DataFolder(), fileName)) || Refuse(owner, kTextGroupNotDeleted);
}

bool WriteGroup(const std::string& fileName, TextureLibrary& group) {
  return WriteTextureLibrary(JoinPath(DataFolder(), fileName), group, Stamp());
}
bool WriteGroup(const std::string& fileName, TileLibrary& group) {
  return WriteTileLibrary(JoinPath(DataFolder(), fileName), group, Stamp());
}

// Makes a new group of the current entries. False after a message, with the editor unchanged.
template <typename Editor>
bool StartGroup(Dialog* owner, Editor& editor, const GroupKind& kind) {
  const auto fileName = AskNewGroup(owner, kind);
  if (!fileName) return false;
  const bool before = std::exchange(editor.group.writeable, true);
  if (!EnsureFolder(DataFolder()) || !WriteGroup(*fileName, editor.group)) {
    editor.group.writeable = before;
    return Refuse(owner, kTextDocumentNotCreated);
  }
  editor.fileName = *fileName;
  editor.changed = false;
  editor.setAside.erase(*fileName);
  return true;
}

// Replaces the current group, which is set aside until OK if it was changed.
template <typename Editor, typename Library>
void TakeGroup(Editor& editor, const std::string& fileName, Library group, bool changed) {
  if (editor.changed) editor.setAside[editor.fileName] = std::move(editor.group);
  editor.fileName = fileName;
  editor.group = std::move(group);
  editor.changed = changed;
}

// True when the group was already current or set aside, so it must not be read again.
template <typename Editor>
bool IsInHand(Editor& editor, const std::string& fileName) {
  if (editor.changed && fileName == editor.fileName) return true;
  auto kept = editor.setAside.extract(fileName);
  if (kept.empty()) return false;
  TakeGroup(editor, fileName, std::move(kept.mapped()), true);
  return true;
}

template <typename Editor>
bool SaveGroups(Editor& editor) {
  if (editor.changed) editor.setAside[editor.fileName] = std::move(editor.group);
  editor.changed = false;
  bool written = editor.setAside.empty() || EnsureFolder(DataFolder());
  for (auto& [fileName, group] : editor.setAside) written = WriteGroup(fileName, group) && written;
  return written;
}

bool IsEntry(int i, std::size_t count) { return i >= 0 && static_cast<std::size_t>(i) < count; }

}  // namespace

// Textures ------------------------------------------------------------------------------------------------------------

std::vector<std::string> TextureGroups() { return GroupsWithPrimaryFirst(".fft", kTextureLibraryName); }
std::string TextureGroup(const TextureEditor& editor) { return GroupOf(editor.fileName); }

bool OpenTextureEditor(Dialog* owner, TextureEditor& editor, const TextureSpec& parameters) {
  editor.parameters = parameters;
  const std::string name = GroupToOpen(Current().textures, kTextureLibraryName);
  // Also set for a group that cannot be read: it is shown as current until another one is chosen.
  editor.fileName = FileToChoose(name, "FFT", kTextureLibraryName);
  return ChooseTextureGroup(owner, editor, name);
}

bool ChooseTextureGroup(Dialog* owner, TextureEditor& editor, const std::string& name) try {
  const std::string fileName = FileToChoose(name, "FFT", kTextureLibraryName);
  if (!IsInHand(editor, fileName)) {
    TextureLibrary group;
    if (!ReadTextureLibrary(LibraryPath(fileName), group)) return Refuse(owner, kTextTexturesNotLoaded);
    // A primary group has no marker in its file; the shipped name is protected even if a copy has one.
    if (fileName == kTextureLibraryName) group.writeable = false;
    TakeGroup(editor, fileName, std::move(group), false);
  }
  Current().textures = fileName;
  return true;
} catch (const std::bad_alloc&) {
  return Refuse(owner, kTextMemoryError);
}

bool SelectTexture(TextureEditor& editor, int i) {
  if (!IsEntry(i, editor.group.textures.size())) return false;
  editor.parameters = editor.group.textures[static_cast<std::size_t>(i)].parameters;
  return true;
}

int FindTexture(const TextureEditor& editor) {
  const auto& textures = editor.group.textures;
  const auto* wanted = reinterpret_cast<const char*>(&editor.parameters);
  const auto found = std::find_if(textures.begin(), textures.end(), [&](const NamedTexture& texture) {
    const auto* given = reinterpret_cast<const char*>(&texture.parameters);
    return std::all_of(TextureFields().begin(), TextureFields().end(), [&](const TextureField& field) {
      return std::memcmp(wanted + field.offset, given + field.offset, sizeof(std::uint32_t)) == 0;
    });
  });
  return found == textures.end() ? -1 : static_cast<int>(found - textures.begin());
}

bool KeepTexture(TextureEditor& editor, int i) {
  if (!editor.group.writeable || !IsEntry(i, editor.group.textures.size())) return false;
  if (FindTexture(editor) == i) return true;
  editor.group.textures[static_cast<std::size_t>(i)].parameters = editor.parameters;
  editor.changed = true;
  return true;
}

bool AddTexture(Dialog* owner, TextureEditor& editor, bool shift) {
  if (shift) {
    if (!StartGroup(owner, editor, kTextures)) return false;
    Current().textures = editor.fileName;
    return true;
  }
  if (!editor.group.writeable) return Refuse(owner, kTextTexturesProtected);
  try {
    editor.group.textures.push_back({LoadText(kTextNewTexture), editor.parameters});
  } catch (const std::bad_alloc&) {
    return Refuse(owner, kTextTextureNotAdded);
  }
  editor.changed = true;
  return true;
}

bool DeleteTexture(Dialog* owner, TextureEditor& editor, int selected, bool shift) {
  if (shift) {
    if (!DeleteGroup(owner, kTextures, editor.group.writeable, editor.fileName)) return false;
    editor.group = {};
    editor.changed = false;
    editor.fileName = Current().textures = kTextureLibraryName;
    ChooseTextureGroup(owner, editor, GroupOf(kTextureLibraryName));
    return true;
  }
  if (!editor.group.writeable) return Refuse(owner, kTextTexturesProtected);
  if (!IsEntry(selected, editor.group.textures.size())) return false;
  editor.group.textures.erase(editor.group.textures.begin() + selected);
  editor.changed = true;
  return true;
}

bool RenameTexture(Dialog* owner, TextureEditor& editor, int i) {
  if (!editor.group.writeable) return Refuse(owner, kTextTexturesProtected);
  if (!IsEntry(i, editor.group.textures.size())) return false;
  std::string& name = editor.group.textures[static_cast<std::size_t>(i)].name;
  const auto given = AskName(owner, LoadText(kTextTextureName), name);
  if (!given || given->empty() || *given == name) return false;
  name = CutText(*given, kLongestName);
  editor.changed = true;
  return true;
}

bool SaveTextureGroups(TextureEditor& editor) { return SaveGroups(editor); }

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

std::int64_t HundredthsOf(float value) {
  const double shown = static_cast<double>(value * 100.0f);
  return std::isfinite(shown) ? static_cast<std::int64_t>(std::clamp(shown, -2147483648.0, 2147483647.0)) : 0;
}

// Some hundredths are slightly too small as floats and would be truncated to the one below. Adding two millionths
// prevents that and survives the six decimals of a file.
float FloatOfHundredths(std::int64_t value) {
  const float nearest = static_cast<float>(value) / 100.0f;
  return HundredthsOf(nearest) == value ? nearest : nearest + std::copysign(2.0e-6f, nearest);
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
    return HundredthsOf(value);
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
    const float number = FloatOfHundredths(value);
    std::memcpy(place, &number, sizeof(number));
  } else {
    const auto number = static_cast<std::uint32_t>(value);
    std::memcpy(place, &number, sizeof(number));
  }
  return true;
}

namespace {

constexpr int kFirstCurve = 525;
std::size_t PlaceOfCurve(int control) {
  constexpr std::size_t places[] = {offsetof(TextureSpec, ColorRed), offsetof(TextureSpec, ColorGreen),
                                    offsetof(TextureSpec, ColorBlue)};
  return places[std::clamp(control - kFirstCurve, 0, 2)];
}

}  // namespace

std::array<float, 4> TextureCurveValues(const TextureSpec& parameters, int control) {
  std::array<float, 4> values;
  std::memcpy(values.data(), reinterpret_cast<const char*>(&parameters) + PlaceOfCurve(control), sizeof(values));
  return values;
}

void SetTextureCurveValue(TextureSpec& parameters, int control, int point, float value) {
  const auto place = PlaceOfCurve(control) + sizeof(value) * static_cast<std::size_t>(std::clamp(point, 0, 3));
  std::memcpy(reinterpret_cast<char*>(&parameters) + place, &value, sizeof(value));
}

// Tiles ---------------------------------------------------------------------------------------------------------------

std::vector<std::string> TileGroups() { return GroupsWithPrimaryFirst(".mtx", kTileLibraryName); }
std::string TileGroup(const TileEditor& editor) { return GroupOf(editor.fileName); }

bool OpenTileEditor(Dialog* owner, TileEditor& editor, const TileSpec& tile) {
  editor.tile = tile;
  editor.fileName = kTileLibraryName;
  return ChooseTileGroup(owner, editor, GroupToOpen(Current().tiles, kTileLibraryName));
}

bool ChooseTileGroup(Dialog* owner, TileEditor& editor, const std::string& name) {
  Current().tiles = FileToChoose(name, "MTX", kTileLibraryName);
  editor.selected = -1;
  if (IsInHand(editor, Current().tiles)) return true;
  TileLibrary group;  // an unreadable file does not say whether it may be changed
  const bool read = ReadTileLibrary(LibraryPath(Current().tiles), group);
  TakeGroup(editor, Current().tiles, std::move(group), false);
  return read || Refuse(owner, kTextTilesNotLoaded);
}

bool FindTile(TileEditor& editor) {
  const std::string path = PathOfTile(editor.tile);
  const bool here = editor.tile.TileIndex < editor.group.tiles.size() && HandleOf(editor.tile.TileBitmap) &&
                    (path == LibraryReference(editor.fileName) || path == LibraryPath(editor.fileName));
  editor.selected = here ? static_cast<int>(editor.tile.TileIndex) : -1;
  return here;
}

bool SelectTile(Dialog* owner, TileEditor& editor, int i) {
  if (!IsEntry(i, editor.group.tiles.size())) return false;
  PackedDib copy = DuplicateDib(editor.group.tiles[static_cast<std::size_t>(i)]);
  if (!copy) return Refuse(owner, kTextMemoryError);
  FreeBlock(HandleOf(editor.tile.TileBitmap));
  editor.tile.TileBitmap = WordOf(copy.Release());
  editor.tile.TileIndex = static_cast<std::uint32_t>(i);
  SetTilePath(editor.tile, LibraryReference(editor.fileName));
  editor.selected = i;
  return true;
}

bool AddTile(Dialog* owner, TileEditor& editor, bool shift, const TileChooser& choose) {
  if (shift) {
    if (!StartGroup(owner, editor, kTiles)) return false;
    Current().tiles = editor.fileName;
    if (editor.selected >= 0) SetTilePath(editor.tile, LibraryReference(editor.fileName));
    return true;
  }
  if (!editor.group.writeable) return Refuse(owner, kTextTilesProtected);
  PackedDib picture = choose ? choose() : PackedDib();
  int width = 0, height = 0, bits = 0;
  if (const DibView view(picture); view) {
    width = view.Width();
    height = view.Height();
    bits = view.Bits();
  }
  if (!picture) return false;
  if (!bits) return Refuse(owner, kTextTileNotAdded);
  if (width > kLargestTileSide && height > kLargestTileSide) return Refuse(owner, kTextTileTooLarge);
  if (bits != 24) picture = TileTo24Bit(picture);
  try {
    if (!picture) throw std::bad_alloc();
    editor.group.tiles.push_back(std::move(picture));
  } catch (const std::bad_alloc&) {
    return Refuse(owner, kTextTileNotAdded);
  }
  editor.changed = true;
  return true;
}

bool DeleteTile(Dialog* owner, TileEditor& editor, bool shift) {
  if (shift) {
    if (!DeleteGroup(owner, kTiles, editor.group.writeable, editor.fileName)) return false;
    // The list keeps its entries until a group is chosen, but they can no longer be changed.
    editor.fileName = Current().tiles = kTileLibraryName;
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

bool SaveTileGroups(TileEditor& editor) { return SaveGroups(editor); }

std::string TileSizeText(const TileEditor& editor) {
  const DibView view(HandleOf(editor.tile.TileBitmap));
  return view ? std::to_string(view.Width()) + " x " + std::to_string(view.Height()) : std::string();
}

}  // namespace glyphmotion
