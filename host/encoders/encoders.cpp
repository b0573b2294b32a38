// SPDX-License-Identifier: MIT
#include "host/encoders/encoders.h"

#include <vector>

#include "host/encoders/avif.h"
#include "host/encoders/dib_reader.h"
#include "host/encoders/gif_writer.h"
#include "host/encoders/png_encoder.h"
#include "host/encoders/raw_video.h"
#include "host/encoders/webm.h"
#include "host/encoders/webp_encoder.h"

namespace glyphmotion {
namespace {

// --- GIF

Encoder OpenGif(Output& output, const EncoderSettings& settings) {
  struct State {
    GifWriter writer;
    std::vector<std::uint8_t> indices;
  };
  auto state = std::make_shared<State>(State{GifWriter(settings.width, settings.height, settings.threads), {}});
  state->writer.SetLoops(settings.loops);
  state->writer.SetLoss(settings.loss);
  state->writer.SetEffort(settings.effort);
  state->writer.SetStop(settings.stop);
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

const EncoderFormat kFormats[] = {
    {".gif", true, OpenGif},
    {".png", false, OpenPng},
    {".apng", false, OpenPng},
    {".webp", false, OpenWebp},
    {".avif", false, OpenAvif, kAvifLacks},
    {".webm", false, OpenWebm, kWebmLacks},
    {".y4m", false, OpenY4m},
    {".rgba", false, OpenRgba},
    {kFolderExtension, false, OpenFolder},
};

}  // namespace

std::span<const EncoderFormat> Formats() { return kFormats; }

const EncoderFormat* FindFormat(const std::string& extension) {
  for (const EncoderFormat& format : kFormats)
    if (extension == format.extension) return &format;
  return nullptr;
}

std::string KeepWriting(Output& output, std::span<const std::uint8_t> bytes) {
  return output.Write(bytes) ? "" : output.Refusal();
}

}  // namespace glyphmotion
