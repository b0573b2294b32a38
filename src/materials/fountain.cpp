// SPDX-License-Identifier: MIT
#include "materials/fountain.h"

#include <algorithm>
#include <cstring>

#include "materials/gradient.h"
#include "materials/library_file.h"
#include "platform/files.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kPreviewOffset = offsetof(FountainSpec, Preview);
constexpr std::size_t kAfterPreview = kPreviewOffset + sizeof(FountainSpec::Preview);
constexpr std::size_t kDiskAfterPreview = kPreviewOffset + 4;
constexpr std::size_t kSizeOffset = offsetof(FountainSpec, Size);

#pragma pack(push, 1)
struct LibraryHeader {
  char signature[8];
  std::uint32_t time;
  std::uint32_t itemCount;
  std::uint8_t reserved[64];
};
struct LibraryItem {
  char signature[8];
  std::uint32_t markerCount, startColour, endColour;
  std::uint32_t markers[kMaxMarkers];
  std::uint8_t reserved[64];
};
#pragma pack(pop)
static_assert(sizeof(LibraryHeader) == 80 && sizeof(LibraryItem) == 340);
constexpr char kHeaderSignature[] = "TESSFLHH", kItemSignature[] = "TESSFLHE";

LibraryItem ItemOf(const FountainSpec& fountain) {
  LibraryItem item{};
  std::memcpy(item.signature, kItemSignature, sizeof(item.signature));
  item.markerCount = fountain.MarkerCount;
  item.startColour = fountain.StartColour;
  item.endColour = fountain.EndColour;
  std::memcpy(item.markers, fountain.Markers, sizeof(item.markers));
  return item;
}

template <typename T>
void Append(std::string& bytes, const T& record) {
  bytes.append(reinterpret_cast<const char*>(&record), sizeof(record));
}

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

int MarkerPositions(const FountainSpec& fountain, int width, int (&out)[kMaxMarkers]) noexcept {
  const int count = MarkerCountOf(fountain);
  for (int i = 0; i < count; ++i) out[i] = static_cast<int>(MarkerPosition(fountain.Markers[i]) / 255.0 * width);
  return count;
}

PackedDib FountainToBitmap(const FountainSpec& fountain, int width, int height) noexcept {
  PackedDib picture = BlankDib(width, height, nullptr, 24);
  const DibView to(picture);
  if (!to) return {};
  int positions[kMaxMarkers];
  const int count = MarkerPositions(fountain, width, positions);
  int x = 0;
  Colour colour = fountain.StartColour & 0xFFFFFF;
  const auto drawTo = [&](int end, Colour next) {
    if (end > x) {
      const PackedDib segment = RenderLinearBlend(colour, next, end - x, height, 90);
      const DibView from(segment);
      if (!from) return false;
      CopyRegion(to, x, 0, from, 0, 0, end - x, height);
    }
    x = end;
    colour = next;
    return true;
  };
  for (int i = 0; i < count; ++i) {
    if (!drawTo(positions[i], fountain.Markers[i] & 0xFFFFFF)) return {};
  }
  const Colour last = fountain.Flags & kFountainLooped ? fountain.StartColour : fountain.EndColour;
  if (!drawTo(width, last & 0xFFFFFF)) return {};
  return picture;
}

void SortMarkers(FountainSpec& fountain) noexcept {
  const auto rank = [](std::uint32_t marker) { return MarkerPosition(marker) ? MarkerPosition(marker) : 256; };
  std::uint32_t markers[kMaxMarkers];
  std::memcpy(markers, fountain.Markers, sizeof(markers));
  const int count = MarkerCountOf(fountain);
  std::stable_sort(markers, markers + count, [&](std::uint32_t a, std::uint32_t b) { return rank(a) < rank(b); });
  std::memcpy(fountain.Markers, markers, sizeof(markers));
}

bool RemoveMarker(FountainSpec& fountain, int index) noexcept {
  if (index < 0 || index >= MarkerCountOf(fountain)) return false;
  fountain.MarkerCount = static_cast<std::uint32_t>(MarkerCountOf(fountain));
  fountain.Markers[index] = 0;
  // The last of the entries that sort highest is dropped. The sort is stable, so if a real marker at 0 follows the
  // zeroed entry, the two are swapped first.
  for (std::uint32_t i = static_cast<std::uint32_t>(index) + 1; i < fountain.MarkerCount; ++i) {
    const std::uint32_t marker = fountain.Markers[i];
    fountain.Markers[i] = fountain.Markers[i - 1];
    fountain.Markers[i - 1] = marker;
  }
  SortMarkers(fountain);
  --fountain.MarkerCount;
  return true;
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
  // Position, step and the two flags have fewer states than this: what is left is a cycle.
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

bool ReadFountainLibrary(const std::string& path, std::vector<FountainSpec>& fountains) noexcept {
  FileReader file(path);
  LibraryHeader header;
  if (!file || !file.Read(&header, sizeof(header)) ||
      std::memcmp(header.signature, kHeaderSignature, sizeof(header.signature)) != 0) {
    return false;
  }
  try {
    fountains.clear();
    for (std::uint32_t i = 0; i < header.itemCount; ++i) {
      LibraryItem item;
      if (!file.Read(&item, sizeof(item)) || std::memcmp(item.signature, kItemSignature, sizeof(item.signature)) != 0) {
        return false;
      }
      FountainSpec& fountain = fountains.emplace_back();
      DefaultFountain(fountain, 0);
      fountain.MarkerCount = item.markerCount;
      fountain.StartColour = item.startColour;
      fountain.EndColour = item.endColour;
      std::memcpy(fountain.Markers, item.markers, sizeof(item.markers));
    }
    return true;
  } catch (...) {
    return false;
  }
}

bool WriteFountainLibrary(const std::string& path, const std::vector<FountainSpec>& fountains,
                          std::int64_t seconds) noexcept {
  try {
    LibraryHeader header{};
    std::memcpy(header.signature, kHeaderSignature, sizeof(header.signature));
    header.time = static_cast<std::uint32_t>(seconds);
    header.itemCount = static_cast<std::uint32_t>(fountains.size());
    std::string bytes;
    Append(bytes, header);
    for (const FountainSpec& fountain : fountains) Append(bytes, ItemOf(fountain));
    BackUpFile(path);
    return AtomicWriteFile(path, bytes);
  } catch (...) {
    return false;
  }
}

bool AddToFountainLibrary(const std::string& from, const std::string& path, const FountainSpec& fountain,
                          std::int64_t seconds) noexcept {
  try {
    if (path.empty()) return false;
    std::optional<std::string> read = ReadWholeFile(from, kMaxLibraryBytes);
    if (!read) {
      // A library that is only temporarily unreadable must not be overwritten by a new one.
      return !FileExists(from) && WriteFountainLibrary(path, {fountain}, seconds);
    }
    std::string& bytes = *read;
    LibraryHeader header;
    if (bytes.size() < sizeof(header)) return false;
    std::memcpy(&header, bytes.data(), sizeof(header));
    const std::size_t end = sizeof(header) + std::size_t{header.itemCount} * sizeof(LibraryItem);
    if (std::memcmp(header.signature, kHeaderSignature, sizeof(header.signature)) != 0 || end > bytes.size())
      return false;
    ++header.itemCount;
    std::memcpy(bytes.data(), &header, sizeof(header));
    bytes.resize(end);
    Append(bytes, ItemOf(fountain));
    BackUpFile(path);
    return AtomicWriteFile(path, bytes);
  } catch (...) {
    return false;
  }
}

}  // namespace glyphmotion
