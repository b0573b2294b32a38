// SPDX-License-Identifier: MIT
// A lossless animation is a row of pictures that libwebp compresses one by one and its muxer puts together: so several
// threads compress at once, and the bytes are the same for any number of them. Each picture is the box around what has
// changed. Pixels in it that have not may be transparent, which suits scattered changes, or keep their colours, which
// suits letters that move over a gradient: libwebp's fastest method tries both.
//
// A lossy animation goes through libwebp's own animation encoder, which compares pictures after compression.
#include "host/encoders/webp_encoder.h"

#include <webp/decode.h>
#include <webp/encode.h>
#include <webp/mux.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include "host/encoders/dib_reader.h"
#include "host/encoders/out_of_memory.h"
#include "host/encoders/picture_batch.h"
#include "host/encoders/screen.h"

namespace glyphmotion {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::string SizeTrouble(const EncoderSettings& settings) {
  if (settings.width <= WEBP_MAX_DIMENSION && settings.height <= WEBP_MAX_DIMENSION) return {};
  return "a .webp is at most " + std::to_string(WEBP_MAX_DIMENSION) + " pixels wide and high, and this one is " +
         std::to_string(settings.width) + " x " + std::to_string(settings.height) +
         "; choose a smaller size or write .png";
}

// --- Lossless

struct WebpWork {
  int effort = 0;
  const std::atomic<bool>* stop = nullptr;
  Bytes pixels;   // red, green, blue, alpha
  Bytes overlay;  // the same, transparent where the picture before shows through; empty: not possible, or no use
  ScreenPart part;
  bool laidOver = false;  // the file has the overlay
  Bytes file;             // empty: out of memory, or stopped
};

// Libwebp's settings, by effort. With either form to choose from, those of the default make files no larger than method
// 4 and quality 75 do with transparent pixels alone, in half the time.
struct Level {
  int method;
  float quality;
};
constexpr Level kLevels[] = {{0, 0}, {0, 75}, {1, 24}, {2, 24}, {3, 24}, {3, 30}, {3, 50}, {4, 75}, {5, 90}, {6, 100}};
constexpr int kQuickest = 1;  // of them, for a comparison

struct Writer {
  WebPMemoryWriter memory;
  Writer() { WebPMemoryWriterInit(&memory); }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;
  ~Writer() { WebPMemoryWriterClear(&memory); }
};

// Called by libwebp between its stages; 0 ends the compression.
int MayGoOn(int, const WebPPicture* picture) {
  const auto* stop = static_cast<const std::atomic<bool>*>(picture->user_data);
  return !stop || !*stop;
}

// When memory runs out, libwebp 1.2.4 may report success for a picture that it has cut short. An allocation that failed
// leaves ENOMEM behind, but so does one that succeeded at the second attempt, as in a thread whose heap is full: the
// picture is read again then.
template <typename Step>
bool Succeeds(Step step, bool& allocationFailed) {
  errno = 0;
  const bool done = step();
  allocationFailed = errno == ENOMEM;
  return done;
}

bool Shows(const Bytes& file, const Bytes& pixels) {
  int width = 0, height = 0;
  std::uint8_t* const read = WebPDecodeRGBA(file.data(), file.size(), &width, &height);
  bool equal = read && static_cast<std::size_t>(width) * height * 4 == pixels.size();
  for (std::size_t i = 0; equal && i < pixels.size(); i += 4)
    equal = pixels[i + 3] == read[i + 3] && (pixels[i + 3] == 0 || std::memcmp(&pixels[i], &read[i], 3) == 0);
  WebPFree(read);
  return equal;
}

Bytes FileOf(const Bytes& pixels, const WebpWork& work, const Level& level) {
  WebPConfig config;
  WebPPicture picture;
  if (!WebPConfigInit(&config) || !WebPPictureInit(&picture)) return {};
  config.lossless = 1;
  config.method = level.method;
  config.quality = level.quality;
  Writer writer;
  picture.width = work.part.width;
  picture.height = work.part.height;
  picture.use_argb = 1;
  picture.writer = WebPMemoryWrite;
  picture.custom_ptr = &writer.memory;
  picture.progress_hook = MayGoOn;
  picture.user_data = const_cast<std::atomic<bool>*>(work.stop);
  bool allocationFailed = false;
  const auto encode = [&] {
    return WebPPictureImportRGBA(&picture, pixels.data(), work.part.width * 4) && WebPEncode(&config, &picture);
  };
  Bytes file;
  if (Succeeds(encode, allocationFailed)) file.assign(writer.memory.mem, writer.memory.mem + writer.memory.size);
  WebPPictureFree(&picture);
  if (allocationFailed && !Shows(file, pixels)) file.clear();
  return file;
}

void Compress(WebpWork& work) {
  work.laidOver = false;
  work.file.clear();
  if (!work.overlay.empty()) {
    const Level& quick = kLevels[std::min(work.effort, kQuickest)];
    Bytes opaque = FileOf(work.pixels, work, quick), overlay = FileOf(work.overlay, work, quick);
    if (opaque.empty() || overlay.empty()) return;
    work.laidOver = overlay.size() < opaque.size();
    work.file = std::move(work.laidOver ? overlay : opaque);
    if (work.effort <= kQuickest) return;
  }
  work.file = FileOf(work.laidOver ? work.overlay : work.pixels, work, kLevels[work.effort]);
}

// A part with the pixels that are as before transparent. Empty when none is, or when another pixel is not opaque: it
// would be mixed with the one below.
void LayOver(const Screen& screen, const Bytes& before, const ScreenPart& part, const Bytes& pixels, Bytes& overlay) {
  overlay = pixels;
  bool any = false;
  std::uint8_t* pixel = overlay.data();
  for (int y = 0; y < part.height; ++y) {
    const std::uint8_t* was = before.data() + screen.OffsetOf(part.left, part.top + y);
    for (int x = 0; x < part.width; ++x, was += 4, pixel += 4) {
      if (std::memcmp(pixel, was, 4) == 0) {
        std::memset(pixel, 0, 4);
        any = true;
      } else if (pixel[3] != 255) {
        return overlay.clear();
      }
    }
  }
  if (!any) overlay.clear();
}

// The format has places at even numbers only.
ScreenPart AtEvenPlace(ScreenPart part) {
  part.width += part.left & 1;
  part.height += part.top & 1;
  part.left &= ~1;
  part.top &= ~1;
  return part;
}

class LosslessWebp {
 public:
  LosslessWebp(Output& output, const EncoderSettings& settings)
      : output_(output),
        settings_(settings),
        screen_(settings.width, settings.height),
        batch_(settings.threads, settings.stop, Compress, [this](WebpWork& work) { return Keep(work); }) {}

  std::string Add(const DibPixels& dib, const Image& image) {
    before_ = screen_.pixels;
    screen_.Show(dib, image.transparentIndex, image.standAlone);
    const int duration = image.delay * settings_.delayUnit;
    const bool first = durations_.empty();
    if (!first && screen_.pixels == before_ && durations_.back() + duration <= kLongest) {
      durations_.back() += duration;
      return {};
    }
    WebpWork& work = batch_.Next();
    work.effort = settings_.effort;
    work.stop = settings_.stop;
    work.part =
        first ? ScreenPart{0, 0, settings_.width, settings_.height} : AtEvenPlace(screen_.DifferenceTo(before_));
    screen_.Cut(work.part, true, work.pixels);
    work.overlay.clear();
    if (!first) LayOver(screen_, before_, work.part, work.pixels, work.overlay);
    durations_.push_back(std::min(duration, kLongest));
    return batch_.Add(work.pixels.size() + work.overlay.size());
  }

  std::string Finish() {
    std::string error = batch_.Flush();
    if (!error.empty()) return error;
    if (frames_.size() == 1) return KeepWriting(output_, frames_[0].file);
    struct Mux {
      WebPMux* mux = WebPMuxNew();
      WebPData data{};
      ~Mux() {
        WebPMuxDelete(mux);
        WebPDataClear(&data);
      }
    } made;
    if (!made.mux || !Assemble(made.mux, made.data)) return kOutOfMemory;
    return KeepWriting(output_, {made.data.bytes, made.data.size});
  }

 private:
  static constexpr int kLongest = (1 << 24) - 1;  // milliseconds

  // What the muxer needs of a picture.
  struct Frame {
    Bytes file;
    ScreenPart part;
    bool laidOver;
  };

  std::string Keep(WebpWork& work) {
    if (work.file.empty()) return kOutOfMemory;
    frames_.push_back({std::move(work.file), work.part, work.laidOver});
    return {};
  }

  bool Assemble(WebPMux* mux, WebPData& data) const {
    for (std::size_t i = 0; i < frames_.size(); ++i) {
      const Frame& frame = frames_[i];
      WebPMuxFrameInfo info{};
      info.bitstream = {frame.file.data(), frame.file.size()};
      info.x_offset = frame.part.left;
      info.y_offset = frame.part.top;
      info.duration = durations_[i];
      info.id = WEBP_CHUNK_ANMF;
      info.dispose_method = WEBP_MUX_DISPOSE_NONE;
      info.blend_method = frame.laidOver ? WEBP_MUX_BLEND : WEBP_MUX_NO_BLEND;
      if (WebPMuxPushFrame(mux, &info, 0) != WEBP_MUX_OK) return false;
    }
    const WebPMuxAnimParams params{0xFFFFFFFF, settings_.loops};
    return WebPMuxSetAnimationParams(mux, &params) == WEBP_MUX_OK &&
           WebPMuxSetCanvasSize(mux, settings_.width, settings_.height) == WEBP_MUX_OK &&
           WebPMuxAssemble(mux, &data) == WEBP_MUX_OK;
  }

  Output& output_;
  EncoderSettings settings_;
  Screen screen_;
  Bytes before_;
  std::vector<int> durations_;  // of the pictures that were added to the batch
  std::vector<Frame> frames_;
  PictureBatch<WebpWork> batch_;
};

// --- Lossy

class LossyWebp {
 public:
  LossyWebp(Output& output, const EncoderSettings& settings)
      : output_(output), settings_(settings), screen_(settings.width, settings.height) {
    WebPAnimEncoderOptions options;
    if (!WebPAnimEncoderOptionsInit(&options) || !WebPConfigInit(&config_)) return;
    config_.quality = static_cast<float>(settings.lossyQuality);
    config_.method = settings.effort * 2 / 3;  // 0 to 6
    options.anim_params.loop_count = settings.loops;
    options.kmax = 30;
    encoder_ = WebPAnimEncoderNew(settings.width, settings.height, &options);
  }
  LossyWebp(const LossyWebp&) = delete;
  LossyWebp& operator=(const LossyWebp&) = delete;
  ~LossyWebp() { WebPAnimEncoderDelete(encoder_); }

  std::string Add(const DibPixels& dib, const Image& image) {
    if (!encoder_) return Failure();
    screen_.Show(dib, image.transparentIndex, image.standAlone);
    WebPPicture picture;
    if (!WebPPictureInit(&picture)) return Failure();
    picture.width = settings_.width;
    picture.height = settings_.height;
    picture.use_argb = 1;
    bool allocationFailed = false;
    const auto add = [&] {
      return WebPPictureImportRGBA(&picture, screen_.pixels.data(), settings_.width * 4) &&
             WebPAnimEncoderAdd(encoder_, &picture, time_, &config_);
    };
    const bool added = Succeeds(add, allocationFailed);
    isDoubtful_ |= allocationFailed;
    WebPPictureFree(&picture);
    time_ += image.delay * settings_.delayUnit;
    return added ? "" : allocationFailed ? kOutOfMemory : Failure(picture.error_code);
  }

  std::string Finish() {
    WebPData data;
    WebPDataInit(&data);
    if (!encoder_ || !WebPAnimEncoderAdd(encoder_, nullptr, time_, nullptr) ||
        !WebPAnimEncoderAssemble(encoder_, &data))
      return Failure();
    std::string error = isDoubtful_ && !IsReadable(data) ? Failure() : KeepWriting(output_, {data.bytes, data.size});
    WebPDataClear(&data);
    return error;
  }

 private:
  // Within the size limits of the format, creating the encoder and adding a picture fail only when out of memory.
  std::string Failure(WebPEncodingError error = VP8_ENC_ERROR_OUT_OF_MEMORY) const {
    if (!encoder_ || error == VP8_ENC_ERROR_OUT_OF_MEMORY || error == VP8_ENC_ERROR_BITSTREAM_OUT_OF_MEMORY)
      return kOutOfMemory;
    return std::string("the .webp could not be made: ") + WebPAnimEncoderGetError(encoder_);
  }

  static bool IsReadable(const WebPData& animation) {
    WebPMux* const mux = WebPMuxCreate(&animation, 0);
    int count = 0;
    bool readable = mux && WebPMuxNumChunks(mux, WEBP_CHUNK_ANMF, &count) == WEBP_MUX_OK;
    for (int i = 1; readable && i <= std::max(count, 1); ++i) {
      WebPMuxFrameInfo frame{};
      int width = 0, height = 0;
      readable = WebPMuxGetFrame(mux, i, &frame) == WEBP_MUX_OK;
      std::uint8_t* const read = WebPDecodeRGBA(frame.bitstream.bytes, frame.bitstream.size, &width, &height);
      readable &= read != nullptr;
      WebPFree(read);
      WebPDataClear(&frame.bitstream);
    }
    WebPMuxDelete(mux);
    return readable;
  }

  Output& output_;
  EncoderSettings settings_;
  Screen screen_;
  bool isDoubtful_ = false;
  WebPConfig config_{};
  WebPAnimEncoder* encoder_ = nullptr;
  int time_ = 0;  // milliseconds
};

template <typename Webp>
Encoder Open(Output& output, const EncoderSettings& settings) {
  // A screen that is too large is refused before it is made.
  std::string trouble = SizeTrouble(settings);
  const auto webp = trouble.empty() ? std::make_shared<Webp>(output, settings) : nullptr;
  Encoder encoder;
  encoder.add = [webp, trouble](const Image& image) -> std::string {
    if (!webp) return trouble;
    const DibPixels dib = ReadDib(image.dib);
    return dib ? webp->Add(dib, image) : kBadImage;
  };
  encoder.finish = [webp, trouble] { return webp ? webp->Finish() : trouble; };
  return encoder;
}

}  // namespace

Encoder OpenWebp(Output& output, const EncoderSettings& settings) {
  return settings.lossyQuality < 0 ? Open<LosslessWebp>(output, settings) : Open<LossyWebp>(output, settings);
}

}  // namespace glyphmotion
