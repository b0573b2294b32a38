// SPDX-License-Identifier: MIT
#include "host/render/picture_output.h"

#include <utility>

#include "host/encoders/half_rate.h"
#include "host/encoders/out_of_memory.h"
#include "host/render/sample_picture.h"

namespace glyphmotion {

PictureOutput::PictureOutput(const Job& job, const EncoderFormat* format, Output output, bool halfRate)
    : job_(job), format_(format), output_(std::move(output)), halfRate_(halfRate) {}

void PictureOutput::Open(int taskWidth, int taskHeight, int count) {
  width = taskWidth;
  height = taskHeight;
  if (!output_) return;
  const int unit = job_.paletteFormat ? 10 : 1;
  const int lossy = job_.lossy.value_or(-1);
  encoder_ = format_->open(output_, {width, height, count, unit, static_cast<double>(lossy), job_.loops, job_.threads,
                                     lossy, job_.effort, stop_});
  if (halfRate_) encoder_ = AtHalfRate(std::move(*encoder_));
  if (job_.start) order_.emplace(*job_.start, encoder_->add);
}

// For a palette format the sample is reduced to a palette of its own.
std::string PictureOutput::AddSample(Image image) {
  PackedDib reduced;
  if (format_->paletteFormat) {
    reduced = ReduceToPalette(image.dib);
    if (!reduced) return kOutOfMemory;
  }
  const LockedBlock<DibHeader> bytes(reduced.Handle());
  if (bytes) image.dib = {reinterpret_cast<const std::uint8_t*>(bytes.get()), BlockSize(reduced.Handle())};
  return encoder_->add(image);
}

bool PictureOutput::Add(const Image& image) {
  if (image.sample) Open(image.width, image.height, 1);
  if (!encoder_) return true;
  error_ = image.sample ? AddSample(image) : order_ ? order_->Add(image) : encoder_->add(image);
  return error_.empty();
}

Sink PictureOutput::Attach(Sink sink) {
  stop_ = sink.stop;
  sink.task = [this, next = std::move(sink.task)](const Task& task) {
    Open(task.width, task.height, task.imageCount);
    return !next || next(task);
  };
  sink.image = [this, next = std::move(sink.image)](const Image& image) {
    return Add(image) && (!next || next(image));
  };
  sink.comment = [this, next = std::move(sink.comment)](const std::string& text) {
    if (encoder_ && encoder_->comment) encoder_->comment(text);
    if (next) next(text);
  };
  return sink;
}

std::string PictureOutput::Finish(const RenderResult& result) {
  if (!error_.empty()) return Stopped() ? std::string() : error_;
  if (result.status != RenderStatus::Done) {
    if (!result.message.empty()) return result.message;
    return result.dialogMessages.empty() ? kOutOfMemory : result.dialogMessages.front();
  }
  if (job_.action == Job::Action::None) return {};
  if (result.images == 0 && job_.action != Job::Action::Sample)
    return "the effect made no frames; use a text with visible characters";
  if (!output_) return {};
  if (!encoder_) return "no picture was made; use a text with visible characters";
  std::string error = order_ ? order_->Finish() : std::string();
  if (error.empty() && !Stopped()) error = encoder_->finish();
  if (Stopped()) return {};  // an encoder that was stopped may report anything
  if (!error.empty()) return error;
  error = output_.Keep();
  kept_ = error.empty();
  return error;
}

void AddOutputDefaults(Job& job, bool prefersPalette) {
  job.defaults = {{"AddDescriptiveCommentBlock", "0"},
                  {"MainDelay", job.paletteFormat ? "4" : "40"},
                  {"MainPause", job.paletteFormat ? "100" : "1000"},
                  {"14", "1"}};
  if (job.trueColourFormat && !job.trueColour) job.trueColour = !prefersPalette;
}

}  // namespace glyphmotion
