// SPDX-License-Identifier: MIT
#include "image/packed_dib.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/run_state.h"

namespace glyphmotion {
namespace {

bool IsStoredDepth(int bits) { return bits == 1 || bits == 4 || bits == 8 || bits == 24 || bits == 32; }

int StoredDepth(int depth) {
  if (depth == 0 || depth > 24) return 32;
  if (depth == 1) return 1;
  if (depth <= 4) return 4;
  return depth <= 8 ? 8 : 24;
}

}  // namespace

std::size_t DibSize(int width, int height, int bits) noexcept {
  if (width < 1 || height < 1 || !IsStoredDepth(bits)) return 0;
  const std::size_t stride = DibStride(width, bits);
  if (stride > kMaxDibBytes / static_cast<std::size_t>(height)) return 0;
  const std::size_t bytes = sizeof(DibHeader) + DibTableBytes(bits) + stride * static_cast<std::size_t>(height);
  return bytes <= kMaxDibBytes ? bytes : 0;
}

DibView::DibView(BlockHandle handle) noexcept {
  const std::size_t size = BlockSize(handle);
  if (size < sizeof(DibHeader)) return;
  auto* header = static_cast<DibHeader*>(LockBlock(handle));
  if (!header) return;
  const std::size_t needed = DibSize(header->biWidth, header->biHeight, header->biBitCount);
  if (header->biSize != sizeof(DibHeader) || header->biPlanes != 1 || header->biCompression != 0 || needed == 0 ||
      needed > size) {
    UnlockBlock(handle);
    return;
  }
  handle_ = handle;
  header_ = header;
  width_ = header->biWidth;
  height_ = header->biHeight;
  bits_ = header->biBitCount;
  stride_ = DibStride(width_, bits_);
  pixels_ = reinterpret_cast<std::uint8_t*>(header) + sizeof(DibHeader) + DibTableBytes(bits_);
}

DibView::DibView(DibView&& other) noexcept
    : handle_(std::exchange(other.handle_, nullptr)),
      header_(std::exchange(other.header_, nullptr)),
      pixels_(other.pixels_),
      stride_(other.stride_),
      width_(other.width_),
      height_(other.height_),
      bits_(other.bits_) {}

DibView::~DibView() {
  if (header_) UnlockBlock(handle_);
}

Rgb DibView::TableEntry(int i) const noexcept {
  const std::uint8_t* entry = reinterpret_cast<const std::uint8_t*>(header_) + sizeof(DibHeader) + 4 * i;
  return {entry[2], entry[1], entry[0]};
}

void DibView::SetTableEntry(int i, Rgb rgb) const noexcept {
  std::uint8_t* entry = reinterpret_cast<std::uint8_t*>(header_) + sizeof(DibHeader) + 4 * i;
  entry[0] = rgb.blue;
  entry[1] = rgb.green;
  entry[2] = rgb.red;
  entry[3] = 0;
}

Palette DibView::TablePalette() const noexcept {
  Palette palette{};
  if (bits_ < 9) {
    for (int i = 0; i < 1 << bits_; ++i) palette[static_cast<std::size_t>(i)] = TableEntry(i);
  }
  return palette;
}

std::uint32_t DibView::GetPixel(int x, int y) const noexcept {
  if (y < 0 || y >= height_ || x < 0 || x >= width_) return 0xFFFFFFFF;
  const std::uint8_t* row = Row(y);
  switch (bits_) {
    case 32: {
      const std::uint8_t* p = row + 4 * static_cast<std::size_t>(x);
      return MakeColour(p[2], p[1], p[0]) | std::uint32_t{p[3]} << 24;
    }
    case 24: {
      const std::uint8_t* p = row + 3 * static_cast<std::size_t>(x);
      return MakeColour(p[2], p[1], p[0]);
    }
    case 8:
      return row[x];
    case 4:
      return x & 1 ? row[x >> 1] & 0x0F : row[x >> 1] >> 4;
    case 1:
      return row[x >> 3] & (0x80 >> (x & 7)) ? 1 : 0;
    default:
      return 0xFFFFFFFF;
  }
}

void DibView::SetPixel(int x, int y, std::uint32_t value) const noexcept {
  if (y < 0 || y >= height_ || x < 0 || x >= width_) return;
  std::uint8_t* row = Row(y);
  switch (bits_) {
    case 32:
    case 24: {
      std::uint8_t* p = row + static_cast<std::size_t>(x) * static_cast<std::size_t>(bits_ / 8);
      p[0] = static_cast<std::uint8_t>(value >> 16);
      p[1] = static_cast<std::uint8_t>(value >> 8);
      p[2] = static_cast<std::uint8_t>(value);
      if (bits_ == 32) p[3] = static_cast<std::uint8_t>(value >> 24);
      break;
    }
    case 8:
      row[x] = static_cast<std::uint8_t>(value);
      break;
    case 4: {
      std::uint8_t& byte = row[x >> 1];
      byte = static_cast<std::uint8_t>(x & 1 ? (byte & 0xF0) | (value & 0x0F) : (byte & 0x0F) | (value & 0x0F) << 4);
      break;
    }
    case 1: {
      const auto bit = static_cast<std::uint8_t>(0x80 >> (x & 7));
      std::uint8_t& byte = row[x >> 3];
      byte = static_cast<std::uint8_t>(value & 1 ? byte | bit : byte & ~bit);
      break;
    }
    default:
      break;
  }
}

PackedDib BlankDib(int width, int height, const Palette* palette, int depth) noexcept {
  const int bits = StoredDepth(depth);
  const std::size_t bytes = DibSize(width, height, bits);
  if (!bytes) return {};
  PackedDib dib(AllocateBlock(bytes));
  LockedBlock<DibHeader> header(dib.Handle());
  if (!header) return {};
  const std::uint32_t colours = bits < 9 ? 1u << bits : 0;
  *header = {sizeof(DibHeader),
             width,
             height,
             1,
             static_cast<std::uint16_t>(bits),
             0,
             static_cast<std::uint32_t>(DibStride(width, bits) * static_cast<std::size_t>(height)),
             0,
             0,
             colours,
             colours};
  if (palette && colours) {
    const DibView view(dib);
    for (std::uint32_t i = 0; i < colours; ++i) view.SetTableEntry(static_cast<int>(i), (*palette)[i]);
  }
  return dib;
}

PackedDib BlankMask(int width, int height) noexcept { return BlankDib(width, height, &GreyRamp(), 8); }

PackedDib SolidDib(int width, int height, Colour colour) noexcept {
  PackedDib dib = BlankDib(width, height, nullptr, 24);
  const DibView view(dib);
  if (!view) return {};
  std::uint8_t* first = view.StoredRow(0);
  for (int x = 0; x < width; ++x) view.SetPixel(x, height - 1, colour);
  for (int r = 1; r < height; ++r) {
    if (EndRequested()) return {};
    std::memcpy(view.StoredRow(r), first, static_cast<std::size_t>(width) * 3);
  }
  return dib;
}

const Palette& GreyRamp() noexcept {
  static const Palette ramp = [] {
    Palette palette{};
    for (std::size_t i = 0; i < palette.size(); ++i) {
      const auto grey = static_cast<std::uint8_t>(i);
      palette[i] = {grey, grey, grey};
    }
    return palette;
  }();
  return ramp;
}

PackedDib DuplicateDib(const PackedDib& dib) noexcept { return PackedDib(DuplicateBlock(dib.Handle())); }

PackedDib BlankLike(const DibView& dib, int width, int height) noexcept {
  if (!dib) return {};
  if (dib.Bits() > 8) return BlankDib(width, height, nullptr, dib.Bits());
  const Palette palette = dib.TablePalette();
  return BlankDib(width, height, &palette, dib.Bits());
}

PackedDib MergeColourAndAlpha(const PackedDib& colour, const PackedDib& alpha) noexcept {
  const DibView picture(colour), plane(alpha);
  if (!picture || !plane || picture.Bits() != 24 || plane.Bits() != 8 || picture.Width() != plane.Width() ||
      picture.Height() != plane.Height()) {
    return {};
  }
  PackedDib merged = BlankDib(picture.Width(), picture.Height(), nullptr, 32);
  const DibView target(merged);
  if (!target) return {};
  for (int r = 0; r < picture.Height(); ++r) {
    if (EndRequested()) return {};
    const std::uint8_t* from = picture.StoredRow(r);
    const std::uint8_t* level = plane.StoredRow(r);
    std::uint8_t* to = target.StoredRow(r);
    for (int x = 0; x < picture.Width(); ++x, from += 3, to += 4) {
      to[0] = from[0];
      to[1] = from[1];
      to[2] = from[2];
      to[3] = level[x];
    }
  }
  return merged;
}

PackedDib CropDib(const PackedDib& source, Rect rect) noexcept {
  const DibView from(source);
  PackedDib crop = BlankLike(from, rect.Width(), rect.Height());
  const DibView to(crop);
  if (!from || !to) return {};
  CopyRegion(to, 0, 0, from, rect.left, rect.top, rect.Width(), rect.Height());
  return crop;
}

PackedDib TrimColumns(const PackedDib& mask, int sides) noexcept {
  Rect rect;
  {
    const DibView view(mask);
    if (!view) return {};
    const int width = view.Width();
    int left = width - 1, right = 0;
    for (int y = 0; y < view.Height(); ++y) {
      if (EndRequested()) return {};
      for (int x = 0; x < left; ++x) {
        if (view.GetPixel(x, y)) left = x;
      }
      for (int x = width - 1; x > right; --x) {
        if (view.GetPixel(x, y)) right = x;
      }
    }
    if (!(sides & kTrimLeft)) left = 0;
    if (!(sides & kTrimRight)) right = width - 1;
    rect = {left, 0, left < right ? right + 1 : left + 2, view.Height()};
  }
  return CropDib(mask, rect);
}

bool CopyRegion(const DibView& dest, int destX, int destY, const DibView& source, int sourceX, int sourceY, int width,
                int height) noexcept {
  if (!dest || !source) return true;
  // The part of the rectangle that lies inside both bitmaps, in 64 bits so that extreme coordinates cannot overflow.
  const auto clip = [](std::int64_t to, std::int64_t from, std::int64_t count, int toSide, int fromSide) {
    const std::int64_t first = std::max({std::int64_t{0}, -to, -from});
    const std::int64_t last = std::min({count, toSide - to, fromSide - from});
    return std::pair<std::int64_t, std::int64_t>(first, last);
  };
  const auto [x0, x1] = clip(destX, sourceX, width, dest.Width(), source.Width());
  const auto [y0, y1] = clip(destY, sourceY, height, dest.Height(), source.Height());
  if (x0 >= x1) return true;
  const bool bytes = dest.Bits() == source.Bits() && dest.Bits() >= 8;
  const auto size = static_cast<std::size_t>(dest.Bits() / 8);
  for (std::int64_t y = y0; y < y1 && !EndRequested(); ++y) {
    const int toY = static_cast<int>(destY + y), fromY = static_cast<int>(sourceY + y);
    if (bytes) {
      std::memmove(dest.Row(toY) + static_cast<std::size_t>(destX + x0) * size,
                   source.Row(fromY) + static_cast<std::size_t>(sourceX + x0) * size,
                   static_cast<std::size_t>(x1 - x0) * size);
    } else {
      for (std::int64_t x = x0; x < x1; ++x) {
        dest.SetPixel(static_cast<int>(destX + x), toY, source.GetPixel(static_cast<int>(sourceX + x), fromY));
      }
    }
  }
  return true;
}

}  // namespace glyphmotion
