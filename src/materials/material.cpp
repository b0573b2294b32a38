// SPDX-License-Identifier: MIT
#include "materials/material.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "materials/fountain.h"
#include "materials/gradient.h"
#include "materials/surface_texture.h"
#include "materials/texture_library.h"
#include "materials/tile.h"
#include "platform/ascii.h"
#include "platform/files.h"

namespace glyphmotion {
namespace {

constexpr std::size_t kDiskBytes = 1270;
constexpr char kSignature[] = "TESSCMAT";
constexpr std::size_t kSignatureBytes = 8;

constexpr auto kHexValues = [] {
  std::array<std::int8_t, 256> values{};
  for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<std::int8_t>(HexDigit(static_cast<char>(i)));
  return values;
}();

// Identifies a control's own record, in memory and on disk.
void SetHead(std::uint8_t* record) {
  const std::uint32_t size = sizeof(Material);
  std::memcpy(record, kSignature, kSignatureBytes);
  std::memcpy(record + offsetof(Material, Size), &size, sizeof(size));
}

// The texture is a square of the greater side, of which the middle is shown.
PackedDib RenderTexture(TextureSpec& texture, int width, int height) {
  if (!DibSize(width, height, 24)) return {};
  SetTextureBounds(texture, std::max(width, height));
  return GenerateTexture(texture, MiddleOf(texture, width, height));
}

// Where the disk form differs from memory: three handles of 8 bytes are 4 on disk, so the bytes after each have a lower
// offset. The first handle is in the fountain.
constexpr std::size_t kFountainAt = offsetof(Material, Fountain);
constexpr std::size_t kTextureAt = offsetof(Material, Texture);
constexpr std::size_t kTileBitmapAt = offsetof(Material, Tile) + offsetof(TileSpec, TileBitmap);
constexpr std::size_t kTileBoundsAt = offsetof(Material, Tile) + offsetof(TileSpec, Left);
constexpr std::size_t kPreviewAt = offsetof(Material, Preview);
constexpr std::size_t kAverageAt = offsetof(Material, AverageColour);
static_assert(kFountainAt + kFountainDiskBytes == 649 && kTileBitmapAt - 4 == 1182 && kTileBoundsAt - 8 == 1186 &&
              kPreviewAt - 8 == 1234 && kAverageAt - 12 == 1238 && sizeof(Material) - 12 == kDiskBytes);

void ToDisk(std::uint8_t* disk, const Material& material) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(&material);
  std::memset(disk, 0, kDiskBytes);
  std::memcpy(disk, bytes, kFountainAt);
  // A document may contain a record with another header; writing the standard one lets the control load its file again.
  SetHead(disk);
  FountainToDisk(disk + kFountainAt, material.Fountain);
  std::memcpy(disk + kTextureAt - 4, bytes + kTextureAt, kTileBitmapAt - kTextureAt);
  // Reserved bytes are always written as zeros.
  std::memcpy(disk + kTileBoundsAt - 8, bytes + kTileBoundsAt, offsetof(TileSpec, Reserved) - offsetof(TileSpec, Left));
  std::memcpy(disk + kAverageAt - 12, bytes + kAverageAt, sizeof(material.AverageColour));
}

void FromDisk(Material& material, const std::uint8_t* disk) {
  auto* bytes = reinterpret_cast<std::uint8_t*>(&material);
  std::memset(bytes, 0, sizeof(Material));
  std::memcpy(bytes, disk, kFountainAt);
  FountainFromDisk(material.Fountain, disk + kFountainAt);
  std::memcpy(bytes + kTextureAt, disk + kTextureAt - 4, kTileBitmapAt - kTextureAt);
  std::memcpy(bytes + kTileBoundsAt, disk + kTileBoundsAt - 8, kPreviewAt - kTileBoundsAt);
  std::memcpy(bytes + kAverageAt, disk + kAverageAt - 12, sizeof(Material) - kAverageAt);
  SetHead(bytes);
}

}  // namespace

void DefaultMaterial(Material& material, Colour colour) noexcept {
  std::memset(&material, 0, sizeof(material));
  SetHead(reinterpret_cast<std::uint8_t*>(&material));
  material.Version = 0x00040000;
  material.Colour = colour;
  material.Gradient.StartColour = 0x404040;
  material.Gradient.EndColour = 0xC0C0C0;
  material.Gradient.Midpoint = 50;
  material.Gradient.TwoColor = 1;
  DefaultFountain(material.Fountain, 2);
  DefaultTextureSpec(material.Texture);
}

Colour AverageBitmapColour(const PackedDib& bitmap) noexcept {
  const DibView view(bitmap);
  if (!view || view.Bits() != 24) return 0;
  std::uint64_t red = 0, green = 0, blue = 0;
  for (int y = 0; y < view.Height(); ++y) {
    const std::uint8_t* pixel = view.Row(y);
    for (int x = 0; x < view.Width(); ++x, pixel += 3) {
      blue += pixel[0];
      green += pixel[1];
      red += pixel[2];
    }
  }
  const auto count = static_cast<std::uint64_t>(view.Width()) * static_cast<std::uint64_t>(view.Height());
  return MakeColour(static_cast<int>(red / count), static_cast<int>(green / count), static_cast<int>(blue / count));
}

PackedDib MaterialToBitmap(Material& material, int width, int height) noexcept {
  switch (material.Kind) {
    case kSolid:
      return SolidDib(width, height, material.Colour);
    case kGradient:
      return RenderGradient(width, height, material.Gradient, material.Fountain);
    case kTexture:
      return RenderTexture(material.Texture, width, height);
    case kTile:
      if (!DibSize(width, height, 24)) return {};
      material.Tile.Left = material.Tile.Top = 0;
      material.Tile.Right = width;
      material.Tile.Bottom = height;
      return RenderTile(material.Tile);
    default:
      return BlankDib(width, height, nullptr, 24);
  }
}

std::string HexEncode(const void* bytes, std::size_t count) {
  const auto* from = static_cast<const std::uint8_t*>(bytes);
  std::string text(2 * count, '\0');
  char* digits = text.data();
  for (std::size_t i = 0; i < count; ++i) {
    *digits++ = kHexDigits[from[i] >> 4];
    *digits++ = kHexDigits[from[i] & 15];
  }
  return text;
}

MovableBlock HexDecode(const std::string& text, std::size_t count) {
  MovableBlock block(AllocateBlock(count + 1));
  auto* bytes = static_cast<std::uint8_t*>(LockBlock(block.Handle()));
  if (!bytes) throw std::bad_alloc();
  const std::size_t pairs = std::min(count, text.size() / 2);
  const auto* pair = reinterpret_cast<const std::uint8_t*>(text.data());
  bool valid = true;
  for (std::size_t i = 0; i < pairs; ++i, pair += 2) {
    const int value = kHexValues[pair[0]] * 16 | kHexValues[pair[1]];
    if (value < 0) {  // the text ends at its first NUL, in either half of a pair
      valid = !pair[0] || !pair[1];
      break;
    }
    bytes[i] = static_cast<std::uint8_t>(value);
  }
  UnlockBlock(block.Handle());
  return valid ? std::move(block) : MovableBlock{};
}

bool ReadMaterialFile(const std::string& path, Material& material) {
  const std::optional<std::string> bytes = ReadFileIfAny(path);
  if (!bytes || bytes->size() < kDiskBytes || bytes->compare(0, kSignatureBytes, kSignature) != 0) return false;
  FromDisk(material, reinterpret_cast<const std::uint8_t*>(bytes->data()));
  material.Preview = 0;
  material.Tile.TileBitmap = 0;
  material.ButtonState &= ~kPressedBits;
  return true;
}

MovableBlock LoadMaterial(const std::string& path, Colour colour, bool readFile) noexcept try {
  MovableBlock block(AllocateBlock(sizeof(Material)));
  const LockedBlock<Material> material(block.Handle());
  if (!material) return block;
  DefaultMaterial(*material, colour);
  if (readFile) ReadMaterialFile(path, *material);
  LoadTileOf(material->Tile);
  return block;
} catch (const std::bad_alloc&) {
  return {};
}

bool SaveMaterial(BlockHandle block, const std::string& path) noexcept {
  const LockedBlock<Material> material(block);
  if (!material || path.empty()) return false;
  try {
    std::string bytes(kDiskBytes, '\0');
    ToDisk(reinterpret_cast<std::uint8_t*>(bytes.data()), *material);
    return AtomicWriteFile(path, bytes);
  } catch (...) {
    return false;
  }
}

void FreeMaterial(BlockHandle block) noexcept {
  if (const LockedBlock<Material> material(block); material) {
    FreeBlock(HandleOf(material->Preview));
    FreeBlock(HandleOf(material->Tile.TileBitmap));
  }
  FreeBlock(block);
}

}  // namespace glyphmotion
