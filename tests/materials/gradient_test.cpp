// SPDX-License-Identifier: MIT
#include "materials/gradient.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "material_helpers.h"
#include "materials/fountain.h"
#include "materials/library_file.h"
#include "platform/encoding.h"

namespace glyphmotion {
namespace {

GradientSpec TwoColours(std::uint32_t type, Colour start, Colour end) {
  Material material;
  DefaultMaterial(material, 0);
  GradientSpec gradient = material.Gradient;
  gradient.GradientType = type;
  gradient.StartColour = start;
  gradient.EndColour = end;
  return gradient;
}

FountainSpec Spectrum() {
  FountainSpec fountain;
  DefaultFountain(fountain, 2);
  return fountain;
}

TEST(Gradient, LinearCoversEveryPixelAtEveryAngle) {
  const GradientSpec red = TwoColours(0, 0x0000FF, 0x0000FF);
  for (int rotation = -360; rotation <= 360; rotation += 7) {
    GradientSpec gradient = red;
    gradient.Rotation = rotation;
    const PackedDib picture = RenderGradient(61, 37, gradient, Spectrum());
    const DibView view(picture);
    for (int i = 0; i < 61 * 37; ++i) ASSERT_EQ(view.GetPixel(i % 61, i / 61), 0x0000FFu) << rotation << " at " << i;
  }
}

TEST(GradientTable, EndsAreExactAndPadsAreFlat) {
  GradientSpec gradient = TwoColours(0, 0x000000, 0x00FF00);
  gradient.EdgePad = 45;
  for (int midpoint : {50, 10, 99}) {
    gradient.Midpoint = midpoint;
    const auto table = *GradientTable(gradient, Spectrum(), 200);
    EXPECT_EQ(table.front(), 0u) << midpoint;
    EXPECT_EQ(table.back(), 0x00FF00u) << midpoint;
  }
  gradient.Midpoint = 50;
  const auto table = *GradientTable(gradient, Spectrum(), 200);
  EXPECT_EQ(table[90], 0u);
  EXPECT_EQ(table[100], 0x007F00u) << "halfway through the 20 entries between the pads";
  EXPECT_EQ(table[110], 0x00FF00u);
  gradient.TwoColor = 0;
  EXPECT_EQ((*GradientTable(gradient, Spectrum(), 200))[150], 0x00FF00u) << "the fountain's pads are the two colours";
  EXPECT_TRUE(GradientTable(gradient, Spectrum(), 0)->empty());
  // A pad that leaves nothing between, which only foreign files hold: half start, half end.
  gradient.EdgePad = 50;
  std::vector<Colour> halves(256, 0u);
  std::fill(halves.begin() + 128, halves.end(), 0x00FF00u);
  for (const std::uint32_t two : {0u, 1u}) {
    gradient.TwoColor = two;
    EXPECT_EQ(GradientTable(gradient, Spectrum(), 256), halves) << two;
  }
}

TEST(Gradient, OnePixelAndHostileNumbersAreSafe) {
  for (std::uint32_t type = 0; type < 4; ++type) {
    GradientSpec gradient = TwoColours(type, 0x112233, 0x112233);
    const PackedDib picture = RenderGradient(1, 1, gradient, Spectrum());
    EXPECT_EQ(DibView(picture).GetPixel(0, 0), 0x112233u) << type;
    for (std::int32_t wild : {INT32_MAX, INT32_MIN, 1000000, -720}) {
      GradientSpec hostile = gradient;
      hostile.EdgePad = hostile.CenterX = hostile.CenterY = hostile.Midpoint = hostile.Rotation = wild;
      RenderGradient(33, 20, hostile, Spectrum());
      hostile.EdgePad = 0;
      RenderGradient(33, 20, hostile, Spectrum());
    }
  }
  EXPECT_FALSE(RenderGradient(0, 5, TwoColours(1, 0, 0), Spectrum()));
  EXPECT_FALSE(RenderGradient(INT32_MAX, INT32_MAX, TwoColours(2, 0, 0), Spectrum())) << "and no table of that length";
  GradientSpec once = TwoColours(1, 0, 0xFFFFFF), twice = once;
  once.Rotation = 1;
  twice.Rotation = 361;
  EXPECT_EQ(PixelsOf(RenderGradient(33, 20, once, Spectrum())), PixelsOf(RenderGradient(33, 20, twice, Spectrum())));
  EXPECT_EQ(LiveBlocks().blocks, 0u);
}

TEST(Fountain, FormsKeepTheirBytes) {
  FountainSpec fountain = Spectrum();
  fountain.Preview = 77;
  fountain.Flags = 3;
  fountain.Reserved[27] = 9;
  std::uint8_t disk[kFountainDiskBytes];
  FountainToDisk(disk, fountain);
  EXPECT_EQ(disk[285], 7);
  EXPECT_EQ(disk[580], 9);
  EXPECT_EQ(disk[281] | disk[282] | disk[283] | disk[284], 0);
  FountainSpec back;
  FountainFromDisk(back, disk);
  fountain.Preview = 0;
  EXPECT_EQ(HexEncode(&back, sizeof(back)), HexEncode(&fountain, sizeof(fountain)));
}

TEST(Fountain, SortingPutsZeroLastAndRemovalTakesTheRightMarker) {
  FountainSpec fountain;
  DefaultFountain(fountain, 0);
  fountain.MarkerCount = 4;
  const std::uint32_t markers[] = {MakeMarker(0, 1), MakeMarker(200, 2), MakeMarker(50, 3), MakeMarker(100, 4)};
  for (int i = 0; i < 4; ++i) fountain.Markers[i] = markers[i];
  SortMarkers(fountain);
  EXPECT_EQ(+fountain.Markers[0], markers[2]);
  EXPECT_EQ(+fountain.Markers[3], markers[0]);
  ASSERT_TRUE(RemoveMarker(fountain, 1));
  EXPECT_EQ(+fountain.MarkerCount, 3u);
  EXPECT_EQ(+fountain.Markers[1], markers[1]);
  EXPECT_EQ(+fountain.Markers[2], markers[0]) << "the true marker at 0 stays, last";
  EXPECT_FALSE(RemoveMarker(fountain, 3));
  EXPECT_FALSE(RemoveMarker(fountain, -1));
}

TEST(Fountain, FreePositionEndsAlways) {
  FountainSpec fountain;
  DefaultFountain(fountain, 0);
  EXPECT_EQ(FreePosition(fountain, 200), 200);
  fountain.MarkerCount = 1;
  fountain.Markers[0] = MakeMarker(200, 0);
  EXPECT_EQ(FreePosition(fountain, 200), 199);
  fountain.Markers[0] = MakeMarker(0, 0);
  EXPECT_EQ(FreePosition(fountain, 0), 1);
  fountain.MarkerCount = 2;
  fountain.Markers[0] = MakeMarker(20, 0);
  fountain.Markers[1] = MakeMarker(19, 0);
  EXPECT_EQ(FreePosition(fountain, 20), -1) << "to and fro between two taken places";
  fountain.MarkerCount = 64;
  EXPECT_EQ(FreePosition(fountain, 5), -1);
}

TEST(FountainLibrary, AppendsReadsAndSurvivesEveryTruncation) {
  const std::string path = TemporaryFile("a.fll");
  std::vector<FountainSpec> fountains;
  EXPECT_FALSE(ReadFountainLibrary(path, fountains));
  FountainSpec fountain = Spectrum();
  ASSERT_TRUE(AddToFountainLibrary(path, path, fountain, 5));
  fountain.MarkerCount = 3;
  fountain.Flags = 2;
  ASSERT_TRUE(AddToFountainLibrary(path, path, fountain, 6));
  const std::string whole = FileBytes(path);
  ASSERT_EQ(whole.size(), 80u + 2 * 340);
  EXPECT_EQ(whole.substr(80 + 340, 8), "TESSFLHE");
  EXPECT_EQ(FileBytes(path + ".bak").size(), 80u + 340);
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  BackUpFile(path);
  EXPECT_NE(std::filesystem::status(path + ".bak").permissions() & std::filesystem::perms::owner_write,
            std::filesystem::perms::none)
      << "the next copy can take its place";
  std::filesystem::permissions(path, std::filesystem::perms::owner_all);
  ASSERT_TRUE(ReadFountainLibrary(path, fountains));
  ASSERT_EQ(fountains.size(), 2u);
  fountain.Flags = 0;  // which are not kept
  EXPECT_EQ(HexEncode(&fountains[1], sizeof fountain), HexEncode(&fountain, sizeof fountain));
  for (std::size_t n = 0; n < whole.size(); n += 3) {
    WriteBytes(path, whole.substr(0, n));
    ASSERT_FALSE(ReadFountainLibrary(path, fountains)) << n;
  }
  std::string hostile = whole;
  hostile.replace(12, 4, "\xFF\xFF\xFF\xFF");
  WriteBytes(path, hostile);
  EXPECT_FALSE(ReadFountainLibrary(path, fountains));
  EXPECT_FALSE(AddToFountainLibrary(path, path, fountain, 7));
}

}  // namespace
}  // namespace glyphmotion
