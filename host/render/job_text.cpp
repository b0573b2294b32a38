// SPDX-License-Identifier: MIT
#include "host/render/job_text.h"

#include "platform/font_files.h"
#include "platform/text_run.h"
#include "text/canvas.h"

namespace glyphmotion {

std::string PrepareText(const Job& job) {
  TextRun& run = CurrentTextRun();
  run = {};
  run.options.direction = static_cast<TextDirection>(job.textDirection);
  run.options.align = static_cast<TextAlign>(job.align);
  run.options.lineSpace = job.lineSpace;
  run.options.colourEmoji = job.colourEmoji;
  for (const auto& [tag, value] : job.fontVariation) run.axes.push_back({tag, value});
  if (job.lineSpace < 10 || job.lineSpace > 500)
    return "a line space of " + std::to_string(job.lineSpace) + " percent is not allowed; it takes 10 to 500";
  std::string error;
  if (!job.fontFile.empty()) OpenFontFile(job.fontFile, run.fontFile, error);
  return error;
}

std::string PrepareCanvas(const Job& job) {
  for (const int side : {job.width, job.height}) {
    if (side < 0 || side > Canvas::kLargestSide)
      return "a side of " + std::to_string(side) + " pixels is not allowed; it takes 1 to " +
             std::to_string(Canvas::kLargestSide);
  }
  Canvas& canvas = CurrentCanvas();
  canvas.width = job.width;
  canvas.height = job.height;
  canvas.shrink = job.fit == Job::Fit::Shrink;
  canvas.verticalAlign = static_cast<VerticalAlign>(job.verticalAlign);
  return {};
}

}  // namespace glyphmotion
