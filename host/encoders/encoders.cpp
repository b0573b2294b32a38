// SPDX-License-Identifier: MIT
#include "host/encoders/encoders.h"

#include <webp/encode.h>
#include <webp/mux.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "host/encoders/dib_reader.h"
#include "host/encoders/gif_writer.h"
#include "host/encoders/out_of_memory.h"
#include "host/encoders/png_chunks.h"
#include "host/encoders/raw_video.h"
#include "host/encoders/screen.h"

namespace glyphmotion {
namespace {

const char* const kBadImage = "received an image that is not a packed bitmap; please report this";

std::string KeepWriting(Output& output, std::span<const std::uint8_t> bytes) {
  return output.Write(bytes) ? "" : output.Refusal();
}

// --- GIF

Encoder OpenGif(Output& output, const EncoderSettings& settings) {
  struct State {
    GifWriter writer;
    std::vector<std::uint8_t> indices;
  };
  auto state = std::make_shared<State>(State{GifWriter(settings.width, settings.height), {}});
  state->writer.SetLoops(settings.loops);
  state->writer.SetLoss(settings.loss);
  Encoder encoder;
  encoder.add = [state, settings](const Image& image) -> std::string {
    const DibPixels dib = ReadDib(image.dib);
    if (!dib) return kBadImage;
    if (dib.bits > 8)
      return "a .gif takes palette images only, and these are true colour; leave true colour out, or write .png or "
             ".webp";
    if (settings.width > 65535 || settings.height > 65535)
      return "a .gif is at most 65535 pixels wide and high; choose a smaller size";
    UnpackIndices(dib, state->indices);
    const auto palette = UnpackPalette(dib);
    const bool added =
        state->writer.Add({dib.width, dib.height, state->indices, palette, image.delay * settings.delayUnit / 10,
                           image.transparentIndex, image.standAlone});
    return added ? "" : kBadImage;
  };
  encoder.comment = [state](const std::string& text) { state->writer.SetComment(text); };
  encoder.finish = [state, &output] { return KeepWriting(output, state->writer.Finish()); };
  return encoder;
}

// --- True-colour formats

// The bounding box of the difference of two screens, at least one pixel in size.
struct Place {
  int left, top, width, height;
};
Place Difference(const Screen& a, const std::vector<std::uint8_t>& b) {
  int left = a.width, top = a.height, right = 0, bottom = 0;
  const std::size_t stride = std::size_t{4} * static_cast<std::size_t>(a.width);
  for (int y = 0; y < a.height; ++y) {
    const std::uint8_t* p = a.pixels.data() + stride * static_cast<std::size_t>(y);
    const std::uint8_t* q = b.data() + stride * static_cast<std::size_t>(y);
    if (std::memcmp(p, q, stride) == 0) continue;
    top = std::min(top, y);
    bottom = y + 1;
    int from = 0, to = a.width;
    while (std::memcmp(p + from * 4, q + from * 4, 4) == 0) ++from;
    while (std::memcmp(p + (to - 1) * 4, q + (to - 1) * 4, 4) == 0) --to;
    left = std::min(left, from);
    right = std::max(right, to);
  }
  if (bottom == 0) return {0, 0, 1, 1};
  return {left, top, right - left, bottom - top};
}

// Cuts a rectangle out of a screen, with or without alpha.
void Cut(Screen& screen, const Place& place, bool alpha, std::vector<std::uint8_t>& out) {
  const std::size_t step = alpha ? 4 : 3;
  out.resize(step * static_cast<std::size_t>(place.width) * static_cast<std::size_t>(place.height));
  std::uint8_t* to = out.data();
  for (int y = 0; y < place.height; ++y) {
    const std::uint8_t* from = screen.Row(place.top + y) + std::ptrdiff_t{4} * place.left;
    for (int x = 0; x < place.width; ++x, from += 4, to += step) std::memcpy(to, from, step);
  }
}

// One image as a PNG of its own depth.
std::vector<std::uint8_t> PngOfImage(const DibPixels& dib, int transparentIndex) {
  PngPicture picture{dib.width, dib.height, PngKind::Palette, {}, {}, transparentIndex};
  std::vector<std::uint8_t> pixels;
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
  Cut(screen, {0, 0, dib.width, dib.height}, dib.bits == 32, pixels);
  picture.pixels = pixels;
  return WritePng(picture);
}

std::string AddPngFrame(Output& output, PngAnimation& animation, const PngPicture& picture,
                        const PngFramePlace& place) {
  const std::vector<std::uint8_t> bytes = animation.Add(picture, place);
  return bytes.empty() ? kOutOfMemory : KeepWriting(output, bytes);
}

// Palette images of a PNG share one palette. Whether they can is known after the last image, so they are kept until
// then; if not, they are written as true colour.
struct KeptImage {
  std::vector<std::uint8_t> dib;
  int delay, transparentIndex;
  bool standAlone;
};

struct PngState {
  Output& output;
  EncoderSettings settings;
  PngAnimation animation;
  Screen screen;
  std::vector<std::uint8_t> before, cut;
  std::vector<KeptImage> kept;
  bool first = true, alpha = false;

  PngState(Output& out, const EncoderSettings& wanted)
      : output(out),
        settings(wanted),
        animation(wanted.imageCount, wanted.loops),
        screen(wanted.width, wanted.height) {}

  std::string AddColour(const DibPixels& dib, const KeptImage& image) {
    before = screen.pixels;
    screen.Show(dib, image.transparentIndex, image.standAlone);
    if (first) alpha = dib.bits != 24 || dib.width < settings.width || dib.height < settings.height;
    const Place place = first ? Place{0, 0, settings.width, settings.height} : Difference(screen, before);
    first = false;
    Cut(screen, place, alpha, cut);
    const PngPicture picture{place.width, place.height, alpha ? PngKind::Rgba : PngKind::Rgb, cut, {}, -1};
    return AddPngFrame(output, animation, picture, {place.left, place.top, image.delay * settings.delayUnit});
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
    UnpackIndices(dib, cut);
    const PngPicture picture{dib.width,
                             dib.height,
                             PngKind::Palette,
                             cut,
                             std::span(palette).first(std::size_t{3} << dib.bits),
                             image.transparentIndex};
    return AddPngFrame(output, animation, picture, {0, 0, image.delay * settings.delayUnit});
  }

  std::string AddKept() {
    const bool share = !kept.empty() && SharePalette();
    for (const KeptImage& image : kept) {
      const std::string error = share ? AddPalette(image) : AddColour(ReadDib(image.dib), image);
      if (!error.empty()) return error;
    }
    return {};
  }
};

Encoder OpenPng(Output& output, const EncoderSettings& settings) {
  auto state = std::make_shared<PngState>(output, settings);
  Encoder encoder;
  encoder.add = [state](const Image& image) -> std::string {
    const DibPixels dib = ReadDib(image.dib);
    if (!dib) return kBadImage;
    if (state->settings.imageCount == 1) {
      const auto bytes = PngOfImage(dib, image.transparentIndex);
      return bytes.empty() ? kOutOfMemory : KeepWriting(state->output, bytes);
    }
    KeptImage about{{}, image.delay, image.transparentIndex, image.standAlone};
    if (dib.bits > 8) return state->AddColour(dib, about);
    about.dib.assign(image.dib.begin(), image.dib.end());
    state->kept.push_back(std::move(about));
    return {};
  };
  encoder.finish = [state]() -> std::string {
    if (state->settings.imageCount == 1) return {};
    const std::string error = state->AddKept();
    return error.empty() ? KeepWriting(state->output, PngAnimation::End()) : error;
  };
  return encoder;
}

// --- WebP

constexpr int kMostWebpPixels = WEBP_MAX_DIMENSION;

struct WebpState {
  Output& output;
  EncoderSettings settings;
  Screen screen;
  WebPConfig config{};
  WebPAnimEncoder* encoder = nullptr;
  int time = 0;  // milliseconds

  WebpState(Output& out, const EncoderSettings& wanted)
      : output(out), settings(wanted), screen(wanted.width, wanted.height) {
    WebPAnimEncoderOptions options;
    if (!WebPAnimEncoderOptionsInit(&options) || !WebPConfigInit(&config)) return;
    options.anim_params.loop_count = settings.loops;
    if (settings.lossyQuality < 0) {
      WebPConfigLosslessPreset(&config, 2);
      config.exact = 0;
    } else {
      config.quality = static_cast<float>(settings.lossyQuality);
      options.kmax = 30;
    }
    encoder = WebPAnimEncoderNew(settings.width, settings.height, &options);
  }
  WebpState(const WebpState&) = delete;
  WebpState& operator=(const WebpState&) = delete;
  ~WebpState() { WebPAnimEncoderDelete(encoder); }

  // Within the size limits of the format, creating the encoder and adding a picture fail only when out of memory.
  std::string Failure(WebPEncodingError error = VP8_ENC_ERROR_OUT_OF_MEMORY) const {
    if (settings.width > WEBP_MAX_DIMENSION || settings.height > WEBP_MAX_DIMENSION)
      return "a .webp is at most 16383 pixels wide and high; choose a smaller size or write .png";
    if (!encoder || error == VP8_ENC_ERROR_OUT_OF_MEMORY || error == VP8_ENC_ERROR_BITSTREAM_OUT_OF_MEMORY)
      return kOutOfMemory;
    return std::string("the .webp could not be made: ") + WebPAnimEncoderGetError(encoder);
  }

  std::string Add(const DibPixels& dib, const Image& image) {
    if (settings.width > kMostWebpPixels || settings.height > kMostWebpPixels) {
      return "a .webp is at most " + std::to_string(kMostWebpPixels) + " pixels wide and high, and this one is " +
             std::to_string(settings.width) + " x " + std::to_string(settings.height) +
             "; choose a smaller size or write .png";
    }
    if (!encoder) return Failure();
    screen.Show(dib, image.transparentIndex, image.standAlone);
    WebPPicture picture;
    if (!WebPPictureInit(&picture)) return Failure();
    picture.width = settings.width;
    picture.height = settings.height;
    picture.use_argb = 1;
    const bool added = WebPPictureImportRGBA(&picture, screen.pixels.data(), settings.width * 4) &&
                       WebPAnimEncoderAdd(encoder, &picture, time, &config);
    WebPPictureFree(&picture);
    time += image.delay * settings.delayUnit;
    return added ? "" : Failure(picture.error_code);
  }

  std::string Finish() {
    WebPData data;
    WebPDataInit(&data);
    if (!encoder || !WebPAnimEncoderAdd(encoder, nullptr, time, nullptr) || !WebPAnimEncoderAssemble(encoder, &data))
      return Failure();
    const std::string error = KeepWriting(output, {data.bytes, data.size});
    WebPDataClear(&data);
    return error;
  }
};

Encoder OpenWebp(Output& output, const EncoderSettings& settings) {
  auto state = std::make_shared<WebpState>(output, settings);
  Encoder encoder;
  encoder.add = [state](const Image& image) -> std::string {
    const DibPixels dib = ReadDib(image.dib);
    return dib ? state->Add(dib, image) : kBadImage;
  };
  encoder.finish = [state] { return state->Finish(); };
  return encoder;
}

// --- A folder of numbered pictures

Encoder OpenFolder(Output& output, const EncoderSettings&) {
  Encoder encoder;
  encoder.add = [&output](const Image& image) -> std::string {
    const DibPixels dib = ReadDib(image.dib);
    if (!dib) return kBadImage;
    char name[24];
    std::snprintf(name, sizeof name, "%04d.png", image.number);
    const auto bytes = PngOfImage(dib, image.transparentIndex);
    if (bytes.empty()) return kOutOfMemory;
    return output.WriteMember(name, bytes) ? "" : output.Refusal();
  };
  encoder.finish = [] { return std::string(); };
  return encoder;
}

constexpr EncoderFormat kFormats[] = {
    {".gif", true, OpenGif},    {".png", false, OpenPng},
    {".webp", false, OpenWebp}, {kFolderExtension, false, OpenFolder},
    {".y4m", false, OpenY4m},   {".rgba", false, OpenRgba},
};

}  // namespace

std::span<const EncoderFormat> Formats() { return kFormats; }

const EncoderFormat* FindFormat(const std::string& extension) {
  for (const EncoderFormat& format : kFormats)
    if (extension == format.extension) return &format;
  return nullptr;
}

}  // namespace glyphmotion
