// SPDX-License-Identifier: MIT
#include "materials/material.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

#include "material_helpers.h"
#include "materials/fountain.h"
#include "materials/material_text.h"
#include "materials/tile.h"

namespace glyphmotion {
namespace {

TEST(Material, DefaultsAreAtTheOffsetsOfTheFormat) {
  Material material;
  DefaultMaterial(material, 0x123456);
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(&material);
  const auto word = [&](std::size_t at) {
    std::uint32_t value;
    std::memcpy(&value, bytes + at, 4);
    return value;
  };
  EXPECT_EQ(std::memcmp(bytes, "TESSCMAT", 8), 0);
  const struct {
    std::size_t at;
    std::uint32_t value;
  } rows[] = {{8, 1282},          {12, 0x40000},     {16, 0},
              {20, 0x123456},     {32, 0x404040},    {36, 0xC0C0C0},
              {52, 50},           {64, 1},           {80, 585},
              {68 + 289, 7},      {68 + 297, ~0u},   {68 + 301, 0x20FF0000},
              {653 + 40, 1},      {653 + 72, 64},    {653 + 96, 0xFF0000},
              {653 + 136, 10004}, {653 + 160, 5000}, {653 + 216, 64},
              {653 + 232, 0},     {1250, 0}};
  for (const auto& row : rows) EXPECT_EQ(word(row.at), row.value) << row.at;
}

TEST(Material, UnknownKindsAreBlackAndAnUnknownTextureFails) {
  Material material;
  DefaultMaterial(material, 0xFFFFFF);
  material.Kind = 7;
  const PackedDib black = MaterialToBitmap(material, 5, 3);
  EXPECT_EQ(AverageBitmapColour(black), 0u);
  EXPECT_EQ(DibView(black).Header().biSizeImage, 16u * 3);
  material.Kind = kTexture;
  material.Texture.TextureType = 6;
  EXPECT_FALSE(MaterialToBitmap(material, 5, 3));
  EXPECT_FALSE(MaterialToBitmap(material, 0, 3));
}

TEST(Material, AverageTruncatesEachChannel) {
  const PackedDib dib = SolidDib(3, 1, 0x0000FF);
  DibView(dib).SetPixel(0, 0, 0x010000);
  EXPECT_EQ(AverageBitmapColour(dib), 0x0000AAu) << "red 510 / 3, blue 1 / 3";
}

TEST(Material, HexTakesShortTextsButNoForeignCharacter) {
  const std::uint8_t bytes[] = {0x00, 0xAF, 0x5C};
  EXPECT_EQ(HexEncode(bytes, 3), "00AF5C");
  const auto decoded = [](const char* text) {
    MovableBlock block = HexDecode(text, 3);
    if (!block) return std::string("nothing");
    EXPECT_EQ(BlockSize(block.Handle()), 4u);
    const LockedBlock<std::uint8_t[4]> data(block.Handle());
    return HexEncode(data.get(), 4);
  };
  EXPECT_EQ(decoded("00af5CFF"), "00AF5C00");
  EXPECT_EQ(decoded("7F3"), "7F000000");
  EXPECT_EQ(decoded(""), "00000000");
  EXPECT_EQ(decoded("7F3x"), "nothing");
  EXPECT_EQ(decoded("7F0102zz"), "7F010200") << "what lies beyond the count is not looked at";
}

TEST(Material, FileKeepsEverythingButTheHandles) {
  const std::string path = TemporaryFile("a.mtrl");
  MovableBlock block = LoadMaterial("", 0xABCDEF, true);
  std::string bytes;
  {
    const LockedBlock<Material> material(block.Handle());
    material->Kind = kGradient;
    material->ButtonState = 0x80000007;
    material->Fountain.MarkerCount = 2;
    material->Fountain.Markers[63] = 0x11223344;
    material->Texture.BubbleShape = 3;
    SetTilePath(material->Tile, "/nowhere/x.mtx");
    material->Tile.TileIndex = 9;
    material->Tile.Bottom = 77;
    material->Tile.TileReserved = 0x55;
    material->AverageColour = 0x010203;
    ASSERT_TRUE(SaveMaterial(block.Handle(), path));
    bytes = FileBytes(path);
    ASSERT_EQ(bytes.size(), 1270u);
    const auto at = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
    EXPECT_EQ(at(8) | at(9) << 8, 1282);
    EXPECT_EQ(at(68 + 12) | at(68 + 13) << 8, 581);
    EXPECT_EQ(at(68 + 285), 2) << "marker count";
    EXPECT_EQ(at(649 + 232), 3) << "bubble shape";
    EXPECT_EQ(at(917), '/');
    EXPECT_EQ(at(1178), 9);
    EXPECT_EQ(at(1198), 77);
    EXPECT_EQ(at(1202), 0x55);
    EXPECT_EQ(at(1238), 3);
  }
  MovableBlock again = LoadMaterial(path, 0, true);
  const LockedBlock<Material> first(block.Handle()), second(again.Handle());
  EXPECT_EQ(+second->ButtonState, 0x80000004u) << "nothing is pressed";
  second->ButtonState = 0x80000007;
  EXPECT_EQ(HexEncode(first.get(), sizeof(Material)), HexEncode(second.get(), sizeof(Material)));
}

TEST(Material, ShortAndForeignFilesGiveTheDefaults) {
  const std::string path = TemporaryFile("b.mtrl");
  MovableBlock source = LoadMaterial("", 0x111111, true);
  ASSERT_TRUE(SaveMaterial(source.Handle(), path));
  const std::string whole = FileBytes(path);
  const auto colourOf = [&](const std::string& bytes) {
    WriteBytes(path, bytes);
    MovableBlock block = LoadMaterial(path, 0x222222, true);
    return LockedBlock<Material>(block.Handle())->Colour;
  };
  EXPECT_EQ(colourOf(whole), 0x111111u);
  EXPECT_EQ(colourOf(whole + "tail"), 0x111111u);
  for (std::size_t n = 0; n < whole.size(); n += 7) ASSERT_EQ(colourOf(whole.substr(0, n)), 0x222222u) << n;
  std::string foreign = whole;
  foreign[3] = 'X';
  EXPECT_EQ(colourOf(foreign), 0x222222u);
}

TEST(Material, ARecordWithAnotherHeadFindsItsFileAgain) {
  const std::string path = TemporaryFile("c.mtrl");
  MovableBlock odd = HexDecode(std::string(2 * 20, '0') + "332211", sizeof(Material));
  ASSERT_TRUE(SaveMaterial(odd.Handle(), path));
  MovableBlock block = LoadMaterial(path, 0x222222, true);
  const LockedBlock<Material> material(block.Handle());
  EXPECT_EQ(+material->Colour, 0x112233u);
  EXPECT_EQ(FileBytes(path).substr(0, 12), std::string("TESSCMAT\x02\x05\0\0", 12));
}

TEST(Material, EveryAllocationMayFail) {
  for (std::uint64_t n = 1; n < 6; ++n) {
    FailAllocation(n);
    MovableBlock block = LoadMaterial("", 1, false);
    if (const LockedBlock<Material> material(block.Handle()); material) {
      material->Kind = kTile;
      const PackedDib picture = MaterialToBitmap(*material, 8, 8);
    }
  }
  FailAllocation(0);
  EXPECT_EQ(LiveBlocks().blocks, 0u);
  EXPECT_EQ(LiveBlocks().locks, 0u);
}

TEST(ColourText, TakesDigitsNamesAndAlpha) {
  const struct {
    const char* text;
    Colour colour;  // kNoColour: refused
    int alpha = 255;
  } rows[] = {{"#FF8000", 0x0080FF},   {"#f80", 0x0088FF},      {"#ff800080", 0x0080FF, 128}, {"#f808", 0x0088FF, 136},
              {"red", 0x0000FF},       {"AliceBlue", 0xFFF8F0}, {"yellowgreen", 0x32CD9A},    {"steelblue", 0xB48246},
              {"#ff80000", kNoColour}, {"#gg0000", kNoColour},  {"ff8000", kNoColour},        {"", kNoColour},
              {"#", kNoColour},        {"reddish", kNoColour},  {"#123456789", kNoColour}};
  for (const auto& row : rows) {
    Colour colour = kNoColour, opaque = kNoColour;
    int alpha = 0;
    EXPECT_EQ(ParseColourAndAlpha(row.text, colour, alpha), row.colour != kNoColour) << row.text;
    EXPECT_EQ(colour, row.colour) << row.text;
    EXPECT_EQ(alpha, row.alpha) << row.text;
    EXPECT_EQ(ParseColour(row.text, opaque), row.colour != kNoColour && row.alpha == 255) << row.text;
  }
}

}  // namespace
}  // namespace glyphmotion
