// SPDX-License-Identifier: MIT
// How a frame becomes bytes. Every colour of the animation has a number, its id, and the pictures `before` and `shown`
// hold ids: what a viewer sees before and after the frame in hand. A frame is held back until the next one arrives,
// because only that one tells whether the screen has to be cleared between the two. Then:
//
//   1. the crop: the box around what the frame changes, and around what has to be cleared after it;
//   2. in the crop, a pixel that stays as it was is free: it may be written as its colour or as the transparent index;
//   3. ids become palette slots, in the common palette if there is room, otherwise in one of the frame's own;
//   4. compression with and without the freedom; the smaller result is kept.
#include "host/gif_writer.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <unordered_map>

#include "host/lzw.h"

namespace glyphmotion {
namespace {

using Id = std::uint16_t;
constexpr Id kClear = 0xFFFF;    // nothing there: what is behind the animation shows
constexpr Id kUnknown = 0xFFFE;  // equals no colour
constexpr std::size_t kMaxIds = 0xFF00;

struct Box {
  int left = 0, top = 0, right = 0, bottom = 0;  // right and bottom outside
  bool Empty() const { return left >= right || top >= bottom; }
  int Width() const { return right - left; }
  int Height() const { return bottom - top; }
};

Box Union(const Box& a, const Box& b) {
  if (a.Empty()) return b;
  if (b.Empty()) return a;
  return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right), std::max(a.bottom, b.bottom)};
}

// The box around all places where `differs(row a, row b, x)`; rows are scanned from both ends.
template <typename Differs>
Box BoxOf(const std::vector<Id>& a, const std::vector<Id>& b, int width, int height, Differs differs) {
  Box box{width, height, 0, 0};
  for (int y = 0; y < height; ++y) {
    const Id* rowA = a.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    const Id* rowB = b.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    int left = 0, right = width;
    while (left < width && !differs(rowA[left], rowB[left])) ++left;
    if (left == width) continue;
    while (!differs(rowA[right - 1], rowB[right - 1])) --right;
    box = {std::min(box.left, left), std::min(box.top, y), std::max(box.right, right), y + 1};
  }
  if (box.Empty()) return {};
  return box;
}

// Numbers for colours. The first palette's colours are numbered by their index, so that the usual frame needs no
// translation.
struct ColourIds {
  std::vector<std::uint32_t> colours;
  std::unordered_map<std::uint32_t, Id> ids;

  void Begin(std::span<const std::uint8_t, 768> palette) {
    for (std::size_t i = 0; i < 256; ++i) {
      colours.push_back(ColourAt(palette, i));
      ids.emplace(colours.back(), static_cast<Id>(i));
    }
  }
  static std::uint32_t ColourAt(std::span<const std::uint8_t, 768> palette, std::size_t i) {
    return palette[i * 3] | std::uint32_t{palette[i * 3 + 1]} << 8 | std::uint32_t{palette[i * 3 + 2]} << 16;
  }
  Id IdOf(std::uint32_t colour) {
    const auto [place, isNew] = ids.emplace(colour, static_cast<Id>(colours.size()));
    if (isNew) colours.push_back(colour);
    return place->second;
  }
};

// One palette under construction: ids to slots.
struct Slots {
  std::vector<Id> idOfSlot;
  std::vector<std::int16_t> slotOfId;  // -1: none
  int reserved = 0;                    // entries used, a transparent one past the colours included

  int SlotOf(Id id) const { return id < slotOfId.size() ? slotOfId[id] : -1; }
  void Append(Id id) {
    if (slotOfId.size() <= id) slotOfId.resize(std::size_t{id} + 1, -1);
    slotOfId[id] = static_cast<std::int16_t>(idOfSlot.size());
    idOfSlot.push_back(id);
    Reserve(static_cast<int>(idOfSlot.size()));
  }
  void Reserve(int entries) { reserved = std::max(reserved, entries); }
  int Bits() const {
    int bits = 1;
    while (1 << bits < reserved) ++bits;
    return bits;
  }
};

void PutWord(std::vector<std::uint8_t>& out, int value) {
  out.push_back(static_cast<std::uint8_t>(value));
  out.push_back(static_cast<std::uint8_t>(value >> 8));
}

void PutBlocks(std::vector<std::uint8_t>& out, std::span<const std::uint8_t> bytes) {
  for (std::size_t i = 0; i < bytes.size(); i += 255) {
    const std::size_t count = std::min<std::size_t>(255, bytes.size() - i);
    out.push_back(static_cast<std::uint8_t>(count));
    out.insert(out.end(), bytes.begin() + static_cast<std::ptrdiff_t>(i),
               bytes.begin() + static_cast<std::ptrdiff_t>(i + count));
  }
  out.push_back(0);
}

void PutPalette(std::vector<std::uint8_t>& out, const Slots& slots, const ColourIds& ids) {
  for (std::size_t i = 0; i < std::size_t{1} << slots.Bits(); ++i) {
    const std::uint32_t colour = i < slots.idOfSlot.size() ? ids.colours[slots.idOfSlot[i]] : 0;
    for (int c = 0; c < 3; ++c) out.push_back(static_cast<std::uint8_t>(colour >> (8 * c)));
  }
}

enum Disposal { kKeep = 1, kToBackground = 2 };

}  // namespace

struct GifWriter::State {
  int width = 0, height = 0;
  std::vector<Id> before, shown, wanted;  // screens of ids
  bool pending = false;
  int pendingDelay = 0;
  int frames = 0;
  ColourIds ids;
  Slots common;
  std::string comment;
  std::vector<std::uint8_t> body, symbols, free, attempt, best;

  std::size_t Size() const { return static_cast<std::size_t>(width) * static_cast<std::size_t>(height); }
  void Translate(const GifFrame& frame);
  bool Identity(const GifFrame& frame, std::array<Id, 256>& idOfIndex);
  void WritePending(const Box& mustCover, Disposal disposal);
  void Encode(const Box& crop, Disposal disposal);
  bool CollectSymbols(const Box& crop, Slots& own, const Slots*& slots, int& wildcard);
  int Compress(int wildcard);
};

GifWriter::GifWriter(int width, int height) : state_(std::make_unique<State>()) {
  state_->width = std::clamp(width, 1, 65535);
  state_->height = std::clamp(height, 1, 65535);
}
GifWriter::~GifWriter() = default;
GifWriter::GifWriter(GifWriter&&) noexcept = default;

void GifWriter::SetComment(const std::string& text) { state_->comment = text; }

// Fills the table from palette index to id; true when every index but the transparent one is its own id.
bool GifWriter::State::Identity(const GifFrame& frame, std::array<Id, 256>& idOfIndex) {
  if (ids.colours.empty()) ids.Begin(frame.palette);
  bool same = true;
  for (std::size_t i = 0; i < 256; ++i) {
    const std::uint32_t colour = ColourIds::ColourAt(frame.palette, i);
    const bool own = colour == ids.colours[i] || static_cast<int>(i) == frame.transparentIndex;
    idOfIndex[i] = own ? static_cast<Id>(i) : ids.IdOf(colour);
    same = same && own;
  }
  return same;
}

// The screen as it looks with `frame` on it, into `wanted`.
void GifWriter::State::Translate(const GifFrame& frame) {
  if (ids.colours.size() > kMaxIds) {
    // Hundreds of palettes: start the numbering afresh. What is on the screen then equals nothing that is to come.
    WritePending({}, kKeep);
    std::replace_if(
        shown.begin(), shown.end(), [](Id id) { return id != kClear; }, kUnknown);
    ids = {};
    common.slotOfId.clear();
  }
  std::array<Id, 256> idOfIndex;
  const bool identity = Identity(frame, idOfIndex);
  const int columns = std::min(width, frame.width), rows = std::min(height, frame.height);
  wanted = shown;
  if (frame.standAlone) std::fill(wanted.begin(), wanted.end(), kClear);
  const int transparent = frame.transparentIndex;
  for (int y = 0; y < rows; ++y) {
    const std::uint8_t* in = frame.indices.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(frame.width);
    Id* out = wanted.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    if (identity) {
      for (int x = 0; x < columns; ++x) out[x] = in[x] == transparent ? out[x] : in[x];
    } else {
      for (int x = 0; x < columns; ++x) out[x] = in[x] == transparent ? out[x] : idOfIndex[in[x]];
    }
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
  if (s.pending) {
    // Only clearing the screen can take a colour away. What has to vanish must lie in the frame that is cleared.
    const Box vanishing = frame.standAlone ? BoxOf(s.shown, s.wanted, s.width, s.height,
                                                   [](Id now, Id next) { return now != kClear && next == kClear; })
                                           : Box{};
    s.WritePending(vanishing, vanishing.Empty() ? kKeep : kToBackground);
  }
  s.shown.swap(s.wanted);
  s.pending = true;
  s.pendingDelay = std::clamp(frame.delay, 0, 65535);
  return true;
}

// Writes the frame that turns `before` into `shown`, then makes `before` what the next frame is drawn upon.
void GifWriter::State::WritePending(const Box& mustCover, Disposal disposal) {
  if (!pending) return;
  pending = false;
  Box crop = Union(BoxOf(before, shown, width, height, [](Id a, Id b) { return a != b; }), mustCover);
  if (crop.Empty()) crop = {0, 0, 1, 1};
  Encode(crop, disposal);
  ++frames;
  before = shown;
  if (disposal != kToBackground) return;
  for (int y = crop.top; y < crop.bottom; ++y) {
    Id* row = before.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    std::fill(row + crop.left, row + crop.right, kClear);
  }
}

// Palette slots for the crop's pixels into `symbols`, freedom into `free`. `slots` is the palette in use. `wildcard` is
// the transparent slot, or -1 when none is free. True when some pixel is free and some index can say so.
bool GifWriter::State::CollectSymbols(const Box& crop, Slots& own, const Slots*& slots, int& wildcard) {
  std::vector<std::uint32_t> counts(ids.colours.size(), 0);
  bool hasFree = false, hasClear = false;
  for (int y = crop.top; y < crop.bottom; ++y) {
    const std::size_t start = static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    for (std::size_t i = start + static_cast<std::size_t>(crop.left); i < start + static_cast<std::size_t>(crop.right);
         ++i) {
      hasFree |= before[i] == shown[i];
      if (shown[i] < kUnknown) {
        ++counts[shown[i]];
      } else {
        hasClear = true;
      }
    }
  }
  std::vector<Id> used;
  for (std::size_t id = 0; id < counts.size(); ++id)
    if (counts[id]) used.push_back(static_cast<Id>(id));
  std::stable_sort(used.begin(), used.end(), [&](Id a, Id b) { return counts[a] > counts[b]; });

  const auto missing =
      static_cast<std::size_t>(std::count_if(used.begin(), used.end(), [&](Id id) { return common.SlotOf(id) < 0; }));
  // Pixels that must stay see-through need a slot of their own beside the frame's colours.
  const bool fits = common.idOfSlot.size() + missing <= 256 && !(hasClear && used.size() == 256);
  Slots& palette = fits ? common : own;
  for (const Id id : used)
    if (palette.SlotOf(id) < 0 && palette.idOfSlot.size() < 256) palette.Append(id);
  slots = &palette;

  wildcard = -1;
  if (hasFree || hasClear) {
    std::array<bool, 257> taken{};
    for (const Id id : used)
      if (palette.SlotOf(id) >= 0) taken[static_cast<std::size_t>(palette.SlotOf(id))] = true;
    const auto gap = std::find(taken.begin(), taken.end(), false) - taken.begin();
    if (gap < 256) {
      wildcard = static_cast<int>(gap);
      palette.Reserve(wildcard + 1);
    }
  }
  symbols.clear();
  free.clear();
  for (int y = crop.top; y < crop.bottom; ++y) {
    const std::size_t start = static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    for (std::size_t i = start + static_cast<std::size_t>(crop.left); i < start + static_cast<std::size_t>(crop.right);
         ++i) {
      const int slot = shown[i] < kUnknown ? palette.SlotOf(shown[i]) : wildcard;
      symbols.push_back(static_cast<std::uint8_t>(slot));
      free.push_back(before[i] == shown[i]);
    }
  }
  return hasFree && wildcard >= 0;
}

void GifWriter::State::Encode(const Box& crop, Disposal disposal) {
  Slots own;
  const Slots* slots = nullptr;
  int wildcard = -1;
  const bool choice = CollectSymbols(crop, own, slots, wildcard);
  int largest = *std::max_element(symbols.begin(), symbols.end());
  if (choice) largest = std::max(largest, wildcard);
  int minCodeSize = 2;
  while (1 << minCodeSize <= largest) ++minCodeSize;
  best.clear();
  CompressLzw(symbols, {}, 0, minCodeSize, best);
  if (choice) {
    attempt.clear();
    CompressLzw(symbols, free, static_cast<std::uint8_t>(wildcard), minCodeSize, attempt);
    if (attempt.size() < best.size()) best.swap(attempt);
    for (std::size_t i = 0; i < symbols.size(); ++i)
      if (free[i]) symbols[i] = static_cast<std::uint8_t>(wildcard);
    attempt.clear();
    CompressLzw(symbols, {}, 0, minCodeSize, attempt);
    if (attempt.size() < best.size()) best.swap(attempt);
  }
  const std::uint8_t control[] = {0x21, 0xF9, 4, static_cast<std::uint8_t>(disposal << 2 | (wildcard >= 0 ? 1 : 0))};
  body.insert(body.end(), std::begin(control), std::end(control));
  PutWord(body, pendingDelay);
  body.push_back(static_cast<std::uint8_t>(std::max(wildcard, 0)));
  body.push_back(0);
  body.push_back(0x2C);
  for (const int value : {crop.left, crop.top, crop.Width(), crop.Height()}) PutWord(body, value);
  const bool local = slots == &own;
  body.push_back(static_cast<std::uint8_t>(local ? 0x80 | (own.Bits() - 1) : 0));
  if (local) PutPalette(body, own, ids);
  body.push_back(static_cast<std::uint8_t>(minCodeSize));
  PutBlocks(body, best);
}

std::vector<std::uint8_t> GifWriter::Finish() {
  State& s = *state_;
  s.WritePending({}, s.before.empty() ? kKeep : kKeep);
  if (s.frames == 0) return {};
  std::vector<std::uint8_t> file = {'G', 'I', 'F', '8', '9', 'a'};
  PutWord(file, s.width);
  PutWord(file, s.height);
  file.push_back(static_cast<std::uint8_t>(0x80 | 7 << 4 | (s.common.Bits() - 1)));
  file.push_back(0);  // background: viewers show nothing there
  file.push_back(0);  // square pixels
  PutPalette(file, s.common, s.ids);
  if (s.frames > 1) {
    static constexpr std::uint8_t kForever[] = {0x21, 0xFF, 11,  'N', 'E', 'T', 'S', 'C', 'A', 'P',
                                                'E',  '2',  '.', '0', 3,   1,   0,   0,   0};
    file.insert(file.end(), std::begin(kForever), std::end(kForever));
  }
  file.insert(file.end(), s.body.begin(), s.body.end());
  if (!s.comment.empty()) {
    file.push_back(0x21);
    file.push_back(0xFE);
    PutBlocks(file, {reinterpret_cast<const std::uint8_t*>(s.comment.data()), s.comment.size()});
  }
  file.push_back(0x3B);
  return file;
}

}  // namespace glyphmotion
