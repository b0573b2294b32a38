// SPDX-License-Identifier: MIT
#include "materials/tile.h"

#include <gtest/gtest.h>

#include <cstring>

#include "material_helpers.h"

namespace glyphmotion {
namespace {

PackedDib Numbered(int width, int height, int depth) {
  PackedDib dib = BlankDib(width, height, &GreyRamp(), depth);
  for (int i = 0; i < width * height; ++i)
    DibView(dib).SetPixel(i % width, i / width, static_cast<std::uint32_t>(i + 1));
  return dib;
}

TEST(Tile, WithoutOneTheBuiltInShows) {
  TileSpec parameters{};
  parameters.Right = parameters.Bottom = 40;
  const PackedDib builtin = RenderTile(parameters);
  EXPECT_EQ(DibView(builtin).GetPixel(3, 4), DibView(builtin).GetPixel(19, 36));
  PackedDib liar = Numbered(4, 4, 8);
  LockedBlock<DibHeader>(liar.Handle())->biWidth = 4000;
  parameters.TileBitmap = WordOf(liar.Handle());
  EXPECT_EQ(PixelsOf(RenderTile(parameters)), PixelsOf(builtin));
  parameters.Right = -1;
  EXPECT_FALSE(RenderTile(parameters));
  parameters.Right = INT32_MAX;
  parameters.Left = INT32_MIN;
  EXPECT_FALSE(RenderTile(parameters));
}

TEST(Tile, DepthsBecome24Bits) {
  PackedDib one = BlankDib(2, 1, nullptr, 1);
  DibView(one).SetPixel(1, 0, 1);
  const PackedDib bits = TileTo24Bit(one), grey = TileTo24Bit(Numbered(2, 1, 8));
  EXPECT_EQ(DibView(bits).GetPixel(0, 0), 0u);
  EXPECT_EQ(DibView(bits).GetPixel(1, 0), 0xFFFFFFu);
  EXPECT_EQ(DibView(grey).GetPixel(1, 0), 0x020202u);
  EXPECT_FALSE(TileTo24Bit(PackedDib()));
}

class TileFile : public testing::Test {
 protected:
  std::string path = TemporaryFile("a.mtx");
  void SetUp() override {
    TileLibrary library;
    library.writeable = true;
    library.tiles.push_back(Numbered(2, 2, 24));
    library.tiles.push_back(Numbered(3, 1, 8));
    ASSERT_TRUE(WriteTileLibrary(path, library, {7, "", "owner", "", "", false}));
  }
};

TEST_F(TileFile, HoldsHeaderAndWholeBitmaps) {
  const std::string bytes = FileBytes(path);
  ASSERT_EQ(bytes.size(), 1082u + 2 * 72 + (40 + 16) + (40 + 1024 + 4));
  EXPECT_EQ(bytes.substr(0, 8), "TESSMTXf");
  EXPECT_EQ(bytes[8], 7);
  EXPECT_EQ(bytes.substr(12, 6), std::string("owner\0", 6));
  EXPECT_EQ(bytes[802], 16);
  EXPECT_EQ(bytes[810], 'a');
  EXPECT_EQ(bytes[818], 2);
  EXPECT_EQ(bytes[822], 1);
  EXPECT_EQ(bytes.substr(1082, 4), "MTXi");
  EXPECT_EQ(PixelsOf(LoadMatrixTile(path, 1)), PixelsOf(Numbered(3, 1, 8)));
  EXPECT_FALSE(LoadMatrixTile(path, 2));
}

TEST_F(TileFile, SurvivesTruncationAndForeignItems) {
  const std::string whole = FileBytes(path);
  TileLibrary library;
  for (std::size_t n = 0; n < whole.size(); n += n < 1100 ? 31 : 5) {
    WriteBytes(path, whole.substr(0, n));
    ASSERT_FALSE(LoadMatrixTile(path, 1)) << n;
    ASSERT_FALSE(ReadTileLibrary(path, library)) << n;
  }
  std::string foreign = whole;
  foreign[1082] = 'X';
  WriteBytes(path, foreign);
  EXPECT_FALSE(LoadMatrixTile(path, 0));
  EXPECT_TRUE(LoadMatrixTile(path, 1)) << "a foreign item takes a number";
  ASSERT_TRUE(ReadTileLibrary(path, library));
  EXPECT_EQ(library.tiles.size(), 1u);
  for (const char* size : {"\xFF\xFF\xFF\xFF", "\x00\x00\x00\x80"}) {
    std::string hostile = whole;
    hostile.replace(818, 4, "\xFF\xFF\xFF\xFF");
    hostile.replace(1086, 4, std::string(size, 4));
    WriteBytes(path, hostile);
    EXPECT_FALSE(LoadMatrixTile(path, 0));
    EXPECT_FALSE(LoadMatrixTile(path, 4000000000u));
    EXPECT_FALSE(ReadTileLibrary(path, library));
  }
  library.tiles.clear();
  EXPECT_EQ(LiveBlocks().blocks, 0u);
  EXPECT_EQ(LiveBlocks().locks, 0u);
}

}  // namespace
}  // namespace glyphmotion
