// SPDX-License-Identifier: MIT
// Source: the format GIF89a.
#include "host/encoders/gif_file.h"

#include <algorithm>
#include <iterator>
#include <span>

namespace glyphmotion {
namespace {

void PutWord(std::vector<std::uint8_t>& out, int value) {
  out.push_back(static_cast<std::uint8_t>(value));
  out.push_back(static_cast<std::uint8_t>(value >> 8));
}

void PutBlocks(std::vector<std::uint8_t>& out, std::span<const std::uint8_t> bytes) {
  for (std::size_t i = 0; i < bytes.size(); i += 255) {
    const std::size_t count = std::min<std::size_t>(255, bytes.size() - i);
    out.push_back(static_cast<std::uint8_t>(count));
    out.insert(out.end(), bytes.begin() + static_cast<std::ptrdiff_t>(i),
               bytes.begin() + static_cast<std::ptrdiff_t>(i + count));
  }
  out.push_back(0);
}

void PutPalette(std::vector<std::uint8_t>& out, const GifPalette& palette) {
  for (std::size_t i = 0; i < std::size_t{1} << palette.Bits(); ++i) {
    const std::uint32_t colour = i < palette.colours.size() ? palette.colours[i] : 0;
    for (int c = 0; c < 3; ++c) out.push_back(static_cast<std::uint8_t>(colour >> (8 * c)));
  }
}

void PutFrame(std::vector<std::uint8_t>& out, const GifFileFrame& frame) {
  const bool transparent = frame.wildcard >= 0;
  for (const int byte : {0x21, 0xF9, 4, static_cast<int>(frame.disposal) << 2 | (transparent ? 1 : 0)})
    out.push_back(static_cast<std::uint8_t>(byte));
  PutWord(out, frame.delay);
  out.push_back(static_cast<std::uint8_t>(std::max(frame.wildcard, 0)));
  out.push_back(0);
  out.push_back(0x2C);
  for (const int value : {frame.crop.left, frame.crop.top, frame.crop.Width(), frame.crop.Height()})
    PutWord(out, value);
  out.push_back(static_cast<std::uint8_t>(frame.own ? 0x80 | (frame.own->Bits() - 1) : 0));
  if (frame.own) PutPalette(out, *frame.own);
  out.push_back(static_cast<std::uint8_t>(frame.codeSize));
  PutBlocks(out, frame.bytes);
}

}  // namespace

std::vector<std::uint8_t> GifFileOf(int width, int height, const GifPalette& common,
                                    const std::vector<GifFileFrame>& frames, const std::string& comment, int loops) {
  std::vector<std::uint8_t> file = {'G', 'I', 'F', '8', '9', 'a'};
  PutWord(file, width);
  PutWord(file, height);
  file.push_back(static_cast<std::uint8_t>(0x80 | 7 << 4 | (common.Bits() - 1)));
  file.push_back(0);  // background index; viewers ignore it
  file.push_back(0);  // square pixels
  PutPalette(file, common);
  // The extension counts the repetitions; without it a file plays once.
  if (frames.size() > 1 && loops != 1) {
    static constexpr std::uint8_t kLoop[] = {0x21, 0xFF, 11,  'N', 'E', 'T', 'S', 'C',
                                             'A',  'P',  'E', '2', '.', '0', 3,   1};
    file.insert(file.end(), std::begin(kLoop), std::end(kLoop));
    PutWord(file, std::max(loops - 1, 0));
    file.push_back(0);
  }
  for (const GifFileFrame& frame : frames) PutFrame(file, frame);
  if (!comment.empty()) {
    file.push_back(0x21);
    file.push_back(0xFE);
    PutBlocks(file, {reinterpret_cast<const std::uint8_t*>(comment.data()), comment.size()});
  }
  file.push_back(0x3B);
  return file;
}

}  // namespace glyphmotion
