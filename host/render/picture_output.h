// SPDX-License-Identifier: MIT
// From the images of a run to one output: opens the encoder once the size is known, and completes the file.
#pragma once

#include <glyphmotion/render.h>

#include <optional>
#include <string>

#include "host/encoders/encoders.h"
#include "host/encoders/frame_order.h"
#include "host/encoders/output_file.h"

namespace glyphmotion {

class PictureOutput {
 public:
  /// Encodes into `output`, in `format`, as the job says, with half of the frames if `halfRate`; an empty output takes
  /// no images. The job must outlive this.
  PictureOutput(const Job& job, const EncoderFormat* format, Output output, bool halfRate = false);
  PictureOutput(const PictureOutput&) = delete;
  PictureOutput& operator=(const PictureOutput&) = delete;

  /// `sink` with the encoder in front: a task, image or comment goes to the encoder first.
  Sink Attach(Sink sink);

  /// After Render: completes the output and, unless the sink's `stop` is set by now, gives it its name. Empty when
  /// done or stopped; otherwise one sentence, also for a run that failed.
  std::string Finish(const RenderResult& result);

  /// The output has its name.
  bool Kept() const { return kept_; }
  bool HasPictures() const { return encoder_.has_value(); }
  /// Written so far, over all files of a folder.
  std::uint64_t Bytes() const { return output_.Bytes(); }
  int width = 0, height = 0;  ///< pixels, once the task is known

 private:
  void Open(int taskWidth, int taskHeight, int count);
  bool Add(const Image& image);
  std::string AddSample(Image image);
  bool Stopped() const { return stop_ && *stop_; }

  const Job& job_;
  const EncoderFormat* format_;
  Output output_;
  bool halfRate_;
  std::optional<Encoder> encoder_;
  std::optional<FrameOrder> order_;
  bool kept_ = false;
  std::string error_;  // why the encoder refused an image
  const std::atomic<bool>* stop_ = nullptr;
};

/// Renders the job into `output`, within its limit of bytes. The result's message is empty when the output is complete.
RenderResult RenderPictures(const Job& job, const EncoderFormat& format, Output output, const Sink& sink);

/// The values that hold in an output where neither files nor options say otherwise. prefersPalette: palette indices
/// rather than true colour, where the job's host takes both.
void AddOutputDefaults(Job& job, bool prefersPalette);

}  // namespace glyphmotion
