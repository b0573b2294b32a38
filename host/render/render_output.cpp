// SPDX-License-Identifier: MIT
// RenderToFile and RenderToMemory: a run of Render whose sink is an encoder.
#include <glyphmotion/render.h>

#include <filesystem>
#include <utility>

#include "host/render/picture_output.h"
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

RenderResult RenderInto(Output output, const EncoderFormat& format, Job job, const Sink& sink) {
  job.paletteFormat = format.paletteFormat;
  job.trueColourFormat = !format.paletteFormat;
  const std::vector<Job::Setting> own = std::exchange(job.defaults, {});
  AddOutputDefaults(job, format.paletteFormat);
  job.defaults.insert(job.defaults.end(), own.begin(), own.end());
  PictureOutput pictures(job, &format, {}, std::move(output));
  RenderResult result = Render(job, pictures.Attach(sink));
  std::string trouble = pictures.Finish(result);
  if (trouble.empty() && (pictures.Kept() || job.action == Job::Action::None)) return result;
  if (trouble.empty()) return Refused(RenderStatus::Cancelled, "the run was interrupted");
  if (result.status == RenderStatus::Done) result.status = RenderStatus::Failed;
  result.message = std::move(trouble);
  return result;
}

}  // namespace

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
