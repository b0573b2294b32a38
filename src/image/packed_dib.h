// SPDX-License-Identifier: MIT
// Packed device-independent bitmaps: the format of every picture, from a text mask to a finished frame.
//
// A packed DIB is a movable block: a 40-byte header, a colour table of 2^bits entries (blue, green, red, 0) below 9
// bits, then the rows, bottom row first, each padded to 4 bytes. Depths are 1, 4, 8, 24 and 32 bits. Pixel values are
// palette indices below 9 bits, otherwise Colour (with alpha in bits 24 to 31 at 32 bits). In 8-bit masks and planes
// the palette is a grey ramp, so that an index is its value.
#pragma once

#include <cstddef>
#include <cstdint>

#include "image/colour.h"
#include "platform/memory.h"

namespace glyphmotion {

#pragma pack(push, 1)
struct DibHeader {
  std::uint32_t biSize;   // 40
  std::int32_t biWidth;   // pixels, positive
  std::int32_t biHeight;  // pixels, positive: bottom-up
  std::uint16_t biPlanes;
  std::uint16_t biBitCount;
  std::uint32_t biCompression;
  std::uint32_t biSizeImage;
  std::int32_t biXPelsPerMeter, biYPelsPerMeter;
  std::uint32_t biClrUsed, biClrImportant;
};
#pragma pack(pop)
static_assert(sizeof(DibHeader) == 40);

/// Rectangle of pixels, excluding right and bottom.
struct Rect {
  int left = 0, top = 0, right = 0, bottom = 0;
  constexpr int Width() const { return right - left; }
  constexpr int Height() const { return bottom - top; }
};

/// The largest bitmap, including its header: 512 MiB.
constexpr std::size_t kMaxDibBytes = std::size_t{512} << 20;

/// Bytes of one row: ((width * bits + 31) >> 5) << 2.
constexpr std::size_t DibStride(int width, int bits) {
  return ((static_cast<std::size_t>(width) * static_cast<std::size_t>(bits) + 31) >> 5) << 2;
}

/// Bytes of the colour table of a depth.
constexpr std::size_t DibTableBytes(int bits) { return bits < 9 ? std::size_t{4} << bits : 0; }

/// Bytes of a whole packed DIB; 0 when a side is below 1, the depth is not a stored one, or the result exceeds
/// kMaxDibBytes. The only function that computes a size.
std::size_t DibSize(int width, int height, int bits) noexcept;

/// Owns one packed DIB; empty means "nothing".
class PackedDib {
 public:
  PackedDib() = default;
  explicit PackedDib(BlockHandle handle) noexcept : block_(handle) {}

  explicit operator bool() const noexcept { return static_cast<bool>(block_); }
  BlockHandle Handle() const noexcept { return block_.Handle(); }
  BlockHandle Release() noexcept { return block_.Release(); }
  void Reset() noexcept { block_.Reset(); }

 private:
  MovableBlock block_;
};

/// A locked packed DIB. Empty when the block is null, too small for its header's values, or of another form (header
/// size, planes, depth, compression, or a negative height). The origin of coordinates is the top left. Getting and
/// setting pixels is bounds-checked, for borders and single pixels; inner loops use Row(y).
class DibView {
 public:
  explicit DibView(BlockHandle handle) noexcept;
  explicit DibView(const PackedDib& dib) noexcept : DibView(dib.Handle()) {}
  DibView(DibView&& other) noexcept;
  DibView& operator=(DibView&&) = delete;
  ~DibView();

  explicit operator bool() const noexcept { return header_ != nullptr; }
  int Width() const noexcept { return width_; }
  int Height() const noexcept { return height_; }
  int Bits() const noexcept { return bits_; }
  std::size_t Stride() const noexcept { return stride_; }
  DibHeader& Header() const noexcept { return *header_; }

  /// Row y of the picture, 0 at the top, for 0 <= y < Height().
  std::uint8_t* Row(int y) const noexcept { return pixels_ + stride_ * static_cast<std::size_t>(height_ - 1 - y); }
  /// Row r in storage order, 0 being the picture's bottom row.
  std::uint8_t* StoredRow(int r) const noexcept { return pixels_ + stride_ * static_cast<std::size_t>(r); }

  /// Colour table entry i (0 <= i < 2^bits), below 9 bits only.
  Rgb TableEntry(int i) const noexcept;
  void SetTableEntry(int i, Rgb entry) const noexcept;
  /// The whole table as a palette; entries past 2^bits are zero, as is everything above 8 bits.
  Palette TablePalette() const noexcept;

  /// 0xFFFFFFFF outside the bitmap.
  std::uint32_t GetPixel(int x, int y) const noexcept;
  /// Does nothing outside the bitmap.
  void SetPixel(int x, int y, std::uint32_t value) const noexcept;

 private:
  BlockHandle handle_ = nullptr;
  DibHeader* header_ = nullptr;
  std::uint8_t* pixels_ = nullptr;
  std::size_t stride_ = 0;
  int width_ = 0, height_ = 0, bits_ = 0;
};

/// A zero-filled bitmap, or nothing (a side below 1, too large, or out of memory). `depth` is rounded to a stored form:
/// 1 to 1 bit, 2 to 4 to 4 bits, 5 to 8 to 8 bits, 9 to 24 to 24 bits, 0 and above 24 to 32 bits. `palette` null: a
/// zero colour table.
PackedDib BlankDib(int width, int height, const Palette* palette, int depth) noexcept;

/// A zero-filled 8-bit bitmap with a grey ramp, as for text masks and alpha planes.
PackedDib BlankMask(int width, int height) noexcept;

/// A 24-bit bitmap of one colour. With the colour of the AlphaGreyBack setting it is the solid key of alpha runs.
PackedDib SolidDib(int width, int height, Colour colour) noexcept;

/// Entry i is (i, i, i).
const Palette& GreyRamp() noexcept;

/// A byte-for-byte copy, or nothing on failure.
PackedDib DuplicateDib(const PackedDib& dib) noexcept;

/// A blank bitmap of another size with the depth and palette of `dib`.
PackedDib BlankLike(const DibView& dib, int width, int height) noexcept;

/// A new 32-bit bitmap from a 24-bit picture and an 8-bit plane of the same size. The caller keeps the arguments.
PackedDib MergeColourAndAlpha(const PackedDib& colour, const PackedDib& alpha) noexcept;

/// The rectangle's pixels as a new bitmap of the same depth and palette; pixels outside the source are zero.
PackedDib CropDib(const PackedDib& source, Rect rect) noexcept;

enum TrimSides { kTrimRight = 1, kTrimLeft = 2 };  // bits 0 and 1

/// Crops to the columns from the first to the last that has a non-zero pixel, at full height, plus one column if there
/// is only one. Column 0 is never taken as the right edge. A blank mask keeps two columns from width - 1 on.
PackedDib TrimColumns(const PackedDib& mask, int sides) noexcept;

/// Copies width x height pixels from (sourceX, sourceY) to (destX, destY), dropping those outside either bitmap. Depths
/// may differ: pixel values are copied as they are. Always true.
bool CopyRegion(const DibView& dest, int destX, int destY, const DibView& source, int sourceX, int sourceY, int width,
                int height) noexcept;

}  // namespace glyphmotion
