// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstring>
#include <numbers>

#include "material_helpers.h"
#include "materials/fractal_texture.h"
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

// One fractal layer from the definition: a direct Fourier sum in double instead of the fast transform in float.
PackedDib PlainFractal(const TextureSpec& parameters, int n, int side) {
  using Complex = std::complex<double>;
  const auto at = [&](int i, int j) { return static_cast<std::size_t>(i * n + j); };
  std::vector<Complex> a(at(n, 0));
  SeedRandom(parameters.SeedValue[0]);
  const double exponent = -(3.0 - static_cast<double>(parameters.Dimension[0]) + 1.0) / 2.0;
  const auto draw = [&](int i, int j) {
    const double phase = NextRandom() / 32767.0 * 2 * std::numbers::pi;
    if (!i && !j) return Complex(0);
    double sum = 0;
    for (int k = 0; k < 4; ++k) sum += NextRandom();
    const double g = 2 * std::sqrt(12.0) / (32767.0 * 4) * sum - std::sqrt(12.0);
    return std::polar(1.0, phase) * std::pow(i * i + j * j, exponent) * g;
  };
  for (int i = 0; i <= n / 2; ++i) {
    for (int j = 0; j <= n / 2; ++j) {
      const Complex c = draw(i, j);
      a[at(i, j)] = c;
      a[at(i ? n - i : 0, j ? n - j : 0)] = std::conj(c);
    }
  }
  for (auto place : {at(n / 2, 0), at(0, n / 2), at(n / 2, n / 2)}) a[place] = a[place].real();
  for (int i = 1; i < n / 2; ++i) {
    for (int j = 1; j < n / 2; ++j) {
      const Complex c = draw(i, j);
      a[at(i, n - j)] = c;
      a[at(n - i, j)] = std::conj(c);
    }
  }
  std::vector<double> v(a.size());
  for (int y = 0; y < n; ++y) {
    for (int x = 0; x < n; ++x) {
      Complex sum = 0;
      for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j)
          sum += a[at(i, j)] * std::polar(1.0, -2 * std::numbers::pi * ((i * y + j * x) % n) / n);
      }
      const double real = sum.real();
      v[at(y, x)] = real > 0 ? std::pow(real, static_cast<double>(parameters.Power[0])) : real;
    }
  }
  const auto [low, high] = std::minmax_element(v.begin(), v.end());
  const double middle = (*high + *low) / 2, half = (*high - *low) / 2;
  const auto byte = [&](int y, int x) { return std::trunc(((v[at(y, x)] - middle) / half + 1) * 255 * 0.5); };
  PackedDib picture = SolidDib(side, side, parameters.BackColour);
  const DibView view(picture);
  const int span = (side + 1) & ~1;
  for (int y = 0; y < side; ++y) {
    const double w = y / (side - 1.0) * (n - 1);
    const int r = static_cast<int>(w), r1 = std::min(r + 1, n - 1);
    for (int x = 0; x < side; ++x) {
      const double u = x / (span - 1.0) * (n - 1), f = u - std::floor(u), g = w - r;
      const int c = static_cast<int>(u), c1 = std::min(c + 1, n - 1);
      const double b =
          (byte(r, c) * (1 - f) + byte(r, c1) * f) * (1 - g) + (byte(r1, c) * (1 - f) + byte(r1, c1) * f) * g;
      const int alpha = b > 127.0 ? static_cast<int>((b - 127.0) * 0.0078125 * 255.0) : 0;
      view.SetPixel(x, y, Blend(view.GetPixel(x, y), parameters.ForeColour[0], alpha));
    }
  }
  return picture;
}

TEST(FractalTexture, AgreesWithTheDirectSum) {
  TextureSpec parameters = TextureOf(0, 45);
  parameters.MatrixSize = 20;  // raised to 32
  const PackedDib fast = GenerateFractalTexture(parameters, WholeOf(parameters)),
                  plain = PlainFractal(parameters, 32, 45);
  const std::string a = PixelsOf(fast), b = PixelsOf(plain);
  ASSERT_EQ(a.size(), b.size());
  int differing = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    const int d = std::abs(static_cast<unsigned char>(a[i]) - static_cast<unsigned char>(b[i]));
    differing += d != 0;
    ASSERT_LE(d, 3) << i;  // a byte of the noise may fall on the other side of a truncation
  }
  EXPECT_LT(differing, 60) << "of " << a.size();
}

TEST(FractalTexture, SizesOfTheMatrix) {
  const auto pixels = [](std::uint32_t matrix) {
    TextureSpec parameters = TextureOf(1, 40);
    parameters.MatrixSize = matrix;
    return PixelsOf(GenerateFractalTexture(parameters, WholeOf(parameters)));
  };
  EXPECT_EQ(pixels(100), pixels(128));
  EXPECT_EQ(pixels(64), pixels(64));
  EXPECT_NE(pixels(64), pixels(128));
  for (std::uint32_t small : {0u, 1u, 2u, 3u, 16u}) EXPECT_EQ(pixels(small).size(), 40u * 40 * 3) << small;
  EXPECT_TRUE(pixels(4097).empty());
  EXPECT_TRUE(pixels(0xFFFFFFFF).empty());
}

TEST(CraterTexture, FlatSurfaceIsTheMiddleBlendAndTheLastColumnStays) {
  TextureSpec parameters = TextureOf(4, 9);
  parameters.CreaterCount = 0;
  const PackedDib picture = GenerateCraterTexture(parameters, WholeOf(parameters));
  const DibView view(picture);
  EXPECT_EQ(view.GetPixel(4, 4), Blend(+parameters.BackColour, +parameters.ForeColour[0], 128));
  EXPECT_EQ(view.GetPixel(8, 4), +parameters.BackColour);
}

TEST(PerturbationTexture, MatrixOf32HasNoNoise) {
  TextureSpec parameters = TextureOf(5, 16);
  parameters.MatrixSize = 32;
  parameters.BubbleCount = 0;
  const PackedDib picture = GeneratePerturbationTexture(parameters, WholeOf(parameters));
  const DibView view(picture);
  for (int i = 0; i < 256; ++i) ASSERT_EQ(view.GetPixel(i % 16, i / 16), view.GetPixel(0, 0));
  EXPECT_NEAR(RedOf(view.GetPixel(0, 0)), 127, 2);
}

TEST(PerturbationTexture, NoiseIsKeptAndBubblesFollowTheSeed) {
  const auto pixels = [](std::uint32_t seed, std::uint32_t bubbles, std::uint32_t shape) {
    TextureSpec parameters = TextureOf(5, 60);
    parameters.MatrixSize = 300;
    parameters.SeedValue[0] = seed;
    parameters.BubbleCount = bubbles;
    parameters.BubbleShape = shape;
    return PixelsOf(GeneratePerturbationTexture(parameters, WholeOf(parameters)));
  };
  pixels(1, 0, 0);
  EXPECT_EQ(pixels(2, 0, 0), pixels(3, 0, 0));
  EXPECT_NE(pixels(2, 9, 0), pixels(3, 9, 0));
  EXPECT_EQ(pixels(2, 9, 7), pixels(3, 9, 7)) << "an unknown shape adds nothing";
  pixels(5, 1, 7);
  const std::uint32_t after = RandomState();
  SeedRandom(5);
  NextRandom();
  NextRandom();
  EXPECT_EQ(after, RandomState()) << "but each bubble draws its two numbers";
  EXPECT_EQ(pixels(2, 0xFFFFFFFF, 0), pixels(3, 0, 0)) << "below 0: none";
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

TEST(Texture, OblongFillsAreTheMiddleOfASquare) {
  Material material;
  DefaultMaterial(material, 0);
  material.Kind = kTexture;
  const PackedDib oblong = MaterialToBitmap(material, 120, 40), square = MaterialToBitmap(material, 120, 120);
  EXPECT_EQ(+material.Texture.Bottom, 120);
  EXPECT_EQ(PixelsOf(oblong), PixelsOf(CropDib(square, {0, 40, 120, 80})));
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
