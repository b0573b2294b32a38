// SPDX-License-Identifier: MIT
#include "host/recording/animation.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "host/encoders/dib_reader.h"
#include "host/encoders/gif_writer.h"
#include "host/encoders/out_of_memory.h"
#include "image/frame_list.h"
#include "image/packed_dib.h"
#include "image/quantise.h"
#include "image/remap.h"
#include "platform/encoding.h"

namespace glyphmotion {
namespace {

constexpr std::uint32_t kLargestSide = 65535;  // of a GIF
constexpr std::uint64_t kColourValue = 100, kIndexValue = 101;
constexpr std::size_t kLongestComment = 65536;  // bytes; the limit for plug-ins that forget the terminator
constexpr std::uint8_t kHalfOpaque = 128;

// --- Reducing true-colour frames to one palette ---

// A 24-bit frame and, if anything is transparent, one flag per pixel.
struct ReducedFrame {
  std::vector<std::uint8_t> indices, clear;
  int width = 0, height = 0;
};

// Copies the colours to a new 24-bit image. Transparent pixels set a flag (no flags if there are none) and become
// black.
PackedDib SplitFrame(const AnimationFrame& frame, std::vector<std::uint8_t>& rgba, std::vector<std::uint8_t>& clear) {
  const DibPixels dib = ReadDib(frame.dib);
  UnpackRgba(dib, frame.transparentIndex, rgba);
  PackedDib colours = BlankDib(dib.width, dib.height, nullptr, 24);
  const DibView view(colours);
  if (!view) return {};
  clear.assign(rgba.size() / 4, 0);
  const std::uint8_t* in = rgba.data();
  std::uint8_t* flag = clear.data();
  for (int y = 0; y < dib.height; ++y) {
    std::uint8_t* out = view.Row(y);
    for (int x = 0; x < dib.width; ++x, in += 4, out += 3, ++flag) {
      *flag = in[3] < kHalfOpaque;
      if (*flag) continue;
      for (int channel = 0; channel < 3; ++channel) out[channel] = in[2 - channel];
    }
  }
  if (std::find(clear.begin(), clear.end(), 1) == clear.end()) clear.clear();
  return colours;
}

// One palette for all frames. The last entry is reserved for transparent pixels, if there are any.
bool Reduce(const Animation& animation, std::vector<ReducedFrame>& reduced, Palette& palette) {
  OwnedFrames colours;
  std::vector<std::uint8_t> rgba;
  bool anyClear = false;
  for (const AnimationFrame& frame : animation.frames) {
    ReducedFrame& out = reduced.emplace_back();
    PackedDib dib = SplitFrame(frame, rgba, out.clear);
    FrameRecord record;
    record.image = dib.Handle();
    if (!dib || !AppendFrame(colours.list, record)) return false;
    dib.Release();
    anyClear |= !out.clear.empty();
  }
  int count = anyClear ? 255 : 256;
  if (!QuantiseFrames(colours.list, count, palette)) return false;
  ColourMatcher matcher(palette, 8, count, {});
  for (std::size_t i = 0; i < reduced.size(); ++i) {
    const LockedFrame frame(colours.list, static_cast<int>(i));
    // The list owns the image; it is borrowed for this call.
    PackedDib source(frame->image);
    const PackedDib mapped = RemapImage(source, matcher);
    source.Release();
    const DibView view(mapped);
    if (!view) return false;
    ReducedFrame& out = reduced[i];
    out.width = view.Width();
    out.height = view.Height();
    for (int y = 0; y < out.height; ++y) out.indices.insert(out.indices.end(), view.Row(y), view.Row(y) + out.width);
    for (std::size_t p = 0; p < out.clear.size(); ++p)
      if (out.clear[p]) out.indices[p] = 255;
  }
  return true;
}

std::array<std::uint8_t, 768> BytesOf(const Palette& palette) {
  std::array<std::uint8_t, 768> bytes{};
  std::memcpy(bytes.data(), palette.data(), bytes.size());
  return bytes;
}

bool AddReduced(const Animation& animation, GifWriter& writer) {
  std::vector<ReducedFrame> reduced;
  Palette palette{};
  if (!Reduce(animation, reduced, palette)) return false;
  const auto bytes = BytesOf(palette);
  for (std::size_t i = 0; i < reduced.size(); ++i) {
    const AnimationFrame& frame = animation.frames[i];
    const bool clear = !reduced[i].clear.empty();
    // Above 8 bits a frame replaces the one before it, holes and all.
    const bool replaces = frame.standAlone || ReadDib(frame.dib).bits > 8;
    if (!writer.Add({reduced[i].width, reduced[i].height, reduced[i].indices, bytes, (frame.delay + 5) / 10,
                     clear ? 255 : -1, replaces}))
      return false;
  }
  return true;
}

bool AddIndexed(const Animation& animation, GifWriter& writer) {
  std::vector<std::uint8_t> indices;
  for (const AnimationFrame& frame : animation.frames) {
    const DibPixels dib = ReadDib(frame.dib);
    UnpackIndices(dib, indices);
    if (!writer.Add({dib.width, dib.height, indices, UnpackPalette(dib), (frame.delay + 5) / 10, frame.transparentIndex,
                     frame.standAlone}))
      return false;
  }
  return true;
}

template <typename Record>
bool IsRecord(const Record* record) {
  return record && record->size >= sizeof(Record) && (record->version >> 8 & 0xFF) >= 0x10;
}

}  // namespace

std::vector<std::uint8_t> GifOf(const Animation& animation, std::string& error) try {
  error = "the animation has no frames";
  if (animation.frames.empty()) return {};
  error = kOutOfMemory;
  GifWriter writer(animation.width, animation.height);
  if (!animation.comment.empty()) writer.SetComment(animation.comment);
  const bool allColours = std::any_of(animation.frames.begin(), animation.frames.end(),
                                      [](const AnimationFrame& frame) { return ReadDib(frame.dib).bits > 8; });
  if (!(allColours ? AddReduced(animation, writer) : AddIndexed(animation, writer))) return {};
  std::vector<std::uint8_t> file = writer.Finish();
  error.clear();
  return file;
} catch (const std::bad_alloc&) {
  error = kOutOfMemory;
  return {};
}

bool TaskReceiver::Open(const HostTaskRecord* record, bool test) {
  if (task_ || !IsRecord(record)) return false;
  if (record->width < 1 || record->width > kLargestSide || record->height < 1 || record->height > kLargestSide ||
      record->imageCount < 1)
    return false;
  animation_ = {};
  animation_.width = static_cast<int>(record->width);
  animation_.height = static_cast<int>(record->height);
  animation_.test = test;
  imagesPromised_ = record->imageCount;
  std::memcpy(palette_.data(), record->palette, sizeof record->palette);
  task_ = record;
  return true;
}

bool TaskReceiver::AddImage(const void* task, const HostImageRecord* record, std::span<const std::uint8_t> dib) {
  if (!task_ || task != task_ || !IsRecord(record)) return false;
  if (record->number != animation_.frames.size() || record->number >= imagesPromised_) return false;
  const DibPixels pixels = ReadDib(dib);
  if (!pixels || pixels.width > animation_.width || pixels.height > animation_.height) return false;
  const std::size_t size = DibSize(pixels.width, pixels.height, pixels.bits);
  AnimationFrame frame;
  frame.dib.assign(dib.begin(), dib.begin() + static_cast<std::ptrdiff_t>(size));
  // 2^32 units of 10 ms would overflow; no delay needs to be that long.
  frame.delay = static_cast<int>(std::min<std::uint64_t>(std::uint64_t{record->delay} * delayUnit_, 655350));
  const bool hasIndex = pixels.bits < 9 && record->transparentIndex >= 0 && record->transparentIndex < 256;
  frame.transparentIndex = hasIndex ? record->transparentIndex : -1;
  frame.standAlone = record->standAlone != 0;
  animation_.frames.push_back(std::move(frame));
  return true;
}

bool TaskReceiver::SetBackground(const void* task, std::uint64_t kind, std::uint64_t value) {
  if (!task_ || task != task_) return false;
  if (kind == kColourValue) {
    animation_.background = static_cast<Colour>(value) & 0xFFFFFF;
  } else if (kind == kIndexValue && value < palette_.size()) {
    animation_.background = ColourOf(palette_[static_cast<std::size_t>(value)]);
  } else {
    return false;
  }
  return true;
}

bool TaskReceiver::AddComment(const void* task, const char* text) {
  if (!task_ || task != task_ || !text) return false;
  animation_.comment = TextFromBytes(std::string_view(text, strnlen(text, kLongestComment)));
  return true;
}

std::optional<Animation> TaskReceiver::End(const void* task, bool finished) {
  if (!task_ || task != task_) return std::nullopt;
  task_ = nullptr;
  if (!finished || animation_.frames.empty()) return std::nullopt;
  return std::move(animation_);
}

}  // namespace glyphmotion
