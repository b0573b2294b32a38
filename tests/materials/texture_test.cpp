// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstring>

#include "material_helpers.h"
#include "materials/material_cache.h"
#include "materials/material_text.h"
#include "materials/surface_texture.h"
#include "materials/texture_library.h"
#include "platform/random.h"

namespace glyphmotion {
namespace {

TextureSpec TextureOf(std::uint32_t type, int side) {
  TextureSpec parameters;
  DefaultTextureSpec(parameters);
  parameters.TextureType = type;
  SetTextureBounds(parameters, side);
  return parameters;
}

// Wide and tall windows, craters and bubbles across their edges, and a texture far too large to be made as a whole.
TEST(Texture, AWindowShowsItsPartOfTheWhole) {
  for (std::uint32_t type = 0; type < 6; ++type) {
    for (const auto& [width, height] : {std::pair{90, 90}, {90, 21}, {90, 20}, {13, 90}, {90, 1}}) {
      TextureSpec parameters = TextureOf(type, 90);
      parameters.CreaterCount = 200;
      parameters.BubbleCount = 12;
      parameters.BubbleSize = 30;
      parameters.BubbleShape = static_cast<std::uint32_t>(height) % 4;
      const int left = (90 - width) / 2, top = (90 - height) / 2;
      const PackedDib whole = GenerateTexture(parameters, WholeOf(parameters));
      EXPECT_EQ(PixelsOf(GenerateTexture(parameters, MiddleOf(parameters, width, height))),
                PixelsOf(CropDib(whole, {left, top, left + width, top + height})))
          << type << ": " << width << " x " << height;
    }
    Material material;
    DefaultMaterial(material, 0);
    material.Kind = kTexture;
    material.Texture = TextureOf(type, 1);
    EXPECT_TRUE(MaterialToBitmap(material, 40000, 3)) << type;
  }
}

TEST(Texture, TwoRunsGiveTheSamePixelsAndWildNumbersDoNoHarm) {
  for (std::uint32_t type = 0; type < 6; ++type) {
    const TextureSpec parameters = TextureOf(type, 50);
    GenerateTexture(parameters, WholeOf(parameters));
    EXPECT_EQ(PixelsOf(GenerateTexture(parameters, WholeOf(parameters))),
              PixelsOf(GenerateTexture(parameters, WholeOf(parameters))))
        << type;
    std::uint32_t state = 77;
    for (int round = 0; round < 60; ++round) {
      TextureSpec wild;
      auto* bytes = reinterpret_cast<std::uint8_t*>(&wild);
      for (std::size_t i = 0; i < sizeof(wild); ++i)
        bytes[i] = static_cast<std::uint8_t>((state = state * 1664525 + 1013904223) >> 24);
      wild.TextureType = type;
      if (round % 2) wild.MatrixSize &= 127;
      wild.CreaterCount &= 0x3FF;
      SetTextureBounds(wild, 1 + round % 30);
      GenerateTexture(wild, WholeOf(wild));
    }
  }
  EXPECT_EQ(LiveBlocks().blocks, 0u);
}

TEST(MaterialCache, HitsAreWhatRenderingAnewWouldBe) {
  MaterialCache cache;
  for (std::uint32_t type = 0; type < 7; ++type) {
    Material fresh;
    DefaultMaterial(fresh, 0);
    fresh.Kind = type < 6 ? kTexture : kGradient;
    fresh.Texture.TextureType = type % 6;
    Material kept = fresh;
    cache.Render(kept, 40, 30);
    kept.Texture.Right = 0;
    SeedRandom(99);
    const PackedDib anew = MaterialToBitmap(fresh, 40, 30);
    const std::uint32_t state = RandomState();
    SeedRandom(99);
    const PackedDib hit = cache.Render(kept, 40, 30);
    EXPECT_EQ(PixelsOf(hit), PixelsOf(anew)) << type;
    EXPECT_EQ(RandomState(), state) << type;
    EXPECT_EQ(+kept.Texture.Right, +fresh.Texture.Right) << type;
  }
}

TEST(TextureLibrary, WritesWhatItReadsAndKeepsItsSpellings) {
  const std::string path = TemporaryFile("a.fft");
  TextureLibrary library;
  library.textures.push_back({"First", TextureOf(4, 0)});
  library.textures.push_back({"", TextureOf(5, 0)});
  library.textures[0].parameters.CreaterDepth = 0.25f;
  library.textures[0].parameters.SeedValue[4] = 0xFFFFFFF0;
  const LibraryStamp stamp{0, "Sat Nov 21 08:07:48 2026", "me", "mine", "", false};
  ASSERT_TRUE(WriteTextureLibrary(path, library, stamp));
  const std::string text = FileText(path);
  EXPECT_EQ(text.find("TESSALOOM E-DRAPE TEXTURE FILE\n;This is"), 0u);
  EXPECT_NE(text.find("\nWriteable=1\nUpdateTimeDate=Sat Nov 21 08:07:48 2026\nRegisteredUser=0\nMachineName=me\n"),
            text.npos);
  EXPECT_NE(text.find("\nCreaterDepth=0.250000\n"), text.npos);
  EXPECT_NE(text.find("\nTextureName=UNKNOWN NAME\n"), text.npos);
  TextureLibrary back;
  ASSERT_TRUE(ReadTextureLibrary(path, back));
  EXPECT_TRUE(back.writeable);
  ASSERT_EQ(back.textures.size(), 2u);
  EXPECT_EQ(std::memcmp(&back.textures[0].parameters, &library.textures[0].parameters, sizeof(TextureSpec)), 0);
  for (std::size_t n = 0; n < text.size(); n += 11) {
    WriteBytes(path, text.substr(0, n));
    EXPECT_EQ(ReadTextureLibrary(path, back), n >= 30) << n;
  }
  library.textures.clear();
  ASSERT_TRUE(WriteTextureLibrary(path, library, stamp));
  EXPECT_EQ(FileBytes(path), "");
  EXPECT_FALSE(ReadTextureLibrary(path, back));
}

TEST(TextureLibrary, ReadsUnusuallyFormattedFiles) {
  const std::string path = TemporaryFile("b.fft");
  WriteBytes(path,
             "TESSALOOM E-DRAPE TEXTURE FILE  \r\n;x\r\nItemcount=99\r\nTextureType=3\r\n:beginitem\r\ntexturename = = "
             "Odd \r\n"
             "createrdepth=2\r\nUnknown=5\r\nMatrixSize\r\n:BeginItem\r\nPower1=+0.5x\r\n:ENDITEM\r\n:"
             "BEGINITEM\r\nTextureName=Cut");
  TextureLibrary library;
  ASSERT_TRUE(ReadTextureLibrary(path, library));
  EXPECT_FALSE(library.writeable) << "without the key nothing is said";
  ASSERT_EQ(library.textures.size(), 1u);
  EXPECT_EQ(library.textures[0].name, "Odd");
  EXPECT_EQ(+library.textures[0].parameters.CreaterDepth, 2.0f);
  EXPECT_EQ(+library.textures[0].parameters.MatrixSize, 64u);
  EXPECT_EQ(+library.textures[0].parameters.Power[0], 0.5f);
}

TEST(TextureLibrary, NamesAreUtf8WhateverWroteThem) {
  const std::string path = TemporaryFile("c.fft"), head = "TESSALOOM E-DRAPE TEXTURE FILE\n:BEGINITEM\nTextureName=";
  TextureLibrary library;
  const auto nameIn = [&](const std::string& bytes) {
    WriteBytes(path, bytes + "\n:ENDITEM\n");
    return ReadTextureLibrary(path, library) ? library.textures.at(0).name : "unread";
  };
  EXPECT_EQ(nameIn(head + "Caf\xE9 \x96 2"), "Caf\xC3\xA9 \xE2\x80\x93 2") << "Windows-1252";
  EXPECT_EQ(nameIn("\xEF\xBB\xBF" + head + "Caf\xC3\xA9"), "Caf\xC3\xA9") << "an editor's mark in front";
  EXPECT_EQ(nameIn(head + std::string(259, 'x') + "\xC3\xA9"), std::string(259, 'x')) << "no half of a character";
  library.textures = {{"Caf\xC3\xA9", TextureOf(0, 0)}, {"Th\xE9", TextureOf(0, 0)}};
  ASSERT_TRUE(WriteTextureLibrary(path, library, {0, "", "Ren\xE9", "\xC4", "\xD6", true}));
  ASSERT_TRUE(ReadTextureLibrary(path, library));
  EXPECT_EQ(library.textures.at(0).name, "Caf\xC3\xA9") << "whatever the machine's owner is called";
  EXPECT_EQ(library.textures.at(1).name, "Th\xC3\xA9");
}

}  // namespace
}  // namespace glyphmotion
