// SPDX-License-Identifier: MIT
#include "host/encoders/png_encoder.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <vector>

#include "host/encoders/dib_reader.h"
#include "host/encoders/out_of_memory.h"
#include "host/encoders/picture_batch.h"
#include "host/encoders/png_chunks.h"
#include "host/encoders/screen.h"

namespace glyphmotion {
namespace {

using Bytes = std::vector<std::uint8_t>;

// The least effort compresses as well: otherwise a PNG would be as large as its pixels.
int ZlibLevel(int effort) { return std::max(effort, 1); }

// One image as a PNG of its own depth.
Bytes PngOfImage(const DibPixels& dib, int transparentIndex, const EncoderSettings& settings) {
  PngPicture picture{dib.width, dib.height,       PngKind::Palette,           {},
                     {},        transparentIndex, ZlibLevel(settings.effort), settings.stop};
  Bytes pixels;
  if (dib.bits < 9) {
    UnpackIndices(dib, pixels);
    const auto palette = UnpackPalette(dib);
    picture.pixels = pixels;
    picture.palette = std::span(palette).first(std::size_t{3} << dib.bits);
    return WritePng(picture);
  }
  Screen screen(dib.width, dib.height);
  screen.Show(dib, -1, true);
  picture.kind = dib.bits == 32 ? PngKind::Rgba : PngKind::Rgb;
  screen.Cut({0, 0, dib.width, dib.height}, dib.bits == 32, pixels);
  picture.pixels = pixels;
  return WritePng(picture);
}

// A frame of an animation, from its pixels to its file.
struct PngWork {
  Bytes pixels, palette;
  PngPicture picture;
  PngFramePlace place;
  Bytes file;
};

void Encode(PngWork& work) {
  work.picture.pixels = work.pixels;
  work.picture.palette = work.palette;
  work.file = WritePng(work.picture);
}

// Palette images of a PNG share one palette. Whether they can is known after the last image, so they are kept until
// then; if not, they are written as true colour.
struct KeptImage {
  Bytes dib;
  int delay, transparentIndex;
  bool standAlone;
};

struct PngState {
  Output& output;
  EncoderSettings settings;
  PngAnimation animation;
  Screen screen;
  Bytes before;
  std::vector<KeptImage> kept;
  PictureBatch<PngWork> batch;
  bool first = true, alpha = false;

  PngState(Output& out, const EncoderSettings& wanted)
      : output(out),
        settings(wanted),
        animation(wanted.imageCount, wanted.loops),
        screen(wanted.width, wanted.height),
        batch(wanted.threads, wanted.stop, Encode, [this](PngWork& work) { return Keep(work); }) {}

  std::string Keep(const PngWork& work) {
    const Bytes bytes = work.file.empty() ? Bytes() : animation.Add(work.file, work.place);
    return bytes.empty() ? kOutOfMemory : KeepWriting(output, bytes);
  }

  std::string Add(PngWork& work, PngKind kind, const ScreenPart& part, int transparentIndex, int delay) {
    work.picture = {part.width, part.height, kind, {}, {}, transparentIndex, ZlibLevel(settings.effort), settings.stop};
    work.place = {part.left, part.top, delay * settings.delayUnit};
    return batch.Add(work.pixels.size());
  }

  std::string AddColour(const DibPixels& dib, const KeptImage& image) {
    before = screen.pixels;
    screen.Show(dib, image.transparentIndex, image.standAlone);
    if (first) alpha = dib.bits != 24 || dib.width < settings.width || dib.height < settings.height;
    const ScreenPart part = first ? ScreenPart{0, 0, settings.width, settings.height} : screen.DifferenceTo(before);
    first = false;
    PngWork& work = batch.Next();
    screen.Cut(part, alpha, work.pixels);
    return Add(work, alpha ? PngKind::Rgba : PngKind::Rgb, part, -1, image.delay);
  }

  // One palette, one transparent index, and no image that shows the previous one through it.
  bool SharePalette() const {
    const DibPixels one = ReadDib(kept.front().dib);
    for (const KeptImage& image : kept) {
      const DibPixels dib = ReadDib(image.dib);
      if (dib.bits != one.bits || dib.width != settings.width || dib.height != settings.height ||
          image.transparentIndex != kept.front().transparentIndex ||
          (image.transparentIndex >= 0 && !image.standAlone) || UnpackPalette(dib) != UnpackPalette(one))
        return false;
    }
    return true;
  }

  std::string AddPalette(const KeptImage& image) {
    const DibPixels dib = ReadDib(image.dib);
    const auto palette = UnpackPalette(dib);
    PngWork& work = batch.Next();
    UnpackIndices(dib, work.pixels);
    work.palette.assign(palette.begin(), palette.begin() + (std::ptrdiff_t{3} << dib.bits));
    return Add(work, PngKind::Palette, {0, 0, dib.width, dib.height}, image.transparentIndex, image.delay);
  }

  std::string AddKept() {
    const bool share = !kept.empty() && SharePalette();
    for (const KeptImage& image : kept) {
      std::string error = share ? AddPalette(image) : AddColour(ReadDib(image.dib), image);
      if (!error.empty()) return error;
    }
    return {};
  }

  std::string Finish() {
    std::string error = AddKept();
    if (error.empty()) error = batch.Flush();
    return error.empty() ? KeepWriting(output, PngAnimation::End()) : error;
  }
};

// A picture of a folder, from the image's bytes to its file.
struct FolderWork {
  Bytes dib, file;
  int number = 0, transparentIndex = -1, time = 0;
};

// Besides the pictures, what other programs need to play them: timing.json, and frames.ffconcat for FFmpeg.
struct FolderState {
  Output& output;
  EncoderSettings settings;
  std::string frames, list = "ffconcat version 1.0\n";
  PictureBatch<FolderWork> batch;

  FolderState(Output& out, const EncoderSettings& wanted)
      : output(out),
        settings(wanted),
        batch(
            wanted.threads, wanted.stop,
            [this](FolderWork& work) { work.file = PngOfImage(ReadDib(work.dib), work.transparentIndex, settings); },
            [this](FolderWork& work) { return Keep(work); }) {}

  std::string Keep(const FolderWork& work) {
    char name[24];
    std::snprintf(name, sizeof name, "%04d.png", work.number);
    const std::string time = std::to_string(work.time);
    frames +=
        std::string(frames.empty() ? "" : ",") + "\n  {\"file\": \"" + name + "\", \"duration_ms\": " + time + "}";
    list += std::string("file ") + name + "\n" + (work.time > 0 ? "duration " + time + "ms\n" : "");
    if (work.file.empty()) return kOutOfMemory;
    return output.WriteMember(name, work.file) ? "" : output.Refusal();
  }

  std::string WriteText(const char* name, const std::string& text) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    return output.WriteMember(name, {bytes, text.size()}) ? "" : output.Refusal();
  }

  std::string Finish() {
    std::string error = batch.Flush();
    if (error.empty())
      error = WriteText(kTimingFile, "{\"width\": " + std::to_string(settings.width) + ", \"height\": " +
                                         std::to_string(settings.height) + ", \"frames\": [" + frames + "\n]}\n");
    return error.empty() ? WriteText(kConcatFile, list) : error;
  }
};

}  // namespace

Encoder OpenPng(Output& output, const EncoderSettings& settings) {
  auto state = std::make_shared<PngState>(output, settings);
  Encoder encoder;
  encoder.add = [state](const Image& image) -> std::string {
    const DibPixels dib = ReadDib(image.dib);
    if (!dib) return kBadImage;
    if (state->settings.imageCount == 1) {
      const auto bytes = PngOfImage(dib, image.transparentIndex, state->settings);
      return bytes.empty() ? kOutOfMemory : KeepWriting(state->output, bytes);
    }
    KeptImage about{{}, image.delay, image.transparentIndex, image.standAlone};
    if (dib.bits > 8) return state->AddColour(dib, about);
    about.dib.assign(image.dib.begin(), image.dib.end());
    state->kept.push_back(std::move(about));
    return {};
  };
  encoder.finish = [state] { return state->settings.imageCount == 1 ? std::string() : state->Finish(); };
  return encoder;
}

Encoder OpenFolder(Output& output, const EncoderSettings& settings) {
  const auto state = std::make_shared<FolderState>(output, settings);
  Encoder encoder;
  encoder.add = [state](const Image& image) -> std::string {
    if (!ReadDib(image.dib)) return kBadImage;
    FolderWork& work = state->batch.Next();
    work.dib.assign(image.dib.begin(), image.dib.end());
    work.number = image.number;
    work.transparentIndex = image.transparentIndex;
    work.time = image.delay * state->settings.delayUnit;
    return state->batch.Add(image.dib.size());
  };
  encoder.finish = [state] { return state->Finish(); };
  return encoder;
}

}  // namespace glyphmotion
