// SPDX-License-Identifier: MIT
#include "image/quantise.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <vector>

#include "random_images.h"

namespace glyphmotion {
namespace {

// The plain twin: every run of pixels walks the tree, and merging passes over the whole tree, in double precision.
struct PlainTree {
  struct Node {
    double pixels = 0, red = 0, green = 0, blue = 0, error = 0;
    int level = 0;
    Node* parent = nullptr;
    Node* child[8] = {};
  };

  std::deque<Node> nodes;
  Node root;
  int depth = 0;
  int colours = 0;
  double threshold = 0, next = 0;

  explicit PlainTree(int wanted) {
    for (int w = wanted; w; w >>= 2) ++depth;
    depth = std::clamp(depth, 2, 8);
    root.parent = &root;
  }

  void Classify(Rgb c, double n) {
    Node* node = &root;
    double red = 127.5, green = 127.5, blue = 127.5, half = 128;
    for (int level = 1; level <= depth; ++level) {
      half /= 2;
      const int s = 8 - level, r = c.red >> s & 1, g = c.green >> s & 1, b = c.blue >> s & 1;
      auto& child = node->child[r * 4 + g * 2 + b];
      red += r ? half : -half;
      green += g ? half : -half;
      blue += b ? half : -half;
      if (!child) {
        child = &nodes.emplace_back();
        child->parent = node;
        child->level = level;
        if (level == depth) ++colours;
      }
      node = child;
      const double dr = c.red - red, dg = c.green - green, db = c.blue - blue;
      node->error += n * (dr * dr + dg * dg + db * db);
      root.error += node->error;
    }
    node->pixels += n;
    node->red += n * c.red;
    node->green += n * c.green;
    node->blue += n * c.blue;
  }

  // Children first, then the node itself into its parent.
  void Prune(Node* node) {
    for (Node* child : node->child) {
      if (child) Prune(child);
    }
    Node* parent = node->parent;
    parent->pixels += node->pixels;
    parent->red += node->red;
    parent->green += node->green;
    parent->blue += node->blue;
    for (auto& child : parent->child) {
      if (child == node) child = nullptr;
    }
  }

  void Visit(Node* node) {
    for (Node* child : node->child) {
      if (child) Visit(child);
    }
    if (threshold >= node->error) {
      ASSERT_NE(node, &root);
      Prune(node);
      return;
    }
    if (node->pixels > 0) ++colours;
    next = std::min(next, node->error);
  }

  void Reduce(int wanted) {
    next = 0;
    while (colours > wanted) {
      threshold = next;
      next = root.error - 1;
      colours = 0;
      Visit(&root);
    }
  }

  void Write(const Node& node, Palette& palette, int& count) const {
    for (const Node* child : node.child) {
      if (child) Write(*child, palette, count);
    }
    if (node.pixels == 0) return;
    const auto mean = [&](double sum) { return static_cast<std::uint8_t>((node.pixels / 2 + sum) / node.pixels); };
    palette[static_cast<std::size_t>(count++)] = {mean(node.red), mean(node.green), mean(node.blue)};
  }
};

int PlainQuantise(const FrameList& frames, int wanted, Palette& palette) {
  if (wanted < 1 || wanted > 256) wanted = 256;
  palette = {};
  std::vector<Rgb> list;
  int seen = 0;
  PlainTree tree(wanted);
  for (int i = 0; i < frames.count; ++i) {
    const DibView image(LockedFrame(frames, i)->image);
    for (int y = 0; y < image.Height(); ++y) {
      for (int x = 0; x < image.Width(); ++x) {
        const Rgb c = RgbOf(image.GetPixel(x, y));
        if (list.size() == 256) {
          ++seen;
        } else if (std::find(list.begin(), list.end(), c) == list.end()) {
          list.push_back(c);
          ++seen;
        }
      }
    }
    for (int y = image.Height() - 1; y >= 0; --y) {
      for (int x = 0, n = 0; x < image.Width(); x += n) {
        for (n = 1; x + n < image.Width() && image.GetPixel(x + n, y) == image.GetPixel(x, y);) ++n;
        tree.Classify(RgbOf(image.GetPixel(x, y)), n);
      }
    }
  }
  if (seen <= wanted) {
    std::copy(list.begin(), list.end(), palette.begin());
    return seen;
  }
  tree.Reduce(wanted);
  int count = 0;
  tree.Write(tree.root, palette, count);
  return count;
}

void ExpectPlainResult(const FrameList& frames, int wanted) {
  Palette palette, plain;
  int count = wanted;
  ASSERT_TRUE(QuantiseFrames(frames, count, palette));
  ASSERT_EQ(count, PlainQuantise(frames, wanted, plain)) << wanted;
  ASSERT_EQ(palette, plain) << wanted;
  EXPECT_LE(count, wanted < 1 || wanted > 256 ? 256 : wanted);
}

// Coarse spreads make many cells of the same error, which one pass merges together.
TEST(Quantise, EveryPaletteIsThePlainOne) {
  Dice dice(1);
  const int wanted[] = {256, 255, 0, 1, 2, 3, 15, 64, 100, -5, 300};
  for (int round = 0; round < 120; ++round) {
    TestFrames frames;
    const int spreads[] = {256, 5, 9, 17, 3, 40};
    for (int i = 0; i <= round % 4; ++i) {
      frames.Append(RandomImage(dice, Roll(dice, 1, 40), Roll(dice, 1, 30), 24, spreads[round % 6], 1 + round % 5));
    }
    ExpectPlainResult(frames.list, wanted[static_cast<std::size_t>(round) % std::size(wanted)]);
  }
}

// Many single pixels of unlike colours: deep passes, where nodes go together with an ancestor that has less error.
TEST(Quantise, ManyColoursAreMergedPassByPass) {
  Dice dice(2);
  for (int round = 0; round < 10; ++round) {
    TestFrames frames;
    const PackedDib image = BlankDib(60, 50, nullptr, 24);
    const DibView view(image);
    const int mask = round % 2 ? 0xFFFFFF : 0xF8F8F8 | round * 0x010101;
    for (int i = 0; i < 3000; ++i) view.SetPixel(i % 60, i / 60, dice() & static_cast<std::uint32_t>(mask));
    frames.Append(DuplicateDib(image));
    for (int wanted : {256, 200, 17, 4, 1}) ExpectPlainResult(frames.list, wanted);
  }
}

// Pixels beside the middle of a large cell have less error there than in the cells below it, so the large cell is
// merged while those below are still in the tree and still counted.
TEST(Quantise, ANodeWithLessErrorThanItsChildrenTakesThemAlong) {
  Dice dice(3);
  for (int round = 0; round < 200; ++round) {
    TestFrames frames;
    const PackedDib image = BlankDib(40, 1, nullptr, 24);
    const DibView view(image);
    const int levels[] = {31, 32, 63, 64, 95, 96, 127, 128, 159, 160, 191, 192};
    for (int x = 0; x < 40; ++x) {
      const auto level = [&] { return levels[Roll(dice, 0, 11)] + (round & 1 ? Roll(dice, -1, 1) : 0); };
      view.SetPixel(x, 0, MakeColour(level(), level(), level()));
    }
    frames.Append(DuplicateDib(image));
    ExpectPlainResult(frames.list, 1 + round % 20);
  }
}

TEST(Quantise, FewEnoughColoursAreKeptInTheOrderOfTheirAppearanceFromTheTop) {
  TestFrames frames;
  const PackedDib image = BlankDib(3, 2, nullptr, 24);
  const Colour colours[] = {7, 8, 7, 0xFF0000, 9, 9};
  for (int i = 0; i < 6; ++i) DibView(image).SetPixel(i % 3, i / 3, colours[i]);
  frames.Append(DuplicateDib(image));
  frames.Append(SolidDib(5, 5, 0x123456));
  int count = 5;
  Palette palette;
  ASSERT_TRUE(QuantiseFrames(frames.list, count, palette));
  ASSERT_EQ(count, 5);
  const Colour expected[] = {7, 8, 0xFF0000, 9, 0x123456, 0};
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(palette[i], RgbOf(expected[i]));
  count = 4;
  ASSERT_TRUE(QuantiseFrames(frames.list, count, palette));
  EXPECT_LE(count, 4);
}

// The 256th colour on the last pixel still fits; one more pixel, of whatever colour, does not.
TEST(Quantise, AFullListCountsEveryPixel) {
  for (int width : {256, 257}) {
    TestFrames frames;
    const PackedDib image = BlankDib(width, 1, nullptr, 24);
    for (int x = 0; x < width; ++x) DibView(image).SetPixel(x, 0, MakeColour(std::min(x, 255), 3, 3));
    frames.Append(DuplicateDib(image));
    ExpectPlainResult(frames.list, 256);
    int count = 256;
    Palette palette;
    ASSERT_TRUE(QuantiseFrames(frames.list, count, palette));
    EXPECT_EQ(count == 256, width == 256);
  }
}

// More pixels of one cell than its packed sums can take at once.
TEST(Quantise, LargeFlatFramesAreSummedExactly) {
  TestFrames frames;
  for (int i = 0; i < 3; ++i) {
    PackedDib image = SolidDib(1100, 500, i == 1 ? 0xFFFFFF : 0xFEFFFC);
    DibView(image).SetPixel(4, 4, static_cast<Colour>(i * 77));
    frames.Append(std::move(image));
  }
  for (int wanted : {1, 2, 3}) ExpectPlainResult(frames.list, wanted);
}

TEST(Quantise, MalformedPicturesFail) {
  Palette palette;
  int count = 256;
  TestFrames none, deep, lost;
  EXPECT_FALSE(QuantiseFrames(none.list, count, palette));
  deep.Append(BlankDib(3, 3, nullptr, 32));
  EXPECT_FALSE(QuantiseFrames(deep.list, count, palette));
  lost.Append(SolidDib(3, 3, 0));
  lost.Append({});
  EXPECT_FALSE(QuantiseFrames(lost.list, count, palette));
}

TEST(Quantise, EveryAllocationMayFailAndNothingLeaks) {
  Dice dice(4);
  TestFrames frames;
  frames.Append(RandomImage(dice, 120, 120, 24, 256, 1));
  frames.Append(RandomImage(dice, 120, 120, 24, 256, 1));
  const auto before = LiveBlocks();
  std::uint64_t n = 1;
  for (bool done = false; !done; ++n) {
    FailAllocation(n);
    int count = 256;
    Palette palette;
    done = QuantiseFrames(frames.list, count, palette);
    EXPECT_EQ(done, AllocationsAsked() < n);
    EXPECT_EQ(LiveBlocks().blocks, before.blocks);
    EXPECT_EQ(LiveBlocks().locks, before.locks);
  }
  EXPECT_GT(n, 4u);
  FailAllocation(0);
}

}  // namespace
}  // namespace glyphmotion
