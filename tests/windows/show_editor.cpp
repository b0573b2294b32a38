// SPDX-License-Identifier: MIT
// Opens one of the editors interactively, over a small window of its own, and prints the result.
//
//   show_editor gradient    the gradient editor, with its fountain and the windows behind that
//   show_editor library     the fountain library
//   show_editor position    a marker's position
//   show_editor texture     the texture editor
//   show_editor tile        the tile dialog; its + offers a plain tile
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "controls/boxes.h"
#include "controls/editor_services.h"
#include "controls/fountain_control.h"
#include "controls/fountain_library_dialog.h"
#include "controls/gradient_dialog.h"
#include "controls/texture_dialog.h"
#include "controls/tile_dialog.h"
#include "materials/shipped.h"
#include "materials/tile.h"
#include "platform/shell_ui.h"
#include "platform/text_engine.h"

namespace {

using namespace glyphmotion;

constexpr std::uint32_t kOpen = 1300;
constexpr ControlTemplate kControls[] = {{ControlKind::Label, -1, "The owner of the editor", 7, 7, 186, 8}};
constexpr DialogTemplate kOwner = {7, "Owner", 200, 40, kControls};

void ShowGradient(Dialog& owner) {
  Material material;
  DefaultMaterial(material, 0);
  GradientSpec gradient = material.Gradient;
  FountainSpec fountain = material.Fountain;
  const bool accepted = EditGradient(owner, gradient, fountain);
  std::printf("%s: type %u, rotation %d, centre %d %d, pad %d, midpoint %d, %u markers, blocks %u\n",
              accepted ? "accepted" : "cancelled", unsigned(gradient.GradientType), int(gradient.Rotation),
              int(gradient.CenterX), int(gradient.CenterY), int(gradient.EdgePad), int(gradient.Midpoint),
              unsigned(fountain.MarkerCount), unsigned(LiveBlocks().blocks));
}

void ShowLibrary(Dialog& owner) {
  FountainSpec fountain;
  DefaultFountain(fountain, 0);
  const bool used = ManageFountainLibrary(owner, fountain);
  std::printf("%s: %u markers, blocks %u\n", used ? "used" : "closed", unsigned(fountain.MarkerCount),
              unsigned(LiveBlocks().blocks));
}

void ShowPosition(Dialog& owner) {
  const auto position = AskMarkerPosition(owner, 128, [](int shown) { std::printf("shown %d\n", shown); });
  std::printf("position %d\n", position.value_or(-1));
}

void ShowTexture(Dialog& owner) {
  Material material;
  DefaultMaterial(material, 0);
  TextureSpec texture = material.Texture;
  const bool accepted = EditTexture(owner, texture);
  std::printf("%s: type %u, seed %u, blocks %u\n", accepted ? "accepted" : "cancelled", unsigned(texture.TextureType),
              unsigned(texture.SeedValue[0]), unsigned(LiveBlocks().blocks));
}

void ShowTile(Dialog& owner) {
  TileSpec tile{};
  SetTilePath(tile, LibraryPath(kTileLibraryName));
  LoadTileOf(tile);
  const PackedDib before(HandleOf(tile.TileBitmap));
  const bool accepted = RunTileDialog(owner, tile);
  std::printf("%s: tile %u of %s\n", accepted ? "accepted" : "cancelled", unsigned(tile.TileIndex),
              PathOfTile(tile).c_str());
  if (accepted) FreeBlock(HandleOf(tile.TileBitmap));
  std::printf("blocks %u, of which 1 is the tile before\n", unsigned(LiveBlocks().blocks));
}

std::int64_t Procedure(Dialog& dialog, const Message& message) {
  static const char* editor = "";
  if (message.number == kMessageInitialise) {
    editor = PointerOf<const char>(message.b);
    Post(dialog, {kOpen, 0, 0});
    return 1;
  }
  if (message.number != kOpen) return 0;
  if (!std::strcmp(editor, "library")) {
    ShowLibrary(dialog);
  } else if (!std::strcmp(editor, "position")) {
    ShowPosition(dialog);
  } else if (!std::strcmp(editor, "texture")) {
    ShowTexture(dialog);
  } else if (!std::strcmp(editor, "tile")) {
    ShowTile(dialog);
  } else {
    ShowGradient(dialog);
  }
  EndDialog(dialog, 1);
  return 1;
}

}  // namespace

int main(int count, char** arguments) {
  StartTextEngine();
  UseOwnBoxes();
  SetEditorServices({[](Dialog& owner, const char* topic) { ShowMessage(&owner, std::string("Help on ") + topic); },
                     [](Dialog&) { return SolidDib(48, 32, 0x2040FF); }});
  SetFountainWindows({AskMarkerPosition, ManageFountainLibrary});
  const auto result = RunModal(kOwner, nullptr, Procedure, count > 1 ? arguments[1] : arguments[0]);
  StopTextEngine();
  return result == 1 ? 0 : 1;
}
