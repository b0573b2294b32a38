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

/// The markers that count: MarkerCount, but no more than there are. (A packed field is read as a value: the library's
/// min takes references, which a field without alignment has none of.)
inline int MarkerCountOf(const FountainSpec& fountain) noexcept {
  const std::uint32_t count = fountain.MarkerCount;
  return static_cast<int>(count < kMaxMarkers ? count : kMaxMarkers);
}

/// Mode 0: no markers; 1: one grey; 2: the spectrum of seven. From black to white. Other modes as 0.
void DefaultFountain(FountainSpec& fountain, int mode) noexcept;

/// The 581 bytes of the disk form: the handle narrowed to four zero bytes.
void FountainToDisk(std::uint8_t* dest, const FountainSpec& source) noexcept;
/// The memory form of 581 bytes; the preview is cleared.
void FountainFromDisk(FountainSpec& dest, const std::uint8_t* source) noexcept;

/// trunc(position / 255.0 * width) of each of the first min(MarkerCount, 64) markers into `out`; their count.
int MarkerPositions(const FountainSpec& fountain, int width, int (&out)[kMaxMarkers]) noexcept;

/// A new 24-bit bitmap, colours running from left to right; nothing on failure. Markers are drawn in their order: one
/// that lies before its predecessor moves the pen back without drawing.
PackedDib FountainToBitmap(const FountainSpec& fountain, int width, int height) noexcept;

/// By position, where 0 counts as the highest: a zeroed marker goes last, and so does a true marker at 0.
void SortMarkers(FountainSpec& fountain) noexcept;

/// Deletes a marker: its entry is zeroed, falls to the end of the sort and is no longer counted. False for an index
/// outside the table.
bool RemoveMarker(FountainSpec& fountain, int index) noexcept;

/// A position that no marker has, near `position`; -1 when there are 64 markers or the search finds none. The search
/// steps to and fro within 0 to 63, odd as that is for positions up to 255, and fails when it begins to circle.
int FreePosition(const FountainSpec& fountain, int position) noexcept;

/// The library of favourites: start, end and markers of each; flags and names are not kept. False when the file is
/// missing or foreign, or breaks off; `fountains` then holds what came before.
bool ReadFountainLibrary(const std::string& path, std::vector<FountainSpec>& fountains) noexcept;

/// Writes a whole library, after a copy of the old file as path + ".bak". `seconds` since 1970 go into the header.
bool WriteFountainLibrary(const std::string& path, const std::vector<FountainSpec>& fountains,
                          std::int64_t seconds) noexcept;

/// Writes the library `from`, with one fountain more, to `path`, which may be the same. A missing one counts as empty.
/// False when `from` is not a library or `path` cannot be written.
bool AddToFountainLibrary(const std::string& from, const std::string& path, const FountainSpec& fountain,
                          std::int64_t seconds) noexcept;

}  // namespace glyphmotion
