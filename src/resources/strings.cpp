// SPDX-License-Identifier: MIT
#include "resources/strings.h"

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace glyphmotion {
namespace {

struct TextRow {
  int number;
  const char* text;
};

constexpr TextRow kTexts[] = {
    {kTextMemoryError, "Memory error"},
    {kTextFirstPalette, "Black and white"},
    {kTextFirstPalette + 1, "Sixteen-color Windows"},
    {kTextFirstPalette + 2, "32-color orthogonal"},
    {kTextFirstPalette + 3, "64-color orthogonal"},
    {kTextFirstPalette + 4, "128-color orthogonal"},
    {kTextFirstPalette + 5, "216-color safe"},
    {kTextFirstPalette + 6, "256-color orthogonal"},
    {kTextFirstPalette + 7, "256-color with gray"},
    {kTextFirstPalette + 8, "256 gray levels"},
    {kTextBestPalette, "Best colors"},
    {kTextProgramTitle, "Glyphmotion #4"},
    {kTextUnregisteredSuffix, " [UNREGISTERED COPY]"},
    {kTextInternalError, "Internal error"},
    {kTextNeedNewerHost,
     "You need a newer version of Framewright Professional or Framewright Motion to support this plugin.\n\nPlease "
     "visit the Tessaloom web page to update your software."},
    {kTextPanelFailed, "This plugin could not be initialized"},
    {kTextRegisterHostFirst, "Please register your host application before you register this plugin."},
    {kTextDamagedProgram, "This plugin has been damaged. Please install it again."},
    {kTextHelpNotShown, "The help page could not be shown."},
    {kTextAbout,
     "Glyphmotion #4, version %s\n\nAnimated text effects.\n\nFree software under the MIT license, without any "
     "warranty."},
    {kTextBuilding, "Building"},
    {kTextQuantizing, "Quantizing"},
    {kTextSupercompressing, "Supercompressing"},
    {kTextRemapping, "Remapping"},
    {kTextTaskRefused, "Error creating new task."},
    {kTextImageRefused, "There has been an error adding an image to the current file object."},
    {kTextDocumentNotCreated, "There has been an error creating the requested file."},
    {kTextDocumentNotOpened, "There has been an error opening the requested file."},
    {kTextDocumentDamaged, "This file has been damaged."},
    {kTextMenuOpen, "Open"},
    {kTextMenuSave, "Save"},
    {kTextMenuSaveAs, "Save as..."},
    {kTextDocumentFilter, "GM4 files"},
    {kTextFirstMaterialKind, "Simple"},
    {kTextFirstMaterialKind + 1, "Gradient"},
    {kTextFirstMaterialKind + 2, "Texture"},
    {kTextFirstMaterialKind + 3, "Tile"},
    {kTextDragTurns, "Drag in the picture to turn the gradient."},
    {kTextDragMovesCenter, "Drag in the picture to move the center."},
    {kTextDeleteMarker, "Delete marker"},
    {kTextChangeColour, "Change color"},
    {kTextAdjustPosition, "Adjust position"},
    {kTextAddToLibrary, "Add to library"},
    {kTextManageLibrary, "Manage library"},
    {kTextNoMarkerSpace, "No more marker space is available. Delete an existing marker."},
    {kTextMarkerNotDeleted, "That marker cannot be deleted"},
    {kTextFountainNotAdded, "There has been an error adding this library entry."},
    {kTextFountainsNotLoaded, "There has been an error loading the fountain library."},
    {kTextFountainsNotUpdated, "There has been an error updating the fountain library."},
    {kTextMenuUse, "&Use"},
    {kTextMenuMoveUp, "Move u&p"},
    {kTextMenuMoveDown, "Move dow&n"},
    {kTextFirstTextureType, "2-color fractal"},
    {kTextFirstTextureType + 1, "3-color fractal"},
    {kTextFirstTextureType + 2, "4-color fractal"},
    {kTextFirstTextureType + 3, "5-color fractal"},
    {kTextFirstTextureType + 4, "Craters"},
    {kTextFirstTextureType + 5, "Perturbation"},
    {kTextNewTexture, "Untitled (double-click to edit)"},
    {kTextNamelessTexture, "UNKNOWN NAME"},
    {kTextTexturesNotLoaded, "There has been an error importing the selected texture file. The file may be damaged."},
    {kTextTexturesProtected,
     "This file cannot be edited or overwritten.\n\nThe default texture set cannot be modified. To edit this file, "
     "save it to a new name. Hold down the Shift key and click on the + button."},
    {kTextPrimaryTexturesKept, "The primary texture group cannot be deleted."},
    {kTextTextureNotAdded, "There has been an error adding your texture."},
    {kTextAskDeleteTextures,
     "Do you want to delete the %s texture group?\n\nClick on Yes to delete this file, or No to abort."},
    {kTextNewTextureGroup, "New texture group"},
    {kTextTextureName, "Texture name"},
    {kTextMenuRename, "&Rename"},
    {kTextTextureSample, "Texture"},
    {kTextNewGroup, "Untitled"},
    {kTextMenuDelete, "&Delete"},
    {kTextTilesNotLoaded, "There has been an error loading the matrix element file."},
    {kTextTilesProtected,
     "This file cannot be edited or overwritten.\n\nThe default matix set cannot be modified. To edit this file, save "
     "it to a new name. Hold down the Shift key and click on the + button."},
    {kTextPrimaryTilesKept, "The primary matrix group cannot be deleted."},
    {kTextTileNotAdded, "There has been an error adding your matrix tile."},
    {kTextTileTooLarge, "The selected image is too large to be a matrix tile."},
    {kTextAskDeleteTiles,
     "Do you want to delete the %s matrix group?\n\nClick on Yes to delete this file, or No to abort."},
    {kTextNewTileGroup, "New matrix group"},
    {kTextAskReplaceGroup,
     "There is a group named %s already.\n\nClick on Yes to replace it, or No to choose another name."},
    {kTextGroupNotDeleted,
     "This group could not be deleted. Another program may be using its file, or the file may be protected."},
};

constexpr bool NumbersRise() {
  for (std::size_t i = 1; i < std::size(kTexts); ++i) {
    if (kTexts[i - 1].number >= kTexts[i].number) return false;
  }
  return true;
}
static_assert(NumbersRise(), "one text a number");

// FNV-1a over the numbers and texts.
constexpr std::uint32_t ChecksumOf(const TextRow* rows, std::size_t count) {
  std::uint32_t sum = 2166136261u;
  const auto add = [&](std::uint32_t value) { sum = (sum ^ value) * 16777619u; };
  for (std::size_t i = 0; i < count; ++i) {
    add(static_cast<std::uint32_t>(rows[i].number));
    for (const char* c = rows[i].text; *c; ++c) add(static_cast<unsigned char>(*c));
  }
  return sum;
}

constexpr std::uint32_t kChecksum = ChecksumOf(kTexts, std::size(kTexts));

}  // namespace

std::string LoadText(int number) {
  for (const TextRow& row : kTexts) {
    if (row.number == number) return row.text;
  }
  return "String table error - this application may be damaged";
}

bool AreTextsIntact() noexcept {
  // Volatile, so that the table in memory is read and not what the compiler knows of it.
  const TextRow* volatile rows = kTexts;
  return ChecksumOf(rows, std::size(kTexts)) == kChecksum;
}

std::string FormatText(int number, const std::string& argument) {
  std::string text = LoadText(number);
  for (std::size_t at = text.find("%s"); at != std::string::npos; at = text.find("%s", at + argument.size())) {
    text.replace(at, 2, argument);
  }
  return text;
}

}  // namespace glyphmotion
