// SPDX-License-Identifier: MIT
// The octree divides the colour cube by the bits of red, green and blue, highest first. Every node on the path of a
// pixel accumulates the squared distance of the pixel from the centre of the node's cell; the pixel itself belongs to
// the deepest node. Then the nodes with the least error are merged into their parents, least error first, until few
// enough nodes own pixels. All of these sums are sums of quarters far below 2^53, so they do not depend on the order of
// the pixels. The pixels are therefore first summed in the 32768 cells of the deepest level: number, channels, squares.
// These give the sums of every cell above and, with |p - c|^2 = p^2 - 2 c p + c^2, their errors in whole quarters.
// Merging is defined as passes over the whole tree, each with a threshold: the least error that the previous pass has
// found. Here the nodes are sorted by error once, and a pass touches only the nodes that it merges. One property of a
// pass has to be kept: it visits children before their parent, so nodes that it later merges together with an ancestor
// also count as colours and for the next threshold.
#include "image/quantise.h"

#include <algorithm>
#include <span>

#include "image/colour_cells.h"
#include "image/packed_dib.h"
#include "image/run_pixels.h"
#include "platform/run_state.h"

namespace glyphmotion {
namespace {

constexpr int kMaxColours = 256;
constexpr int kMinDepth = 2;
constexpr int kMaxDepth = 5;  // for 256 colours

int DepthFor(int colours) {
  int depth = 0;
  for (; colours; colours >>= 2) ++depth;
  return std::clamp(depth, kMinDepth, kMaxDepth);
}
static_assert(kMaxColours >> 2 * kMaxDepth == 0 && kMaxColours >> 2 * (kMaxDepth - 1) != 0);

// ---- The exact list ----

/// The first 256 colours of a run, in order, with a hash over them.
struct ExactList {
  Palette palette{};
  int listed = 0;
  int seen = 0;  ///< colours listed, and pixels after the list was full

  static constexpr std::uint32_t kSlots = 1024, kFree = 0xFFFFFFFF;
  std::array<std::uint32_t, kSlots> slots;

  ExactList() { slots.fill(kFree); }

  void Add(std::uint32_t pixel) {
    if (listed == kMaxColours) {
      ++seen;
      return;
    }
    std::uint32_t at = pixel * 0x9E3779B1u >> 22;
    for (; slots[at] != kFree; at = (at + 1) % kSlots) {
      if (slots[at] == pixel) return;
    }
    slots[at] = pixel;
    palette[static_cast<std::size_t>(listed++)] = {static_cast<std::uint8_t>(pixel),
                                                   static_cast<std::uint8_t>(pixel >> 8),
                                                   static_cast<std::uint8_t>(pixel >> 16)};
    ++seen;
  }
};

Rgb RgbAt(const std::uint8_t* p) { return {p[2], p[1], p[0]}; }

// Adds a picture's pixels, its top row first; may stop when more than `wanted` have been seen.
void ListColours(const DibView& image, int wanted, ExactList& list) {
  const auto width = static_cast<std::size_t>(image.Width());
  for (int y = 0; y < image.Height(); ++y) {
    const std::uint8_t* row = image.Row(y);
    for (std::size_t x = 0; x < width;) {
      if (list.seen > wanted) return;
      const Rgb c = RgbAt(row + 3 * x);
      list.Add(ColourOf(c));
      // A full list counts every pixel, so the run must not be skipped.
      x += list.listed < kMaxColours ? RunLength(row + 3 * x, width - x) : 1;
    }
  }
}

// ---- The sums of the cells ----

/// The sums over the pixels of a cell or a node. In a cell the channels are the lowest three bits only.
struct Sums {
  std::int64_t pixels = 0, red = 0, green = 0, blue = 0, squares = 0;
};

/// One pixel's, or many pixels', contribution to a cell, packed to be added in two additions: pixels from bit 0 of
/// `low`, red from 20, green from 42; blue from bit 0 of `high`, squares from 22. Room for kPackedPixels.
struct PackedSums {
  std::uint64_t low = 0, high = 0;
};
constexpr std::size_t kPackedPixels = std::size_t{1} << 19;

constexpr auto kPackedUnits = [] {
  std::array<PackedSums, kCubeColours> units{};
  for (std::uint64_t i = 0; i < units.size(); ++i) {
    const std::uint64_t red = i >> 6, green = i >> 3 & 7, blue = i & 7;
    units[i] = {1 | red << 20 | green << 42, blue | (red * red + green * green + blue * blue) << 22};
  }
  return units;
}();

struct CellTable {
  std::array<PackedSums, kCubeCount> packed;
  std::array<Sums, kCubeCount> sums;
  std::size_t room;  ///< pixels that the packed sums still have room for
};

void Unpack(CellTable& cells) {
  constexpr std::uint64_t k20 = (1u << 20) - 1, k22 = (1u << 22) - 1;
  for (std::size_t i = 0; i < kCubeCount; ++i) {
    const PackedSums from = cells.packed[i];
    if (!from.low) continue;
    Sums& to = cells.sums[i];
    to.pixels += static_cast<std::int64_t>(from.low & k20);
    to.red += static_cast<std::int64_t>(from.low >> 20 & k22);
    to.green += static_cast<std::int64_t>(from.low >> 42);
    to.blue += static_cast<std::int64_t>(from.high & k22);
    to.squares += static_cast<std::int64_t>(from.high >> 22);
    cells.packed[i] = {};
  }
  cells.room = kPackedPixels;
}

void SumRow(const std::uint8_t* row, std::size_t width, CellTable& cells) {
  for (std::size_t x = 0; x < width;) {
    if (!cells.room) Unpack(cells);
    const std::uint8_t* p = row + 3 * x;
    const std::size_t run = std::min(RunLength(p, width - x), cells.room);
    const std::uint32_t place = kPlaces[0][p[2]] | kPlaces[1][p[1]] | kPlaces[2][p[0]];
    const PackedSums& unit = kPackedUnits[place % kCubeColours];
    PackedSums& cell = cells.packed[place / kCubeColours];
    cell.low += run * unit.low;
    cell.high += run * unit.high;
    cells.room -= run;
    x += run;
  }
}

// ---- The tree ----

struct Node {
  Sums sums;           ///< of the node's whole cell
  std::int64_t error;  ///< in quarters
  Node* parent;        ///< the root's is null
  Node* child[8];
  std::uint32_t mergedIn;  ///< number of the pass, 0 while the node is in the tree
  bool ownsPixels;
};

constexpr int kNodesInBlock = 1536;
// Room for a full tree of kMaxDepth levels, so no level ever has to be dropped.
constexpr int kMaxNodes = ((1 << 3 * (kMaxDepth + 1)) - 1) / 7;
static_assert(kMaxNodes == 37449);

/// Nodes are allocated zeroed, in blocks, and freed all together.
struct NodePool {
  std::array<MovableBlock, (kMaxNodes + kNodesInBlock - 1) / kNodesInBlock> blocks;
  std::array<Node*, std::tuple_size_v<decltype(blocks)>> first{};
  int count = 0;

  Node* At(int i) const { return first[static_cast<std::size_t>(i / kNodesInBlock)] + i % kNodesInBlock; }

  Node* Take(Node* parent) noexcept {
    if (count % kNodesInBlock == 0) {
      const auto i = static_cast<std::size_t>(count / kNodesInBlock);
      blocks[i].Reset(AllocateBlock(sizeof(Node) * kNodesInBlock));
      first[i] = static_cast<Node*>(LockBlock(blocks[i].Handle()));
      if (!first[i]) return nullptr;
    }
    Node* node = At(count++);
    node->parent = parent;
    return node;
  }
};

void Add(Sums& to, const Sums& from, std::int64_t sign = 1) {
  to.pixels += sign * from.pixels;
  to.red += sign * from.red;
  to.green += sign * from.green;
  to.blue += sign * from.blue;
  to.squares += sign * from.squares;
}

struct CellPlace {
  std::int64_t red, green, blue;  // 0 to 31
};

// The sums of a cell with the channels' upper five bits put back.
Sums Whole(const Sums& s, CellPlace at) {
  const auto square = [&](std::int64_t v, std::int64_t low) { return 64 * v * v * s.pixels + 16 * v * low; };
  return {s.pixels, 8 * at.red * s.pixels + s.red, 8 * at.green * s.pixels + s.green, 8 * at.blue * s.pixels + s.blue,
          s.squares + square(at.red, s.red) + square(at.green, s.green) + square(at.blue, s.blue)};
}

// Adds a cell to every node on its path, creating missing nodes.
bool AddCell(NodePool& pool, int depth, const Sums& sums, CellPlace at) {
  Node* node = pool.At(0);
  for (int level = 1; level <= depth; ++level) {
    const int shift = 5 - level;
    const std::int64_t id = (at.red >> shift & 1) * 4 + (at.green >> shift & 1) * 2 + (at.blue >> shift & 1);
    Node*& child = node->child[id];
    if (!child) {
      child = pool.Take(node);
      if (!child) return false;
      child->ownsPixels = level == depth;
    }
    node = child;
    Add(node->sums, sums);
  }
  return true;
}

bool BuildTree(NodePool& pool, int depth, const CellTable& cells) {
  if (!pool.Take(nullptr)) return false;
  for (std::uint32_t i = 0; i < kCubeCount; ++i) {
    if (!cells.sums[i].pixels) continue;
    const CellPlace at = {i >> 10, i >> 5 & 31, i & 31};
    if (!AddCell(pool, depth, Whole(cells.sums[i], at), at)) return false;
  }
  return true;
}

// Errors of a node's children and of all below. `red`, `green` and `blue` are twice the centre of the node's cell,
// `reach` twice the distance from it to the centres of the children.
void SetErrors(Node& node, std::int64_t red, std::int64_t green, std::int64_t blue, std::int64_t reach) {
  for (int id = 0; id < 8; ++id) {
    Node* child = node.child[id];
    if (!child) continue;
    const std::int64_t r = red + (id & 4 ? reach : -reach), g = green + (id & 2 ? reach : -reach),
                       b = blue + (id & 1 ? reach : -reach);
    const Sums& s = child->sums;
    child->error = 4 * (s.squares - r * s.red - g * s.green - b * s.blue) + s.pixels * (r * r + g * g + b * b);
    SetErrors(*child, r, g, b, reach / 2);
  }
}

// ---- Merging ----

struct ByError {
  std::int64_t error;
  Node* node;
};

struct Merger {
  int owners = 0;          ///< nodes in the tree that own pixels
  std::uint32_t pass = 0;  ///< number of the current pass
  int doomed = 0;          ///< owners that the pass counted before it merged them with an ancestor

  void GivePixels(Node& node) {
    if (!node.ownsPixels) ++owners;
    node.ownsPixels = true;
  }

  // Merges the rest of a subtree. Nodes above the threshold have been visited, and counted, before.
  void Merge(Node& node, std::int64_t threshold) {
    node.mergedIn = pass;
    if (node.ownsPixels) {
      --owners;
      doomed += node.error > threshold;
    }
    for (Node* child : node.child) {
      if (child && !child->mergedIn) Merge(*child, threshold);
    }
  }
};

// Merges nodes until a pass counts at most `wanted` colours.
bool Reduce(const NodePool& pool, int wanted) {
  const auto count = static_cast<std::size_t>(pool.count - 1);  // the root is never merged
  const MovableBlock block(AllocateBlock(count * sizeof(ByError)));
  const LockedBlock<ByError> lock(block.Handle());
  if (!lock) return false;
  const std::span<ByError> order(lock.get(), count);
  Merger merger;
  for (std::size_t i = 0; i < count; ++i) {
    Node* node = pool.At(static_cast<int>(i) + 1);
    order[i] = {node->error, node};
    merger.owners += node->ownsPixels;
  }
  std::sort(order.begin(), order.end(), [](const ByError& a, const ByError& b) { return a.error < b.error; });

  std::size_t next = 0;
  for (int colours = merger.owners; colours > wanted && !EndRequested(); colours = merger.owners + merger.doomed) {
    // The threshold is the least error that the previous pass found, even if that node has been merged since.
    while (order[next].node->mergedIn && order[next].node->mergedIn != merger.pass) ++next;
    const std::int64_t threshold = order[next].error;
    ++merger.pass;
    merger.doomed = 0;
    const std::size_t first = next;
    for (; next < count && order[next].error == threshold; ++next) {
      if (!order[next].node->mergedIn) merger.GivePixels(*order[next].node->parent);
    }
    for (std::size_t i = first; i < next; ++i) {
      if (!order[i].node->mergedIn) merger.Merge(*order[i].node, threshold);
    }
  }
  return true;
}

// Writes the colours of a subtree, children first.
void WriteColours(const Node& node, Palette& palette, int& written) {
  Sums own = node.sums;
  for (const Node* child : node.child) {
    if (!child || child->mergedIn) continue;
    WriteColours(*child, palette, written);
    Add(own, child->sums, -1);
  }
  if (own.pixels <= 0) return;
  const auto mean = [&](std::int64_t sum) {
    return static_cast<std::uint8_t>((own.pixels + 2 * sum) / (2 * own.pixels));
  };
  palette[static_cast<std::size_t>(written++)] = {mean(own.red), mean(own.green), mean(own.blue)};
}

// ---- All frames ----

bool SumFrames(const FrameList& frames, CellTable& cells) {
  cells.room = kPackedPixels;
  const bool all = ForEachImage(frames, [&](const DibView& image) {
    for (int r = 0; r < image.Height(); ++r) {
      if (EndRequested()) return false;
      SumRow(image.StoredRow(r), static_cast<std::size_t>(image.Width()), cells);
    }
    return true;
  });
  Unpack(cells);
  return all;
}

bool QuantiseByTree(const FrameList& frames, int& count, Palette& palette) {
  NodePool pool;
  const int depth = DepthFor(count);
  {
    const MovableBlock block(AllocateBlock(sizeof(CellTable)));
    const LockedBlock<CellTable> cells(block.Handle());
    if (!cells || !SumFrames(frames, *cells) || !BuildTree(pool, depth, *cells)) return false;
  }
  Node& root = *pool.At(0);
  for (const Node* child : root.child) {
    if (child) Add(root.sums, child->sums);
  }
  SetErrors(root, 255, 255, 255, 128);
  if (!Reduce(pool, count) || EndRequested()) return false;
  count = 0;
  WriteColours(root, palette, count);
  return true;
}

}  // namespace

bool QuantiseFrames(const FrameList& frames, int& count, Palette& palette) noexcept {
  const int wanted = count < 1 || count > kMaxColours ? kMaxColours : count;
  palette = {};
  ExactList list;
  const bool listed = ForEachImage(frames, [&](const DibView& image) {
    ListColours(image, wanted, list);
    return list.seen <= wanted;
  });
  if (!listed) return false;
  if (list.seen <= wanted) {
    palette = list.palette;
    count = list.seen;
    return true;
  }
  count = wanted;
  return QuantiseByTree(frames, count, palette);
}

}  // namespace glyphmotion
