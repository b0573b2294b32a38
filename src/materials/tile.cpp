// SPDX-License-Identifier: MIT
#include "materials/tile.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <string_view>
#include <vector>

#include "materials/library_file.h"
#include "materials/shipped.h"
#include "platform/files.h"
#include "platform/run_state.h"
#include "resources/builtin_tile.h"

namespace glyphmotion {
namespace {

constexpr char kFileSignature[] = "TESSMTXf";
constexpr char kItemSignature[] = "MTXi";

#pragma pack(push, 1)
struct FileHeader {
  char signature[8];
  std::uint32_t updateTime;
  char machineName[262], machineOrganization[262], registrationName[262];
  std::uint32_t registeredUser;
  std::uint32_t versionMajor, versionMinor, versionLetter;
  std::uint32_t reserved;
  std::uint32_t itemCount;
  std::uint32_t writeable;
  std::uint8_t reserved826[256];
};
struct ItemHeader {
  char signature[4];
  std::uint32_t tileSize;
  std::uint8_t reserved[64];
};
#pragma pack(pop)
static_assert(sizeof(FileHeader) == 1082 && offsetof(FileHeader, itemCount) == 818 && sizeof(ItemHeader) == 72);

bool ReadHeader(FileReader& file, FileHeader& header) {
  return file && file.Read(&header, sizeof(header)) &&
         std::memcmp(header.signature, kFileSignature, sizeof(header.signature)) == 0;
}

// Reads the tile after its header. The size is checked against the rest of the file.
PackedDib ReadTile(FileReader& file, std::uint32_t size) {
  if (size > file.Remaining() || size > kMaxDibBytes) return {};
  PackedDib tile(AllocateBlock(size));
  void* bytes = LockBlock(tile.Handle());
  const bool whole = bytes && file.Read(bytes, size);
  if (bytes) UnlockBlock(tile.Handle());
  return whole ? std::move(tile) : PackedDib{};
}

bool IsShippedName(std::string_view path) {
  const std::size_t separator = path.find_last_of("/\\");
  return path.substr(separator == std::string_view::npos ? 0 : separator + 1) == kTileLibraryName;
}

template <std::size_t N>
void PutName(char (&field)[N], const std::string& name) {
  std::memcpy(field, name.data(), std::min(name.size(), N - 1));
}

// Tiles of the shipped library that the run has read: there are 71 material buttons, and all begin with the same one.
struct ShippedTiles {
  std::map<std::uint32_t, std::vector<std::uint8_t>> byIndex;
};

PackedDib LoadShippedTile(std::uint32_t index) {
  auto& known = CurrentRun().Member<ShippedTiles>().byIndex;
  if (const auto at = known.find(index); at != known.end()) {
    PackedDib tile(AllocateBlock(at->second.size()));
    const LockedBlock<std::uint8_t> bytes(tile.Handle());
    if (bytes) std::memcpy(bytes.get(), at->second.data(), at->second.size());
    return tile;
  }
  PackedDib tile = LoadMatrixTile(ShippedLibraryPath(kTileLibraryName), index);
  if (const LockedBlock<std::uint8_t> bytes(tile.Handle()); bytes)
    known.try_emplace(index, bytes.get(), bytes.get() + BlockSize(tile.Handle()));
  return tile;
}

void Append(std::string& bytes, const void* data, std::size_t count) {
  bytes.append(static_cast<const char*>(data), count);
}

}  // namespace

std::string PathOfTile(const TileSpec& tile) {
  return std::string(tile.TilePath, std::find(tile.TilePath, std::end(tile.TilePath) - 1, '\0'));
}

void SetTilePath(TileSpec& tile, const std::string& path) noexcept {
  std::memset(tile.TilePath, 0, sizeof(tile.TilePath));
  std::memcpy(tile.TilePath, path.data(), std::min(path.size(), sizeof(tile.TilePath) - 1));
}

PackedDib LoadMatrixTile(const std::string& path, std::uint32_t index) noexcept {
  FileReader file(path);
  FileHeader header;
  if (!ReadHeader(file, header)) return {};
  for (std::uint32_t i = 0; i < header.itemCount; ++i) {
    ItemHeader item;
    if (!file.Read(&item, sizeof(item))) return {};
    if (i == index && std::memcmp(item.signature, kItemSignature, sizeof(item.signature)) == 0) {
      return ReadTile(file, item.tileSize);
    }
    if (!file.Skip(item.tileSize)) return {};
  }
  return {};
}

void LoadTileOf(TileSpec& tile) noexcept {
  tile.TileBitmap = 0;
  try {
    const std::string path = PathOfTile(tile);
    if (path.empty()) return;
    PackedDib loaded = LoadMatrixTile(path, tile.TileIndex);
    if (!loaded && IsShippedName(path)) loaded = LoadShippedTile(tile.TileIndex);
    tile.TileBitmap = WordOf(loaded.Release());
  } catch (...) {
  }
}

PackedDib RenderTile(const TileSpec& parameters) noexcept {
  const std::int64_t width = std::int64_t{parameters.Right} - parameters.Left,
                     height = std::int64_t{parameters.Bottom} - parameters.Top;
  if (width > INT32_MAX || height > INT32_MAX) return {};
  PackedDib picture = BlankDib(static_cast<int>(width), static_cast<int>(height), nullptr, 24);
  const DibView to(picture);
  if (!to) return {};
  const DibView tile(HandleOf(parameters.TileBitmap));
  // One band of tiles, filling each row by doubling; the rows below repeat it.
  const int across = std::min(tile ? tile.Width() : kBuiltinTileSide, to.Width());
  const int band = std::min(tile ? tile.Height() : kBuiltinTileSide, to.Height());
  const auto rowBytes = static_cast<std::size_t>(to.Width()) * 3;
  if (tile) {
    CopyRegion(to, 0, 0, tile, 0, 0, across, band);
  } else {
    for (int y = 0; y < band && !EndRequested(); ++y) {
      for (int x = 0; x < across; ++x) to.SetPixel(x, y, kBuiltinTile[y * kBuiltinTileSide + x]);
    }
  }
  for (int y = 0; y < band; ++y) {
    std::uint8_t* row = to.Row(y);
    for (std::size_t done = static_cast<std::size_t>(across) * 3; done < rowBytes;) {
      const std::size_t count = std::min(done, rowBytes - done);
      std::memcpy(row + done, row, count);
      done += count;
    }
  }
  for (int y = band; y < to.Height() && !EndRequested(); ++y) std::memcpy(to.Row(y), to.Row(y - band), rowBytes);
  return picture;
}

PackedDib TileTo24Bit(const PackedDib& bitmap) noexcept {
  const DibView from(bitmap);
  if (!from) return {};
  PackedDib picture = BlankDib(from.Width(), from.Height(), nullptr, 24);
  const DibView to(picture);
  if (!to) return {};
  const Palette palette = from.TablePalette();
  for (int y = 0; y < from.Height(); ++y) {
    for (int x = 0; x < from.Width(); ++x) {
      std::uint32_t value = from.GetPixel(x, y);
      if (from.Bits() == 1) {
        value = value ? 0xFFFFFF : 0;
      } else if (from.Bits() <= 8) {
        value = ColourOf(palette[value]);
      }
      to.SetPixel(x, y, value & 0xFFFFFF);
    }
  }
  return picture;
}

bool ReadTileLibrary(const std::string& path, TileLibrary& library) noexcept {
  FileReader file(path);
  FileHeader header;
  if (!ReadHeader(file, header)) return false;
  try {
    library.writeable = header.writeable != 0;
    library.tiles.clear();
    for (std::uint32_t i = 0; i < header.itemCount; ++i) {
      ItemHeader item;
      if (!file.Read(&item, sizeof(item))) return false;
      if (std::memcmp(item.signature, kItemSignature, sizeof(item.signature)) != 0) {
        if (!file.Skip(item.tileSize)) return false;
        continue;
      }
      PackedDib tile = ReadTile(file, item.tileSize);
      if (!tile) return false;
      library.tiles.push_back(std::move(tile));
    }
    return true;
  } catch (...) {
    return false;
  }
}

bool WriteTileLibrary(const std::string& path, const TileLibrary& library, const LibraryStamp& stamp) noexcept {
  try {
    FileHeader header{};
    std::memcpy(header.signature, kFileSignature, sizeof(header.signature));
    header.updateTime = static_cast<std::uint32_t>(stamp.seconds);
    PutName(header.machineName, stamp.machineName);
    PutName(header.machineOrganization, stamp.machineOrganization);
    PutName(header.registrationName, stamp.registrationName);
    header.registeredUser = stamp.registered;
    header.versionMajor = 16;
    header.versionLetter = 'a';
    header.writeable = library.writeable;
    std::string bytes(sizeof(header), '\0');
    for (const PackedDib& tile : library.tiles) {
      const std::size_t size = BlockSize(tile.Handle());
      const void* data = LockBlock(tile.Handle());
      if (!data) continue;
      ItemHeader item{};
      std::memcpy(item.signature, kItemSignature, sizeof(item.signature));
      item.tileSize = static_cast<std::uint32_t>(size);
      Append(bytes, &item, sizeof(item));
      Append(bytes, data, size);
      UnlockBlock(tile.Handle());
      ++header.itemCount;
    }
    std::memcpy(bytes.data(), &header, sizeof(header));
    BackUpFile(path);
    return AtomicWriteFile(path, bytes);
  } catch (...) {
    return false;
  }
}

}  // namespace glyphmotion
