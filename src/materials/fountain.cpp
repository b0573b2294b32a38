// SPDX-License-Identifier: MIT
#include "materials/fountain.h"

#include <algorithm>
#include <cstring>

namespace glyphmotion {
namespace {

constexpr std::size_t kPreviewOffset = offsetof(FountainSpec, Preview);
constexpr std::size_t kAfterPreview = kPreviewOffset + sizeof(FountainSpec::Preview);
constexpr std::size_t kDiskAfterPreview = kPreviewOffset + 4;
constexpr std::size_t kSizeOffset = offsetof(FountainSpec, Size);

}  // namespace

void DefaultFountain(FountainSpec& fountain, int mode) noexcept {
  static constexpr std::uint32_t spectrum[] = {0x20FF0000, 0x40FFFF00, 0x6000FF00, 0x8000FFFF,
                                               0xA00000FF, 0xC0FF00FF, 0xE0CC0099};
  std::memset(&fountain, 0, sizeof(fountain));
  std::memcpy(fountain.Signature, "TESSFOUN", 8);
  fountain.Version = 0x04000001;
  fountain.Size = sizeof(FountainSpec);
  fountain.EndColour = 0xFFFFFFFF;
  if (mode == 1) {
    fountain.MarkerCount = 1;
    fountain.Markers[0] = 0x80808080;
  } else if (mode == 2) {
    fountain.MarkerCount = static_cast<std::uint32_t>(std::size(spectrum));
    std::memcpy(fountain.Markers, spectrum, sizeof(spectrum));
  }
}

void FountainToDisk(std::uint8_t* dest, const FountainSpec& source) noexcept {
  const auto* from = reinterpret_cast<const std::uint8_t*>(&source);
  std::memcpy(dest, from, kPreviewOffset);
  std::memset(dest + kPreviewOffset, 0, 4);
  std::memcpy(dest + kDiskAfterPreview, from + kAfterPreview, sizeof(FountainSpec) - kAfterPreview);
  const std::uint32_t size = kFountainDiskBytes;
  std::memcpy(dest + kSizeOffset, &size, sizeof(size));
}

void FountainFromDisk(FountainSpec& dest, const std::uint8_t* source) noexcept {
  auto* to = reinterpret_cast<std::uint8_t*>(&dest);
  std::memcpy(to, source, kPreviewOffset);
  std::memset(to + kPreviewOffset, 0, sizeof(dest.Preview));
  std::memcpy(to + kAfterPreview, source + kDiskAfterPreview, sizeof(FountainSpec) - kAfterPreview);
  dest.Size = sizeof(FountainSpec);
}

void SortMarkers(FountainSpec& fountain) noexcept {
  const auto rank = [](std::uint32_t marker) { return MarkerPosition(marker) ? MarkerPosition(marker) : 256; };
  std::uint32_t markers[kMaxMarkers];
  std::memcpy(markers, fountain.Markers, sizeof(markers));
  const std::uint32_t count = std::min<std::uint32_t>(fountain.MarkerCount, kMaxMarkers);
  std::stable_sort(markers, markers + count, [&](std::uint32_t a, std::uint32_t b) { return rank(a) < rank(b); });
  std::memcpy(fountain.Markers, markers, sizeof(markers));
}

int FreePosition(const FountainSpec& fountain, int position) noexcept {
  if (fountain.MarkerCount >= kMaxMarkers) return -1;
  const auto taken = [&](int p) {
    for (std::uint32_t i = 0; i < fountain.MarkerCount; ++i) {
      if (MarkerPosition(fountain.Markers[i]) == p) return true;
    }
    return false;
  };
  int p = std::clamp(position, 0, 255), step = -1;
  bool upper = false, lower = false;
  // Position, step and the two flags make fewer states than this: whoever is still here has come round in a circle.
  for (int round = 0; round < 256 * 8; ++round) {
    if (upper && lower) return -1;
    if (!taken(p)) return p;
    if (p < 1) {
      p += 1;
      lower = true;
      step = -1;
    } else {
      if (p >= 63) {
        upper = true;
        step = -1;
      }
      p += step;
      step = -step;
    }
  }
  return -1;
}

}  // namespace glyphmotion
