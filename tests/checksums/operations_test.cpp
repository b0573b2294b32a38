// SPDX-License-Identifier: MIT
// The bytes of the operations that effects are made of, over random pictures of every depth and many sizes.
// operations.txt keeps a checksum for each; the list was made while all of them agreed with plain readings of their
// rules, one pixel at a time.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "checksums/checksum_list.h"
#include "effects/bulge.h"
#include "effects/column_warp.h"
#include "effects/gumdrop_image.h"
#include "effects/iris_mask.h"
#include "effects/ray_painter.h"
#include "effects/ripple_fill.h"
#include "effects/scatter.h"
#include "effects/twist.h"
#include "image/filters.h"
#include "image/quantise.h"
#include "image/random_images.h"
#include "image/remap.h"
#include "image/supercompress.h"
#include "image/surface.h"
#include "materials/fountain.h"
#include "materials/gradient.h"
#include "materials/material.h"
#include "materials/tile.h"
#include "platform/random.h"
#include "platform/run_state.h"
#include "text/text_raster.h"

namespace glyphmotion {
namespace {

constexpr std::uint32_t kPerturbation = 5;  // the texture

class OperationSums : public ::testing::Test {
 protected:
  RunState state;  // its own: the first perturbation texture of a run draws the noise of all later ones
  RunScope scope{state};
  std::vector<std::string> rows;
  Dice dice{20};
  testing::Hash hash;
  int round = 0;

  int Any(int from, int to) { return Roll(dice, from, to); }
  template <std::size_t N>
  int OneOf(const int (&values)[N]) {
    return values[Any(0, static_cast<int>(N) - 1)];
  }
  Colour AnyColour() { return dice() & 0xFFFFFF; }
  /// Noise in runs, a few colours, mostly zero as masks are, or flat, which shows the rounding of weights.
  PackedDib Picture(int width, int height, int bits) {
    const int kind = Any(0, 4), run = Any(1, 9);
    PackedDib dib = RandomImage(dice, width, height, bits, kind == 0 ? 2 : 256, run);
    const DibView view(dib);
    const std::uint32_t flat = bits < 9 ? 255u >> (8 - bits) : 0xBD7E40;
    for (int i = 0; i < width * height; ++i) {
      if (kind == 1 && Any(0, 3)) view.SetPixel(i % width, i / width, 0);
      if (kind == 2) view.SetPixel(i % width, i / width, flat);
      if (bits == 32) view.SetPixel(i % width, i / width, view.GetPixel(i % width, i / width) ^ (dice() & 0xFF000000));
    }
    return dib;
  }
  PackedDib AnyPicture(int bits, int mostWidth = 120, int mostHeight = 70) {
    const int width = Any(1, mostWidth), height = Any(1, mostHeight);
    return Picture(width, height, bits);
  }

  void Take(const PackedDib& dib) {
    hash.Add({dib ? 1 : 0});
    if (const LockedBlock<std::uint8_t> bytes(dib.Handle()); bytes) hash.Add({bytes.get(), BlockSize(dib.Handle())});
  }
  void Take(const Palette& palette, int count) {
    hash.Add({count});
    for (const Rgb c : palette) hash.Add({c.red, c.green, c.blue});
  }
  /// One row: what `each` takes in so many rounds.
  template <typename Each>
  void Row(const std::string& name, int rounds, Each each) {
    dice.seed(20);
    hash = {};
    for (round = 0; round < rounds; ++round) each();
    rows.push_back(name + "," + hash.Text());
  }

  void Filters();
  void Palettes();
  void Remapping();
  void Shapes();
  void Texture(std::uint32_t type);
  void Materials();
  void Warps();
  void Painters();
};

void OperationSums::Filters() {
  for (const int bits : {1, 4, 8, 24, 32}) {
    Row("blur " + std::to_string(bits), 60, [&] {
      const int softness = OneOf({1, 2, 3, 5, 7, 12, 30, 52, 102, 400, 1000000, -9});
      Take(Blur(AnyPicture(bits, 200, 120), softness));
    });
    Row("resample " + std::to_string(bits), 60, [&] {
      const int percent = OneOf({25, 50, 75, 200, 300, 400});
      // Every fourth time both axes by the very same scale, where the order of the passes hangs on equality.
      const int width = 4 * Any(1, 30), height = 4 * Any(1, 30), newWidth = Any(1, 260), newHeight = Any(1, 260);
      const bool even = round % 4 == 0;
      Take(ResampleToSize(Picture(width, height, bits), even ? width * percent / 100 : newWidth,
                          even ? height * percent / 100 : newHeight));
    });
  }
  for (const auto& [width, height, newWidth, newHeight] :
       {std::array{30000, 1, 1, 1}, {1, 30000, 1, 2}, {25000, 2, 2, 3}, {3000, 5, 7, 1}, {1, 1, 900, 3}}) {
    Row("resample " + std::to_string(width) + " x " + std::to_string(height), 1,
        [&, w = width, h = height, nw = newWidth, nh = newHeight] { Take(ResampleToSize(Picture(w, h, 8), nw, nh)); });
  }
}

void OperationSums::Palettes() {
  const auto take = [&](const FrameList& frames, int wanted) {
    Palette palette;
    int count = wanted;
    EXPECT_TRUE(QuantiseFrames(frames, count, palette));
    EXPECT_LE(count, wanted < 1 || wanted > 256 ? 256 : wanted);
    Take(palette, count);
  };
  // Coarse spreads make many cells of the same error, which one pass merges together.
  Row("quantise", 120, [&] {
    const int spread = OneOf({256, 5, 9, 17, 3, 40}), wanted = OneOf({256, 255, 0, 1, 2, 3, 15, 64, 100, -5, 300});
    TestFrames frames;
    for (int i = Any(1, 4); i > 0; --i) {
      const int width = Any(1, 40), height = Any(1, 30), run = Any(1, 5);
      frames.Append(RandomImage(dice, width, height, 24, spread, run));
    }
    take(frames.list, wanted);
  });
  // Single pixels of unlike colours: deep passes, where nodes go together with an ancestor that has less error.
  Row("quantise many", 10, [&] {
    TestFrames frames;
    PackedDib image = BlankDib(60, 50, nullptr, 24);
    const Colour mask = round % 2 ? 0xFFFFFF : 0xF8F8F8 | static_cast<Colour>(round) * 0x010101;
    for (int i = 0; i < 3000; ++i) DibView(image).SetPixel(i % 60, i / 60, dice() & mask);
    frames.Append(std::move(image));
    for (const int wanted : {256, 200, 17, 4, 1}) take(frames.list, wanted);
  });
  // Pixels beside the middle of a large cell have less error there than in the cells below it.
  Row("quantise ancestors", 200, [&] {
    TestFrames frames;
    PackedDib image = BlankDib(40, 1, nullptr, 24);
    for (int x = 0; x < 40; ++x) {
      int level[3];
      for (int& l : level) {
        l = OneOf({31, 32, 63, 64, 95, 96, 127, 128, 159, 160, 191, 192});
        if (round & 1) l += Any(-1, 1);
      }
      DibView(image).SetPixel(x, 0, MakeColour(level[0], level[1], level[2]));
    }
    frames.Append(std::move(image));
    take(frames.list, 1 + round % 20);
  });
  // More pixels of one cell than its packed sums can take at once.
  Row("quantise large", 3, [&] {
    TestFrames frames;
    for (int i = 0; i < 3; ++i) {
      frames.Append(SolidDib(1100, 500, i == 1 ? 0xFFFFFF : 0xFEFFFC));
      DibView(LockedFrame(frames.list, i)->image).SetPixel(4, 4, static_cast<Colour>(i * 77));
    }
    take(frames.list, 1 + round);
  });
  for (const int bits : {24, 32}) {
    Row("supercompress " + std::to_string(bits), 60, [&] {
      TestFrames frames;
      const int width = Any(1, 40), height = Any(1, 6);
      for (int i = 0; i < 5; ++i) {
        const int otherWidth = Any(1, 45), otherHeight = Any(1, 8);
        PackedDib image = i && round % 2 && i % 2 ? PackedDib(DuplicateBlock(LockedFrame(frames.list, i - 1)->image))
                          : i && round % 2 == 0   ? RandomImage(dice, otherWidth, otherHeight, bits, 2)
                                                  : RandomImage(dice, width, height, bits, 2);
        DibView(image).SetPixel(0, 0, dice());
        frames.Append(std::move(image));
      }
      PackedDib previous;
      EXPECT_TRUE(SupercompressFrames(frames.list, 0xABCDEF, previous, nullptr));
      Take(previous);
      for (int i = 0; i < 5; ++i) {
        hash.Add({LockedFrame(frames.list, i)->transparentIndex});
        Take(PackedDib(DuplicateBlock(LockedFrame(frames.list, i)->mask)));
      }
    });
  }
}

void OperationSums::Remapping() {
  for (const int depth : {1, 2, 3, 4, 5, 8}) {
    for (const bool fast : {false, true}) {
      Row("remap " + std::to_string(depth) + (fast ? " fast" : ""), 40, [&] {
        Palette palette = RandomPalette(dice, OneOf({256, 256, 4}));
        const int count = OneOf({256, 256, 256, 0, 1, 5, 16, 40, Any(2, 255)}),
                  brightness = OneOf({20, 0, 255, -300, 10}), contrast = OneOf({20, 0, 128, 127, 200, -40});
        if (round % 4 == 3)  // entries that crowd into one place make the longest lists of candidates
          for (Rgb& entry : palette) entry = {static_cast<std::uint8_t>(entry.red / 8 + 99), entry.green, 7};
        ColourMatcher matcher(palette, depth, count,
                              {.fastRemap = fast, .ditherBrightness = brightness, .ditherContrast = contrast});
        for (const int bits : {1, 4, 8, 24}) {
          const PackedDib first = AnyPicture(bits, 40, 12), second = DuplicateDib(first);
          for (int i = 0; i < 5; ++i) {
            const DibView view(second);
            const int x = Any(0, view.Width() - 1), y = Any(0, view.Height() - 1);
            view.SetPixel(x, y, dice());
          }
          const PackedDib remapped = RemapImage(first, matcher), dithered = DitherImage(first, matcher);
          Take(remapped);
          Take(dithered);
          Take(DitherStable(second, first, dithered, matcher));
          Take(DitherStable(second, {}, {}, matcher));
          Take(DitherOrdered(second, matcher));
          Take(MaskReplace(remapped, second, round % 3 ? DibView(second).GetPixel(0, 0) & 0xFFFFFF : kNoColour,
                           round % 5 - 1));
        }
        const PackedDib deep = Picture(20, 20, 32);
        Take(MaskReplace(Picture(20, 20, 8), deep, kNoColour, 5));
      });
    }
  }
  Row("cubes of colours", 12, [&] {
    const Palette palette = RandomPalette(dice, round % 2 ? 256 : 17);
    ColourMatcher matcher(palette, 8, 256, {.fastRemap = round % 3 == 2});
    const PackedDib image = BlankDib(4096, 1, nullptr, 24);
    const int red = Any(0, 240), green = Any(0, 240), blue = Any(0, 240);
    for (int i = 0; i < 4096; ++i)
      DibView(image).SetPixel(i, 0, MakeColour(red + (i >> 8), green + (i >> 4 & 15), blue + (i & 15)));
    Take(RemapImage(image, matcher));
  });
}

void OperationSums::Shapes() {
  const auto place = [&] { return Any(-30, 90); };
  const auto anywhere = [&] { return Any(0, 3) ? place() : OneOf({INT_MIN, INT_MAX, -70000, 1 << 20, 1999999999}); };
  const auto points = [&](int most, auto coordinate) {
    std::vector<Point> list;
    for (int i = Any(2, most); i > 0; --i) {
      const int x = coordinate(), y = coordinate();
      list.push_back({x, y});
    }
    if (round % 4 == 0) list[1].x = list[0].x;
    if (round % 4 == 1) list[1].y = list[0].y;
    return list;
  };
  const auto row = [&](const char* name, auto draw) {
    Row(name, 400, [&] {
      DrawingSurface surface(61, 53);
      draw(surface);
      Take(surface.End());
    });
  };
  row("ellipse", [&](DrawingSurface& surface) {
    const int left = place(), top = place(), width = Any(-3, 90), height = Any(-3, 90);
    surface.FillEllipse({left, top, left + width, top + (round % 3 ? height : width)}, 0x332211);
  });
  row("rectangle", [&](DrawingSurface& surface) {
    const int left = anywhere(), top = anywhere(), right = anywhere(), bottom = anywhere();
    if (round % 2) surface.FillRect({left, top, right, bottom}, 0x332211);
    if (round % 2 == 0) surface.FillRectangle({left, top, right, bottom}, 0x332211);
  });
  row("thin line", [&](DrawingSurface& s) { s.Polyline(points(4, anywhere), round % 2, 0x332211); });
  row("wide line", [&](DrawingSurface& s) {
    const auto list = points(5, place);
    s.Polyline(list, Any(2, 24), 0x332211);
  });
}

void OperationSums::Texture(std::uint32_t type) {
  Material material;
  Row("texture " + std::to_string(type), 12, [&] {
    DefaultMaterial(material, 0);
    material.Kind = kTexture;
    TextureSpec& texture = material.Texture;
    texture.TextureType = type;
    texture.MatrixSize = static_cast<std::uint32_t>(OneOf({0, 1, 3, 16, 32, 64, 100, 128, 300}));
    texture.SeedValue[0] = static_cast<std::uint32_t>(Any(0, 30000));
    texture.CreaterCount = static_cast<std::uint32_t>(OneOf({0, 20, 200}));
    texture.BubbleCount = static_cast<std::uint32_t>(OneOf({0, 9, 30, -1}));
    texture.BubbleShape = static_cast<std::uint32_t>(Any(0, 4));
    const int width = Any(1, 90), height = Any(1, 90);
    Take(MaterialToBitmap(material, width, height));
    hash.Add({RandomState()});
  });
}

void OperationSums::Materials() {
  Material material;
  for (const std::uint32_t type : {0u, 1u, 2u, 3u}) {
    Row("gradient " + std::to_string(type), 60, [&] {
      DefaultMaterial(material, AnyColour());
      GradientSpec& gradient = material.Gradient;
      gradient.GradientType = type;
      gradient.TwoColor = round % 2;
      gradient.StartColour = AnyColour();
      gradient.EndColour = AnyColour();
      gradient.Rotation = OneOf({0, 45, 90, -133, 360, -360, 17});
      gradient.CenterX = OneOf({0, 7, 50, -50, 300});
      gradient.CenterY = -gradient.CenterX / 2;
      gradient.EdgePad = OneOf({0, 0, 5, 45, 50});
      gradient.Midpoint = OneOf({50, 1, 10, 99});
      const int width = Any(1, 130), height = Any(1, 200);
      Take(RenderGradient(width, height, gradient, material.Fountain));
      const auto table = GradientTable(gradient, material.Fountain, OneOf({1, 200, 255, 256}));
      ASSERT_TRUE(table);
      for (const Colour colour : *table) hash.Add({colour});
    });
  }
  for (std::uint32_t type = 0; type < kPerturbation; ++type) Texture(type);
  Row("fountain", 40, [&] {
    FountainSpec fountain;
    DefaultFountain(fountain, round % 3);
    fountain.Flags = round % 2 ? kFountainLooped : 0;
    fountain.MarkerCount = static_cast<std::uint32_t>(Any(0, 9));
    for (int i = 0; i < 9; ++i) fountain.Markers[i] = dice();
    Take(FountainToBitmap(fountain, Any(1, 300), 2));
  });
  for (const int bits : {1, 4, 8, 24, 32}) {
    Row("tile " + std::to_string(bits), 20, [&] {
      const PackedDib tile = AnyPicture(bits, 30, 30);
      TileSpec parameters{};
      parameters.TileBitmap = WordOf(tile.Handle());
      parameters.Right = Any(1, 70);
      parameters.Bottom = Any(1, 70);
      Take(RenderTile(parameters));
    });
  }
}

void OperationSums::Warps() {
  TwistTables twists;
  BulgeTables bulges;
  ScatterTables scatters;
  DoubledMasks doubled;
  for (const int bits : {8, 24}) {
    const std::string depth = " " + std::to_string(bits);
    Row("twist" + depth, 80, [&] {
      const PackedDib source = AnyPicture(bits, round % 2 ? 9 : 150, round % 3 ? 130 : 9);
      const int angle = OneOf({0, 1, -90, 360, -720, 1440, Any(-1440, 1440)});
      Take(TwistMask(source, angle, false, twists));
      Take(TwistMask(source, angle, true, twists, round % 2 ? &doubled : nullptr));
    });
    Row("bulge" + depth, 80, [&] {
      const int percent = OneOf({0, -1, -50, -100, Any(-100, -1)});
      Take(BulgeBitmap(AnyPicture(bits, round % 2 ? 9 : 333, round % 3 ? 130 : 9), percent, bulges));
    });
    Row("twist and bulge, wide" + depth, 6, [&] {
      const PackedDib source = Picture(Any(600, 900), Any(5, 9), bits);
      Take(TwistMask(source, Any(-1440, 1440), false, twists));
      Take(BulgeBitmap(source, Any(-100, -1), bulges));
    });
    Row("ripple" + depth, 60, [&] {
      const ElasticParams params{.centerX = OneOf({100, Any(-50, 250)}),
                                 .centerY = OneOf({100, Any(-50, 250)}),
                                 .amplitude = Any(70, 6000),
                                 .wavelength = Any(400, 5000),
                                 .energy = Any(5, 100),
                                 .falloff = round % 4 != 3};
      Take(RippleFill(AnyPicture(bits), params));
    });
    Row("scatter" + depth, 80, [&] {
      const int radius = OneOf({0, 1, 2, 8, 33, 72}), seed = Any(0, 2) ? 12385 : Any(100, 32760);
      SeedRandom(77);
      Take(Scatter(AnyPicture(bits), radius, static_cast<std::uint32_t>(seed), scatters));
      hash.Add({RandomState()});
    });
  }
  const struct {
    const char* name;
    void (*warp)(const DibView&, const DibView&, int, std::span<const int>) noexcept;
    int most, resting;
  } columnWarps[] = {{"lower", LowerColumns, 60, 48}, {"squeeze", SqueezeColumns, 100, 0}};
  for (const auto& [name, warp, most, resting] : columnWarps) {
    // Runs of equal values and values of their own.
    const auto values = [&, m = most](int columns) {
      std::vector<int> list;
      for (int value = 0; static_cast<int>(list.size()) < columns;) {
        if (Any(0, 40) == 0) value = Any(0, m);
        list.push_back(Any(0, 3) ? value : Any(0, m));
      }
      return list;
    };
    Row(name, 60, [&, fast = warp] {
      const PackedDib source = AnyPicture(OneOf({8, 24, 32}), 300, 130);
      const DibView from(source);
      const int left = Any(0, from.Width() - 1);
      const PackedDib part = BlankLike(from, from.Width() - left, from.Height());
      fast(from, DibView(part), left, values(from.Width()));
      Take(part);
    });
    Row(std::string(name) + " a layer", 20, [&, fast = warp, rest = resting] {
      WarpedLayer layer;
      const int width = Any(1, 90), height = Any(1, 40), columns = width * kWarpScale, bits = OneOf({8, 24});
      PackedDib source = Picture(width, height, bits);
      for (int frame = 0; frame < 8; ++frame) {
        if (frame == 5) source = Picture(width, height, bits);
        const int begin = Any(0, columns), end = std::min(columns, begin + Any(0, columns));
        std::vector<int> drops = values(columns);
        for (int x = 0; x < columns; ++x)
          if (x < begin || x >= end) drops[static_cast<std::size_t>(x)] = rest;
        Take(layer.Warp(DuplicateDib(source), {begin, end},
                        [&](const DibView& from, const DibView& to, int left) { fast(from, to, left, drops); }));
      }
    });
  }
}

void OperationSums::Painters() {
  for (const bool bevel : {false, true}) {
    Row(bevel ? "bevelled drop" : "drop", 60, [&] {
      DropImage image;
      EXPECT_TRUE(DrawGumdrop(2 + round * round / 12, OneOf({255, 254, 131, 40, 3}), bevel, image));
      hash.Add({image.side});
      hash.Add(image.weights);
    });
  }
  RayPainter painter;
  Row("ray", 500, [&] {
    const int width = OneOf({1, 2, 7, 64, 20, 151, 201}), height = OneOf({1, 3, 2, 20, 65, 40, 67});
    const auto x = [&] { return round % 7 ? Any(0, width - 1) : Any(-width, 2 * width); };
    const auto y = [&] { return round % 7 ? Any(0, height - 1) : Any(-height, 2 * height); };
    Point from{x(), y()}, to{x(), y()};
    if (round % 2) from.y = 0, to.y = height;
    if (round % 5 == 0) (round % 2 ? to.x = from.x : to.y = from.y);  // exactly upright or level
    const int pen = Any(1, 8), level = OneOf({64, 128, 192, 255});
    const PackedDib picture = SolidDib(width, height, AnyColour());
    ASSERT_TRUE(painter.Prepare(width, height));
    painter.Paint(DibView(picture), from, to, pen, level, AnyColour());
    Take(picture);
  });
  for (int style = 0; style <= kIrisNone; ++style) {
    Row("iris " + std::to_string(style), 24, [&] {
      const int width = Any(1, 120), height = Any(1, 60), size = OneOf({4, 5, 12, 64});
      const PackedDib mask = IrisMask(width, height, style, size, Any(0, 999) / 1000.0);
      const PackedDib first = Picture(width, height, 24), second = Picture(width, height, 24);
      Take(mask);
      Take(MixThroughMask(first, second, mask));
    });
  }
}

TEST_F(OperationSums, AreThoseOfTheList) {
  Filters();
  Palettes();
  Remapping();
  Shapes();
  Materials();
  Warps();
  Painters();
  testing::ExpectList("operations.txt", rows);
}

#ifndef _WIN32  // where letters come from the system, and powers from another library
TEST_F(OperationSums, OfThisSystemAreThoseOfTheList) {
  Texture(kPerturbation);
  GlyphCache cache;
  for (const bool antialias : {false, true}) {
    Row(antialias ? "text" : "text in one bit", 40, [&] {
      TextLine line;
      line.font.family = "Liberation Sans";
      line.font.cellHeight = Any(4, 60);
      line.font.bold = round % 2 != 0;
      line.antialias = antialias;
      line.text = U"Wf\u00C9 jy ";
      line.characterSpace = OneOf({50, 75, 100, 130});
      const TextMeasure measure = MeasureText(line, true, cache);
      hash.Add({measure.width, measure.height});
      const int x = OneOf({3, -17, 0, 60, -500, 5}), y = OneOf({2, -9, 0, 25, 500}),
                level = OneOf({255, 255, 128, 1, 0}), width = Any(1, 200), height = Any(1, 60);
      Take(RasteriseText(line, measure, x, y, width, height, level, cache));
      Take(OutlineMask(line, measure, x, y, width, height, level, cache));
    });
  }
  testing::ExpectList("system_operations.txt", rows);
}
#endif

}  // namespace
}  // namespace glyphmotion
