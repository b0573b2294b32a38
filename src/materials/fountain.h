// SPDX-License-Identifier: MIT
// Fountains: gradients of up to 64 markers between a start and an end colour, and the library file of favourites.
#pragma once

#include <string>
#include <vector>

#include "materials/material.h"

namespace glyphmotion {

constexpr int kMaxMarkers = 64;
constexpr std::size_t kFountainDiskBytes = 581;

constexpr std::uint32_t kFountainKeepsFile = 1;  ///< Flags bit 0
constexpr std::uint32_t kFountainLooped = 2;     ///< Flags bit 1

constexpr std::uint32_t MakeMarker(int position, Colour colour) {
  return static_cast<std::uint32_t>(position & 0xFF) << 24 | (colour & 0xFFFFFF);
}
constexpr int MarkerPosition(std::uint32_t marker) { return static_cast<int>(marker >> 24); }

/// The number of valid markers: MarkerCount, limited to the size of the table. (The packed field is copied first,
/// because std::min takes references and a packed field cannot be bound to one.)
inline int MarkerCountOf(const FountainSpec& fountain) noexcept {
  const std::uint32_t count = fountain.MarkerCount;
  return static_cast<int>(count < kMaxMarkers ? count : kMaxMarkers);
}

/// Mode 0: no markers; 1: one grey; 2: the spectrum of seven. From black to white. Other modes count as 0.
void DefaultFountain(FountainSpec& fountain, int mode) noexcept;

/// The 581 bytes of the disk form: the handle narrowed to four zero bytes.
void FountainToDisk(std::uint8_t* dest, const FountainSpec& source) noexcept;
/// Converts 581 bytes to the memory form; the preview is cleared.
void FountainFromDisk(FountainSpec& dest, const std::uint8_t* source) noexcept;

/// trunc(position / 255.0 * width) of each of the first min(MarkerCount, 64) markers into `out`; their count.
int MarkerPositions(const FountainSpec& fountain, int width, int (&out)[kMaxMarkers]) noexcept;

/// A new 24-bit bitmap, colours running from left to right; nothing on failure. Markers are drawn in order: one before
/// its predecessor moves the pen back without drawing.
PackedDib FountainToBitmap(const FountainSpec& fountain, int width, int height) noexcept;

/// Sorts by position, where 0 counts as the highest: zeroed markers come last, and so does a real marker at 0.
void SortMarkers(FountainSpec& fountain) noexcept;

/// Deletes a marker: its entry is zeroed, sorted to the end and no longer counted. False for an index outside the
/// table.
bool RemoveMarker(FountainSpec& fountain, int index) noexcept;

/// A free position near `position`; -1 when there are 64 markers or the search finds none. The search steps back and
/// forth within 0 to 63 only, although positions go up to 255, and fails once it repeats itself.
int FreePosition(const FountainSpec& fountain, int position) noexcept;

/// The library of favourites: start, end and markers of each; flags and names are not kept. False when the file is
/// missing, malformed or truncated; `fountains` then has the items before the error.
bool ReadFountainLibrary(const std::string& path, std::vector<FountainSpec>& fountains) noexcept;

/// Writes a whole library, after a copy of the old file as path + ".bak". `seconds` since 1970 go into the header.
bool WriteFountainLibrary(const std::string& path, const std::vector<FountainSpec>& fountains,
                          std::int64_t seconds) noexcept;

/// Writes the library `from` plus one fountain to `path`, which may be the same. A missing library counts as empty.
/// False when `from` is not a library or `path` cannot be written.
bool AddToFountainLibrary(const std::string& from, const std::string& path, const FountainSpec& fountain,
                          std::int64_t seconds) noexcept;

}  // namespace glyphmotion
