// SPDX-License-Identifier: MIT
// How a frame becomes bytes. Every colour of the animation has a number, its id, and the pictures `before` and `shown`
// hold ids: what a viewer sees before and after the current frame. A frame is held back until the next one arrives,
// because only that one shows whether the screen has to be cleared between the two. Then:
//
//   1. the crop: the box around what the frame changes, and around what has to be cleared after it;
//   2. in the crop, a pixel that stays as it was is free: it may be written as its colour or as the transparent index;
//   3. cropped frames are kept until all are known, or until they take much memory: only then can the common palette
//      be put into an order that gives many frames short codes. A frame whose colours it has no room for gets its own;
//   4. compression (gif_frame.h); with little effort only one of several alike frames is searched (gif_guides.h).
// In an animation with transparency, every frame that can declares a transparent index, used or not: decoders clear a
// frame's box to transparent only if that frame has one.
#include "host/encoders/gif_writer.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <unordered_map>

#include "host/encoders/gif_file.h"
#include "host/encoders/gif_frame.h"
#include "host/encoders/gif_guides.h"
#include "host/encoders/gif_held_frame.h"
#include "host/encoders/gif_lossy.h"
#include "host/encoders/gif_palette.h"
#include "platform/workers.h"

namespace glyphmotion {
namespace {

using Id = GifColourId;
constexpr Id kClear = 0xFFFF;    // nothing drawn: transparent
constexpr Id kUnknown = 0xFFFE;  // equals no colour
constexpr std::size_t kMostIds = kUnknown;

GifBox Union(const GifBox& a, const GifBox& b) {
  if (a.Empty()) return b;
  if (b.Empty()) return a;
  return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right), std::max(a.bottom, b.bottom)};
}

// The bounding box of the pixels with `differs(a, b)`, which is false for equal ids; rows are scanned from both ends.
template <typename Differs>
GifBox BoxOf(const std::vector<Id>& a, const std::vector<Id>& b, int width, int height, Differs differs) {
  GifBox box{width, height, 0, 0};
  for (int y = 0; y < height; ++y) {
    const Id* rowA = a.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    const Id* rowB = b.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    if (std::memcmp(rowA, rowB, sizeof(Id) * static_cast<std::size_t>(width)) == 0) continue;
    int left = 0, right = width;
    while (left < width && !differs(rowA[left], rowB[left])) ++left;
    if (left == width) continue;
    while (!differs(rowA[right - 1], rowB[right - 1])) --right;
    box = {std::min(box.left, left), std::min(box.top, y), std::max(box.right, right), y + 1};
  }
  if (box.Empty()) return {};
  return box;
}

// Numbers the colours: palette entries of equal colour share one number, here and in the file.
struct ColourIds {
  std::vector<std::uint32_t> colours;
  std::unordered_map<std::uint32_t, Id> ids;

  static std::uint32_t ColourAt(std::span<const std::uint8_t, 768> palette, std::size_t i) {
    return palette[i * 3] | std::uint32_t{palette[i * 3 + 1]} << 8 | std::uint32_t{palette[i * 3 + 2]} << 16;
  }
  Id IdOf(std::uint32_t colour) {
    const auto [place, isNew] = ids.emplace(colour, static_cast<Id>(colours.size()));
    if (isNew) colours.push_back(colour);
    return place->second;
  }
};

// --- Loops over pixels

GLYPHMOTION_CLONES std::uint8_t LargestOf(const std::uint8_t* in, std::size_t count) {
  std::uint8_t largest = 0;
  for (std::size_t i = 0; i < count; ++i) largest = std::max(largest, in[i]);
  return largest;
}
GLYPHMOTION_CLONES void Widen(Id* __restrict out, const std::uint8_t* __restrict in, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) out[i] = in[i];
}
GLYPHMOTION_CLONES void WidenAround(Id* __restrict out, const std::uint8_t* __restrict in, std::size_t count,
                                    Id transparent) {
  for (std::size_t i = 0; i < count; ++i) out[i] = in[i] == transparent ? out[i] : Id{in[i]};
}
GLYPHMOTION_CLONES void PutWhere(Id* __restrict out, const std::uint8_t* __restrict in, std::size_t count,
                                 std::uint8_t index, Id id) {
  for (std::size_t i = 0; i < count; ++i) out[i] = in[i] == index ? id : out[i];
}
GLYPHMOTION_CLONES void Narrow(std::uint8_t* __restrict out, const Id* __restrict in, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) out[i] = static_cast<std::uint8_t>(in[i]);
}
// Unchanged pixels are free; pixels without a colour must be wildcards.
GLYPHMOTION_CLONES void FindKinds(GifPixel* __restrict out, const Id* __restrict was, const Id* __restrict is,
                                  std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const auto kind = static_cast<std::uint8_t>(was[i] == is[i]);
    out[i] = static_cast<GifPixel>(is[i] >= kUnknown ? std::uint8_t{2} : kind);
  }
}

}  // namespace

struct GifWriter::State {
  // Total size up to which cropped frames are kept.
  static constexpr std::size_t kMostHeld = std::size_t{64} << 20;
  // Of a guide, in frames, where speed counts more than size. Over the 21 effects files grow by 0.2 % on average.
  static constexpr std::size_t kReach = 8;

  int width = 0, height = 0;
  std::vector<Id> before, shown, wanted;  // screens of ids
  bool pending = false;
  int pendingDelay = 0;
  ColourIds ids;
  std::array<Id, 256> idOfIndex{};  // of the previous frame's palette
  std::vector<std::uint8_t> twins;  // indices that differ from their ids
  std::array<std::uint8_t, 768> lastPalette{};
  int lastTransparent = -1;
  bool idsValid = false;
  GifPalette common;
  bool seeThrough = false;  // some pixel is transparent
  std::string comment;
  int loops = 0;
  std::vector<GifHeldFrame> held;
  std::size_t heldBytes = 0;
  std::vector<GifFileFrame> encoded;
  Workers workers;
  std::vector<GifFrameCompressor> compressors;  // by lane
  std::optional<GifLossyCompressor> lossy;
  std::vector<GifFileFrame> lossyFrames;  // the same frames with loss
  int lossyReserved = 0;                  // entries of the common palette that these need
  const std::atomic<bool>* stop = nullptr;
  std::size_t reach = 1;  // of a guide

  explicit State(int threads) : workers(threads), compressors(static_cast<std::size_t>(workers.Lanes())) {}

  bool Stopped() const { return stop && *stop; }
  std::size_t Size() const { return static_cast<std::size_t>(width) * static_cast<std::size_t>(height); }
  void Translate(const GifFrame& frame);
  const std::array<Id, 256>& IdsOf(const GifFrame& frame);
  void StartAfresh(const GifFrame& next);
  void WriteBefore(const GifFrame& next);
  void WritePending(const GifBox& mustCover, GifDisposal disposal);
  void Hold(const GifBox& crop, GifDisposal disposal);
  void HoldIds(const GifBox& crop, GifHeldFrame& frame) const;
  void HoldNumbered(const GifBox& crop, GifHeldFrame& frame) const;
  void Settle();
  std::vector<bool> ChoosePalettes();
};

GifWriter::GifWriter(int width, int height, int threads) : state_(std::make_unique<State>(threads)) {
  state_->width = std::clamp(width, 1, 65535);
  state_->height = std::clamp(height, 1, 65535);
}
GifWriter::~GifWriter() = default;
GifWriter::GifWriter(GifWriter&&) noexcept = default;

void GifWriter::SetComment(const std::string& text) { state_->comment = text; }
void GifWriter::SetEffort(int effort) {
  for (GifFrameCompressor& compressor : state_->compressors) compressor.SetEffort(effort);
  state_->reach = effort > 5 ? 1 : State::kReach;
  if (state_->lossy) state_->lossy->SetEffort(effort);
}
void GifWriter::SetStop(const std::atomic<bool>* stop) {
  state_->stop = stop;
  for (GifFrameCompressor& compressor : state_->compressors) compressor.SetStop(stop);
  if (state_->lossy) state_->lossy->SetStop(stop);
}
void GifWriter::SetLoss(int loss) {
  if (loss > 0) state_->lossy.emplace(state_->width, state_->height, loss);
}
void GifWriter::SetLoops(int loops) { state_->loops = std::clamp(loops, 0, 65535); }

// Builds the table from palette index to id. In the first palette ids equal indices.
const std::array<Id, 256>& GifWriter::State::IdsOf(const GifFrame& frame) {
  const bool same = idsValid && frame.transparentIndex == lastTransparent &&
                    std::equal(frame.palette.begin(), frame.palette.end(), lastPalette.begin());
  if (same) return idOfIndex;
  std::copy(frame.palette.begin(), frame.palette.end(), lastPalette.begin());
  lastTransparent = frame.transparentIndex;
  idsValid = true;
  const bool first = ids.colours.empty();
  for (std::size_t i = 0; i < 256; ++i) {
    const std::uint32_t colour = ColourIds::ColourAt(frame.palette, i);
    if (static_cast<int>(i) != frame.transparentIndex) idOfIndex[i] = ids.IdOf(colour);
    if (first && ids.colours.size() <= i) ids.colours.push_back(colour);
  }
  twins.clear();
  for (std::size_t i = 0; i < 256; ++i)
    if (idOfIndex[i] != i && static_cast<int>(i) != lastTransparent) twins.push_back(static_cast<std::uint8_t>(i));
  return idOfIndex;
}

// After hundreds of palettes: restarts the numbering of colours. The screen then equals no future colour.
void GifWriter::State::StartAfresh(const GifFrame& next) {
  if (next.standAlone) wanted.assign(Size(), kClear);
  WriteBefore(next);
  Settle();
  std::replace_if(
      before.begin(), before.end(), [](Id id) { return id != kClear; }, kUnknown);
  shown = before;
  ids = {};
  idsValid = false;
  common.slotOfId.clear();
}

// Puts the screen with `frame` drawn on it into `wanted`.
void GifWriter::State::Translate(const GifFrame& frame) {
  if (ids.colours.size() + 256 > kMostIds) StartAfresh(frame);
  const Id* idOf = IdsOf(frame).data();
  const auto columns = static_cast<std::size_t>(std::min(width, frame.width));
  const int rows = std::min(height, frame.height);
  const int transparent = frame.transparentIndex <= 255 ? frame.transparentIndex : -1;
  if (frame.standAlone)
    wanted.assign(Size(), kClear);
  else if (transparent >= 0 || frame.width < width || frame.height < height)
    wanted = shown;
  else
    wanted.resize(Size());
  // Usually few indices differ from their ids: duplicate colours of the palette.
  constexpr std::ptrdiff_t kFewTwins = 4;
  const std::uint8_t largest = LargestOf(frame.indices.data(), frame.indices.size());
  const auto lastTwin = std::upper_bound(twins.begin(), twins.end(), largest);
  const bool few = lastTwin - twins.begin() <= kFewTwins;
  for (int y = 0; y < rows; ++y) {
    const std::uint8_t* in = frame.indices.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(frame.width);
    Id* out = wanted.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    if (!few) {
      for (std::size_t x = 0; x < columns; ++x) out[x] = in[x] == transparent ? out[x] : idOf[in[x]];
      continue;
    }
    if (transparent < 0)
      Widen(out, in, columns);
    else
      WidenAround(out, in, columns, static_cast<Id>(transparent));
    for (auto twin = twins.begin(); twin != lastTwin; ++twin) PutWhere(out, in, columns, *twin, idOf[*twin]);
  }
}

bool GifWriter::Add(const GifFrame& frame) {
  State& s = *state_;
  if (frame.width < 1 || frame.height < 1 ||
      frame.indices.size() != static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height))
    return false;
  if (s.before.empty()) {
    s.before.assign(s.Size(), kClear);
    s.shown = s.before;
  }
  s.Translate(frame);
  const bool mayHaveHoles = frame.transparentIndex >= 0 || frame.width < s.width || frame.height < s.height;
  if (!s.seeThrough && mayHaveHoles && (frame.standAlone || !s.pending))
    s.seeThrough = std::find(s.wanted.begin(), s.wanted.end(), kClear) != s.wanted.end();
  s.WriteBefore(frame);
  s.shown.swap(s.wanted);
  s.pending = true;
  s.pendingDelay = std::clamp(frame.delay, 0, 65535);
  return true;
}

// Writes the pending frame and clears with it what `next` no longer shows: a colour can only be removed by clearing,
// and the pixels to remove must lie within the cleared frame.
void GifWriter::State::WriteBefore(const GifFrame& next) {
  if (!pending) return;
  const auto vanishes = [](Id now, Id then) { return now != kClear && then == kClear; };
  const GifBox vanishing = next.standAlone ? BoxOf(shown, wanted, width, height, vanishes) : GifBox{};
  WritePending(vanishing, vanishing.Empty() ? GifDisposal::Keep : GifDisposal::ToBackground);
}

// Writes the frame that turns `before` into `shown`, then updates `before` to the screen that the next frame is drawn
// on.
void GifWriter::State::WritePending(const GifBox& mustCover, GifDisposal disposal) {
  if (!pending) return;
  pending = false;
  GifBox crop = Union(BoxOf(before, shown, width, height, [](Id a, Id b) { return a != b; }), mustCover);
  if (crop.Empty()) crop = {0, 0, 1, 1};
  Hold(crop, disposal);
  for (int y = crop.top; y < crop.bottom; ++y) {
    const std::size_t at =
        static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(crop.left);
    std::copy_n(&shown[at], crop.Width(), &before[at]);
  }
  if (disposal != GifDisposal::ToBackground) return;
  for (int y = crop.top; y < crop.bottom; ++y) {
    Id* row = before.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    std::fill(row + crop.left, row + crop.right, kClear);
  }
}

void GifWriter::State::Hold(const GifBox& crop, GifDisposal disposal) {
  GifHeldFrame& frame = held.emplace_back();
  frame.crop = crop;
  frame.disposal = disposal;
  frame.delay = pendingDelay;
  const auto columns = static_cast<std::size_t>(crop.Width());
  GifPixels& pixels = frame.pixels;
  pixels.symbols.resize(columns * static_cast<std::size_t>(crop.Height()));
  pixels.kinds.resize(pixels.symbols.size());
  for (int y = crop.top; y < crop.bottom; ++y) {
    const std::size_t from = static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                             static_cast<std::size_t>(crop.left),
                      to = static_cast<std::size_t>(y - crop.top) * columns;
    FindKinds(&pixels.kinds[to], &before[from], &shown[from], columns);
  }
  if (ids.colours.size() <= 256)
    HoldIds(crop, frame);
  else
    HoldNumbered(crop, frame);
  heldBytes += 2 * pixels.symbols.size();
  if (heldBytes > kMostHeld) Settle();
}

// With ids as symbols.
void GifWriter::State::HoldIds(const GifBox& crop, GifHeldFrame& frame) const {
  GifPixels& pixels = frame.pixels;
  const auto columns = static_cast<std::size_t>(crop.Width());
  for (int y = crop.top; y < crop.bottom; ++y)
    Narrow(&pixels.symbols[static_cast<std::size_t>(y - crop.top) * columns],
           &shown[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(crop.left)],
           columns);
  FindSlots(pixels);
}

// With symbols ordered by frequency. Usually all colours of the crop get one; if a palette cannot hold them, only the
// required ones do: the others are already on the screen.
void GifWriter::State::HoldNumbered(const GifBox& crop, GifHeldFrame& frame) const {
  GifPixels& pixels = frame.pixels;
  std::vector<std::uint32_t> must(ids.colours.size()), may(must.size());
  const auto columns = static_cast<std::size_t>(crop.Width());
  const auto idAt = [&](std::size_t i) {
    return shown[(static_cast<std::size_t>(crop.top) + i / columns) * static_cast<std::size_t>(width) +
                 static_cast<std::size_t>(crop.left) + i % columns];
  };
  const std::size_t count = pixels.kinds.size();
  for (std::size_t i = 0; i < count; ++i)
    if (pixels.kinds[i] != GifPixel::Wildcard) ++(pixels.kinds[i] == GifPixel::Free ? may : must)[idAt(i)];
  const auto collect = [&](bool all) {
    frame.ids.clear();
    for (std::size_t id = 0; id < must.size(); ++id)
      if (must[id] || (all && may[id])) frame.ids.push_back(static_cast<Id>(id));
  };
  collect(true);
  const bool onlyMust = frame.ids.size() > 256;
  if (onlyMust) collect(false);
  std::stable_sort(frame.ids.begin(), frame.ids.end(), [&](Id a, Id b) { return must[a] + may[a] > must[b] + may[b]; });
  std::vector<std::uint8_t> symbolOf(ids.colours.size());
  for (std::size_t i = 0; i < frame.ids.size(); ++i) symbolOf[frame.ids[i]] = static_cast<std::uint8_t>(i);
  for (std::size_t i = 0; i < count; ++i) {
    if (onlyMust && pixels.kinds[i] == GifPixel::Free) pixels.kinds[i] = GifPixel::Wildcard;
    pixels.symbols[i] = pixels.kinds[i] == GifPixel::Wildcard ? std::uint8_t{0} : symbolOf[idAt(i)];
  }
  FindSlots(pixels);
}

// Adds the colours of the kept frames to the common palette, as far as there is room. Returns the frames that need a
// local palette.
std::vector<bool> GifWriter::State::ChoosePalettes() {
  std::vector<bool> own;
  std::vector<GifWants> wants;
  std::vector<bool> chosen(ids.colours.size());
  std::vector<Id> added;
  for (const GifHeldFrame& frame : held) {
    GifWants frameWants;
    std::vector<Id> missing;
    for (std::size_t i = 0; i < 256; ++i) {
      if (!frame.pixels.must[i] && !frame.pixels.may[i]) continue;
      const Id id = frame.IdOf(i);
      if (frame.pixels.must[i]) frameWants.must.push_back(id);
      if (common.SlotOf(id) < 0 && !chosen[id]) missing.push_back(id);
    }
    own.push_back(common.colours.size() + added.size() + missing.size() > 256);
    if (own.back()) continue;
    for (const Id id : missing) chosen[id] = true;
    added.insert(added.end(), missing.begin(), missing.end());
    frameWants.wildcard = frame.pixels.hasFree || frame.pixels.hasWildcard;
    frameWants.pixels = frame.pixels.symbols.size();
    wants.push_back(std::move(frameWants));
  }
  std::sort(added.begin(), added.end());
  PutInOrder(wants, added, ids.colours, common);
  return own;
}

// Compresses the kept frames, several at once: each depends only on its own pixels, those of its guides and the current
// common palette, except with loss. Entries for their transparent indices are added afterwards.
void GifWriter::State::Settle() {
  SpareIndices(held);
  const std::vector<bool> own = ChoosePalettes();
  const std::size_t first = encoded.size();
  encoded.resize(first + held.size());
  std::vector<GifSearch> searches(held.size());
  std::vector<GifLikeness> likenesses(held.size());
  for (std::size_t i = 0; i < held.size() && reach > 1; ++i) likenesses[i] = LikenessOf(held[i].pixels);
  const GifGuides guides = ChooseGuides(likenesses, reach);
  const auto commonOf = [&](std::size_t i) { return own[i] ? nullptr : &common; };
  const auto encode = [&](int lane, std::size_t i) {
    if (Stopped()) return;
    GifHeldFrame frame = lossy ? held[i] : std::move(held[i]);
    encoded[first + i] = EncodeHeldFrame(frame, commonOf(i), ids.colours, seeThrough,
                                         compressors[static_cast<std::size_t>(lane)], searches[i], nullptr);
  };
  const auto encodeSearched = [&](int lane, int number) {
    encode(lane, guides.searched[static_cast<std::size_t>(number)]);
  };
  const auto encodeGuided = [&](int lane, int number) {
    const GifGuides::Guided& guided = guides.guided[static_cast<std::size_t>(number)];
    std::vector<GifWay>& likely = searches[guided.frame].likely;
    for (const std::size_t guide : {guided.before, guided.after}) {
      const GifWay& best = searches[guide].best;
      if (likely.empty() || likely.front() != best) likely.push_back(best);
    }
    encode(lane, guided.frame);
  };
  workers.InOrder(static_cast<int>(guides.searched.size()), encodeSearched, [](int) { return true; });
  workers.InOrder(static_cast<int>(guides.guided.size()), encodeGuided, [](int) { return true; });
  if (lossy)
    for (std::size_t i = 0; i < held.size() && !Stopped(); ++i) {
      lossyFrames.push_back(
          EncodeHeldFrame(held[i], commonOf(i), ids.colours, seeThrough, compressors[0], searches[i], &*lossy));
      held[i] = {};
      if (!lossyFrames.back().own) lossyReserved = std::max(lossyReserved, lossyFrames.back().wildcard + 1);
    }
  for (std::size_t i = first; i < encoded.size(); ++i)
    if (!encoded[i].own) common.Reserve(encoded[i].wildcard + 1);
  held.clear();
  heldBytes = 0;
}

// Errors of a frame may cost the next ones more than they saved, so the file without loss is a candidate, too.
std::vector<std::uint8_t> GifWriter::Finish() {
  State& s = *state_;
  s.WritePending({}, GifDisposal::Keep);
  if (s.held.empty() && s.encoded.empty()) return {};
  s.Settle();
  if (s.Stopped()) return {};
  std::vector<std::uint8_t> file = GifFileOf(s.width, s.height, s.common, s.encoded, s.comment, s.loops);
  if (!s.lossy) return file;
  s.common.reserved = std::max(static_cast<int>(s.common.colours.size()), s.lossyReserved);
  std::vector<std::uint8_t> lossy = GifFileOf(s.width, s.height, s.common, s.lossyFrames, s.comment, s.loops);
  return lossy.size() < file.size() ? lossy : file;
}

}  // namespace glyphmotion
