// SPDX-License-Identifier: MIT
#include "host/encoders/raw_video.h"

#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numeric>
#include <utility>
#include <vector>

#include "host/encoders/out_of_memory.h"
#include "host/encoders/screen.h"

namespace glyphmotion {
namespace {

using Bytes = std::vector<std::uint8_t>;

// The rate is the greatest common divisor of all times, so the frames are kept until the last has come: compressed, or
// a long animation would not fit into memory.
struct RawVideo {
  Output& output;
  EncoderSettings settings;
  Screen screen;
  struct Frame {
    Bytes packed;
    std::size_t size;  // in bytes, unpacked
    int time;          // milliseconds
  };
  std::vector<Frame> frames;

  RawVideo(Output& out, const EncoderSettings& wanted)
      : output(out), settings(wanted), screen(wanted.width, wanted.height) {}

  std::string Show(const Image& image) {
    const DibPixels dib = ReadDib(image.dib);
    if (!dib) return "an image arrived that is not a packed bitmap; please report this";
    screen.Show(dib, image.transparentIndex, image.standAlone);
    return {};
  }
  bool Keep(const Bytes& frame, const Image& image) {
    uLongf size = compressBound(static_cast<uLong>(frame.size()));
    Bytes packed(size);
    if (compress2(packed.data(), &size, frame.data(), static_cast<uLong>(frame.size()), 1) != Z_OK) return false;
    packed.resize(size);
    packed.shrink_to_fit();
    frames.push_back({std::move(packed), frame.size(), std::max(1, image.delay * settings.delayUnit)});
    return true;
  }
  static bool Unpack(const Frame& frame, Bytes& bytes) {
    bytes.resize(frame.size);
    auto size = static_cast<uLongf>(frame.size);
    return uncompress(bytes.data(), &size, frame.packed.data(), static_cast<uLong>(frame.packed.size())) == Z_OK;
  }
  int Step() const {
    int step = 0;
    for (const Frame& frame : frames) step = std::gcd(step, frame.time);
    return std::max(step, 1);
  }
  bool Write(std::span<const std::uint8_t> bytes) { return output.Write(bytes); }
  bool Write(const std::string& text) {
    return Write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  }
};

std::uint8_t Level(double value) { return static_cast<std::uint8_t>(std::floor(value + 0.5)); }

Bytes PlanesOf(const Screen& screen) {
  const std::size_t count = screen.pixels.size() / 4;
  Bytes planes(3 * count);
  for (std::size_t i = 0; i < count; ++i) {
    const double r = screen.pixels[4 * i], g = screen.pixels[4 * i + 1], b = screen.pixels[4 * i + 2];
    planes[i] = Level(16 + (65.481 * r + 128.553 * g + 24.966 * b) / 255);
    planes[count + i] = Level(128 + (-37.797 * r - 74.203 * g + 112.0 * b) / 255);
    planes[2 * count + i] = Level(128 + (112.0 * r - 93.786 * g - 18.214 * b) / 255);
  }
  return planes;
}

// "F25:1"
std::string Rate(int step) {
  const int divisor = std::gcd(1000, step);
  return "F" + std::to_string(1000 / divisor) + ":" + std::to_string(step / divisor);
}

Encoder Open(Output& output, const EncoderSettings& settings, Bytes (*frameOf)(const Screen&), bool hasHeaders) {
  auto video = std::make_shared<RawVideo>(output, settings);
  Encoder encoder;
  encoder.add = [video, frameOf](const Image& image) {
    std::string error = video->Show(image);
    if (error.empty() && !video->Keep(frameOf(video->screen), image)) error = kOutOfMemory;
    return error;
  };
  encoder.finish = [video, hasHeaders]() -> std::string {
    const int step = video->Step();
    bool written = !hasHeaders || video->Write("YUV4MPEG2 W" + std::to_string(video->settings.width) + " H" +
                                               std::to_string(video->settings.height) + " " + Rate(step) +
                                               " Ip A1:1 C444 XCOLORRANGE=LIMITED\n");
    Bytes bytes;
    for (const RawVideo::Frame& frame : video->frames) {
      if (!RawVideo::Unpack(frame, bytes)) return kOutOfMemory;
      for (int i = 0; written && i < frame.time / step; ++i) {
        written = (!hasHeaders || video->Write("FRAME\n")) && video->Write(bytes);
      }
    }
    return written ? "" : video->output.Refusal();
  };
  return encoder;
}

}  // namespace

Encoder OpenY4m(Output& output, const EncoderSettings& settings) { return Open(output, settings, PlanesOf, true); }

Encoder OpenRgba(Output& output, const EncoderSettings& settings) {
  return Open(
      output, settings, [](const Screen& screen) { return screen.pixels; }, false);
}

}  // namespace glyphmotion
