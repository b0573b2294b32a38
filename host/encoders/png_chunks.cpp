// SPDX-License-Identifier: MIT
#include "host/encoders/png_chunks.h"

#include <png.h>
#include <zlib.h>

#include <algorithm>
#include <csetjmp>
#include <cstring>
#include <new>

namespace glyphmotion {
namespace {

using Bytes = std::vector<std::uint8_t>;

void PutU32(Bytes& out, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<std::uint8_t>(value >> shift));
}
void PutU16(Bytes& out, std::uint32_t value) {
  out.push_back(static_cast<std::uint8_t>(value >> 8));
  out.push_back(static_cast<std::uint8_t>(value));
}
std::uint32_t GetU32(const std::uint8_t* p) {
  return std::uint32_t{p[0]} << 24 | std::uint32_t{p[1]} << 16 | std::uint32_t{p[2]} << 8 | p[3];
}

void PutChunk(Bytes& out, const char* type, const Bytes& head, std::span<const std::uint8_t> data = {}) {
  PutU32(out, static_cast<std::uint32_t>(head.size() + data.size()));
  const std::size_t start = out.size();
  out.insert(out.end(), type, type + 4);
  out.insert(out.end(), head.begin(), head.end());
  out.insert(out.end(), data.begin(), data.end());
  PutU32(out, static_cast<std::uint32_t>(crc32(0, out.data() + start, static_cast<uInt>(out.size() - start))));
}

// Exceptions must not cross libpng, which would leak its memory.
bool Append(Bytes& out, png_const_bytep bytes, std::size_t count) noexcept try {
  out.insert(out.end(), bytes, bytes + count);
  return true;
} catch (const std::bad_alloc&) {
  return false;
}
void Write(png_structp png, png_bytep bytes, std::size_t count) {
  if (!Append(*static_cast<Bytes*>(png_get_io_ptr(png)), bytes, count)) png_error(png, "out of memory");
}
void NoFlush(png_structp) {}
void NoWarning(png_structp, png_const_charp) {}
[[noreturn]] void Fail(png_structp png, png_const_charp) { png_longjmp(png, 1); }

void PutHeader(png_structp png, png_infop info, const PngPicture& picture) {
  png_set_IHDR(png, info, static_cast<png_uint_32>(picture.width), static_cast<png_uint_32>(picture.height), 8,
               static_cast<int>(picture.kind), PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  if (picture.kind != PngKind::Palette) return;
  png_color palette[256] = {};
  const std::size_t entries = std::min<std::size_t>(256, picture.palette.size() / 3);
  for (std::size_t i = 0; i < entries; ++i)
    palette[i] = {picture.palette[i * 3], picture.palette[i * 3 + 1], picture.palette[i * 3 + 2]};
  png_set_PLTE(png, info, palette, static_cast<int>(entries));
  if (picture.transparentIndex < 0 || picture.transparentIndex >= static_cast<int>(entries)) return;
  png_byte alpha[256];
  std::memset(alpha, 255, sizeof alpha);
  alpha[picture.transparentIndex] = 0;
  png_set_tRNS(png, info, alpha, picture.transparentIndex + 1, nullptr);
}

// The chunks of one picture.
struct ChunkView {
  const std::uint8_t* type;
  std::span<const std::uint8_t> data, whole;
};
template <typename Visit>
void ForEachChunk(const Bytes& file, Visit visit) {
  for (std::size_t i = 8; i + 12 <= file.size();) {
    const std::size_t length = GetU32(&file[i]);
    visit(ChunkView{&file[i + 4], {&file[i + 8], length}, {&file[i], length + 12}});
    i += length + 12;
  }
}
bool Is(const ChunkView& chunk, const char* type) { return std::memcmp(chunk.type, type, 4) == 0; }

}  // namespace

std::vector<std::uint8_t> WritePng(const PngPicture& picture) {
  Bytes out;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, Fail, NoWarning);
  if (!png) return {};
  png_infop info = png_create_info_struct(png);
  // libpng jumps back here on an error; no object with a destructor may be created beyond this point.
  if (!info || setjmp(png_jmpbuf(png))) {
    png_destroy_write_struct(&png, &info);
    return {};
  }
  png_set_write_fn(png, &out, Write, NoFlush);
  PutHeader(png, info, picture);
  png_set_compression_level(png, picture.level);
  png_set_filter(png, 0, picture.kind == PngKind::Palette ? PNG_FILTER_NONE : PNG_FILTER_SUB | PNG_FILTER_UP);
  png_write_info(png, info);
  const std::size_t pixel = picture.kind == PngKind::Palette ? 1 : picture.kind == PngKind::Rgb ? 3 : 4;
  const std::size_t stride = pixel * static_cast<std::size_t>(picture.width);
  for (int y = 0; y < picture.height; ++y) {
    if (picture.stop && *picture.stop) png_error(png, "stopped");
    png_write_row(png, picture.pixels.data() + stride * static_cast<std::size_t>(y));
  }
  png_write_end(png, nullptr);
  png_destroy_write_struct(&png, &info);
  return out;
}

std::vector<std::uint8_t> PngAnimation::Add(const Bytes& file, const PngFramePlace& place) {
  constexpr std::size_t kSides = 16;  // width and height, behind the signature and the first chunk's name
  const auto width = static_cast<int>(GetU32(&file[kSides])), height = static_cast<int>(GetU32(&file[kSides + 4]));
  Bytes out;
  if (first_) out.assign(file.begin(), file.begin() + 8);
  bool controlled = false;
  const auto control = [&] {
    if (controlled) return;
    controlled = true;
    // A delay is a fraction of 16-bit numbers: thousandths of a second, or hundredths for more than a minute.
    const bool fine = place.delayMilliseconds <= 65535;
    Bytes head;
    PutU32(head, sequence_++);
    for (const int value : {width, height, place.left, place.top}) PutU32(head, static_cast<std::uint32_t>(value));
    PutU16(head,
           static_cast<std::uint32_t>(fine ? place.delayMilliseconds : std::min(place.delayMilliseconds / 10, 65535)));
    PutU16(head, fine ? 1000 : 100);
    head.push_back(0);  // dispose: none
    head.push_back(0);  // blend: source
    PutChunk(out, "fcTL", head);
  };
  ForEachChunk(file, [&](const ChunkView& chunk) {
    if (Is(chunk, "IDAT")) {
      control();
      if (first_) {
        out.insert(out.end(), chunk.whole.begin(), chunk.whole.end());
      } else {
        Bytes head;
        PutU32(head, sequence_++);
        PutChunk(out, "fdAT", head, chunk.data);
      }
    } else if (first_ && !Is(chunk, "IEND")) {
      out.insert(out.end(), chunk.whole.begin(), chunk.whole.end());
      if (!Is(chunk, "IHDR")) return;
      Bytes head;
      PutU32(head, static_cast<std::uint32_t>(frameCount_));
      PutU32(head, static_cast<std::uint32_t>(loops_));
      PutChunk(out, "acTL", head);
    }
  });
  first_ = false;
  return out;
}

std::vector<std::uint8_t> PngAnimation::End() {
  Bytes out;
  PutChunk(out, "IEND", {});
  return out;
}

}  // namespace glyphmotion
