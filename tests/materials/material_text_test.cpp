// SPDX-License-Identifier: MIT
#include "materials/material_text.h"
#include "materials/gradient_text.h"
#include "materials/texture_text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <sstream>

#include "material_helpers.h"
#include "materials/fountain.h"
#include "materials/shipped.h"
#include "materials/texture_library.h"
#include "materials/tile.h"
#include "platform/folders.h"

namespace glyphmotion {
namespace {

struct Parsed {
  Material material;
  std::string error;
  bool good;
};
Parsed Parse(const std::string& text) {
  Parsed parsed;
  DefaultMaterial(parsed.material, 0);
  parsed.good = ParseMaterial(text, parsed.material, parsed.error);
  return parsed;
}

TEST(ParseMaterial, Gradients) {
  const Parsed parsed = Parse("gradient:conical,#f00-#0000ff,rotation=-45,pad=10,mid=30,cx=-5,cy=+7");
  ASSERT_TRUE(parsed.good) << parsed.error;
  const GradientSpec& gradient = parsed.material.Gradient;
  EXPECT_EQ(+parsed.material.Kind, kGradient);
  EXPECT_EQ(+gradient.GradientType, 1u);
  EXPECT_EQ(+gradient.StartColour, 0x0000FFu);
  EXPECT_EQ(+gradient.EndColour, 0xFF0000u);
  EXPECT_EQ(+gradient.Rotation, -45);
  EXPECT_EQ(+gradient.EdgePad, 10);
  EXPECT_EQ(+gradient.Midpoint, 30);
  EXPECT_EQ(+gradient.CenterX, -5);
  EXPECT_EQ(+gradient.CenterY, 7);
  EXPECT_EQ(+gradient.TwoColor, 1u);
}

TEST(ParseMaterial, Fountains) {
  const Parsed parsed = Parse("fountain:#000,#f00@64,#0f0,#fff;elliptical;rotation=90,loop=1");
  ASSERT_TRUE(parsed.good) << parsed.error;
  const FountainSpec& fountain = parsed.material.Fountain;
  ASSERT_EQ(+fountain.MarkerCount, 2u);
  EXPECT_EQ(+fountain.Markers[0], MakeMarker(64, 0x0000FF));
  EXPECT_EQ(+fountain.Markers[1], MakeMarker(170, 0x00FF00));
  EXPECT_EQ(+fountain.EndColour, 0xFFFFFFu);
  EXPECT_EQ(+fountain.Flags, kFountainLooped);
  EXPECT_EQ(+parsed.material.Gradient.GradientType, 2u);
  EXPECT_EQ(+parsed.material.Gradient.TwoColor, 0u);
  for (const std::string& name : FountainNames()) EXPECT_TRUE(Parse("fountain:" + name).good) << name;
  EXPECT_TRUE(Parse("fountain:sunRISE,conical,cx=10").good);
  const struct {
    const char* stops;
    Colour start;
    std::vector<std::uint32_t> markers;
  } atZero[] = {{"#f00@0,#0f0@99,#00f", 0x0000FF, {MakeMarker(99, 0x00FF00)}},
                {"#f00,#0f0@0,#00f", 0x0000FF, {MakeMarker(1, 0x00FF00)}},
                {"#f00@9,#0f0@0,#00f@0", 0x00FF00, {MakeMarker(1, 0xFF0000), MakeMarker(9, 0x0000FF)}}};
  for (const auto& row : atZero) {
    const FountainSpec made = Parse(std::string("fountain:") + row.stops).material.Fountain;
    EXPECT_EQ(+made.StartColour, row.start) << row.stops;
    EXPECT_EQ(+made.EndColour, 0xFF0000u) << row.stops;
    const std::uint32_t* end = made.Markers + made.MarkerCount;
    EXPECT_EQ(std::vector<std::uint32_t>(made.Markers, end), row.markers) << row.stops;
  }
}

TEST(ParseMaterial, WordsForColoursTilesAndManyColours) {
  const struct {
    const char *text, *same;
  } rows[] = {{"Red", "#f00"},
              {"gradient:red-blue,pad=3", "gradient:#ff0000-#0000ff,pad=3"},
              {"gradient:conical,red-#0f0-blue-white", "fountain:conical,#f00,#0f0@85,#00f@170,#fff"},
              {"fountain:gold,red", "fountain:#ffd700,#f00"},
              {"texture:fractal2,back=navy", "texture:fractal2,back=#000080"},
              {"tile:honey-comb", "tile:#3"},
              {"tile:LEAVES", "tile:#20"}};
  for (const auto& row : rows) {
    const Parsed words = Parse(row.text), digits = Parse(row.same);
    EXPECT_TRUE(words.good && digits.good) << row.text << words.error << digits.error;
    EXPECT_EQ(std::memcmp(&words.material, &digits.material, sizeof(Material)), 0) << row.text;
  }
  const Parsed gold = Parse("fountain:gold");
  ASSERT_TRUE(gold.good);
  EXPECT_GT(MarkerCountOf(gold.material.Fountain), 2) << "the fountain, not one colour";
}

TEST(ParseMaterial, Textures) {
  const Parsed parsed =
      Parse("texture:fractal3,seed=7,seed2=1,size=128,fore1=#102030,back=#fff,power=0.5,density3=2.5");
  ASSERT_TRUE(parsed.good) << parsed.error;
  const TextureSpec& texture = parsed.material.Texture;
  EXPECT_EQ(+parsed.material.Kind, kTexture);
  EXPECT_EQ(+texture.TextureType, 1u);
  EXPECT_EQ(+texture.SeedValue[0], 7u);
  EXPECT_EQ(+texture.SeedValue[1], 1u);
  EXPECT_EQ(+texture.SeedValue[2], 9u);
  EXPECT_EQ(+texture.MatrixSize, 128u);
  EXPECT_EQ(+texture.ForeColour[0], 0x302010u);
  EXPECT_EQ(+texture.BackColour, 0xFFFFFFu);
  EXPECT_EQ(+texture.Power[4], 0.5f);
  EXPECT_EQ(+texture.Dimension[2], 2.5f);
  const Parsed surface = Parse("texture:perturbation,red=0/0.1/0.2/1,shape=sphere,bubbles=9,bubblepower=-0.5");
  ASSERT_TRUE(surface.good) << surface.error;
  EXPECT_EQ(+surface.material.Texture.ColorRed[2], 0.2f);
  EXPECT_EQ(+surface.material.Texture.BubbleShape, 3u);
  EXPECT_EQ(+surface.material.Texture.BubblePower, -0.5f);
}

// Whatever the user's own copies hold, a shipped name means what it means everywhere; the own ones add to that.
TEST(ParseMaterial, ShippedNamesAreFoundAndNothingIsWritten) {
  const std::string folder = TemporaryFile("data");
  SetFolderOverrides({{}, {}, folder});
  const std::size_t textures = TextureNames().size(), tiles = TileNames().size();
  EXPECT_GE(textures, 24u);
  EXPECT_GE(tiles, 16u);
  EXPECT_GE(FountainNames().size(), 12u);
  const std::string next = "tile:#" + std::to_string(tiles + 1);
  const Parsed marble = Parse("texture:green-MARBLE"), second = Parse("tile:#2");
  EXPECT_EQ(+Parse("texture:green-MARBLE,seed=3").material.Texture.SeedValue[1], 4u);
  for (const std::string& name : TextureNames()) EXPECT_TRUE(Parse("texture:" + name).good) << name;
  EXPECT_FALSE(Parse("texture:Mine").good || Parse(next).good);
  EXPECT_FALSE(std::filesystem::exists(folder)) << "reading never writes";

  TextureLibrary own;
  own.textures = {{"Green marble", {}}, {"Mine", {}}};
  own.textures[1].parameters.TextureType = 4;
  TileLibrary ownTiles;
  for (std::size_t i = 0; i <= tiles; ++i) ownTiles.tiles.push_back(BlankDib(3, 3, nullptr, 24));
  for (const bool emptied : {false, true}) {
    ASSERT_TRUE(EnsureFolder(folder));
    if (emptied) own = {}, ownTiles = {};
    ASSERT_TRUE(WriteTextureLibrary(OwnLibraryPath(kTextureLibraryName), own, {}));
    ASSERT_TRUE(WriteTileLibrary(OwnLibraryPath(kTileLibraryName), ownTiles, {}));
    const Parsed again = Parse("texture:green-MARBLE");
    EXPECT_EQ(std::memcmp(&again.material.Texture, &marble.material.Texture, sizeof(TextureSpec)), 0);
    EXPECT_EQ(PathOfTile(Parse("tile:#2").material.Tile), PathOfTile(second.material.Tile));
    EXPECT_EQ(Parse("texture:Mine").good, !emptied);
    EXPECT_EQ(Parse(next).good, !emptied);
    EXPECT_EQ(TextureNames().size(), textures + !emptied);
    EXPECT_EQ(TileNames().size(), tiles + !emptied);
  }
  // A document may refer to a copy that is gone, or to a prefix that has moved.
  TileSpec tile{};
  SetTilePath(tile, "/nowhere/share/glyphmotion/tlmplgm4.mtx");
  LoadTileOf(tile);
  EXPECT_TRUE(PackedDib(HandleOf(tile.TileBitmap)));
  SetFolderOverrides({});
}

#ifndef _WIN32  // where setenv does not exist
TEST(ParseMaterial, LibrariesAreLookedForInTheirFoldersAndThoseAreNamed) {
  const std::string folder = TemporaryFile("elsewhere"), before = ShippedLibraryPath(kTileLibraryName);
  ASSERT_FALSE(before.empty());
  ASSERT_TRUE(EnsureFolder(folder));
  setenv("GLYPHMOTION_DATA", folder.c_str(), 1);
  EXPECT_EQ(ShippedFolders().front(), folder + "/");
  EXPECT_EQ(ShippedLibraryPath(kTileLibraryName), before) << "a folder without the file is skipped";
  std::filesystem::copy(before, folder);
  EXPECT_EQ(ShippedLibraryPath(kTileLibraryName), folder + "/" + kTileLibraryName);
  const std::string sentence = NoShippedLibrary(kTextureLibraryName);
  for (const std::string& place : ShippedFolders()) EXPECT_NE(sentence.find("'" + place + "'"), std::string::npos);
  unsetenv("GLYPHMOTION_DATA");
}
#endif

TEST(ParseMaterial, FilesAndPictures) {
  const std::string path = TemporaryFile("text.mtrl");
  MovableBlock block = LoadMaterial("", 0x445566, false);
  ASSERT_TRUE(SaveMaterial(block.Handle(), path));
  EXPECT_EQ(Parse("mtrl:" + path).material.Colour, 0x445566u);
  LockedBlock<Material>(block.Handle())->Colour = 0xFFFFFFFF;
  ASSERT_TRUE(SaveMaterial(block.Handle(), path));
  EXPECT_TRUE(Parse("mtrl:" + path).good) << "any colour is a valid one";
  EXPECT_FALSE(Parse("image:x.png").good) << "without a decoder";
  SetImageLoader(
      [](const std::string& file, std::string&) { return file == "x.png" ? BlankDib(2, 2, nullptr, 1) : PackedDib(); });
  const Parsed parsed = Parse("image:x.png");
  EXPECT_TRUE(parsed.good);
  PackedDib owned(HandleOf(parsed.material.Tile.TileBitmap));
  EXPECT_EQ(DibView(owned).Bits(), 24);
  EXPECT_FALSE(Parse("image:y.png").good);
  SetImageLoader({});
}

TEST(ParseMaterial, RefusesInOneSentenceAndChangesNothing) {
  std::istringstream wrong(
      "reddish #12 gradient: gradient:#f00 gradient:red-bleu #ff000080 gradient:#ff000080-blue tile:bricc "
      "gradient:round,#f00-#00f gradient:#f00-#0g0 gradient:#f00-#00f,rotation=400 gradient:#f00-#00f,pad= "
      "gradient:#f00-#00f,pad=1.5 fountain: fountain:#f00 fountain:Nothing fountain:#f00,#0f0@300,#00f "
      "fountain:Sunrise,#f00,#00f texture: texture:NoSuch texture:fractal2,fore6=#fff "
      "texture:fractal2,seed=-1 texture:fractal2,size=0 texture:fractal2,red=0/1 "
      "texture:fractal2,shape=cube texture:fractal2,power=nan tile:/nowhere#1 tile:x#0 mtrl:/nowhere "
      "image: texture:fractal2,seed=1e9999");
  std::string text;  // empty at first
  do {
    const Parsed parsed = Parse(text);
    EXPECT_FALSE(parsed.good) << text;
    EXPECT_FALSE(parsed.error.empty()) << text;
    EXPECT_EQ(parsed.error.find('\n'), std::string::npos) << text;
    Material untouched;
    DefaultMaterial(untouched, 0);
    EXPECT_EQ(HexEncode(&parsed.material, sizeof(Material)), HexEncode(&untouched, sizeof(Material))) << text;
  } while (wrong >> text);
  EXPECT_EQ(LiveBlocks().blocks, 0u);
}

}  // namespace
}  // namespace glyphmotion
