// SPDX-License-Identifier: MIT
#include "host/encoders/gif_palette.h"

#include <algorithm>
#include <bitset>

#include "host/encoders/gif_frame.h"

namespace glyphmotion {

void GifPalette::Put(std::size_t id, std::size_t slot, std::uint32_t colour) {
  if (slotOfId.size() <= id) slotOfId.resize(id + 1, -1);
  slotOfId[id] = static_cast<std::int16_t>(slot);
  if (colours.size() <= slot) colours.resize(slot + 1);
  colours[slot] = colour;
  Reserve(static_cast<int>(colours.size()));
}

int GifPalette::Bits() const {
  int bits = 1;
  while (1 << bits < reserved) ++bits;
  return bits;
}

namespace {

// An estimate of the bits that the frames' codes take beyond the minimum: the slots determine the code length until
// there are as many strings as slots.
std::size_t CostOf(std::span<const GifWants> frames, const GifPalette& palette) {
  constexpr std::size_t kPixelsPerCode = 3;
  std::size_t cost = 0;
  for (const GifWants& frame : frames) {
    std::array<bool, 257> taken{};
    int largest = 0;
    for (const std::uint16_t id : frame.must) {
      const int slot = palette.SlotOf(id);
      taken[static_cast<std::size_t>(slot)] = true;
      largest = std::max(largest, slot);
    }
    if (frame.wildcard)
      largest = std::max(largest, static_cast<int>(std::find(taken.begin(), taken.end(), false) - taken.begin()));
    const int bits = GifCodeSize(std::min(largest, 255));
    for (int b = 3; b <= bits; ++b) cost += std::min(frame.pixels / kPixelsPerCode + 1, std::size_t{1} << b);
  }
  return cost;
}

// The colours of the frames with the fewest colours first.
std::vector<std::uint16_t> BySmallestFrame(std::span<const GifWants> frames, const std::vector<std::uint16_t>& ids) {
  std::vector<const GifWants*> order;
  for (const GifWants& frame : frames) order.push_back(&frame);
  std::stable_sort(order.begin(), order.end(),
                   [](const auto* a, const auto* b) { return a->must.size() < b->must.size(); });
  std::vector<bool> wanted(65536), placed(65536);
  for (const std::uint16_t id : ids) wanted[id] = true;
  std::vector<std::uint16_t> out;
  const auto place = [&](std::uint16_t id) {
    if (wanted[id] && !placed[id]) out.push_back(id);
    placed[id] = true;
  };
  for (const GifWants* frame : order)
    for (const std::uint16_t id : frame->must) place(id);
  for (const std::uint16_t id : ids) place(id);
  return out;
}

// Takes one frame after the other, always the one with the fewest missing colours.
std::vector<std::uint16_t> ByLeastMissing(std::span<const GifWants> frames, const std::vector<std::uint16_t>& ids) {
  constexpr std::size_t kMostFrames = 2000;
  if (frames.size() > kMostFrames) return ids;
  std::vector<std::int16_t> number(65536, -1);
  for (std::size_t i = 0; i < ids.size(); ++i) number[ids[i]] = static_cast<std::int16_t>(i);
  std::vector<std::bitset<256>> missing(frames.size());
  for (std::size_t f = 0; f < frames.size(); ++f)
    for (const std::uint16_t id : frames[f].must)
      if (number[id] >= 0) missing[f].set(static_cast<std::size_t>(number[id]));
  std::vector<std::uint16_t> out;
  std::bitset<256> placed;
  for (std::size_t step = 0; step < frames.size() && !missing.empty(); ++step) {
    const auto next = std::min_element(missing.begin(), missing.end(), [&](const auto& a, const auto& b) {
      return (a & ~placed).count() < (b & ~placed).count();
    });
    for (std::size_t i = 0; i < ids.size(); ++i)
      if ((*next)[i] && !placed[i]) out.push_back(ids[i]);
    placed |= *next;
    missing.erase(next);
  }
  for (std::size_t i = 0; i < ids.size(); ++i)
    if (!placed[i]) out.push_back(ids[i]);
  return out;
}

// Fills the slots from the last to the first, each time with the colour that the fewest still complete frames use.
std::vector<std::uint16_t> ByFewestLost(std::span<const GifWants> frames, const std::vector<std::uint16_t>& ids) {
  std::vector<std::uint32_t> all(65536);
  for (const GifWants& frame : frames)
    for (const std::uint16_t id : frame.must) ++all[id];
  std::vector<std::uint32_t> count = all;
  std::vector<const GifWants*> whole;
  for (const GifWants& frame : frames) whole.push_back(&frame);
  std::vector<std::uint16_t> left(ids.rbegin(), ids.rend()), out;
  while (!left.empty()) {
    const auto last = std::min_element(left.begin(), left.end(), [&](std::uint16_t a, std::uint16_t b) {
      return std::pair(count[a], all[a]) < std::pair(count[b], all[b]);
    });
    const std::uint16_t id = *last;
    out.push_back(id);
    left.erase(last);
    if (!count[id]) continue;
    std::erase_if(whole, [&](const GifWants* frame) {
      if (std::find(frame->must.begin(), frame->must.end(), id) == frame->must.end()) return false;
      for (const std::uint16_t lost : frame->must) --count[lost];
      return true;
    });
  }
  std::reverse(out.begin(), out.end());
  return out;
}

// Colours that most frames must write come first.
std::vector<std::uint16_t> ByFrames(std::span<const GifWants> frames, std::vector<std::uint16_t> ids) {
  std::vector<std::uint32_t> count(65536);
  for (const GifWants& frame : frames)
    for (const std::uint16_t id : frame.must) ++count[id];
  std::stable_sort(ids.begin(), ids.end(), [&](std::uint16_t a, std::uint16_t b) { return count[a] > count[b]; });
  return ids;
}

}  // namespace

void PutInOrder(std::span<const GifWants> frames, std::vector<std::uint16_t> ids,
                std::span<const std::uint32_t> colours, GifPalette& palette) {
  const auto with = [&](const std::vector<std::uint16_t>& order) {
    GifPalette made = palette;
    for (const std::uint16_t id : order) made.Append(id, colours[id]);
    return made;
  };
  std::vector<GifPalette> made = {with(ids), with(BySmallestFrame(frames, ids)), with(ByFrames(frames, ids)),
                                  with(ByLeastMissing(frames, ids)), with(ByFewestLost(frames, ids))};
  if (palette.colours.empty() && colours.size() <= 256) {
    // If slots equal ids, the frames need no translation.
    GifPalette same;
    for (std::size_t id = 0; id < colours.size(); ++id) same.Put(id, id, colours[id]);
    if (same.Bits() == made[0].Bits()) made.insert(made.begin(), std::move(same));
  }
  std::vector<std::size_t> costs;
  for (const GifPalette& one : made) costs.push_back(CostOf(frames, one));
  palette = made[static_cast<std::size_t>(std::min_element(costs.begin(), costs.end()) - costs.begin())];
}

}  // namespace glyphmotion
