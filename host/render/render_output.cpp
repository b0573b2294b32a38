// SPDX-License-Identifier: MIT
// RenderToFile and RenderToMemory: a run of Render whose sink is an encoder.
#include <glyphmotion/render.h>

#include <filesystem>
#include <string_view>
#include <utility>

#include "host/render/picture_output.h"
#include "host/render/size_limit.h"
#include "platform/ascii.h"

namespace glyphmotion {
namespace {

RenderResult Refused(RenderStatus status, std::string message) {
  RenderResult result;
  result.status = status;
  result.message = std::move(message);
  return result;
}

std::string KnownFormats(const char* before) {
  std::string list;
  for (const std::string& format : OutputFormats()) list += (list.empty() ? "" : ", ") + (before + format);
  return list;
}

// What the file cannot be: one sentence, or empty.
std::string FileTrouble(const Job& job, const EncoderFormat& format) {
  const std::string_view extension = format.extension;
  const bool gif = extension == ".gif";
  const auto outside = [](int value, int most) { return value < 0 || value > most; };
  const auto range = [](const char* field, int value, int most) {
    return std::string(field) + " takes a whole number from 0 to " + std::to_string(most) + ", not '" +
           std::to_string(value) + "'";
  };
  if (outside(job.effort, 9)) return range("effort", job.effort, 9);
  if (outside(job.loops, 65535)) return range("loops", job.loops, 65535);
  if (job.start && *job.start < Job::kRest)
    return "start takes a frame's number from 0, or kRest, not '" + std::to_string(*job.start) + "'";
  if (job.lossy && !gif && extension != ".webp" && extension != ".avif" && extension != ".webm")
    return "lossy is for gif, webp, avif and webm; leave it out";
  if (job.lossy && outside(*job.lossy, gif ? 200 : 100)) return range("lossy", *job.lossy, gif ? 200 : 100);
  return job.maxBytes && !gif ? "maxBytes is for gif; leave it out" : "";
}

RenderResult RenderInto(Output output, const EncoderFormat& format, Job job, const Sink& sink) {
  if (std::string trouble = FileTrouble(job, format); !trouble.empty())
    return Refused(RenderStatus::BadJob, std::move(trouble));
  job.paletteFormat = format.paletteFormat;
  job.trueColourFormat = !format.paletteFormat;
  const std::vector<Job::Setting> own = std::exchange(job.defaults, {});
  AddOutputDefaults(job, format.paletteFormat || job.palette != Job::Palette::Dialog || job.colours < 256);
  job.defaults.insert(job.defaults.end(), own.begin(), own.end());
  return RenderPictures(job, format, std::move(output), sink);
}

// Made in memory, because only the run that fits is written.
RenderResult RenderFitted(const Job& job, Output output, const Sink& sink) {
  FittedPictures made = RenderWithin(job, sink);
  if (made.trouble.empty()) made.trouble = output.Write(made.bytes) ? output.Keep() : output.Refusal();
  if (!made.trouble.empty() && made.result.status == RenderStatus::Done) made.result.status = RenderStatus::Failed;
  made.result.message = std::move(made.trouble);
  return std::move(made.result);
}

}  // namespace

RenderResult RenderPictures(const Job& job, const EncoderFormat& format, Output output, const Sink& sink) {
  if (job.maxBytes && job.action == Job::Action::Build) return RenderFitted(job, std::move(output), sink);
  PictureOutput pictures(job, &format, std::move(output));
  RenderResult result = Render(job, pictures.Attach(sink));
  std::string trouble = pictures.Finish(result);
  if (trouble.empty() && (pictures.Kept() || job.action == Job::Action::None)) return result;
  if (trouble.empty()) return Refused(RenderStatus::Cancelled, "the run was interrupted");
  if (result.status == RenderStatus::Done) result.status = RenderStatus::Failed;
  result.message = std::move(trouble);
  return result;
}

RenderResult RenderToFile(const Job& job, const std::string& path, const Sink& sink) {
  const EncoderFormat* format = FindFormat(Lowered(std::filesystem::path(path).extension().string()));
  if (!format)
    return Refused(RenderStatus::BadJob,
                   "'" + path + "' has no file type that can be written; use " + KnownFormats("."));
  std::string error;
  Output output = Output::File(path, error);
  if (!output) return Refused(RenderStatus::Failed, error);
  return RenderInto(std::move(output), *format, job, sink);
}

RenderedBytes RenderToMemory(const Job& job, const std::string& format, const Sink& sink) {
  RenderedBytes rendered;
  const EncoderFormat* row = FindFormat("." + format);
  if (row) {
    rendered.result = RenderInto(Output::Memory(rendered.bytes), *row, job, sink);
  } else {
    rendered.result = Refused(RenderStatus::BadJob, "there is no format '" + format + "'; use " + KnownFormats(""));
  }
  if (rendered.result.status != RenderStatus::Done) rendered.bytes.clear();
  return rendered;
}

std::vector<std::string> OutputFormats() {
  std::vector<std::string> names;
  for (const EncoderFormat& format : Formats()) {
    if (format.extension[0] == '.') names.emplace_back(format.extension + 1);
  }
  return names;
}

const char* Version() { return GLYPHMOTION_VERSION; }

}  // namespace glyphmotion
