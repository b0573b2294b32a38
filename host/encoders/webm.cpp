// SPDX-License-Identifier: MIT
#include "host/encoders/webm.h"

#include <vpx/vp8cx.h>
#include <vpx/vpx_encoder.h>

#include <algorithm>
#include <vector>

#include "host/encoders/out_of_memory.h"
#include "host/encoders/picture_encoder.h"
#include "host/encoders/screen.h"
#include "host/encoders/webm_file.h"

namespace glyphmotion {

const char* const kWebmLacks = nullptr;

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr int kWorstQuantizer = 63, kUsualQuantizer = 12;

// One stream of pictures; alpha is a stream of its own, whose luma it is.
class Vp9Stream {
 public:
  Vp9Stream(const EncoderSettings& settings, int quantizer) {
    vpx_codec_enc_cfg_t config;
    if (vpx_codec_enc_config_default(vpx_codec_vp9_cx(), &config, 0) != VPX_CODEC_OK) return;
    config.g_w = static_cast<unsigned>(settings.width);
    config.g_h = static_cast<unsigned>(settings.height);
    config.g_timebase = {1, 1000};
    config.g_lag_in_frames = 0;  // each picture gives its packet at once
    config.g_threads = 1;
    config.rc_end_usage = VPX_Q;
    config.kf_max_dist = 250;
    if (vpx_codec_enc_init(&codec_, vpx_codec_vp9_cx(), &config, 0) != VPX_CODEC_OK) return;
    open_ = true;
    vpx_codec_control(&codec_, VP8E_SET_CPUUSED, 9 - settings.effort);
    vpx_codec_control(&codec_, VP8E_SET_CQ_LEVEL, static_cast<unsigned>(quantizer));
    vpx_codec_control(&codec_, VP9E_SET_COLOR_SPACE, VPX_CS_BT_601);
    picture_ = vpx_img_alloc(nullptr, VPX_IMG_FMT_I420, config.g_w, config.g_h, 16);
    if (picture_) picture_->cs = VPX_CS_BT_601;
  }
  Vp9Stream(const Vp9Stream&) = delete;
  Vp9Stream& operator=(const Vp9Stream&) = delete;
  ~Vp9Stream() {
    if (picture_) vpx_img_free(picture_);
    if (open_) vpx_codec_destroy(&codec_);
  }

  explicit operator bool() const { return open_ && picture_; }
  vpx_image_t& Picture() { return *picture_; }
  // Codes the picture; empty when that fails.
  Bytes Code(std::int64_t time, int duration, bool& key) {
    Bytes bytes;
    if (vpx_codec_encode(&codec_, picture_, time, static_cast<unsigned long>(duration), 0, VPX_DL_GOOD_QUALITY) !=
        VPX_CODEC_OK)
      return bytes;
    vpx_codec_iter_t at = nullptr;
    while (const vpx_codec_cx_pkt_t* packet = vpx_codec_get_cx_data(&codec_, &at)) {
      if (packet->kind != VPX_CODEC_CX_FRAME_PKT) continue;
      const auto* data = static_cast<const std::uint8_t*>(packet->data.frame.buf);
      bytes.assign(data, data + packet->data.frame.sz);
      key = (packet->data.frame.flags & VPX_FRAME_IS_KEY) != 0;
    }
    return bytes;
  }

 private:
  vpx_codec_ctx_t codec_{};
  vpx_image_t* picture_ = nullptr;
  bool open_ = false;
};

std::uint8_t* RowOf(vpx_image_t& picture, int plane, int y) {
  return picture.planes[plane] + static_cast<std::ptrdiff_t>(picture.stride[plane]) * y;
}

std::uint8_t Level(double value) { return static_cast<std::uint8_t>(value + 0.5); }

// Luma of each pixel, both chromas of each square of four.
void PutColours(Screen& screen, vpx_image_t& picture) {
  for (int y = 0; y < screen.height; ++y) {
    const std::uint8_t* from = screen.Row(y);
    std::uint8_t* to = RowOf(picture, VPX_PLANE_Y, y);
    for (int x = 0; x < screen.width; ++x, from += 4)
      to[x] = Level(16 + (65.481 * from[0] + 128.553 * from[1] + 24.966 * from[2]) / 255);
  }
  for (int y = 0; y < screen.height; y += 2) {
    std::uint8_t* u = RowOf(picture, VPX_PLANE_U, y / 2);
    std::uint8_t* v = RowOf(picture, VPX_PLANE_V, y / 2);
    for (int x = 0; x < screen.width; x += 2) {
      double sum[3] = {};
      const int right = std::min(x + 1, screen.width - 1), below = std::min(y + 1, screen.height - 1);
      for (const int row : {y, below}) {
        for (const int column : {x, right}) {
          for (int c = 0; c < 3; ++c) sum[c] += screen.Row(row)[4 * column + c] / 4.0;
        }
      }
      u[x / 2] = Level(128 + (-37.797 * sum[0] - 74.203 * sum[1] + 112.0 * sum[2]) / 255);
      v[x / 2] = Level(128 + (112.0 * sum[0] - 93.786 * sum[1] - 18.214 * sum[2]) / 255);
    }
  }
}

// In the full range, 0 to 255.
void PutAlpha(Screen& screen, vpx_image_t& picture) {
  for (int y = 0; y < screen.height; ++y) {
    const std::uint8_t* from = screen.Row(y);
    std::uint8_t* to = RowOf(picture, VPX_PLANE_Y, y);
    for (int x = 0; x < screen.width; ++x) to[x] = from[4 * x + 3];
  }
  for (const int plane : {VPX_PLANE_U, VPX_PLANE_V}) {
    for (int y = 0; y < (screen.height + 1) / 2; ++y)
      std::fill_n(RowOf(picture, plane, y), (screen.width + 1) / 2, std::uint8_t{128});
  }
}

bool HasAlpha(const Screen& screen) {
  for (std::size_t i = 3; i < screen.pixels.size(); i += 4) {
    if (screen.pixels[i] != 255) return true;
  }
  return false;
}

struct WebmState {
  Output& output;
  EncoderSettings settings;
  Screen screen;
  int quantizer;
  Vp9Stream colours;
  std::unique_ptr<Vp9Stream> alpha;
  std::vector<WebmFrame> frames;
  std::int64_t now = 0;

  WebmState(Output& out, const EncoderSettings& wanted)
      : output(out),
        settings(wanted),
        screen(wanted.width, wanted.height),
        quantizer(wanted.lossyQuality < 0 ? kUsualQuantizer
                                          : static_cast<int>((100 - wanted.lossyQuality) * kWorstQuantizer / 100)),
        colours(wanted, quantizer) {}

  std::string Add(const DibPixels& dib, const Image& image) {
    if (!colours) return kOutOfMemory;
    screen.Show(dib, image.transparentIndex, image.standAlone);
    if (frames.empty() && HasAlpha(screen)) alpha = std::make_unique<Vp9Stream>(settings, quantizer);
    WebmFrame frame;
    frame.time = std::max(1, image.delay * settings.delayUnit);
    PutColours(screen, colours.Picture());
    frame.picture = colours.Code(now, frame.time, frame.key);
    if (alpha) {
      if (!*alpha) return kOutOfMemory;
      bool key = false;
      PutAlpha(screen, alpha->Picture());
      frame.alpha = alpha->Code(now, frame.time, key);
    }
    now += frame.time;
    if (frame.picture.empty() || (alpha && frame.alpha.empty())) return "the .webm could not be made; write .webp";
    frames.push_back(std::move(frame));
    return {};
  }
  std::string Finish() {
    return output.Write(WebmFileOf(settings.width, settings.height, frames)) ? "" : output.Refusal();
  }
};

}  // namespace

Encoder OpenWebm(Output& output, const EncoderSettings& settings) {
  return EncoderOf(std::make_shared<WebmState>(output, settings));
}

}  // namespace glyphmotion
