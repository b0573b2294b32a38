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

// The box around all places where `differs(a, b)`, which is false for equal ids; rows are scanned from both ends.
template <typename Differs>
Box BoxOf(const std::vector<Id>& a, const std::vector<Id>& b, int width, int height, Differs differs) {
  Box box{width, height, 0, 0};
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

// Numbers for colours: palette entries of one colour are one and the same, here and in the file.
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

// One palette under construction: ids to slots.
struct Slots {
  std::vector<std::uint32_t> colours;
  std::vector<std::int16_t> slotOfId;  // -1: none
  int reserved = 0;                    // entries used, a transparent one past the colours included

  int SlotOf(Id id) const { return id < slotOfId.size() ? slotOfId[id] : -1; }
  void Append(Id id, std::uint32_t colour) {
    if (slotOfId.size() <= id) slotOfId.resize(std::size_t{id} + 1, -1);
    slotOfId[id] = static_cast<std::int16_t>(colours.size());
    colours.push_back(colour);
    Reserve(static_cast<int>(colours.size()));
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

void PutPalette(std::vector<std::uint8_t>& out, const Slots& slots) {
  for (std::size_t i = 0; i < std::size_t{1} << slots.Bits(); ++i) {
    const std::uint32_t colour = i < slots.colours.size() ? slots.colours[i] : 0;
    for (int c = 0; c < 3; ++c) out.push_back(static_cast<std::uint8_t>(colour >> (8 * c)));
  }
}

enum Disposal { kKeep = 1, kToBackground = 2 };

// A frame that has been compressed. Its palette slots may still be renumbered.
struct WrittenFrame {
  Box crop;
  Disposal disposal = kKeep;
  int delay = 0, wildcard = -1;
  std::optional<Slots> own;             // the frame's own palette
  std::vector<std::uint8_t> usedSlots;  // of the common palette, without the wildcard
  LzwCodes codes;
};

// The frames by the number of their colours, fewest first, each adding the colours that are not yet placed: so the
// frames with few colours get by with short codes. Gives the new slot of each slot.
std::array<std::uint8_t, 256> OrderSlots(const std::vector<WrittenFrame>& frames, std::size_t count) {
  std::vector<const WrittenFrame*> order;
  for (const WrittenFrame& frame : frames)
    if (!frame.own) order.push_back(&frame);
  std::stable_sort(order.begin(), order.end(),
                   [](const auto* a, const auto* b) { return a->usedSlots.size() < b->usedSlots.size(); });
  std::array<std::uint8_t, 256> newSlot{};
  std::array<bool, 256> placed{};
  std::size_t next = 0;
  const auto place = [&](std::size_t slot) {
    if (!placed[slot]) newSlot[slot] = static_cast<std::uint8_t>(next++);
    placed[slot] = true;
  };
  for (const WrittenFrame* frame : order)
    for (const std::uint8_t slot : frame->usedSlots) place(slot);
  for (std::size_t slot = 0; slot < count; ++slot) place(slot);
  return newSlot;
}

int CodeSize(int largest) {
  int bits = 2;
  while (1 << bits <= largest) ++bits;
  return bits;
}

// A frame's bytes.
struct PackedFrame {
  int codeSize = 2, wildcard = -1;
  std::vector<std::uint8_t> bytes;
};

// Packs a frame as it is.
PackedFrame Pack(const WrittenFrame& frame) {
  std::array<std::uint8_t, 256> same{};
  for (std::size_t i = 0; i < same.size(); ++i) same[i] = static_cast<std::uint8_t>(i);
  PackedFrame packed{frame.codes.minCodeSize, frame.wildcard, {}};
  PackLzw(frame.codes, packed.codeSize, same, packed.bytes);
  return packed;
}

// Packs a frame with new slots for its literals, and a wildcard that is free among them. False when the codes would
// not fit any more.
bool PackRenumbered(const WrittenFrame& frame, const std::array<std::uint8_t, 256>& newSlot, PackedFrame& packed) {
  std::array<std::uint8_t, 256> literal{};
  std::array<bool, 257> taken{};
  int largest = 0;
  for (const std::uint8_t slot : frame.usedSlots) {
    literal[slot] = newSlot[slot];
    taken[newSlot[slot]] = true;
    largest = std::max(largest, int{newSlot[slot]});
  }
  if (frame.wildcard >= 0) {
    const auto gap = static_cast<int>(std::find(taken.begin(), taken.end(), false) - taken.begin());
    literal[static_cast<std::size_t>(frame.wildcard)] = static_cast<std::uint8_t>(gap);
    packed.wildcard = gap;
    largest = std::max(largest, gap);
  }
  packed.codeSize = CodeSize(largest);
  return PackLzw(frame.codes, packed.codeSize, literal, packed.bytes);
}

void PutFrame(std::vector<std::uint8_t>& out, const WrittenFrame& frame, const PackedFrame& packed) {
  const bool transparent = packed.wildcard >= 0;
  for (const int byte : {0x21, 0xF9, 4, frame.disposal << 2 | (transparent ? 1 : 0)})
    out.push_back(static_cast<std::uint8_t>(byte));
  PutWord(out, frame.delay);
  out.push_back(static_cast<std::uint8_t>(std::max(packed.wildcard, 0)));
  out.push_back(0);
  out.push_back(0x2C);
  for (const int value : {frame.crop.left, frame.crop.top, frame.crop.Width(), frame.crop.Height()})
    PutWord(out, value);
  out.push_back(static_cast<std::uint8_t>(frame.own ? 0x80 | (frame.own->Bits() - 1) : 0));
  if (frame.own) PutPalette(out, *frame.own);
  out.push_back(static_cast<std::uint8_t>(packed.codeSize));
  PutBlocks(out, packed.bytes);
}

}  // namespace

struct GifWriter::State {
  int width = 0, height = 0;
  std::vector<Id> before, shown, wanted;  // screens of ids
  bool pending = false;
  int pendingDelay = 0;
  ColourIds ids;
  std::array<Id, 256> idOfIndex{};  // of the last frame's palette
  std::array<std::uint8_t, 768> lastPalette{};
  int lastTransparent = -1;
  bool idsStand = false;
  Slots common;
  std::string comment;
  std::vector<WrittenFrame> encoded;
  std::vector<std::uint8_t> symbols, free, written, freedom, varied;
  LzwCodes attempt, best;

  std::size_t Size() const { return static_cast<std::size_t>(width) * static_cast<std::size_t>(height); }
  void Translate(const GifFrame& frame);
  const std::array<Id, 256>& IdsOf(const GifFrame& frame);
  void WritePending(const Box& mustCover, Disposal disposal);
  void Encode(const Box& crop, Disposal disposal);

  // Pixels of the crop by colour.
  struct Census {
    std::vector<std::uint32_t> must, may;  // by id: pixels that change, pixels that stay; 1 may stand for any number
    bool hasFree = false, hasNothing = false, onlyWildcards = false;
  };
  // How a frame is going to be written.
  struct Plan {
    Slots* slots = nullptr;
    int wildcard = -1;           // the transparent slot; -1: none is left
    int codeSize = 2;            // that holds what must be written, and the wildcard
    bool needsWildcard = false;  // it is used
    bool choice = false;         // some pixels are free
  };
  Census Count(const Box& crop) const;
  void CountExactly(const Box& crop, Census& census) const;
  static std::vector<Id> ColoursToWrite(Census& census);
  int NearestSlot(const Slots& palette, const std::vector<Id>& used, Id id) const;
  // How free pixels are written: as their colours, as the dictionary likes, so that runs go on, as the wildcard where
  // they vary, as the wildcard.
  enum class Method { Plain, Choice, Runs, Varied, Wildcards };
  struct Result {
    std::size_t cost = SIZE_MAX;
    Method method = Method::Plain;
    LzwMode mode;
  };
  static void ChooseWildcard(const Census& census, const std::vector<Id>& used, const std::array<bool, 257>& taken,
                             Plan& plan);
  Plan CollectSymbols(const Box& crop, Slots& own);
  void FillSymbols(const Box& crop, const std::vector<std::uint8_t>& slotOf);
  void MarkVaried();
  std::span<const std::uint8_t> Arrange(Method method, const Plan& plan);
  void Try(Method method, LzwMode mode, Plan& plan, Result& result);
  void Compress(Plan& plan);
  std::vector<PackedFrame> PackAll();

  Method lastMethod = Method::Plain;
  LzwMode lastMode;
  int trialCountdown = 0, trialPeriod = 1;  // frames until the other ways are tried again
};

GifWriter::GifWriter(int width, int height) : state_(std::make_unique<State>()) {
  state_->width = std::clamp(width, 1, 65535);
  state_->height = std::clamp(height, 1, 65535);
}
GifWriter::~GifWriter() = default;
GifWriter::GifWriter(GifWriter&&) noexcept = default;

void GifWriter::SetComment(const std::string& text) { state_->comment = text; }

// The table from palette index to id.
const std::array<Id, 256>& GifWriter::State::IdsOf(const GifFrame& frame) {
  const bool same = idsStand && frame.transparentIndex == lastTransparent &&
                    std::equal(frame.palette.begin(), frame.palette.end(), lastPalette.begin());
  if (same) return idOfIndex;
  std::copy(frame.palette.begin(), frame.palette.end(), lastPalette.begin());
  lastTransparent = frame.transparentIndex;
  idsStand = true;
  for (std::size_t i = 0; i < 256; ++i)
    if (static_cast<int>(i) != frame.transparentIndex) idOfIndex[i] = ids.IdOf(ColourIds::ColourAt(frame.palette, i));
  return idOfIndex;
}

// The screen as it looks with `frame` on it, into `wanted`.
void GifWriter::State::Translate(const GifFrame& frame) {
  if (ids.colours.size() > kMaxIds) {
    // Hundreds of palettes: start the numbering afresh. What is on the screen then equals nothing that is to come.
    WritePending({}, kKeep);
    std::replace_if(
        shown.begin(), shown.end(), [](Id id) { return id != kClear; }, kUnknown);
    before = shown;
    ids = {};
    idsStand = false;
    common.slotOfId.clear();
  }
  const Id* idOf = IdsOf(frame).data();
  const int columns = std::min(width, frame.width), rows = std::min(height, frame.height);
  wanted = shown;
  if (frame.standAlone) std::fill(wanted.begin(), wanted.end(), kClear);
  const int transparent = frame.transparentIndex;
  for (int y = 0; y < rows; ++y) {
    const std::uint8_t* in = frame.indices.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(frame.width);
    Id* out = wanted.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    if (transparent < 0 || transparent > 255) {
      for (int x = 0; x < columns; ++x) out[x] = idOf[in[x]];
    } else {
      for (int x = 0; x < columns; ++x) out[x] = in[x] == transparent ? out[x] : idOf[in[x]];
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
  for (int y = crop.top; y < crop.bottom; ++y) {
    const std::size_t at =
        static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(crop.left);
    std::copy_n(&shown[at], crop.Width(), &before[at]);
  }
  if (disposal != kToBackground) return;
  for (int y = crop.top; y < crop.bottom; ++y) {
    Id* row = before.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    std::fill(row + crop.left, row + crop.right, kClear);
  }
}

// Finds the crop's colours: those that must be written, and those of pixels that stay as they were. One store a pixel;
// how many there are matters only for colours that have no slot yet, and where there are too many.
GifWriter::State::Census GifWriter::State::Count(const Box& crop) const {
  Census census;
  const std::size_t count = ids.colours.size();
  std::vector<std::uint8_t> seen(2 * (count + 1));  // the last one stands for what is no colour
  for (int y = crop.top; y < crop.bottom; ++y) {
    const std::size_t start = static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    const Id* was = before.data() + start;
    const Id* is = shown.data() + start;
    for (int x = crop.left; x < crop.right; ++x)
      seen[(was[x] == is[x] ? count + 1 : 0) + std::min<std::size_t>(is[x], count)] = 1;
  }
  const auto middle = seen.begin() + static_cast<std::ptrdiff_t>(count) + 1;
  census.must.assign(seen.begin(), middle - 1);
  census.may.assign(middle, seen.end() - 1);
  census.hasNothing = *(middle - 1) || seen.back();
  census.hasFree = std::find(middle, seen.end(), 1) != seen.end();
  std::size_t colours = 0;
  bool isNew = false;
  for (std::size_t id = 0; id < count; ++id) {
    if (!census.must[id] && !census.may[id]) continue;
    ++colours;
    isNew |= common.SlotOf(static_cast<Id>(id)) < 0;
  }
  if (isNew || colours >= 256) CountExactly(crop, census);
  return census;
}

void GifWriter::State::CountExactly(const Box& crop, Census& census) const {
  std::fill(census.must.begin(), census.must.end(), 0u);
  std::fill(census.may.begin(), census.may.end(), 0u);
  for (int y = crop.top; y < crop.bottom; ++y) {
    const std::size_t start = static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    const Id* was = before.data() + start;
    const Id* is = shown.data() + start;
    for (int x = crop.left; x < crop.right; ++x)
      if (is[x] < kUnknown) ++(was[x] == is[x] ? census.may : census.must)[is[x]];
  }
}

// The colours to write, the most frequent first. Usually all of the crop; only those that must be written where that
// would be more than a palette holds. Then even these may be too many, by one, beside a transparent index: the rarest
// gives way to its nearest neighbour.
std::vector<Id> GifWriter::State::ColoursToWrite(Census& census) {
  std::vector<Id> used;
  const auto collect = [&](bool all) {
    used.clear();
    for (std::size_t id = 0; id < census.must.size(); ++id)
      if (census.must[id] || (all && census.may[id])) used.push_back(static_cast<Id>(id));
  };
  collect(true);
  census.onlyWildcards = used.size() + (census.hasNothing ? 1 : 0) > 256;
  if (census.onlyWildcards) collect(false);
  std::stable_sort(used.begin(), used.end(),
                   [&](Id a, Id b) { return census.must[a] + census.may[a] > census.must[b] + census.may[b]; });
  if (census.onlyWildcards && used.size() == 256) used.pop_back();
  return used;
}

int GifWriter::State::NearestSlot(const Slots& palette, const std::vector<Id>& used, Id id) const {
  const auto distance = [&](Id other) {
    int sum = 0;
    for (int shift = 0; shift < 24; shift += 8) {
      const int d =
          static_cast<int>(ids.colours[id] >> shift & 255) - static_cast<int>(ids.colours[other] >> shift & 255);
      sum += d * d;
    }
    return sum;
  };
  return palette.SlotOf(
      *std::min_element(used.begin(), used.end(), [&](Id a, Id b) { return distance(a) < distance(b); }));
}

// A slot for the wildcard: one that no pixel of the crop has, or, where that would make the codes longer, one that only
// free pixels have. Those of them that the codes don't reach are then written as the wildcard.
void GifWriter::State::ChooseWildcard(const Census& census, const std::vector<Id>& used,
                                      const std::array<bool, 257>& taken, Plan& plan) {
  std::array<bool, 257> must{};
  int largest = 0;
  for (const Id id : used) {
    const int slot = plan.slots->SlotOf(id);
    if (!census.must[id]) continue;
    must[static_cast<std::size_t>(slot)] = true;
    largest = std::max(largest, slot);
  }
  plan.needsWildcard = census.hasNothing || census.onlyWildcards;
  const auto gap = [](const std::array<bool, 257>& slots) {
    return static_cast<int>(std::find(slots.begin(), slots.end(), false) - slots.begin());
  };
  plan.wildcard = gap(taken);
  if (!plan.needsWildcard && CodeSize(std::max(plan.wildcard, largest)) > CodeSize(std::max(gap(must), largest)))
    plan.wildcard = gap(must);
  if (plan.wildcard > 255 || !(census.hasFree || census.hasNothing)) plan.wildcard = -1;
  plan.codeSize = CodeSize(std::max(plan.wildcard, largest));
  plan.choice = census.hasFree && plan.wildcard >= 0;
}

// Palette slots for the crop's pixels into `symbols`, freedom into `free`.
GifWriter::State::Plan GifWriter::State::CollectSymbols(const Box& crop, Slots& own) {
  Census census = Count(crop);
  const std::vector<Id> used = ColoursToWrite(census);
  const auto missing =
      static_cast<std::size_t>(std::count_if(used.begin(), used.end(), [&](Id id) { return common.SlotOf(id) < 0; }));
  Plan plan;
  plan.slots = common.colours.size() + missing <= 256 ? &common : &own;
  for (const Id id : used)
    if (plan.slots->SlotOf(id) < 0) plan.slots->Append(id, ids.colours[id]);
  std::array<bool, 257> taken{};
  for (const Id id : used) taken[static_cast<std::size_t>(plan.slots->SlotOf(id))] = true;
  ChooseWildcard(census, used, taken, plan);

  const std::size_t count = ids.colours.size();
  std::vector<std::uint8_t> slotOf(count + 1, static_cast<std::uint8_t>(plan.wildcard));
  for (std::size_t id = 0; id < count; ++id) {
    const int slot = census.must[id] || census.may[id] ? plan.slots->SlotOf(static_cast<Id>(id)) : 0;
    const bool given = slot >= 0 && taken[static_cast<std::size_t>(slot)];
    slotOf[id] = static_cast<std::uint8_t>(
        given || !census.must[id] ? std::max(slot, 0) : NearestSlot(*plan.slots, used, static_cast<Id>(id)));
  }
  FillSymbols(crop, slotOf);
  if (census.onlyWildcards)
    for (std::size_t i = 0; i < symbols.size(); ++i)
      if (free[i]) symbols[i] = static_cast<std::uint8_t>(plan.wildcard);
  return plan;
}

// `slotOf`: by id; the last one for what is no colour.
void GifWriter::State::FillSymbols(const Box& crop, const std::vector<std::uint8_t>& slotOf) {
  const auto columns = static_cast<std::size_t>(crop.Width());
  symbols.resize(columns * static_cast<std::size_t>(crop.Height()));
  free.resize(symbols.size());
  const unsigned last = static_cast<unsigned>(slotOf.size()) - 1;
  const std::uint8_t* slots = slotOf.data();
  std::uint8_t* symbol = symbols.data();
  std::uint8_t* stays = free.data();
  for (int y = crop.top; y < crop.bottom; ++y, symbol += columns, stays += columns) {
    const std::size_t start = static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
    const Id* was = before.data() + start + crop.left;
    const Id* is = shown.data() + start + crop.left;
    for (std::size_t x = 0; x < columns; ++x) stays[x] = was[x] == is[x];
    for (std::size_t x = 0; x < columns; ++x) symbol[x] = slots[std::min<unsigned>(is[x], last)];
  }
}

// Marks the runs of free pixels that change colour often: the edges of letters that stand still, for example. Their
// colours would cost more than the wildcard.
void GifWriter::State::MarkVaried() {
  constexpr int kOften = 3;
  varied.assign(free.size(), 0);
  for (std::size_t i = 0; i < free.size();) {
    std::size_t end = i;
    int changes = 0;
    for (; end < free.size() && free[end]; ++end) changes += end > i && symbols[end] != symbols[end - 1];
    if (changes >= kOften) std::fill(&varied[i], &varied[i] + (end - i), std::uint8_t{1});
    i = end + 1;
  }
}

// Arranges `symbols` for a method into `written`, and gives the pixels that the compressor may choose for.
std::span<const std::uint8_t> GifWriter::State::Arrange(Method method, const Plan& plan) {
  written = symbols;
  const auto wildcard = static_cast<std::uint8_t>(plan.wildcard);
  const int reach = 1 << plan.codeSize;
  freedom = free;
  if (method == Method::Varied) MarkVaried();
  for (std::size_t i = 0; i < symbols.size(); ++i) {
    if (!free[i]) continue;
    const bool forced = symbols[i] >= reach || symbols[i] == wildcard;
    const bool runGoesOn = i > 0 && written[i - 1] == symbols[i];
    if (forced || method == Method::Wildcards || (method == Method::Varied && varied[i]) ||
        (method == Method::Runs && !runGoesOn))
      written[i] = wildcard;
    freedom[i] = !forced;
  }
  if (method == Method::Choice) return freedom;
  return {};
}

void GifWriter::State::Try(Method method, LzwMode mode, Plan& plan, Result& result) {
  const bool plain = method == Method::Plain;
  const std::span<const std::uint8_t> choices = plain ? std::span<const std::uint8_t>{} : Arrange(method, plan);
  const int codeSize = plain ? CodeSize(*std::max_element(symbols.begin(), symbols.end())) : plan.codeSize;
  // A palette that has to grow for the transparent index is paid back over some frames.
  const bool grows = !plain && plan.wildcard >= 1 << plan.slots->Bits();
  const std::size_t extra = grows ? (std::size_t{3} << plan.slots->Bits()) / 8 : 0;
  const std::size_t limit = result.cost == SIZE_MAX ? SIZE_MAX : result.cost * 8;  // bits that cannot win any more
  CompressLzw(plain ? symbols : written, choices, static_cast<std::uint8_t>(plan.wildcard), codeSize, mode, limit,
              attempt);
  const std::size_t cost = (attempt.bits + 7) / 8 + extra;
  if (cost >= result.cost) return;
  std::swap(best, attempt);
  result = {cost, method, mode};
}

// The shortest of what the freedom allows, into `best`. Neighbouring frames are alike and trying costs time: so the
// way that won last is taken, and the others are tried again the more seldom the longer it stands.
void GifWriter::State::Compress(Plan& plan) {
  constexpr int kLongestPeriod = 8;     // frames
  constexpr std::size_t kSmall = 2048;  // pixels
  const bool trial = symbols.size() < kSmall || trialCountdown-- <= 0;
  Result result;
  if (plan.choice) {
    Try(lastMethod, lastMode, plan, result);
    for (const Method method : {Method::Plain, Method::Choice, Method::Runs, Method::Varied, Method::Wildcards})
      if (trial && method != lastMethod) Try(method, lastMode, plan, result);
  } else {
    Try(Method::Plain, lastMode, plan, result);
  }
  if (trial) {
    const bool overflows = best.bits > 30400;  // about what fills the dictionary
    for (const LzwMode mode :
         {LzwMode{false, true}, LzwMode{false, false}, LzwMode{true, true}, LzwMode{true, false}}) {
      const bool twin = result.method == Method::Choice && mode.lookahead != lastMode.lookahead;
      if (mode != lastMode && !twin && (overflows || !mode.clearWhenFull)) Try(result.method, mode, plan, result);
    }
  }
  if (trial && symbols.size() >= kSmall) {
    const bool stands = result.mode == lastMode && (!plan.choice || result.method == lastMethod);
    trialPeriod = stands ? std::min(trialPeriod * 2, kLongestPeriod) : std::max(trialPeriod / 4, 1);
    // The first frame is no model for the others: they have one before them.
    trialCountdown = encoded.empty() ? 0 : trialPeriod - 1;
  }
  lastMode = result.mode;
  if (plan.choice) lastMethod = result.method;
  plan.needsWildcard = plan.needsWildcard || result.method != Method::Plain;
}

void GifWriter::State::Encode(const Box& crop, Disposal disposal) {
  Slots own;
  Plan plan = CollectSymbols(crop, own);
  WrittenFrame frame;
  Compress(plan);
  frame.crop = crop;
  frame.disposal = disposal;
  frame.delay = pendingDelay;
  if (plan.needsWildcard) frame.wildcard = plan.wildcard;
  if (frame.wildcard >= 0) plan.slots->Reserve(frame.wildcard + 1);
  frame.codes = best;
  const std::array<bool, 256> used = LiteralsOf(best);
  for (std::size_t slot = 0; slot < used.size(); ++slot)
    if (used[slot] && static_cast<int>(slot) != frame.wildcard)
      frame.usedSlots.push_back(static_cast<std::uint8_t>(slot));
  if (plan.slots == &own) frame.own = std::move(own);
  encoded.push_back(std::move(frame));
}

// Packs all frames, with the common palette renumbered when all can follow.
std::vector<PackedFrame> GifWriter::State::PackAll() {
  const auto newSlot = OrderSlots(encoded, common.colours.size());
  std::vector<PackedFrame> frames;
  int entries = static_cast<int>(common.colours.size());
  bool follows = true;
  for (const WrittenFrame& frame : encoded) {
    frames.push_back(frame.own ? Pack(frame) : PackedFrame{});
    if (frame.own) continue;
    follows = PackRenumbered(frame, newSlot, frames.back());
    if (!follows) break;
    entries = std::max(entries, frames.back().wildcard + 1);
  }
  if (!follows) {
    frames.clear();
    for (const WrittenFrame& frame : encoded) frames.push_back(Pack(frame));
    return frames;
  }
  std::vector<std::uint32_t> colours(common.colours.size());
  for (std::size_t slot = 0; slot < colours.size(); ++slot) colours[newSlot[slot]] = common.colours[slot];
  common.colours.swap(colours);
  common.reserved = entries;
  return frames;
}

std::vector<std::uint8_t> GifWriter::Finish() {
  State& s = *state_;
  s.WritePending({}, kKeep);
  if (s.encoded.empty()) return {};
  const std::vector<PackedFrame> packed = s.PackAll();
  std::vector<std::uint8_t> file = {'G', 'I', 'F', '8', '9', 'a'};
  PutWord(file, s.width);
  PutWord(file, s.height);
  file.push_back(static_cast<std::uint8_t>(0x80 | 7 << 4 | (s.common.Bits() - 1)));
  file.push_back(0);  // background: viewers show nothing there
  file.push_back(0);  // square pixels
  PutPalette(file, s.common);
  if (s.encoded.size() > 1) {
    static constexpr std::uint8_t kForever[] = {0x21, 0xFF, 11,  'N', 'E', 'T', 'S', 'C', 'A', 'P',
                                                'E',  '2',  '.', '0', 3,   1,   0,   0,   0};
    file.insert(file.end(), std::begin(kForever), std::end(kForever));
  }
  for (std::size_t i = 0; i < packed.size(); ++i) PutFrame(file, s.encoded[i], packed[i]);
  if (!s.comment.empty()) {
    file.push_back(0x21);
    file.push_back(0xFE);
    PutBlocks(file, {reinterpret_cast<const std::uint8_t*>(s.comment.data()), s.comment.size()});
  }
  file.push_back(0x3B);
  return file;
}

}  // namespace glyphmotion
